#include "file_com/find_file.h"

#include <cerrno>
#include <cstring>

#include "status/status_codes.h"

#ifdef _MSC_VER
static_assert(sizeof(CQELFindFile) == 376, "the layout is part of the interface");
#elif defined(__GNUC__)
static_assert(sizeof(CQELFindFile) == 368, "the layout is part of the interface");
#endif

namespace {

constexpr std::intptr_t kNoSearch = -1;
constexpr ulong32 kIsNoFolder = 0x4000;
constexpr ulong32 kNoValue = 0xFFFFFFFF;

}  // namespace

CQELFindFile::CQELFindFile(const char* pattern, int skip_mask, bool raise)
    : XQELFile(raise), skip_mask_(static_cast<ulong32>(skip_mask)) {
    if (!pattern) pattern = "";
    search_ = ::_findfirst64i32(pattern, &record_);
    if (search_ == kNoSearch && errno != ENOENT) {
        const int error_number = errno;
        SetErrMessEx(pattern);
        SetError(kStatusFindFailed, error_number);
    }
    Take(search_ != kNoSearch);
}

CQELFindFile::~CQELFindFile() {
    if (search_ != kNoSearch) ::_findclose(search_);
}

// Makes what the record holds, or the next entry that is not skipped, the current one.
void CQELFindFile::Take(bool found) {
    while (found) {
        const bool is_folder = (record_.attrib & _A_SUBDIR) != 0;
        effective_attributes_ = record_.attrib | (is_folder ? 0 : kIsNoFolder);
        if (!IsSkipped()) break;
        found = Advance();
    }
    current_ = found ? record_.name : nullptr;
}

bool CQELFindFile::IsSkipped() const {
    return (effective_attributes_ & skip_mask_) != 0 || std::strcmp(record_.name, ".") == 0 ||
           std::strcmp(record_.name, "..") == 0;
}

bool CQELFindFile::Advance() { return ::_findnext64i32(search_, &record_) == 0; }

const char* CQELFindFile::Get() {
    if (first_) {
        first_ = false;
    } else if (current_) {
        Take(Advance());
    }
    return current_;
}

ulong32 CQELFindFile::GetAttributes() const { return OfEntry(record_.attrib); }

// Quirk: the system's search record of this form has 32 bits for the size, and so has the class's
// layout, which callers were built with: 4 GiB + 5 reads as 5.
// Pinned by FindFile.TellsTheLowHalfOfALargeSizeAndOfTheEnd.
ulong32 CQELFindFile::GetSize() const { return OfEntry(record_.size); }

ulong32 CQELFindFile::OfEntry(ulong32 value) const {
    if (current_) return value;
    SetError(kStatusSearchFinished, 0);
    return kNoValue;
}
