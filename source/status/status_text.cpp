#include "status/status_text.h"

#include <conio.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "platform/windows.h"

namespace {

// The result line of PrintResults: a name, blanks, a verdict.
constexpr std::size_t kLineLength = 48;
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kVerdictColumn = 42;

using ResultLine = char[kLineLength + 1];

void FillResultLine(ResultLine& line, const char* name, const char* verdict) {
    std::memset(line, ' ', kLineLength);
    line[kLineLength] = '\0';
    if (name) std::memcpy(line, name, ::strnlen(name, kLongestName));
    std::memcpy(line + kVerdictColumn, verdict, std::strlen(verdict));
}

// Quirk: the line, and so a caller's name, is the format. Tools write "100%%" for a per cent sign
// and would show two of them if this printed the text as it stands. Arguments that such a name
// asks for are all zero here ("%d" shows 0, "%s" shows "(null)") and never what lies on the stack.
// Pinned by PrintResults.TakesTheNameAsAFormat.
void PrintAsFormat(const ResultLine& line) {
    static std::uint64_t no_arguments[kLineLength];  // no format asks for more than it has letters
    const auto arguments = reinterpret_cast<va_list>(no_arguments);
#ifdef __MINGW32__
    ::__ms_vprintf(line, arguments);  // the C runtime's formatter; vprintf is another one here
#else
    std::vprintf(line, arguments);
#endif
}

}  // namespace

CQELString GetErrorString(const char* prefix, int status, const char* detail) {
    CQELString message;
    message.LoadQelkitString(status);
    // One full stop, and only as the very last character: message 147 ends in a blank and keeps it.
    const int length = message.Length();
    if (length > 0 && message[length - 1] == '.') message = message.Left(length - 1);

    CQELString text(prefix);
    text.BeginNewLine();
    // Quirk: an empty line follows every prefix, since this comes on top of the line break above.
    // Message boxes are laid out for it. Pinned by GetErrorString.SetsThePrefixApart.
    if (!text.IsEmpty()) text += "\r\n";
    text += message;
    if (detail && *detail) {
        text += " (";
        text += detail;
        text += ")";
    }
    return text;
}

CQELString GetErrorString(const char* prefix, const XQELStatus& status) {
    return GetErrorString(prefix, status.Status(), status.GetErrMessEx());
}

void MakeErrMess(int place, char* out) {
    constexpr std::size_t kRoom = 52;  // the text with the longest number and the terminator
    if (out) std::snprintf(out, kRoom, "Error in place N %d, contact the producers", place);
}

void MakeErrMess(const char* text, char* out) {
    // Quirk: a text of 254 characters or more gets no terminator. Callers bring 255 bytes of zeros,
    // of which the last stays theirs. Pinned by MakeErrMess.CopiesUpTo254Characters.
    if (out && text) std::strncpy(out, text, 254);
}

void PrintResults(int status, const char* name) {
    ResultLine line;
    FillResultLine(line, name, status != 0 ? "ERROR" : "OK");
    PrintAsFormat(line);
    if (status == 0) {
        std::printf("\n");
        return;
    }
    std::printf("ErrCode = %d\n", status);
    ::_getch();
}

char* CQELGetString(char* out, int size, int id, HINSTANCE module) {
    if (!out || size <= 0) return nullptr;
    char text[1024];
    const int length = ::LoadStringA(module, static_cast<UINT>(id), text, sizeof text);
    *out = '\0';
    if (length > 0 && length < size) std::memcpy(out, text, static_cast<std::size_t>(length) + 1);
    return out;
}

void delay(unsigned int milliseconds) { ::Sleep(milliseconds); }
