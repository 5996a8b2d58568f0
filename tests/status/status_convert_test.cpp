#include "status/status_convert.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace {

// A result and the codes that become it.
using Groups = std::vector<std::pair<std::uint32_t, std::vector<std::uint32_t>>>;
using Table = std::map<std::uint32_t, std::uint32_t>;

Table Flatten(const Groups& groups) {
    Table table;
    for (const auto& [result, codes] : groups) {
        for (const std::uint32_t code : codes) {
            EXPECT_TRUE(table.emplace(code, result).second) << code << " stands twice";
        }
    }
    return table;
}

// What `convert` makes of the codes first..last, as far as it is not the fallback.
template <typename Convert>
void Sweep(std::uint32_t first, std::uint32_t last, std::uint32_t fallback, Convert convert,
           Table& found) {
    for (std::uint64_t code = first; code <= last; ++code) {
        const std::uint32_t result = convert(static_cast<std::uint32_t>(code));
        if (result != fallback) found.emplace(static_cast<std::uint32_t>(code), result);
    }
}

template <typename Convert>
Table SweepStatuses(std::uint32_t fallback, Convert convert) {
    Table found;
    Sweep(0, 0x1FFFF, fallback, convert, found);  // wrapped to 16 bits is not listed
    Sweep(0x7FFFFF00, 0x80000100, fallback, convert, found);
    Sweep(0xFFFFF000, 0xFFFFFFFF, fallback, convert, found);  // -4096 .. -1
    return found;
}

// clang-format off
const Groups kStatusToSystem = {
    {0, {0}}, {1326, {1}}, {86, {2}}, {12, {3, 19}}, {2, {4, 52}}, {0x80092003, {5, 6}}, {3, {8}},
    {1057, {9}}, {1223, {10, 11, 148}}, {8, {16}}, {110, {17}}, {123, {18, 55}}, {25, {21}},
    {1358, {22, 23, 24, 25, 83, 84, 85, 102, 103, 104, 134}},
    {259, {26, 27, 67, 68, 90, 97, 101, 138, 194}}, {160, {28}}, {1216, {29}}, {1629, {30, 33}},
    {18, {31}}, {0x8009000D, {32}}, {112, {35}}, {0x80091008, {37}}, {0x80090003, {58}},
    {82, {61, 63}}, {266, {64}}, {0x80091002, {73}}, {1392, {74}}, {8348, {81}},
    {0x80096004, {98, 202}}, {30, {110, 179}}, {120, {115, 117}}, {80, {121}}, {13, {131, 204}},
    {0x80340004, {136}}, {0x80090005, {140}}, {0x80090006, {141}}, {21, {144}}, {1114, {146}},
    {127, {147}}, {87, {170}}, {31, {171, 172, 173, 174, 175, 176, 177}}, {0x8010000C, {178}},
    {29, {180}}, {1785, {182}}, {0x80070005, {192, 193, 200, 201}}, {0x8009000F, {195}},
    {0x80100001, {198}}, {0x800B0101, {203}}, {0x8009310B, {205}}, {0x80093103, {206}},
    {0x8010006B, {217}}, {0x80310036, {221}}, {0x80290119, {222}}, {0x8010006C, {226, 227}},
    {0x80090023, {229}}, {1060, {232}}, {0x8009000B, {233, 1043}}, {1330, {236, 237}}, {5, {501}},
    {50, {502}}, {0x80090019, {1038}}, {0x80090022, {1039}}, {1169, {1040}}, {0x800B0110, {1041}},
    {0x800B010E, {1042}}, {0x80100034, {1045}},
};

const Groups kStatusToPkcs11 = {
    {0, {0}},
    {48, {1, 3, 5, 6, 17, 18, 19, 21, 22, 23, 24, 25, 26, 27, 31, 52, 55, 61, 63, 67, 68, 74, 81,
         83, 84, 85, 90, 97, 101, 102, 103, 104, 110, 121, 134, 138, 144, 171, 172, 173, 174,
         175, 176, 177, 179, 180, 182, 194}}, {160, {2, 217}}, {50, {4, 8}}, {163, {9}},
    {1, {10, 11, 148}}, {2, {16}}, {87, {28, 170}}, {162, {29}},
    {32, {30, 33, 98, 131, 202, 203, 204, 233, 236, 237}}, {96, {32, 58, 178}}, {49, {35, 229}},
    {113, {73}}, {192, {140}}, {5, {192, 193, 200, 201, 501}}, {289, {222}}, {164, {226, 227}},
};

