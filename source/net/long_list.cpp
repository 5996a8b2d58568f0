#include "net/long_list.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <list>

#include "base/or_empty.h"
#include "net/detail/exact_set.h"
#include "net/ip_text.h"

namespace {

// Reads the token [begin, end). Blanks do not count, but the token with them must fit the buffer.
bool ReadToken(const char* begin, const char* end, ulong32& address) {
    char token[300];
    if (static_cast<std::size_t>(end - begin) >= sizeof token) return false;
    char* const last = std::remove_copy(begin, end, token, ' ');
    *last = '\0';
    return CQELIpToLong(token, &address) == 0;
}

}  // namespace

CQELLongList::CQELLongList() = default;

CQELLongList::CQELLongList(ulong32 a) { push_back(a); }

ulong32& CQELLongList::operator[](int i) {
    static ulong32 dummy = 0;
    if (i < 0 || static_cast<std::size_t>(i) >= size()) return dummy;
    return *std::next(begin(), i);
}

CQELLongList& CQELLongList::operator+=(const CQELLongList& b) {
    auto missing = kit::MissingIn<ulong32>(*this, b);
    splice(end(), missing);
    return *this;
}

CQELLongList& CQELLongList::operator-=(const CQELLongList& b) {
    RemoveList(b);
    return *this;
}

bool CQELLongList::ChangeRemainFirst(const CQELLongList& b) {
    if (!empty() && (b.empty() || *this == b)) return false;
    CQELLongList next = b;
    if (!empty() && next.front() != front() && kit::Contains<ulong32>(next, front())) {
        next.remove(front());
        next.push_front(front());
    }
    swap(next);
    return true;
}

CQELLongList& CQELLongList::FromString(const char* text, char separator) {
    std::list<ulong32> addresses;
    for (const char* at = kit::OrEmpty(text); *at != '\0';) {
        const char* end = at;
        while (*end != '\0' && *end != separator) ++end;
        ulong32 address;
        if (ReadToken(at, end, address)) addresses.push_back(address);
        at = *end == '\0' ? end : end + 1;
    }
    swap(addresses);
    return *this;
}
