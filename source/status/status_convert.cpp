#include "status/status_convert.h"

#include "base/code_table.h"
#include "status/status_codes.h"

namespace {

// Win32 codes stand in decimal, HRESULTs in hexadecimal.
constexpr std::uint32_t kFunctionFailed = 1627;  // ERROR_FUNCTION_FAILED
constexpr std::uint32_t kPkcs11FunctionFailed = 6;

// status -> Win32 code or HRESULT
constexpr kit::CodeRow kStatusToSystem[] = {
    {0, 0, 0},
    {1, 1, 1326},
    {2, 2, 86},
    {3, 3, 12},
    {4, 4, 2},
    {5, 6, 0x80092003},
    {8, 8, 3},
    {9, 9, 1057},
    {10, 11, 1223},
    {16, 16, 8},
    {17, 17, 110},
    {18, 18, 123},
    {19, 19, 12},
    {21, 21, 25},
    {22, 25, 1358},
    {26, 27, 259},
    {28, 28, 160},
    {29, 29, 1216},
    {30, 30, 1629},
    {31, 31, 18},
    {32, 32, 0x8009000D},
    {33, 33, 1629},
    {35, 35, 112},
    {37, 37, 0x80091008},
    {52, 52, 2},
    {55, 55, 123},
    {58, 58, 0x80090003},
    {61, 61, 82},
    {63, 63, 82},
    {64, 64, 266},
    {67, 68, 259},
    {73, 73, 0x80091002},
    {74, 74, 1392},
    {81, 81, 8348},
    {83, 85, 1358},
    {90, 90, 259},
    {97, 97, 259},
    {98, 98, 0x80096004},
    {101, 101, 259},
    {102, 104, 1358},
    {110, 110, 30},
    {115, 115, 120},
    {117, 117, 120},
    {121, 121, 80},
    {131, 131, 13},
    {134, 134, 1358},
    {136, 136, 0x80340004},
    {138, 138, 259},
    {140, 140, 0x80090005},
    {141, 141, 0x80090006},
    {144, 144, 21},
    {146, 146, 1114},
    {147, 147, 127},
    {148, 148, 1223},
    {170, 170, 87},
    {171, 177, 31},
    {178, 178, 0x8010000C},
    {179, 179, 30},
    {180, 180, 29},
    {182, 182, 1785},
    {192, 193, 0x80070005},
    {194, 194, 259},
    {195, 195, 0x8009000F},
    {198, 198, 0x80100001},
    {200, 201, 0x80070005},
    {202, 202, 0x80096004},
    {203, 203, 0x800B0101},
    {204, 204, 13},
    {205, 205, 0x8009310B},
    {206, 206, 0x80093103},
    {217, 217, 0x8010006B},
    {221, 221, 0x80310036},
    {222, 222, 0x80290119},
    {226, 227, 0x8010006C},
    {229, 229, 0x80090023},
    {232, 232, 1060},
    {233, 233, 0x8009000B},
    {236, 237, 1330},
    {501, 501, 5},
    {502, 502, 50},
    {1038, 1038, 0x80090019},
    {1039, 1039, 0x80090022},
    {1040, 1040, 1169},
    {1041, 1041, 0x800B0110},
    {1042, 1042, 0x800B010E},
    {1043, 1043, 0x8009000B},
    {1045, 1045, 0x80100034},
};
static_assert(kit::IsOrdered(kStatusToSystem), "Convert() searches by halves");

// Win32 code or HRESULT -> status. No inverse of the table above: 1326, which stands for status 1,
// comes back as 36, and 29 as 6.
constexpr kit::CodeRow kSystemToStatus[] = {
    {0, 0, 0},
    {2, 2, 4},
    {3, 3, 8},
    {5, 5, 501},
    {6, 6, 71},
    {8, 8, 16},
    {29, 29, 6},
    {30, 30, 5},
    {31, 31, 174},
    {82, 82, 61},
    {86, 86, 2},
    {110, 110, 17},
    {112, 112, 35},
    {120, 120, 115},
    {123, 123, 55},
    {126, 126, 4},
    {127, 127, 147},
    {160, 160, 28},
    {170, 170, 156},
    {183, 183, 195},
    {206, 206, 225},
    {234, 234, 132},
    {266, 266, 64},
    {1060, 1060, 232},
    {1114, 1114, 146},
    {1168, 1168, 194},
    {1169, 1169, 1040},
    {1223, 1223, 148},
    {1330, 1330, 236},
    {1610, 1610, 74},
    {1785, 1785, 182},
    {8344, 8344, 106},
    {0x80004001, 0x80004001, 115},
    {0x8007000E, 0x8007000E, 16},
    {0x80070057, 0x80070057, 28},
    {0x80090001, 0x80090001, 28},
    {0x80090003, 0x80090003, 58},
    {0x80090006, 0x80090006, 141},
    {0x80090008, 0x80090008, 73},
    {0x80090009, 0x8009000A, 28},
    {0x8009000B, 0x8009000B, 1043},
    {0x8009000C, 0x8009000C, 71},
    {0x8009000D, 0x8009000D, 32},
    {0x8009000E, 0x8009000E, 16},
    {0x8009000F, 0x8009000F, 195},
    {0x80090011, 0x80090011, 194},
    {0x80090014, 0x80090014, 28},
    {0x80090016, 0x80090016, 1038},
    {0x80090017, 0x80090017, 28},
    {0x80090019, 0x80090019, 1038},
    {0x8009001A, 0x8009001A, 7},
    {0x8009001C, 0x8009001C, 146},
    {0x8009001D, 0x8009001D, 42},
    {0x8009001E, 0x8009001E, 146},
    {0x80090020, 0x80090020, 106},
    {0x80090022, 0x80090022, 1039},
    {0x80090023, 0x80090023, 229},
    {0x80091002, 0x80091002, 73},
    {0x80091003, 0x80091003, 38},
    {0x80091004, 0x80091004, 131},
    {0x80091008, 0x80091008, 37},
    {0x80092003, 0x80092003, 17},
    {0x80093103, 0x80093103, 206},
    {0x8009310B, 0x8009310B, 205},
    {0x80096004, 0x80096004, 98},
    {0x80096019, 0x80096019, 202},
    {0x800B0005, 0x800B0006, 206},
    {0x800B0101, 0x800B0101, 203},
    {0x800B0102, 0x800B0102, 202},
    {0x800B010A, 0x800B010A, 98},
    {0x800B010E, 0x800B010E, 1042},
    {0x800B0110, 0x800B0110, 1041},
    {0x80100001, 0x80100001, 198},
    {0x80100006, 0x80100006, 16},
    {0x8010000C, 0x8010000C, 178},
    {0x80100034, 0x80100034, 1045},
    {0x8010006B, 0x8010006B, 217},
    {0x8010006C, 0x8010006C, 226},
    {0x8010006E, 0x8010006E, 148},
    {0x8010006F, 0x8010006F, 217},
    {0x80280043, 0x80280043, 136},
    {0x80290119, 0x80290119, 222},
    {0x80310036, 0x80310036, 222},
    {0x80340004, 0x80340004, 136},
};
static_assert(kit::IsOrdered(kSystemToStatus), "Convert() searches by halves");

// Quirk: 28 and 170 become 87, the Win32 number of an invalid parameter and no PKCS#11 value;
// callers compare with it. Pinned by StatusConvert.ToPkcs11.
// status -> PKCS#11 return value (CKR_...)
constexpr kit::CodeRow kStatusToPkcs11[] = {
    {0, 0, 0},
    {1, 1, 48},
    {2, 2, 160},
    {3, 3, 48},
    {4, 4, 50},
    {5, 6, 48},
    {8, 8, 50},
    {9, 9, 163},
    {10, 11, 1},
    {16, 16, 2},
    {17, 19, 48},
    {21, 27, 48},
    {28, 28, 87},
    {29, 29, 162},
    {30, 30, 32},
    {31, 31, 48},
    {32, 32, 96},
    {33, 33, 32},
    {35, 35, 49},
    {52, 52, 48},
    {55, 55, 48},
    {58, 58, 96},
    {61, 61, 48},
    {63, 63, 48},
    {67, 68, 48},
    {73, 73, 113},
    {74, 74, 48},
    {81, 81, 48},
    {83, 85, 48},
    {90, 90, 48},
    {97, 97, 48},
    {98, 98, 32},
    {101, 104, 48},
    {110, 110, 48},
    {121, 121, 48},
    {131, 131, 32},
    {134, 134, 48},
    {138, 138, 48},
    {140, 140, 192},
    {144, 144, 48},
    {148, 148, 1},
    {170, 170, 87},
    {171, 177, 48},
    {178, 178, 96},
    {179, 180, 48},
    {182, 182, 48},
    {192, 193, 5},
    {194, 194, 48},
    {200, 201, 5},
    {202, 204, 32},
    {217, 217, 160},
    {222, 222, 289},
    {226, 227, 164},
    {229, 229, 49},
    {233, 233, 32},
    {236, 237, 32},
    {501, 501, 5},
};
static_assert(kit::IsOrdered(kStatusToPkcs11), "Convert() searches by halves");

}  // namespace

