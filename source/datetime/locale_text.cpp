#include "datetime/locale_text.h"

#include <cstring>

#include "base/cp1251.h"
#include "datetime/detail/locale_forms.h"
#include "platform/own_module.h"

static_assert(sizeof(CQELLocaleInfo) == 24, "the layout is part of the binary interface");

namespace kit {
namespace {

constexpr int kRussian = 0;
constexpr unsigned kLanguageTagResource = 1021;
constexpr int kFormattedRoom = 100;
constexpr int kTagRoom = 1000;

constexpr char kYearMonth[] = "MMMM yyyy";
constexpr auto kRussianYearMonth = Cp1251(u"MMMM yyyy 'г.'");

constexpr struct {
    char tag[4];
    int id;
} kLanguages[] = {{"RUS", kRussian}, {"ENU", 1}, {"ENI", 2}, {"DEU", 3}, {"ESP", 4}, {"FRA", 5}};

bool RunsOnOldPlatform() {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
#ifdef _MSC_VER
#pragma warning(suppress : 4996)  // deprecated, but only the major version matters here
#endif
    return ::GetVersionExA(&version) && IsOldPlatform(version);
}

// Asked once, while the library is loaded.
const bool runs_on_old_platform = RunsOnOldPlatform();

const char* YearMonthPicture() {
    CQELLocaleInfo info;
    const bool russian = CQELGetLocale(&info) && info.language_id == kRussian;
    return russian ? kRussianYearMonth.data() : kYearMonth;
}

}  // namespace

bool IsOldPlatform(const OSVERSIONINFOA& version) {
    return version.dwPlatformId == VER_PLATFORM_WIN32_NT && version.dwMajorVersion < 5;
}

CQELString LocaleDateText(ulong32 flags, const SYSTEMTIME* st, bool old_platform) {
    const bool own_picture = old_platform && flags == DATE_YEARMONTH;
    const char* const picture = own_picture ? YearMonthPicture() : nullptr;
    char text[kFormattedRoom] = {};
    const int length = ::GetDateFormatA(LOCALE_USER_DEFAULT, own_picture ? 0 : flags, st, picture,
                                        text, kFormattedRoom);
    return length > 0 ? CQELString(text) : CQELString();
}

int LanguageId(const char* tag) {
    for (const auto& language : kLanguages) {
        if (std::strcmp(tag, language.tag) == 0) return language.id;
    }
    return -1;
}

}  // namespace kit

CQELString GetDateFormatLocaleUserDefault(ulong32 flags, const SYSTEMTIME* st) {
    return kit::LocaleDateText(flags, st, kit::runs_on_old_platform);
}

CQELString GetTimeFormatLocaleUserDefault(const SYSTEMTIME* st) {
    char text[kit::kFormattedRoom] = {};
    const int length = ::GetTimeFormatA(LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE, st, nullptr,
                                        text, kit::kFormattedRoom);
    return length > 0 ? CQELString(text) : CQELString();
}

int CQELGetLocale(CQELLocaleInfo* info) {
    char tag[kit::kTagRoom] = {};
    if (!info) return 0;
    if (::LoadStringA(kit::OwnModule(), kit::kLanguageTagResource, tag, kit::kTagRoom) <= 0) {
        return 0;
    }
    info->language_tag = tag;
    const int id = kit::LanguageId(tag);
    if (id < 0) return 0;
    info->language_id = id;
    return 1;
}
