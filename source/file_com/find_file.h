#pragma once

#include <cstdint>

#include <io.h>

#include "base/export.h"
#include "base/types.h"
#include "status/qel_status.h"

// A search for the entries that match one pattern of the system, and a status object at the same
// time:
//
//     CQELFindFile found("C:\\data\\*.*", CQELFindFile::FIND_FILES, false);
//     while (const char* name = found.Get()) Use(name, found.GetSize());
//
// The search starts in the constructor and is closed by the destructor. "." and ".." are never
// listed; other names that begin with a dot are. One object belongs to one thread at a time.
//
// The order of the virtual functions (those of XQELFile; none is added) and of the fields is part
// of the binary interface: add only at the end.
class QELKIT_API CQELFindFile : public XQELFile {
public:
    // Skip masks for the usual wishes. Besides the system's attribute bits (read-only 0x01, hidden
    // 0x02, system 0x04, folder 0x10, archive 0x20) every entry that is no folder has 0x4000.
    static constexpr int FIND_FILES = 0x10;
    static constexpr int FIND_FOLDERS = 0x4000;

    // Starts the search and goes to the first entry that is not to be skipped.
    //   pattern    a path whose last part may have wildcards, by the system's rules
    //   skip_mask  entries that have one of these bits are skipped; 0 skips none
    //   raise      whether failures are thrown as XQELFile
    // No match is no failure; what else keeps the search from starting is recorded as 52, with
    // errno and the pattern as additional text. Such a search finds nothing.
    CQELFindFile(const char* pattern, int skip_mask, bool raise);
    CQELFindFile(const CQELFindFile&) = delete;
    CQELFindFile& operator=(const CQELFindFile&) = delete;
    ~CQELFindFile() override;

    // The first call: the name of the first entry. Every later one: of the next. Null at the end
    // and from then on. The text holds until the next call.
    const char* Get();
    // The name that Get gave last (before the first Get: the one that it will give); null at the
    // end.
    const char* GetLast() const;
    // The current entry's attribute word as the system gives it. At the end 116 is recorded, errno
    // 0, and 0xFFFFFFFF returned.
    ulong32 GetAttributes() const;
    // The low 32 bits of the current entry's size (CQELFile::GetFileLength has them all). At the
    // end 116 and 0xFFFFFFFF.
    ulong32 GetSize() const;

private:
    void Take(bool found);
    bool IsSkipped() const;
    bool Advance();
    ulong32 OfEntry(ulong32 value) const;

    bool first_ = true;
    ulong32 skip_mask_;
    const char* current_ = nullptr;
    ulong32 effective_attributes_ = 0;
    struct _finddata64i32_t record_ = {};
    std::intptr_t search_;
};

inline const char* CQELFindFile::GetLast() const { return current_; }
