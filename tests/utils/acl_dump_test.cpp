#include "utils/detail/acl_dump.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/hex_bytes.h"
#include "support/temp_folder.h"

namespace {

const std::string kWorld = FromHex("01 01 000000000001 00000000");

// What is written behind the start line about an access list of one entry, "type flags data".
std::string Dump(std::string entry) {
    entry.insert(2, {static_cast<char>(entry.size() + 2), 0});
    const ACL header = {2, 0, static_cast<WORD>(8 + entry.size()), 1, 0};
    std::string list(reinterpret_cast<const char*>(&header), sizeof header);
    list += entry;
    const TempFolder folder;
    FILE* stream = std::fopen((folder / "log").c_str(), "wb");
    kit::AccessLog log(stream);
    EXPECT_EQ(0u, kit::DumpAcl(reinterpret_cast<ACL*>(list.data()), log));
    EXPECT_EQ(0x80070057, kit::DumpAcl(nullptr, log));
    std::fclose(stream);
    const std::string text = folder.Read("log");
    const std::size_t line = text.find('\n') + 1;  // and once more at the end
    return text.substr(line, text.size() - 2 * line);
}

TEST(AclDump, WritesEveryEntry) {
    const struct {
        std::string entry, text;
    } cases[] = {
        {FromHex("02 DF 78563412") + kWorld,
         "SYSTEM_AUDIT_ACE_TYPE\n  ACE Flags = \n  \tSUCCESSFUL_ACCESS_ACE_FLAG\n"
         "  \tFAILED_ACCESS_ACE_FLAG\n  \tNO_PROPAGATE_INHERIT_ACE\n  \tINHERIT_ONLY_ACE\n"
         "  \tOBJECT_INHERIT_ACE\n  \tCONTAINER_INHERIT_ACE\n  \tINHERITED_ACE\n"
         "  ACE Mask = 12345678\n  ACE SID = S-1-1-0 (Everyone)\n"},
        {FromHex("04 00 01000000") + FromHex("01 01 000000000005 63000000"),
         "Unknown ACE Type\n  ACE Flags = \n  ACE Mask = 1\n  ACE SID = S-1-5-99 (Unknown)\n"},
        // A GUID comes before the SID.
        {FromHex("05 00 01000000 01000000") + std::string(16, 'g') + kWorld,
         "ACCESS_ALLOWED_OBJECT_ACE_TYPE\n  ACE Flags = \n  ACE Mask = 1\n"
         "  ACE SID = S-1-1-0 (Everyone)\n"},
        // The SID is longer than its entry.
        {FromHex("00 00 01000000 01 0F 000000000001 00000000"),
         "ACCESS_ALLOWED_ACE_TYPE\n  ACE Flags = \n  ACE Mask = 1\n"
         "ConvertSidToStringSid failed with code 1337\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ("ACE #0\n  ACE Type = " + c.text + "end with code 0\n", Dump(c.entry));
    }
}

}  // namespace
