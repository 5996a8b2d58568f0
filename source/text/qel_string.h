#pragma once

#include <cstddef>
#include <cstdint>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "runtime/reference.h"

// A string of 8-bit characters in the system's ANSI code page, sharing its text by reference
// counting.
//
// - An empty string has no body. Reading it as a C string gives a constant "".
// - Copies share one body. There is NO copy-on-write: MakeLower, MakeUpper, LowerRus, UpperRus,
//   Replace(char, char), TrimLeft and TrimRight change the shared body in place, and every string
//   that shares it sees the change. All other editing operations give this string a new body.
//   For an independent copy, construct from the text: CQELString((const char*)other).
// - Lengths and positions are bytes. Multi-byte characters are respected only where it is said.
// - Texts end at 2^31 - 2 bytes. Zero bytes inside a text are kept, and count; read as a C string,
//   and in comparisons, the text ends at the first.
// - A body that cannot be allocated leaves the string empty (construction, assignment, operator+)
//   or unchanged (editing, operator+=). Work buffers of formatting and code-page conversion that
//   cannot be allocated throw `(char*)"MemoryError"`.
// - Editing operations return the string itself.
// - Strings that share a body belong to one thread at a time; the count itself is atomic, so
//   copies may be released anywhere.
// - CQELString(65) and s += 65 mean the character 'A'.
//
// The order of the virtual functions (Format(int), FormatEx) and of the fields is part of the
// binary interface. There is no virtual destructor: do not derive and delete through the base.
class QELKIT_API CQELString {
public:
    // The shared text: a terminated array of characters from the C runtime's heap, most often
    // from the block that holds the body itself, directly behind it.
    class QELKIT_API CQELStringImp : public CQELReference {
    public:
        // Takes over `text`, of `length` bytes and a terminator: a block from malloc, or the bytes
        // behind a body that was made in a block with room for them.
        CQELStringImp(char* text, int length);
        CQELStringImp(const CQELStringImp&) = delete;
        CQELStringImp& operator=(const CQELStringImp&) = delete;
        ~CQELStringImp() override;

        // From malloc; null, no exception, without memory.
        static void* operator new(std::size_t size) noexcept;
        // Frees a block of malloc.
        static void operator delete(void* body) noexcept;

        char* text_;  // terminated
        int length_;  // in bytes, without the terminator
    };

    // The bits of Strip(); combine them with |.
    enum EStripType {
        kStripLeadingBlanks = 1,   // blanks at the start
        kStripTrailingBlanks = 2,  // blanks at the end
        kStripLineFeed = 4,        // a final line feed
        kStripSlash = 16,          // a final slash of either kind
        kStripUrl = 32,            // "http://" and a final slash
        kStripLineEnds = 64,       // carriage returns and line feeds at the end
        kStripAllBlanks = 128,     // every blank
        kStripQuotes = 0x100,      // blanks and double quotes on both sides
    };

    // --- Construction and assignment ---------------------------------------------------------

    // Empty.
    CQELString();
    // A copy of `s`; null and "" give the empty string.
    CQELString(const char* s);
    // A copy of the first `n` bytes of `s`, which are all readable, whatever they are; null, "" (a
    // zero byte first) and n = 0 give the empty string. n above 2^31 - 2: empty.
    CQELString(const char* s, std::uint64_t n);
    // One character; '\0' too makes a body, of length 1.
    CQELString(char c);
    // String resource `id` of a module: LoadStringA(id, module).
    CQELString(int id, const char* module);
    CQELString(const CQELString& other);
    ~CQELString();

    CQELString& operator=(const CQELString& other);
    // `s` may point into this string's own text.
    CQELString& operator=(const char* s);

    // --- Access ------------------------------------------------------------------------------

    // The text, terminated; never null. Valid while this string lives unchanged.
    operator const char*() const;
    // The byte at an index; 0 at or past the end and for a negative index.
    char operator[](int index) const;
    char operator[](std::uint64_t index) const;
    // The length in bytes.
    int Length() const;
    int GetLength() const;
    // Whether the length is 0.
    bool IsEmpty() const;
    // Whether there is a body: not empty.
    bool IsValid() const;
    // Whether the text is readable memory; true when empty.
    bool IsValidString() const;
    // Lets go of the text.
    void Empty();

    // Becomes the text of `n` bytes at `data`, up to the first zero byte among them. Null: empty.
    void Load(const unsigned char* data, unsigned int n);
    // Sets `n` to the length and `data` to the text itself, not a copy: to be read only, while the
    // string lives unchanged.
    void Save(unsigned int& n, unsigned char*& data) const;

    // --- String resources --------------------------------------------------------------------

    // Becomes string resource `id` of `module`, of any length; empty when there is none.
    CQELString& LoadStringA(int id, HINSTANCE module);
    // The same by name: null is the process's main executable; a name that begins with "QELKIT2"
    // in any case is this library; any other is a file beside the main executable, loaded for the
    // time of the call if it is not yet. Empty when module or resource is missing. Throws only
    // what the allocator throws.
    CQELString& LoadStringA(int id, const char* module);
    // The message of a status code; empty for a code without one.
    CQELString& LoadQelkitString(int status);

