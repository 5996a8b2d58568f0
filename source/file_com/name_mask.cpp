#include "file_com/name_mask.h"

#include <new>
#include <string>

#include "base/or_empty.h"
#include "file_com/detail/wildcard_core.h"
#include "platform/multibyte.h"

#include <mbstring.h>  // last: its macros break the standard headers

namespace QEL {

bool g_bUsingFilenameCaseSensivity = false;

namespace {

unsigned char Lower(unsigned char byte) { return static_cast<unsigned char>(::_mbctolower(byte)); }

std::string LowerCopy(std::string text) {
    ::_mbslwr(reinterpret_cast<unsigned char*>(text.data()));
    return text;
}

// Where characters have two bytes, the second is no letter of its own: whole texts are lowered.
bool MatchesLowered(const char* pattern, const char* name, int flags) {
    return kit::WildcardMatches(LowerCopy(pattern).c_str(), LowerCopy(name).c_str(),
                                flags & ~kit::kWildcardFoldCase);
}

bool Matches(const char* pattern, const char* name, int flags) {
    const bool fold = (flags & kit::kWildcardFoldCase) != 0;
    if (fold && kit::HasDoubleByteCharacters()) return MatchesLowered(pattern, name, flags);
    return kit::WildcardMatches(pattern, name, flags, Lower);
}

}  // namespace

int filename_match(const char* pattern, const char* name, int flags) {
    try {
        return Matches(kit::OrEmpty(pattern), kit::OrEmpty(name), flags) ? 0 : 1;
    } catch (const std::bad_alloc&) {
        return 1;  // a mask that could not be tried selects nothing
    }
}

FILENAME_MASK::FILENAME_MASK(const char* mask, bool use_subdirs, long32 attr)
    : FILENAME(mask), use_subdirs_(use_subdirs), attr_(attr) {}
FILENAME_MASK::FILENAME_MASK(const FILENAME_MASK& other) = default;
FILENAME_MASK& FILENAME_MASK::operator=(const FILENAME_MASK& other) = default;
FILENAME_MASK::~FILENAME_MASK() = default;

void FILENAME_MASK::SetMask(const char* mask) { FILENAME::operator=(mask); }

bool FILENAME_MASK::Compare(const FILENAME& name) const {
    return Compare(name, g_bUsingFilenameCaseSensivity);
}

bool FILENAME_MASK::Compare(const FILENAME& name, bool case_sensitive) const {
    int flags = kit::kWildcardLeadingDot;
    if (!case_sensitive) flags |= kit::kWildcardFoldCase;
    if (!use_subdirs_) flags |= kit::kWildcardPath;
    return filename_match(*this, name, flags) == 0;
}

}  // namespace QEL
