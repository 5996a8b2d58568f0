#pragma once

// The wildcard matcher itself: bytes in, answer out. Its exported face is QEL::filename_match.

namespace kit {

enum WildcardFlags : int {
    kWildcardPath = 0x01,         // neither "?" nor "*" matches a backslash
    kWildcardSkipLiteral = 0x02,  // see WildcardMatches
    kWildcardLeadingDot = 0x04,   // only a literal "." matches a leading dot
    kWildcardFoldCase = 0x10,     // capital letters count as small ones
};

// Lowers one byte of 0x80 and above. Null leaves them alone.
using FoldHighByte = unsigned char (*)(unsigned char byte);

// Whether all of `name` matches `pattern`, in which "*" stands for any characters and "?" for one.
// A leading dot is one that starts the name or, in path mode, follows a backslash; behind the
// first "*" of the pattern none is looked for. `fold_high` matters with kWildcardFoldCase only.
//
// Takes time in proportion to pattern x name at the worst, and no memory.
bool WildcardMatches(const char* pattern, const char* name, int flags,
                     FoldHighByte fold_high = nullptr);

}  // namespace kit
