#include "utils/detail/acl_dump.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/hex_bytes.h"
#include "support/temp_folder.h"

namespace {

const std::string kWorld = FromHex("01 01 000000000001 00000000");

// An access list of entries "type flags data".
std::vector<BYTE> ListOf(const std::vector<std::string>& entries) {
    std::vector<BYTE> list(8);
    for (std::string entry : entries) {
        entry.insert(2, {static_cast<char>(entry.size() + 2), 0});
        list.insert(list.end(), entry.begin(), entry.end());
    }
    const ACL header = {2, 0, static_cast<WORD>(list.size()), static_cast<WORD>(entries.size()), 0};
    std::memcpy(list.data(), &header, sizeof header);
    return list;
}

std::string Dump(const TempFolder& folder, std::vector<BYTE> list, ulong32 result) {
    FILE* stream = std::fopen((folder / "log").c_str(), "wb");
    {
        kit::AccessLog log(stream);
        EXPECT_EQ(result, kit::DumpAcl(reinterpret_cast<ACL*>(list.data()), log));
    }
    std::fclose(stream);
    return folder.Read("log").substr(
        std::strlen("_____________________Start dumpACL____________________\n"));
}

TEST(AclDump, WritesEveryEntry) {
    const TempFolder folder;
    const std::string guid(16, 'g');
    const struct {
        std::string entry, text;
    } cases[] = {
        {FromHex("02 DF 78563412") + kWorld,
         "  ACE Type = SYSTEM_AUDIT_ACE_TYPE\n  ACE Flags = \n  \tSUCCESSFUL_ACCESS_ACE_FLAG\n"
         "  \tFAILED_ACCESS_ACE_FLAG\n  \tNO_PROPAGATE_INHERIT_ACE\n  \tINHERIT_ONLY_ACE\n"
         "  \tOBJECT_INHERIT_ACE\n  \tCONTAINER_INHERIT_ACE\n  \tINHERITED_ACE\n"
         "  ACE Mask = 12345678\n  ACE SID = S-1-1-0 (Everyone)\n"},
        {FromHex("04 00 01000000") + kWorld,
         "  ACE Type = Unknown ACE Type\n  ACE Flags = \n  ACE Mask = 1\n"
         "  ACE SID = S-1-1-0 (Everyone)\n"},
        {FromHex("05 00 01000000 01000000") + guid + kWorld,
         "  ACE Type = ACCESS_ALLOWED_OBJECT_ACE_TYPE\n  ACE Flags = \n  ACE Mask = 1\n"
         "  ACE SID = S-1-1-0 (Everyone)\n"},
        // The SID is longer than its entry.
        {FromHex("00 00 01000000 01 0F 000000000001 00000000"),
         "  ACE Type = ACCESS_ALLOWED_ACE_TYPE\n  ACE Flags = \n  ACE Mask = 1\n"
         "ConvertSidToStringSid failed with code 1337\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ("ACE #0\n" + c.text + "end with code 0\n", Dump(folder, ListOf({c.entry}), 0));
    }
    EXPECT_EQ("end with code 0\n", Dump(folder, ListOf({}), 0));
    EXPECT_EQ("", Dump(folder, {}, 0x80070057));
}

}  // namespace
