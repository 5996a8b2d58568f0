#include "utils/module_version.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <new>
#include <optional>
#include <span>
#include <string_view>

#include "base/byte_order.h"
#include "utils/detail/version_block.h"

namespace QELUtils {

static_assert(sizeof(CLibraryInfo) == 368 && sizeof(CLibraryInfo::DLLINFO) == 288,
              "the layout is part of the binary interface");
static_assert(sizeof(VS_FIXEDFILEINFO) == 52, "as resources hold it");

namespace {

using Bytes = std::span<const unsigned char>;
using Block = std::unique_ptr<unsigned char[]>;
using Info = CLibraryInfo::DLLINFO;

constexpr struct {
    std::string_view key;
    CQELString Info::*field;
} kTexts[] = {
    {"CompanyName", &Info::company_name},
    // Quirk: the usual spelling is LegalCopyright. Keys are found in any case, so that both names
    // are one; writers of resources of ours spell it so. Pinned by ModuleVersion.TellsEveryText.
    {"LegalCopyRight", &Info::copyright},
    {"ProductName", &Info::product_name},
    {"ProductVersion", &Info::product_version},
    {"OriginalFileName", &Info::original_file_name},
    {"FileDescription", &Info::description},
    {"FileVersion", &Info::file_version},
    {"InternalName", &Info::internal_name},
    {"Comments", &Info::comments},
};

constexpr ulong32 kAnySubtype = 0xFFFFFFFF;

// clang-format off
constexpr struct {
    ulong32 type;
    ulong32 subtype;
    const char* text;
} kTypes[] = {
    {VFT_UNKNOWN,    kAnySubtype,               "Unknown type"},
    {VFT_APP,        kAnySubtype,               "Application"},
    {VFT_DLL,        kAnySubtype,               "Dynamic link library"},
    {VFT_DRV,        VFT2_UNKNOWN,              "Unknown driver"},
    {VFT_DRV,        VFT2_DRV_PRINTER,          "Printer driver"},
    {VFT_DRV,        VFT2_DRV_KEYBOARD,         "Keyboard driver"},
    {VFT_DRV,        VFT2_DRV_LANGUAGE,         "Language driver"},
    {VFT_DRV,        VFT2_DRV_DISPLAY,          "Display driver"},
    {VFT_DRV,        VFT2_DRV_MOUSE,            "Mouse driver"},
    {VFT_DRV,        VFT2_DRV_NETWORK,          "Network driver"},
    {VFT_DRV,        VFT2_DRV_SYSTEM,           "System driver"},
    {VFT_DRV,        VFT2_DRV_INSTALLABLE,      "Installable driver"},
    {VFT_DRV,        VFT2_DRV_SOUND,            "Sound driver"},
    {VFT_FONT,       VFT2_UNKNOWN,              "Unknown font"},
    {VFT_FONT,       VFT2_FONT_RASTER,          "Raster font"},
    {VFT_FONT,       VFT2_FONT_VECTOR,          "Vector font"},
    {VFT_FONT,       VFT2_FONT_TRUETYPE,        "Truetype font"},
    {VFT_VXD,        kAnySubtype,               "Virtual device"},
    {VFT_STATIC_LIB, kAnySubtype,               "Static link library"},
};

struct NamedCode {
    ulong32 code;
    const char* text;
};
constexpr NamedCode kSystems[] = {
    {VOS_UNKNOWN,       "Unknown OS"},
    {VOS_DOS,           "MS-DOS"},
    {VOS_DOS_WINDOWS16, "16-bit windows running on MS-DOS"},
    {VOS_DOS_WINDOWS32, "Win32 API running on MS-DOS"},
    {VOS_OS216,         "16-bit OS/2"},
    {VOS_OS216_PM16,    "16-bit Presentation manager running on 16-bit OS/2"},
    {VOS_OS232,         "32-bit OS/2"},
    {VOS_NT,            "Windows NT"},
    {VOS_NT_WINDOWS32,  "Win32 API on Windows NT"},
};
constexpr NamedCode kCharacterSets[] = {
    {0,    "7-bit ASCII"},
    {932,  "Japan (Shift - JIS X-0208)"},
    {949,  "Korea (Shift - KSC 5601)"},
    {950,  "Taiwan (Big5)"},
    {1200, "Unicode"},
    {1250, "Latin-2 (Eastern European)"},
    {1251, "Cyrillic"},
    {1252, "Multilingual"},
    {1253, "Greek"},
    {1254, "Turkish"},
    {1255, "Hebrew"},
    {1256, "Arabic"},
};
// clang-format on

template <std::size_t N>
const char* NameOf(const NamedCode (&names)[N], ulong32 code) {
    for (const auto& name : names) {
        if (name.code == code) return name.text;
    }
    return nullptr;
}

const char* TypeName(const VS_FIXEDFILEINFO& fixed) {
    for (const auto& row : kTypes) {
        const bool is_subtype = row.subtype == kAnySubtype || row.subtype == fixed.dwFileSubtype;
        if (row.type == fixed.dwFileType && is_subtype) return row.text;
    }
    return nullptr;
}

// The version resource of a file as the system hands it out; 0, or the system's error code.
ulong32 ReadResource(const char* name, Block& block) {
    DWORD unused = 0;
    const DWORD size = ::GetFileVersionInfoSizeA(name, &unused);
    if (size == 0) return ::GetLastError();
    Block bytes(new (std::nothrow) unsigned char[size]);
    if (!bytes) return ERROR_NOT_ENOUGH_MEMORY;
    if (!::GetFileVersionInfoA(name, 0, size, bytes.get())) return ::GetLastError();
    // From here on the resource's own length counts, so it has to lie within the block.
    if (!kit::VersionBlock::Parse({bytes.get(), size})) return ERROR_RESOURCE_DATA_NOT_FOUND;
    block = std::move(bytes);
    return 0;
}

// The value that these keys lead to in a block that ReadResource has let in.
std::optional<Bytes> Query(const Block& block, std::initializer_list<std::string_view> keys) {
    const auto root = kit::VersionBlock::Parse({block.get(), kit::LoadLe16(block.get())});
    const auto found = root ? root->Find(keys) : std::nullopt;
    return found ? std::optional<Bytes>(found->value()) : std::nullopt;
}

struct Translation {
    unsigned short language;
    unsigned short code_page;
};

std::optional<Translation> QueryTranslation(const Block& block) {
    const auto table = Query(block, {"VarFileInfo", "Translation"});
    if (!table || table->size() < 4) return std::nullopt;
    return Translation{kit::LoadLe16(&(*table)[0]), kit::LoadLe16(&(*table)[2])};
}

// A text of UTF-16, up to its terminator or its end, in the ANSI code page.
CQELString ToAnsi(Bytes text) {
    const auto* const wide = reinterpret_cast<const wchar_t*>(text.data());
    const int length = static_cast<int>(::wcsnlen(wide, text.size() / sizeof(wchar_t)));
    char ansi[3 * 0x8000];  // fewer characters than 0x8000, of at most three bytes
    const int written =
        ::WideCharToMultiByte(CP_ACP, 0, wide, length, ansi, sizeof ansi, nullptr, nullptr);
    return CQELString(ansi, static_cast<std::uint64_t>(written));
}

CQELString QueryText(const Block& block, const Translation& translation, std::string_view key) {
    char table[9];
    std::snprintf(table, sizeof table, "%04x%04x", static_cast<unsigned>(translation.language),
                  static_cast<unsigned>(translation.code_page));
    const auto text = Query(block, {"StringFileInfo", table, key});
    return text ? ToAnsi(*text) : CQELString();
}

CQELString LanguageName(unsigned short language) {
    char name[256];
    const DWORD length = ::VerLanguageNameA(language, name, sizeof name);
    return length > 0 && length < sizeof name ? CQELString(name) : CQELString();
}

}  // namespace

CLibraryInfo::CLibraryInfo() : fixed_{}, language_(0), code_page_(0), loaded_(false) {}

CLibraryInfo::~CLibraryInfo() = default;

void CLibraryInfo::SetDllName(const char* path) {
    if (!path) path = "";
    loaded_ = loaded_ && std::strcmp(path, GetDllName()) == 0;
    info_.module_name = path;
}

bool CLibraryInfo::GetInfo() {
    loaded_ = false;
    const CQELString name = info_.module_name;
    info_ = {};
    info_.module_name = name;
    if (name.IsEmpty() || ReadResource(name, block_) != 0) return false;
    const auto fixed = Query(block_, {});
    if (!fixed || fixed->size() < sizeof fixed_) return false;
    std::memcpy(&fixed_, fixed->data(), sizeof fixed_);
    if (fixed_.dwSignature != VS_FFI_SIGNATURE) return false;
    return loaded_ = GetDynamicInfo() && GetFixedFileInfo();
}

bool CLibraryInfo::GetDynamicInfo() {
    const auto translation = block_ ? QueryTranslation(block_) : std::nullopt;
    if (!translation) return false;
    language_ = translation->language;
    code_page_ = translation->code_page;
    for (const auto& text : kTexts) {
        info_.*text.field = QueryText(block_, *translation, text.key);
    }
    info_.language = LanguageName(language_);
    const char* const character_set = NameOf(kCharacterSets, code_page_);
    if (character_set) {
        info_.character_set = character_set;
    } else {
        info_.character_set.Format("%d", code_page_);
    }
    return true;
}

bool CLibraryInfo::GetFixedFileInfo() {
    const int major = HIWORD(fixed_.dwFileVersionMS);
    const int minor = LOWORD(fixed_.dwFileVersionMS);
    info_.major_version.Format("%d", major);
    info_.minor_version.Format("%d", minor);
    info_.fixed_file_version.Format("%d.%d.%d.%d", major, minor, HIWORD(fixed_.dwFileVersionLS),
                                    LOWORD(fixed_.dwFileVersionLS));
    info_.file_date.Format("%08X %08X", fixed_.dwFileDateMS, fixed_.dwFileDateLS);
    if (const char* const type = TypeName(fixed_)) info_.type = type;
    if (const char* const system = NameOf(kSystems, fixed_.dwFileOS)) info_.os = system;
    return true;
}

bool CLibraryInfo::GetDllInfo(DLLINFO& info) {
    if (!IsLoaded()) return false;
    info = info_;
    return true;
}

bool CLibraryInfo::GetDllInfo(VS_FIXEDFILEINFO& record) {
    if (!IsLoaded()) return false;
    record = fixed_;
    return true;
}

bool CLibraryInfo::GetDllInfo(unsigned char*) { return IsLoaded(); }

bool CLibraryInfo::GetField(CQELString Info::*field, CQELString& out) {
    out.Empty();
    if (!IsLoaded()) return false;
    out = info_.*field;
    return true;
}

// clang-format off
bool CLibraryInfo::GetCompanyName(CQELString& out) { return GetField(&Info::company_name, out); }
bool CLibraryInfo::GetCopyRight(CQELString& out) { return GetField(&Info::copyright, out); }
bool CLibraryInfo::GetDescription(CQELString& out) { return GetField(&Info::description, out); }
bool CLibraryInfo::GetFileVersion(CQELString& out) { return GetField(&Info::file_version, out); }
bool CLibraryInfo::GetMajorVersion(CQELString& out) { return GetField(&Info::major_version, out); }
bool CLibraryInfo::GetMinorVer(CQELString& out) { return GetField(&Info::minor_version, out); }
bool CLibraryInfo::GetInternalName(CQELString& out) { return GetField(&Info::internal_name, out); }
bool CLibraryInfo::GetOrigFileName(CQELString& out) { return GetField(&Info::original_file_name, out); }
bool CLibraryInfo::GetProductName(CQELString& out) { return GetField(&Info::product_name, out); }
bool CLibraryInfo::GetProductVersion(CQELString& out) { return GetField(&Info::product_version, out); }
bool CLibraryInfo::GetLanguage(CQELString& out) { return GetField(&Info::language, out); }
bool CLibraryInfo::GetCharacterSet(CQELString& out) { return GetField(&Info::character_set, out); }
// clang-format on

bool CLibraryInfo::GetLanguageId(unsigned short& language) {
    if (!IsLoaded()) return false;
    language = language_;
    return true;
}

bool CLibraryInfo::GetCharacterset(unsigned short& code_page) {
    if (!IsLoaded()) return false;
    code_page = code_page_;
    return true;
}

bool CLibraryInfo::CommentsOnly(CQELString& out, ulong32& error) {
    out.Empty();
    Block block;
    error = ReadResource(GetDllName(), block);
    if (error != 0) return false;
    const auto translation = QueryTranslation(block);
    if (!translation) {
        error = ERROR_RESOURCE_TYPE_NOT_FOUND;
        return false;
    }
    out = QueryText(block, *translation, "Comments");
    return true;
}

bool CVersionDll::GetFixedFileInfo(VS_FIXEDFILEINFO& record) { return GetDllInfo(record); }

bool CVersionDll::GetVersion(VS_FIXEDFILEINFO& record) { return GetDllInfo(record); }

ulong32 GetVersionInfo(const char* path) {
    CVersionDll module;
    module.SetDllName(path);
    VS_FIXEDFILEINFO record;
    return module.GetVersion(record) ? record.dwFileVersionMS : 0;
}

bool GetCommentsString(const char* path, CQELString& out) {
    CLibraryInfo module;
    module.SetDllName(path);
    CLibraryInfo::DLLINFO info;
    const bool is_read = module.GetDllInfo(info);
    out = info.comments;
    return is_read;
}

bool GetCommentsStringOnly(const char* path, CQELString& out, ulong32& error) {
    CLibraryInfo module;
    module.SetDllName(path);
    return module.CommentsOnly(out, error);
}

}  // namespace QELUtils
