#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/multibyte.h"
#include "platform/windows.h"
#include "text/detail/format_estimate.h"
#include "text/detail/format_input.h"
#include "text/detail/format_runtime.h"
#include "text/detail/format_walker.h"
#include "text/detail/work_text.h"
#include "text/qel_string.h"

namespace {

// Answers as QELIsValidString does for a text of any length, but by reading it, which the formatter
// is about to do anyway: asking for the state of its pages takes longer than formatting.
bool IsReadable(const char* format) { return !::IsBadStringPtrA(format, UINTPTR_MAX); }

std::size_t OneByte(const char*) { return 1; }

std::optional<std::uint32_t> EstimateByRuntime(const char* format, char* args) {
    const kit::EstimateFunctions functions = {
        kit::HasDoubleByteCharacters() ? kit::CharacterLength : OneByte, kit::FixedLength};
    return kit::EstimateLength(format, kit::ArgumentCursor(args), functions);
}

}  // namespace

CQELString& CQELString::Format(const char* fmt, ...) {
    if (!IsReadable(fmt)) return *this;
    kit::WorkText text;
    va_list args;
    va_start(args, fmt);
    const char* const formatted = kit::FormatMeasured(text, fmt, args);
    va_end(args);
    return formatted ? *this = formatted : *this;
}

CQELString& CQELString::FormatV(const char* fmt, char* args) {
    if (!IsReadable(fmt)) return *this;
    const auto longest = EstimateByRuntime(fmt, args);
    // Quirk: an estimate beyond 32 bits yields this text, not an error: a buffer of no size has
    // always read like this, and a format text would look like any other failure.
    // Pinned by FormatV.TellsAnEstimateBeyond32BitsByAConstantText.
    if (!longest) return *this = "(CQELPtr:ZeroItems)";
    kit::WorkText text;
    char* const buffer = text.Reserve(std::size_t{*longest} + 1);
    return *this = kit::FormatBounded(buffer, *longest, fmt, args) ? buffer : fmt;
}

CQELString& CQELString::Sprintf(const char* fmt, char* args) {
    if (!IsReadable(fmt)) return *this;
    kit::WorkText text;
    kit::WalkFormat(fmt, kit::ArgumentCursor(args), kit::PrintByRuntime, text);
    return *this = text.c_str();
}

CQELString& CQELString::lFormat(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    Sprintf(fmt, args);
    va_end(args);
    return MakeLower();
}

CQELString& CQELString::Format(int id, ...) {
    CQELString message;
    message.LoadQelkitString(id);
    va_list args;
    va_start(args, id);
    FormatV(message, args);
    va_end(args);
    return *this;
}

CQELString& CQELString::FormatEx(const char* module, int id, ...) {
    CQELString message;
    if (module) {
        message.LoadStringA(id, module);
    } else {
        message.LoadQelkitString(id);
    }
    va_list args;
    va_start(args, id);
    FormatV(message, args);
    va_end(args);
    return *this;
}

CQELString CQELSprintf(int id, ...) {
    const CQELString message(id, static_cast<const char*>(nullptr));
    CQELString result;
    va_list args;
    va_start(args, id);
    result.FormatV(message, args);
    va_end(args);
    return result;
}

CQELString CQELSprintf(const char* fmt, ...) {
    CQELString result;
    va_list args;
    va_start(args, fmt);
    result.FormatV(fmt, args);
    va_end(args);
    return result;
}
