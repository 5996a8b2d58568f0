#include "status/status_convert.h"

#include "base/code_table.h"
#include "status/status_codes.h"

namespace {

// Win32 codes stand in decimal, HRESULTs in hexadecimal.
constexpr std::uint32_t kFunctionFailed = 1627;  // ERROR_FUNCTION_FAILED

// status -> Win32 code or HRESULT
// clang-format off
constexpr kit::CodeRow kStatusToSystem[] = {
    //  status   Win32 code or HRESULT
    {   0,    0, 0},           // ERROR_SUCCESS
    {   1,    1, 1326},        // ERROR_LOGON_FAILURE
    {   2,    2, 86},          // ERROR_INVALID_PASSWORD
    {   3,    3, 12},          // ERROR_INVALID_ACCESS
    {   4,    4, 2},           // ERROR_FILE_NOT_FOUND
    {   5,    6, 0x80092003},  // CRYPT_E_FILE_ERROR
    {   8,    8, 3},           // ERROR_PATH_NOT_FOUND
    {   9,    9, 1057},        // ERROR_INVALID_SERVICE_ACCOUNT
    {  10,   11, 1223},        // ERROR_CANCELLED
    {  16,   16, 8},           // ERROR_NOT_ENOUGH_MEMORY
    {  17,   17, 110},         // ERROR_OPEN_FAILED
    {  18,   18, 123},         // ERROR_INVALID_NAME
    {  19,   19, 12},          // ERROR_INVALID_ACCESS
    {  21,   21, 25},          // ERROR_SEEK
    {  22,   25, 1358},        // ERROR_INTERNAL_DB_CORRUPTION
    {  26,   27, 259},         // ERROR_NO_MORE_ITEMS
    {  28,   28, 160},         // ERROR_BAD_ARGUMENTS
    {  29,   29, 1216},        // ERROR_INVALID_PASSWORDNAME
    {  30,   30, 1629},        // ERROR_DATATYPE_MISMATCH
    {  31,   31, 18},          // ERROR_NO_MORE_FILES
    {  32,   32, 0x8009000D},  // NTE_NO_KEY
    {  33,   33, 1629},        // ERROR_DATATYPE_MISMATCH
    {  35,   35, 112},         // ERROR_DISK_FULL
    {  37,   37, 0x80091008},  // CRYPT_E_INVALID_INDEX
    {  52,   52, 2},           // ERROR_FILE_NOT_FOUND
    {  55,   55, 123},         // ERROR_INVALID_NAME
    {  58,   58, 0x80090003},  // NTE_BAD_KEY
    {  61,   61, 82},          // ERROR_CANNOT_MAKE
    {  63,   63, 82},          // ERROR_CANNOT_MAKE
    {  64,   64, 266},         // ERROR_CANNOT_COPY
    {  67,   68, 259},         // ERROR_NO_MORE_ITEMS
    {  73,   73, 0x80091002},  // CRYPT_E_UNKNOWN_ALGO
    {  74,   74, 1392},        // ERROR_FILE_CORRUPT
    {  81,   81, 8348},        // ERROR_DS_NAME_TOO_LONG
    {  83,   85, 1358},        // ERROR_INTERNAL_DB_CORRUPTION
    {  90,   90, 259},         // ERROR_NO_MORE_ITEMS
    {  97,   97, 259},         // ERROR_NO_MORE_ITEMS
    {  98,   98, 0x80096004},  // TRUST_E_CERT_SIGNATURE
    { 101,  101, 259},         // ERROR_NO_MORE_ITEMS
    { 102,  104, 1358},        // ERROR_INTERNAL_DB_CORRUPTION
    { 110,  110, 30},          // ERROR_READ_FAULT
    { 115,  115, 120},         // ERROR_CALL_NOT_IMPLEMENTED
    { 117,  117, 120},         // ERROR_CALL_NOT_IMPLEMENTED
    { 121,  121, 80},          // ERROR_FILE_EXISTS
    { 131,  131, 13},          // ERROR_INVALID_DATA
    { 134,  134, 1358},        // ERROR_INTERNAL_DB_CORRUPTION
    { 136,  136, 0x80340004},  // ERROR_NDIS_BAD_VERSION
    { 138,  138, 259},         // ERROR_NO_MORE_ITEMS
    { 140,  140, 0x80090005},  // NTE_BAD_DATA
    { 141,  141, 0x80090006},  // NTE_BAD_SIGNATURE
    { 144,  144, 21},          // ERROR_NOT_READY
    { 146,  146, 1114},        // ERROR_DLL_INIT_FAILED
    { 147,  147, 127},         // ERROR_PROC_NOT_FOUND
    { 148,  148, 1223},        // ERROR_CANCELLED
    { 170,  170, 87},          // ERROR_INVALID_PARAMETER
    { 171,  177, 31},          // ERROR_GEN_FAILURE
    { 178,  178, 0x8010000C},  // SCARD_E_NO_SMARTCARD
    { 179,  179, 30},          // ERROR_READ_FAULT
    { 180,  180, 29},          // ERROR_WRITE_FAULT
    { 182,  182, 1785},        // ERROR_UNRECOGNIZED_MEDIA
    { 192,  193, 0x80070005},  // E_ACCESSDENIED
    { 194,  194, 259},         // ERROR_NO_MORE_ITEMS
    { 195,  195, 0x8009000F},  // NTE_EXISTS
    { 198,  198, 0x80100001},  // SCARD_F_INTERNAL_ERROR
    { 200,  201, 0x80070005},  // E_ACCESSDENIED
    { 202,  202, 0x80096004},  // TRUST_E_CERT_SIGNATURE
    { 203,  203, 0x800B0101},  // CERT_E_EXPIRED
    { 204,  204, 13},          // ERROR_INVALID_DATA
    { 205,  205, 0x8009310B},  // CRYPT_E_ASN1_BADTAG
    { 206,  206, 0x80093103},  // CRYPT_E_ASN1_CORRUPT
    { 217,  217, 0x8010006B},  // SCARD_W_WRONG_CHV
    { 221,  221, 0x80310036},  // FVE_E_FIPS_RNG_CHECK_FAILED
    { 222,  222, 0x80290119},  // TPMAPI_E_FIPS_RNG_CHECK_FAILED
    { 226,  227, 0x8010006C},  // SCARD_W_CHV_BLOCKED
    { 229,  229, 0x80090023},  // NTE_TOKEN_KEYSET_STORAGE_FULL
    { 232,  232, 1060},        // ERROR_SERVICE_DOES_NOT_EXIST
    { 233,  233, 0x8009000B},  // NTE_BAD_KEY_STATE
    { 236,  237, 1330},        // ERROR_PASSWORD_EXPIRED
    { 501,  501, 5},           // ERROR_ACCESS_DENIED
    { 502,  502, 50},          // ERROR_NOT_SUPPORTED
    {1038, 1038, 0x80090019},  // NTE_KEYSET_NOT_DEF
    {1039, 1039, 0x80090022},  // NTE_SILENT_CONTEXT
    {1040, 1040, 1169},        // ERROR_NO_MATCH
    {1041, 1041, 0x800B0110},  // CERT_E_WRONG_USAGE
    {1042, 1042, 0x800B010E},  // CERT_E_REVOCATION_FAILURE
    {1043, 1043, 0x8009000B},  // NTE_BAD_KEY_STATE
    {1045, 1045, 0x80100034},  // SCARD_E_READ_ONLY_CARD
};
// clang-format on
static_assert(kit::IsOrdered(kStatusToSystem), "Convert() searches by halves");

// Win32 code or HRESULT -> status. No inverse of the table above: status 1 becomes 1326, which
// comes back as 36; and 29, which stands for 180, comes back as 6.
// clang-format off
constexpr kit::CodeRow kSystemToStatus[] = {
    // first  last  status
    {   0,    0, 0},     // ERROR_SUCCESS
    {   2,    2, 4},     // ERROR_FILE_NOT_FOUND
    {   3,    3, 8},     // ERROR_PATH_NOT_FOUND
    {   5,    5, 501},   // ERROR_ACCESS_DENIED
    {   6,    6, 71},    // ERROR_INVALID_HANDLE
    {   8,    8, 16},    // ERROR_NOT_ENOUGH_MEMORY
    {  29,   29, 6},     // ERROR_WRITE_FAULT
    {  30,   30, 5},     // ERROR_READ_FAULT
    {  31,   31, 174},   // ERROR_GEN_FAILURE
    {  82,   82, 61},    // ERROR_CANNOT_MAKE
    {  86,   86, 2},     // ERROR_INVALID_PASSWORD
    { 110,  110, 17},    // ERROR_OPEN_FAILED
    { 112,  112, 35},    // ERROR_DISK_FULL
    { 120,  120, 115},   // ERROR_CALL_NOT_IMPLEMENTED
    { 123,  123, 55},    // ERROR_INVALID_NAME
    { 126,  126, 4},     // ERROR_MOD_NOT_FOUND
    { 127,  127, 147},   // ERROR_PROC_NOT_FOUND
    { 160,  160, 28},    // ERROR_BAD_ARGUMENTS
    { 170,  170, 156},   // ERROR_BUSY
    { 183,  183, 195},   // ERROR_ALREADY_EXISTS
    { 206,  206, 225},   // ERROR_FILENAME_EXCED_RANGE
    { 234,  234, 132},   // ERROR_MORE_DATA
    { 266,  266, 64},    // ERROR_CANNOT_COPY
    {1060, 1060, 232},   // ERROR_SERVICE_DOES_NOT_EXIST
    {1114, 1114, 146},   // ERROR_DLL_INIT_FAILED
    {1168, 1168, 194},   // ERROR_NOT_FOUND
    {1169, 1169, 1040},  // ERROR_NO_MATCH
    {1223, 1223, 148},   // ERROR_CANCELLED
    {1330, 1330, 236},   // ERROR_PASSWORD_EXPIRED
    {1610, 1610, 74},    // ERROR_BAD_CONFIGURATION
    {1785, 1785, 182},   // ERROR_UNRECOGNIZED_MEDIA
    {8344, 8344, 106},   // ERROR_DS_INSUFF_ACCESS_RIGHTS
    {0x80004001, 0x80004001, 115},   // E_NOTIMPL
    {0x8007000E, 0x8007000E, 16},    // E_OUTOFMEMORY
    {0x80070057, 0x80070057, 28},    // E_INVALIDARG
    {0x80090001, 0x80090001, 28},    // NTE_BAD_UID
    {0x80090003, 0x80090003, 58},    // NTE_BAD_KEY
    {0x80090006, 0x80090006, 141},   // NTE_BAD_SIGNATURE
    {0x80090008, 0x80090008, 73},    // NTE_BAD_ALGID
    {0x80090009, 0x8009000A, 28},    // NTE_BAD_FLAGS, NTE_BAD_TYPE
    {0x8009000B, 0x8009000B, 1043},  // NTE_BAD_KEY_STATE
    {0x8009000C, 0x8009000C, 71},    // NTE_BAD_HASH_STATE
    {0x8009000D, 0x8009000D, 32},    // NTE_NO_KEY
    {0x8009000E, 0x8009000E, 16},    // NTE_NO_MEMORY
    {0x8009000F, 0x8009000F, 195},   // NTE_EXISTS
    {0x80090011, 0x80090011, 194},   // NTE_NOT_FOUND
    {0x80090014, 0x80090014, 28},    // NTE_BAD_PROV_TYPE
    {0x80090016, 0x80090016, 1038},  // NTE_BAD_KEYSET
    {0x80090017, 0x80090017, 28},    // NTE_PROV_TYPE_NOT_DEF
    {0x80090019, 0x80090019, 1038},  // NTE_KEYSET_NOT_DEF
    {0x8009001A, 0x8009001A, 7},     // NTE_KEYSET_ENTRY_BAD
    {0x8009001C, 0x8009001C, 146},   // NTE_SIGNATURE_FILE_BAD
    {0x8009001D, 0x8009001D, 42},    // NTE_PROVIDER_DLL_FAIL
    {0x8009001E, 0x8009001E, 146},   // NTE_PROV_DLL_NOT_FOUND
    {0x80090020, 0x80090020, 106},   // NTE_FAIL
    {0x80090022, 0x80090022, 1039},  // NTE_SILENT_CONTEXT
    {0x80090023, 0x80090023, 229},   // NTE_TOKEN_KEYSET_STORAGE_FULL
    {0x80091002, 0x80091002, 73},    // CRYPT_E_UNKNOWN_ALGO
    {0x80091003, 0x80091003, 38},    // CRYPT_E_OID_FORMAT
    {0x80091004, 0x80091004, 131},   // CRYPT_E_INVALID_MSG_TYPE
    {0x80091008, 0x80091008, 37},    // CRYPT_E_INVALID_INDEX
    {0x80092003, 0x80092003, 17},    // CRYPT_E_FILE_ERROR
    {0x80093103, 0x80093103, 206},   // CRYPT_E_ASN1_CORRUPT
    {0x8009310B, 0x8009310B, 205},   // CRYPT_E_ASN1_BADTAG
    {0x80096004, 0x80096004, 98},    // TRUST_E_CERT_SIGNATURE
    {0x80096019, 0x80096019, 202},   // TRUST_E_BASIC_CONSTRAINTS
    {0x800B0005, 0x800B0006, 206},   // DIGSIG_E_ENCODE, DIGSIG_E_DECODE
    {0x800B0101, 0x800B0101, 203},   // CERT_E_EXPIRED
    {0x800B0102, 0x800B0102, 202},   // CERT_E_VALIDITYPERIODNESTING
    {0x800B010A, 0x800B010A, 98},    // CERT_E_CHAINING
    {0x800B010E, 0x800B010E, 1042},  // CERT_E_REVOCATION_FAILURE
    {0x800B0110, 0x800B0110, 1041},  // CERT_E_WRONG_USAGE
    {0x80100001, 0x80100001, 198},   // SCARD_F_INTERNAL_ERROR
    {0x80100006, 0x80100006, 16},    // SCARD_E_NO_MEMORY
    {0x8010000C, 0x8010000C, 178},   // SCARD_E_NO_SMARTCARD
    {0x80100034, 0x80100034, 1045},  // SCARD_E_READ_ONLY_CARD
    {0x8010006B, 0x8010006B, 217},   // SCARD_W_WRONG_CHV
    {0x8010006C, 0x8010006C, 226},   // SCARD_W_CHV_BLOCKED
    {0x8010006E, 0x8010006E, 148},   // SCARD_W_CANCELLED_BY_USER
    {0x8010006F, 0x8010006F, 217},   // SCARD_W_CARD_NOT_AUTHENTICATED
    {0x80280043, 0x80280043, 136},   // TPM_E_INVALID_STRUCTURE
    {0x80290119, 0x80290119, 222},   // TPMAPI_E_FIPS_RNG_CHECK_FAILED
    {0x80310036, 0x80310036, 222},   // FVE_E_FIPS_RNG_CHECK_FAILED
    {0x80340004, 0x80340004, 136},   // ERROR_NDIS_BAD_VERSION
};
// clang-format on
static_assert(kit::IsOrdered(kSystemToStatus), "Convert() searches by halves");

// PKCS#11 return values (CKR_...).
constexpr std::uint32_t kOk = 0x00;
constexpr std::uint32_t kCancel = 0x01;
constexpr std::uint32_t kHostMemory = 0x02;
constexpr std::uint32_t kGeneralError = 0x05;
constexpr std::uint32_t kPkcs11FunctionFailed = 0x06;
constexpr std::uint32_t kDataInvalid = 0x20;
constexpr std::uint32_t kDeviceError = 0x30;
constexpr std::uint32_t kDeviceMemory = 0x31;
constexpr std::uint32_t kDeviceRemoved = 0x32;
constexpr std::uint32_t kKeyHandleInvalid = 0x60;
constexpr std::uint32_t kMechanismParamInvalid = 0x71;
constexpr std::uint32_t kPinIncorrect = 0xA0;
constexpr std::uint32_t kPinLenRange = 0xA2;
constexpr std::uint32_t kPinExpired = 0xA3;
constexpr std::uint32_t kPinLocked = 0xA4;
constexpr std::uint32_t kSignatureInvalid = 0xC0;
constexpr std::uint32_t kRandomNoRng = 0x121;
// Quirk: 28 and 170 become the Win32 number of an invalid parameter, which is no PKCS#11 value;
// callers compare with it. Pinned by StatusConvert.ToPkcs11.
constexpr std::uint32_t kWin32InvalidParameter = 87;

// status -> PKCS#11 return value
// clang-format off
constexpr kit::CodeRow kStatusToPkcs11[] = {
    //  status   return value
    {   0,    0, kOk},
    {   1,    1, kDeviceError},
    {   2,    2, kPinIncorrect},
    {   3,    3, kDeviceError},
    {   4,    4, kDeviceRemoved},
    {   5,    6, kDeviceError},
    {   8,    8, kDeviceRemoved},
    {   9,    9, kPinExpired},
    {  10,   11, kCancel},
    {  16,   16, kHostMemory},
    {  17,   19, kDeviceError},
    {  21,   27, kDeviceError},
    {  28,   28, kWin32InvalidParameter},
    {  29,   29, kPinLenRange},
    {  30,   30, kDataInvalid},
    {  31,   31, kDeviceError},
    {  32,   32, kKeyHandleInvalid},
    {  33,   33, kDataInvalid},
    {  35,   35, kDeviceMemory},
    {  52,   52, kDeviceError},
    {  55,   55, kDeviceError},
    {  58,   58, kKeyHandleInvalid},
    {  61,   61, kDeviceError},
    {  63,   63, kDeviceError},
    {  67,   68, kDeviceError},
    {  73,   73, kMechanismParamInvalid},
    {  74,   74, kDeviceError},
    {  81,   81, kDeviceError},
    {  83,   85, kDeviceError},
    {  90,   90, kDeviceError},
    {  97,   97, kDeviceError},
    {  98,   98, kDataInvalid},
    { 101,  104, kDeviceError},
    { 110,  110, kDeviceError},
    { 121,  121, kDeviceError},
    { 131,  131, kDataInvalid},
    { 134,  134, kDeviceError},
    { 138,  138, kDeviceError},
    { 140,  140, kSignatureInvalid},
    { 144,  144, kDeviceError},
    { 148,  148, kCancel},
    { 170,  170, kWin32InvalidParameter},
    { 171,  177, kDeviceError},
    { 178,  178, kKeyHandleInvalid},
    { 179,  180, kDeviceError},
    { 182,  182, kDeviceError},
    { 192,  193, kGeneralError},
    { 194,  194, kDeviceError},
    { 200,  201, kGeneralError},
    { 202,  204, kDataInvalid},
    { 217,  217, kPinIncorrect},
    { 222,  222, kRandomNoRng},
    { 226,  227, kPinLocked},
    { 229,  229, kDeviceMemory},
    { 233,  233, kDataInvalid},
    { 236,  237, kDataInvalid},
    { 501,  501, kGeneralError},
};
// clang-format on
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
