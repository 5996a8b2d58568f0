#pragma once

#include <string>

#include "base/export.h"
#include "base/types.h"
#include "text/qel_string.h"

namespace QEL {

// A path or name as a value: joined, split, decorated, generated.
//
//     const QEL::FILENAME copy = QEL::FILENAME("C:\\data", "list.txt").MakePostfixName("_1");
//
// Text in the ANSI code page. Assignment takes the text as it is; the constructors and joins that
// say so trim white space, by the runtime's multi-byte test. Only the backslash separates; a null
// text counts as an empty one. Positions are found by bytes: the last "\" and the last "." are the
// rightmost ones of the whole text.
//
// The forms with an `out` write the result and its terminator there, at most Lenght() + 1 bytes,
// and return `out`; no size is checked. A null `out` is returned and nothing is written.
//
// Copies share nothing. One object belongs to one thread at a time. What allocates throws
// std::bad_alloc when memory runs out.
//
// The order of the virtual functions and of the fields is part of the binary interface: add only
// at the end.
class QELKIT_API FILENAME {
public:
    // The kinds of generated names; any other value gives an empty name.
    enum SpecialFilenames : int {
        // The system's folder for temporary files, final backslash included; "." when it cannot be
        // had.
        TEMP_FOLDER = 1,
        // A random name like "k3x0a9qz.7bd", from rand(), which is not seeded here.
        RANDOM_NAME = 2,
    };

    // "".
    FILENAME();
    FILENAME(const FILENAME& other);
    // The text, trimmed.
    FILENAME(const CQELString& text);
    FILENAME(const char* text);
    // `folder`, joined with `name` as += does, trimmed.
    FILENAME(const char* folder, const char* name);
    // The same with "." and `ext` behind it.
    FILENAME(const char* folder, const char* name, const char* ext);
    // A generated name of that `kind`.
    FILENAME(SpecialFilenames kind);
    virtual ~FILENAME();

    FILENAME& operator=(const FILENAME& other);
    // Takes the text as it is, null for "", or becomes a generated name.
    FILENAME& operator=(const char* text);
    FILENAME& operator=(const CQELString& text);
    FILENAME& operator=(SpecialFilenames kind);
    // Makes this a generated name of that `kind`; returns the object.
    FILENAME& MakeSpecialFilename(SpecialFilenames kind);

    // Appends a path component: a "\" first unless the name is empty or ends in one, then `part`
    // without one leading "\"; a null part appends nothing. Then trims the whole name.
    FILENAME& operator+=(const char* part);
    FILENAME& operator+=(const FILENAME& part);
    // Removes leading and trailing white space; returns the object.
    FILENAME& Trim();

    // What stands before the last "\"; the whole text when that is its first character; empty when
    // there is none.
    char* ExtractFilePath(char* out) const;
    FILENAME ExtractFilePath() const;
    // What follows the last "\"; the whole text when there is none.
    char* ExtractFileName(char* out) const;
    FILENAME ExtractFileName() const;
    // What follows the last "." or "\", whichever comes later; empty when there is neither. So the
    // "extension" of "C:\dir\file" is "file", and that of "file" is empty.
    char* ExtractFileExt(char* out) const;
    FILENAME ExtractFileExt() const;
    // The name part up to the last "." if that lies in it; else all of it.
    char* ExtractFileTitle(char* out) const;
    FILENAME ExtractFileTitle() const;

    // A copy with `postfix` before the last "." of the name part, or at the end when it has none:
    // "a\b.txt" with "_1" gives "a\b_1.txt".
    FILENAME MakePostfixName(const char* postfix) const;
    // The same with the digits of `number`, lower case, to a radix of 2 to 36; any other radix adds
    // nothing.
    FILENAME MakePostfixName(ulong32 number, int radix) const;

    // Makes this the path of a file that does not exist: `folder` (null: the present text) joined
    // with a random name. Nothing is created. Returns the object.
    FILENAME& UniqueFilename(const char* folder);
    // Replaces the text by CQELFile::NormalizeFileName of it: the full path, if that is shorter
    // than 260 bytes. Returns the object.
    FILENAME& NormalizeFileName();
    // Whether a file or folder of this name exists.
    bool IsFileExist() const;

    // The length in bytes. Both names are kept.
    int Lenght() const;
    int size() const;
    // Whether the text is "".
    bool isEmpty() const;
    // Makes the text "".
    void Clear();

    // The character at `index`, from 0 to Lenght(): there is the terminator, not to be changed.
    // An index outside throws XQELStatus 37.
    char& operator[](int index);
    const char& operator[](int index) const;
    // The text, valid until the object changes or goes; never null.
    operator const char*() const;
    // A copy of the text.
    operator CQELString() const;

    // Byte by byte, as unsigned bytes, whatever g_bUsingFilenameCaseSensivity says; of two texts
    // that agree as far as they go the shorter is the smaller.
    bool operator==(const FILENAME& other) const;
    bool operator!=(const FILENAME& other) const;
    bool operator<(const FILENAME& other) const;
    bool operator>(const FILENAME& other) const;

private:
    std::string text_;
};

inline FILENAME& FILENAME::operator=(const CQELString& text) {
    return *this = static_cast<const char*>(text);
}
inline int FILENAME::Lenght() const { return static_cast<int>(text_.size()); }
inline int FILENAME::size() const { return Lenght(); }
inline bool FILENAME::isEmpty() const { return text_.empty(); }
inline void FILENAME::Clear() { text_.clear(); }
inline FILENAME::operator const char*() const { return text_.c_str(); }
inline bool FILENAME::operator==(const FILENAME& other) const { return text_ == other.text_; }
inline bool FILENAME::operator!=(const FILENAME& other) const { return text_ != other.text_; }
inline bool FILENAME::operator<(const FILENAME& other) const { return text_ < other.text_; }
inline bool FILENAME::operator>(const FILENAME& other) const { return text_ > other.text_; }

}  // namespace QEL