const Groups kSystemToStatus = {
    {0, {0}}, {4, {2, 126}}, {8, {3}}, {501, {5}}, {71, {6}}, {16, {8}}, {6, {29}}, {5, {30}},
    {174, {31}}, {61, {82}}, {2, {86}}, {17, {110}}, {35, {112}}, {115, {120}}, {55, {123}},
    {147, {127}}, {28, {160}}, {156, {170}}, {195, {183}}, {225, {206}}, {132, {234}},
    {64, {266}}, {232, {1060}}, {146, {1114}}, {194, {1168}}, {1040, {1169}}, {148, {1223}},
    {236, {1330}}, {74, {1610}}, {182, {1785}}, {106, {8344}}, {115, {0x80004001}},
    {16, {0x8007000E}}, {28, {0x80070057}}, {28, {0x80090001}}, {58, {0x80090003}},
    {141, {0x80090006}}, {73, {0x80090008}}, {28, {0x80090009, 0x8009000A}}, {1043, {0x8009000B}},
    {71, {0x8009000C}}, {32, {0x8009000D}}, {16, {0x8009000E}}, {195, {0x8009000F}},
    {194, {0x80090011}}, {28, {0x80090014, 0x80090017}}, {1038, {0x80090016, 0x80090019}},
    {7, {0x8009001A}}, {146, {0x8009001C, 0x8009001E}}, {42, {0x8009001D}}, {106, {0x80090020}},
    {1039, {0x80090022}}, {229, {0x80090023}}, {73, {0x80091002}}, {38, {0x80091003}},
    {131, {0x80091004}}, {37, {0x80091008}}, {17, {0x80092003}}, {206, {0x80093103}},
    {205, {0x8009310B}}, {98, {0x80096004}}, {202, {0x80096019}}, {206, {0x800B0005, 0x800B0006}},
    {203, {0x800B0101}}, {202, {0x800B0102}}, {98, {0x800B010A}}, {1042, {0x800B010E}},
    {1041, {0x800B0110}}, {198, {0x80100001}}, {16, {0x80100006}}, {178, {0x8010000C}},
    {1045, {0x80100034}}, {217, {0x8010006B, 0x8010006F}}, {226, {0x8010006C}},
    {148, {0x8010006E}}, {136, {0x80280043, 0x80340004}}, {222, {0x80290119, 0x80310036}},
};
// clang-format on

TEST(StatusConvert, ToSystem) {
    const auto convert = [](std::uint32_t status) {
        return QelErr2WinErr(static_cast<int>(status));
    };
    EXPECT_EQ(Flatten(kStatusToSystem), SweepStatuses(1627, convert));
}

TEST(StatusConvert, ToPkcs11) {
    const auto convert = [](std::uint32_t status) {
        return QelkitErr2PKCS11Err(static_cast<int>(status));
    };
    EXPECT_EQ(Flatten(kStatusToPkcs11), SweepStatuses(6, convert));
}

TEST(StatusConvert, FromSystem) {
    const auto convert = [](std::uint32_t code) {
        return static_cast<std::uint32_t>(WinErr2QelkitErr(code));
    };
    Table found;
    Sweep(0, 0x1FFFF, 36, convert, found);
    // Every block that has a listed HRESULT, its neighbours, and the same without the severity.
    for (const std::uint32_t facility :
         {0x0000, 0x0007, 0x0009, 0x000B, 0x0010, 0x0028, 0x0029, 0x0031, 0x0034}) {
        Sweep(0x80000000 + (facility << 16), 0x8000FFFF + (facility << 16), 36, convert, found);
    }
    Sweep(0x00090000, 0x0009FFFF, 36, convert, found);
    Sweep(0xFFFFFF00, 0xFFFFFFFF, 36, convert, found);
    EXPECT_EQ(Flatten(kSystemToStatus), found);
}

TEST(StatusConvert, ToHResultWrapsWin32CodesOnly) {
    const struct {
        int status;
        std::uint32_t hresult;
    } cases[] = {
        {0, 0},
        {4, 0x80070002},      // ERROR_FILE_NOT_FOUND
        {5, 0x80092003},      // an HRESULT already
        {81, 0x8007209C},     // 8348, the highest Win32 code
        {192, 0x80070005},    // the same by its HRESULT ...
        {501, 0x80070005},    // ... and by its Win32 code
        {99999, 0x8007065B},  // 1627
        {-1, 0x8007065B},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.hresult, static_cast<std::uint32_t>(QelErr2HResult(c.status))) << c.status;
    }
}

TEST(StatusConvert, FromHResult) {
    const struct {
        std::uint32_t hresult, status;
    } cases[] = {
        {0, 0},
        {5, 501},            // a plain Win32 code
        {1326, 36},          // not listed
        {0x80070002, 4},     // the low half is a listed Win32 code
        {0x8009000B, 1043},  // it is not: the whole value counts
        {0x8010000C, 178},
        {0x80004001, 115},
        {0x8000FFFF, 36},
        {0x80009999, 36},
        // The interface facility: a status that a caller wrapped, listed or not.
        {0x80040004, 4},
        {0x00040115, 0x115},
        {0xA0040007, 7},  // customer bit
        {0x80040000, 0},
        {0x8004FFFF, 65535},
        {0x90040007, 36},  // another facility: 0x1004, and 7 is not listed
        // Rows that the low half hides.
        {0x80090003, 8},
        {0x80090006, 71},
        {0x80090008, 16},
        {0x8009001D, 6},
        {0x8009001E, 5},
        {0x800B0005, 501},
        {0x800B0006, 71},
        {0x800B010A, 64},
        {0x80100006, 71},
        {0x8010006E, 17},
        {0x80090000, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.status, HResult2QelkitErr(static_cast<long32>(c.hresult)))
            << std::hex << c.hresult;
    }
}

TEST(StatusConvert, FromPkcs11KnowsSuccessOnly) {
    EXPECT_EQ(0, PKCS11ErrQelkitErr2(0));
    for (const std::uint32_t rv : {1u, 6u, 48u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(115, PKCS11ErrQelkitErr2(rv)) << rv;
    }
}

}  // namespace