    // --- Concatenation --------------------------------------------------------------------------
    // Always a new body, even when nothing is added; only an empty left side shares the body of a
    // right one. Null is "".

    CQELString& operator+=(const CQELString& s);
    CQELString& operator+=(const char* s);
    CQELString& operator+=(char c);
    CQELString operator+(const CQELString& s) const;
    CQELString operator+(const char* s) const;
    CQELString operator+(char c) const;

    // --- Comparison --------------------------------------------------------------------------

    // Both empty, or both not empty and equal.
    bool operator==(const CQELString& s) const;
    // An empty string equals null and nothing else: CQELString() == "" is false.
    bool operator==(const char* s) const;
    bool operator!=(const CQELString& s) const;
    bool operator!=(const char* s) const;
    // Multi-byte comparison; false when either side is empty.
    bool operator<(const CQELString& s) const;
    bool operator>(const CQELString& s) const;

    // Below 0, 0 or above 0 by the runtime's multi-byte comparison, which with `no_case` ignores
    // the case of letters (of Cyrillic ones only in a locale that has them). An empty string equals
    // null and is below everything else, "" included.
    int Compare(const char* s, bool no_case = false) const;
    int CompareNoCase(const char* s) const;
    // The same by Russian dictionary order. Switches the process's locale for the time of the
    // call: not safe while other threads use the locale.
    int Collate(const char* s, bool no_case = false) const;
    int CollateNoCase(const char* s) const;

    // --- Search: byte indexes, -1 when not found; null is never found ----------------------------

    // Byte-wise.
    int Find(char c) const;
    int ReverseFind(char c) const;
    // The first occurrence; "" is found at 0 of a string that is not empty.
    int Find(const char* s) const;
    // The same after MakeLower on copies of both.
    int FindNocase(const char* s) const;
    // The part before the first character that is in `set`.
    CQELString SpanExcluding(const char* set) const;

    // --- Parts: new strings ------------------------------------------------------------------
    // Negative counts and positions count as 0.

    // At most n bytes from the start, from the end, or from byte pos on.
    CQELString Left(int n) const;
    CQELString Right(int n) const;
    CQELString Mid(int pos, int n) const;

    // --- Editing -----------------------------------------------------------------------------

    // Removes `n` bytes from `pos` on, at most to the end. A negative `pos` counts as 0; nothing
    // happens when n < 1 or `pos` is at or past the end.
    CQELString& Delete(int pos, int n);
    // Nothing happens when `s` is empty or `pos` is past the end; a negative `pos` counts as 0. An
    // empty string becomes `s`, whatever `pos` is.
    CQELString& Insert(const CQELString& s, int pos);
    // Inserts `s` at byte `column` of every line that is at least `column` bytes long; shorter ones
    // stay. Line feeds separate the lines, so that one at the end is followed by an empty line; a
    // carriage return is a byte of its line. A text of one line: Insert.
    CQELString& InsertRow(const CQELString& s, int column);
    // In place, shared with all copies.
    CQELString& Replace(char from, char to);
    // Replaces every occurrence, searching on behind each replacement. "" and null as `old` change
    // nothing; null as `repl` is "".
    CQELString& Replace(const char* old, const char* repl);
    // Removes the first occurrence, with `no_case` of either case as FindNocase finds it.
    CQELString& RemoveSubstring(const char* s, bool no_case = false);
    // Removes every byte that occurs in `set`.
    CQELString& Exclude(const char* set);
    // Remove runs of a character, or of those in `set`, at the start or end, stepping by multi-byte
    // characters; in place, shared with all copies.
    CQELString& TrimLeft(char c = ' ');
    CQELString& TrimRight(char c = ' ');
    CQELString& TrimLeft(const char* set);
    CQELString& TrimRight(const char* set);
    // Applies the bits of `flags` in this order:
    //   1      skip leading blanks
    //   2      drop trailing blanks
    //   0x100  skip leading and drop trailing blanks and double quotes
    //   16     drop one character if the text, as it was before, ends in "\" or "/"
    //   4      drop one character if the text, as it was before, ends in a line feed
    //   64     drop trailing carriage returns and line feeds
    //   32     of at least 8 characters: drop a leading "http://" (any case), then one final "/"
    //   128    drop trailing, leading and all inner blanks
    CQELString& Strip(EStripType flags);
    // Appends "\r\n" unless the string is empty or ends in a line feed.
    CQELString& BeginNewLine();
    // Makes the text end in exactly the one backslash that this appends: a final slash of either
    // kind is dropped first.
    CQELString& StrAddSlash();
    // On a caller's `path` with room for one more character: "" becomes "\"; a backslash is
    // appended unless the last character is one. Null: nothing.
    static void StrAddSlash(char* path);
    // Removes one trailing backslash of `path`. Null: nothing.
    static void StrCutSlash(char* path);

    // --- Case and code page --------------------------------------------------------------------

    // In place, shared with all copies.