ulong32 QelErr2WinErr(int status) {
    return kit::Convert(kStatusToSystem, static_cast<std::uint32_t>(status), kFunctionFailed);
}

int WinErr2QelkitErr(ulong32 code) {
    return static_cast<int>(kit::Convert(kSystemToStatus, code, kStatusUnknown));
}

long32 QelErr2HResult(int status) {
    const ulong32 code = QelErr2WinErr(status);
    const bool is_win32_code = code > 0 && code < 0x10000;
    return static_cast<long32>(is_win32_code ? code | 0x80070000 : code);
}

// Quirk: the low half converts first, so an HRESULT whose low half happens to be a listed Win32
// code loses its own row (0x80090003 gives 8, not 58). Callers store the results; pinned by
// StatusConvert.FromHResult.
ulong32 HResult2QelkitErr(long32 hresult) {
    constexpr ulong32 kFacilityMask = 0x1FFF0000;
    constexpr ulong32 kInterfaceFacility = 0x00040000;
    const auto whole = static_cast<ulong32>(hresult);
    const ulong32 low = whole & 0xFFFF;
    if ((whole & kFacilityMask) == kInterfaceFacility) return low;
    const int status = WinErr2QelkitErr(low);
    return static_cast<ulong32>(status != kStatusUnknown ? status : WinErr2QelkitErr(whole));
}

ulong32 QelkitErr2PKCS11Err(int status) {
    return kit::Convert(kStatusToPkcs11, static_cast<std::uint32_t>(status), kPkcs11FunctionFailed);
}

int PKCS11ErrQelkitErr2(ulong32 rv) { return rv == 0 ? kStatusOk : kStatusNotImplemented; }
