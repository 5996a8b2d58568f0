#pragma once

#include "base/export.h"
#include "base/types.h"
#include "file_com/file_name.h"

// Wildcard masks: "*" stands for any characters, "?" for one, everything else for itself. No other
// rules of any system apply: "*.*" does not match "a".

namespace QEL {

// Whether masks respect letter case; false at first. Read without a lock at every Compare: set it
// once, at start-up.
extern QELKIT_API bool g_bUsingFilenameCaseSensivity;

// Compares `name` with `pattern`: 0 for a match, 1 for none. Null counts as "". Flags:
//   0x01  path mode: neither "?" nor "*" matches a "\"
//   0x02  a literal behind a run of wildcards is found only where it is doubled: the search looks
//         for the character that follows it, the comparison begins with the literal itself
//   0x04  a leading ".", at the start of the name or in path mode directly behind a "\", is matched
//         only by a literal "."; behind the first "*" of the pattern no "." counts as leading
//   0x10  capital letters are lowered before comparison, by the process's multi-byte code page
// Takes time in proportion to pattern x name at the worst. Any thread may call it.
QELKIT_API int filename_match(const char* pattern, const char* name, int flags);

// A mask with the options of the search that uses it.
//
// One object belongs to one thread at a time; const operations may run side by side.
//
// The order of the virtual functions and of the fields is part of the binary interface: add only
// at the end.
class QELKIT_API FILENAME_MASK : public FILENAME {
public:
    // The mask (null: an empty one) is trimmed.
    //   use_subdirs  the mask applies in subfolders too: "*" and "?" also match "\"
    //   attr         the attribute filter that a search applies (file_finder.h)
    FILENAME_MASK(const char* mask, bool use_subdirs, long32 attr);
    FILENAME_MASK(const FILENAME_MASK& other);
    FILENAME_MASK& operator=(const FILENAME_MASK& other);
    ~FILENAME_MASK() override;

    // Replaces the text; null empties it. Not trimmed.
    void SetMask(const char* mask);
    // Whether the mask applies in subfolders too (`use_subdirs`).
    void SetUseSubDirs(bool use_subdirs);
    bool GetUseSubDirs() const;
    // The attribute filter.
    void SetAttr(long32 attr);
    long32 GetAttr() const;

    // Whether `name` matches, with regard to letter case if `case_sensitive`, which is
    // g_bUsingFilenameCaseSensivity by default. A leading dot wants a literal one. The attributes
    // are not looked at.
    bool Compare(const FILENAME& name) const;
    bool Compare(const FILENAME& name, bool case_sensitive) const;

private:
    bool use_subdirs_;
    long32 attr_;
};

inline void FILENAME_MASK::SetUseSubDirs(bool use_subdirs) { use_subdirs_ = use_subdirs; }
inline bool FILENAME_MASK::GetUseSubDirs() const { return use_subdirs_; }
inline void FILENAME_MASK::SetAttr(long32 attr) { attr_ = attr; }
inline long32 FILENAME_MASK::GetAttr() const { return attr_; }

}  // namespace QEL