    // Each character by the runtime's conversion for its multi-byte code page (_mbctolower,
    // _mbctoupper). That is the system's ANSI code page until _setmbcp changes it, so Cyrillic
    // converts under code page 1251 whatever setlocale was told.
    CQELString& MakeLower();
    CQELString& MakeUpper();
    // Each byte: the 33 letters of the Russian alphabet in code page 1251 convert in any locale,
    // all others by the runtime's tolower and toupper, which follow setlocale.
    CQELString& LowerRus();
    CQELString& UpperRus();
    // Between the system's ANSI and OEM code pages.
    CQELString& CharToOemA();
    CQELString& OemToCharA();
    // 1 when every byte is a (hexadecimal) digit of ASCII, and for the empty string; else 0.
    int isdigit() const;
    int isxdigit() const;

    // --- Formatting ------------------------------------------------------------------------------
    // Four engines that differ on purpose: the same format need not give the same text.
    //
    // Formats are those of the C runtime (msvcrt spelling: %I64d, %S, %hs, exponents of three
    // digits) in its current locale. Every argument takes one slot of 64 bits; an argument list is
    // the pointer to the first (a va_list of Windows x86-64). Arguments must fit the format: nobody
    // can check them, texts are read and %n writes through its argument. Never take a format from
    // strangers.
    //
    // An unreadable or null `fmt` changes nothing. Format and arguments may lie in the string that
    // is changed. The result ends at its first zero byte (%c of 0). Working memory that cannot be
    // had is thrown as (char*)"MemoryError"; the string is then unchanged. No shared state: any
    // thread may format strings of its own.

    // The runtime's formatter, in two passes. Nothing changes when it reports an error.
    CQELString& Format(const char* fmt, ...);

    // Estimates the length of `fmt` with the list `args`, then formats once. The string becomes the
    // format text itself, unformatted, when the formatter reports an error or the result is longer
    // than the estimate: never half a result. The estimate counts nothing for %E, %a and sizes
    // other than h, l, F, L, N and I64 (%lld), so that these mostly end as the format text; use %e,
    // %g, %I64d. An estimate beyond 32 bits gives "(CQELPtr:ZeroItems)".
    CQELString& FormatV(const char* fmt, char* args);

    // Formats `fmt` with the list `args` by walking the format itself: "%", an optional "-", then
    // one of blank and "+", width, "." and precision (digits or "*"), one size of F, L, N, h and l,
    // the type; nothing else and in this order only. "%+-5d" ends at its "-", "%#x" at its "#",
    // "%I64d" at its "I". A format that ends before the type of a conversion: that part is text.
    //   s, c    laid out here, always narrow. Null is "(null)". Text and width are cut to 256
    //           characters. "%-3s" also cuts to its width, "%3s" does not. A precision counts as
    //           given for the padding on the left: "%9.5s" of "abc" is 4 blanks and "abc".
    //   others  printed by the runtime, each alone, and cut to their first 256 characters. %n
    //           stores 0.
    // A negative "*" is a "-" and the width, or no precision, as in C.
    CQELString& Sprintf(const char* fmt, char* args);

    // Sprintf, then MakeLower.
    CQELString& lFormat(const char* fmt, ...);

    // FormatV with message `id` of this library as its format; empty when there is none.
    virtual CQELString& Format(int id, ...);

    // FormatV with string resource `id` of `module` as its format (LoadStringA; but null is this
    // library); empty when there is none.
    virtual CQELString& FormatEx(const char* module, int id, ...);

private:
    CQELStringImp* body_;
};

inline CQELString::CQELStringImp::CQELStringImp(char* text, int length)
    : text_(text), length_(length) {}
inline CQELString::CQELString() : body_(nullptr) {}
inline CQELString::CQELString(const CQELString& other) : body_(other.body_) {
    if (body_) body_->AddRef();
}
inline CQELString::~CQELString() {
    if (body_) body_->Release();
}
inline int CQELString::Length() const { return body_ ? body_->length_ : 0; }
inline int CQELString::GetLength() const { return Length(); }
inline bool CQELString::IsEmpty() const { return Length() == 0; }
inline bool CQELString::IsValid() const { return body_ != nullptr; }
inline bool CQELString::operator!=(const CQELString& s) const { return !(*this == s); }
inline bool CQELString::operator!=(const char* s) const { return !(*this == s); }
inline int CQELString::CompareNoCase(const char* s) const { return Compare(s, true); }
inline int CQELString::CollateNoCase(const char* s) const { return Collate(s, true); }

// The bits of both.
inline CQELString::EStripType operator|(CQELString::EStripType a, CQELString::EStripType b) {
    return static_cast<CQELString::EStripType>(static_cast<int>(a) | static_cast<int>(b));
}

// Without these, a text on the left would be compared as a pointer.
inline bool operator==(const char* a, const CQELString& b) { return b == a; }
inline bool operator!=(const char* a, const CQELString& b) { return !(b == a); }

// FormatV into a new string, with string resource `id` of the process's main executable as its
// format; empty when there is none.
QELKIT_API CQELString CQELSprintf(int id, ...);
// FormatV into a new string; empty when `fmt` is unreadable.
QELKIT_API CQELString CQELSprintf(const char* fmt, ...);
