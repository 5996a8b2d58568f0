#pragma once

// The wildcard rules written down word by word, by recursion: exponential, but easy to check. The
// library's matcher must answer the same.

#include <cstring>

namespace textbook {

inline char Fold(char c, int flags) {
    return (flags & 0x10) && c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

inline bool Match(const char* p, const char* name, int flags) {
    const bool path = (flags & 1) != 0;
    const auto is_separator = [&](const char* n) { return path && *n == '\\'; };
    const auto is_leading_dot = [&](const char* n) {
        return (flags & 4) && *n == '.' && (n == name || (path && n[-1] == '\\'));
    };
    const char* n = name;
    for (; *p; ++p, ++n) {
        if (*p == '?') {
            if (*n == '\0' || is_separator(n) || is_leading_dot(n)) return false;
        } else if (*p != '*') {
            if (Fold(*p, flags) != Fold(*n, flags)) return false;
        } else {
            if (is_leading_dot(n)) return false;
            for (++p; *p == '*' || *p == '?'; ++p) {
                if (is_separator(n)) return false;
                if (*p == '?' && *n++ == '\0') return false;
            }
            if (*p == '\0') return !path || std::strchr(n, '\\') == nullptr;
            const char wanted = Fold(flags & 2 ? p[1] : p[0], flags);
            for (; *n; ++n) {
                if (Fold(*n, flags) == wanted && Match(p, n, flags & ~4)) return true;
                if (is_separator(n)) return false;
            }
            return false;
        }
    }
    return *n == '\0';
}

}  // namespace textbook
