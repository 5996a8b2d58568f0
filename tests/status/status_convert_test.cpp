#include "status/status_convert.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Table = std::map<std::uint32_t, std::uint32_t>;
using Ranges = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

// A table of tests/data/status_conversions.txt: codes and what they become.
Table Expected(const std::string& name) {
    std::ifstream file(QELKIT_TEST_DATA "/status_conversions.txt");
    Table table;
    std::string line;
    while (std::getline(file, line) && line != name) continue;
    while (std::getline(file, line) && line.find(':') != std::string::npos) {
        std::istringstream codes(line.substr(line.find(':') + 1));
        const auto result = static_cast<std::uint32_t>(std::stoul(line, nullptr, 0));
        for (std::string code; codes >> code;) {
            const auto key = static_cast<std::uint32_t>(std::stoul(code, nullptr, 0));
            EXPECT_TRUE(table.emplace(key, result).second) << code << " stands twice";
        }
    }
    EXPECT_FALSE(table.empty()) << name;
    return table;
}

// Of the codes of the ranges exactly those of the table are not the fallback.
template <typename Convert>
void Check(const char* name, const Ranges& ranges, std::uint32_t fallback, Convert convert) {
    Table found;
    for (const auto& [first, last] : ranges) {
        for (std::uint64_t code = first; code <= last; ++code) {
            const auto result = static_cast<std::uint32_t>(convert(static_cast<int>(code)));
            if (result != fallback) found[static_cast<std::uint32_t>(code)] = result;
        }
    }
    EXPECT_EQ(Expected(name), found);
}

// Wrapped to 16 bits none is listed.
const Ranges kStatuses = {{0, 0x1FFFF}, {0x7FFFFF00, 0x80000100}, {0xFFFFF000, 0xFFFFFFFF}};

TEST(StatusConvert, ToSystem) { Check("to_system", kStatuses, 1627, QelErr2WinErr); }

TEST(StatusConvert, ToPkcs11) { Check("to_pkcs11", kStatuses, 6, QelkitErr2PKCS11Err); }

TEST(StatusConvert, FromSystem) {
    Ranges codes = {{0, 0x1FFFF}, {0x00090000, 0x0009FFFF}, {0xFFFFFF00, 0xFFFFFFFF}};
    // Every block that has a listed HRESULT, and its neighbours.
    for (const std::uint32_t facility : {0x00, 0x07, 0x09, 0x0B, 0x10, 0x28, 0x29, 0x31, 0x34}) {
        codes.emplace_back(0x80000000 + (facility << 16), 0x8000FFFF + (facility << 16));
    }
    Check("from_system", codes, 36, WinErr2QelkitErr);
}

TEST(StatusConvert, ToHResultWrapsWin32CodesOnly) {
    const std::pair<int, std::uint32_t> cases[] = {
        {81, 0x8007209C}, {192, 0x80070005}, {501, 0x80070005},
        {-1, 0x8007065B}, {4, 0x80070002},   {5, 0x80092003},
        {0, 0},
    };
    for (const auto& [status, hresult] : cases) {
        EXPECT_EQ(hresult, static_cast<std::uint32_t>(QelErr2HResult(status))) << status;
    }
}

// The interface facility, under a customer bit too, is a status that a caller wrapped. Otherwise
// the low half hides what stands for the whole.
TEST(StatusConvert, FromHResult) {
    const std::pair<std::uint32_t, std::uint32_t> cases[] = {
        {0x8009000B, 1043}, {0x00040115, 0x115}, {0x8004FFFF, 65535}, {0x80070002, 4},
        {0x8010000C, 178},  {0x80004001, 115},   {0x8000FFFF, 36},    {0x80009999, 36},
        {0x80040004, 4},    {0xA0040007, 7},     {0x80040000, 0},     {0x90040007, 36},
        {0x80090003, 8},    {0x80090006, 71},    {0x80090008, 16},    {0x8009001D, 6},
        {0x8009001E, 5},    {0x800B0005, 501},   {0x800B0006, 71},    {0x800B010A, 64},
        {0x80100006, 71},   {0x8010006E, 17},    {0x80090000, 0},     {0, 0},
        {5, 501},           {1326, 36},
    };
    for (const auto& [hresult, status] : cases) {
        EXPECT_EQ(status, HResult2QelkitErr(static_cast<long32>(hresult))) << std::hex << hresult;
    }
}

TEST(StatusConvert, FromPkcs11KnowsSuccessOnly) {
    EXPECT_EQ(0, PKCS11ErrQelkitErr2(0));
    for (const std::uint32_t rv : {1u, 6u, 48u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(115, PKCS11ErrQelkitErr2(rv)) << rv;
    }
}

}  // namespace
