#pragma once

#include <string>

#include "base/export.h"
#include "base/types.h"
#include "net/std_list_safe.h"

// An ordered list of IPv4 addresses (numbers in host order, net/ip_text.h). Beside what is here it
// is a std::list: size(), iterators, push_back and so on.
class QELKIT_API CQELLongList : public StdListSafe<ulong32> {
public:
    // No addresses.
    CQELLongList();
    // A list of the one address a.
    CQELLongList(ulong32 a);

    // The i-th element from 0 on; for any other index one value that the whole process shares,
    // unguarded: writing it changes what every other bad index reads.
    ulong32& operator[](int i);

    // Appends, in b's order, each address of b that is not yet in this list. Duplicates that are
    // in this list already stay.
    CQELLongList& operator+=(const CQELLongList& b);
    // Removes every address that is in b: RemoveList(b).
    CQELLongList& operator-=(const CQELLongList& b);

    // Takes b over, but keeps this list's first address first when b has it too: then every other
    // occurrence of it goes. Returns false, and changes nothing, when b is empty (and this list is
    // not) or when both lists have the same addresses in the same order.
    bool ChangeRemainFirst(const CQELLongList& b);

    // Becomes the addresses of a text: dotted forms (CQELIpToLong) between `separator`s, blanks
    // within them removed, duplicates kept. Anything else between separators is skipped without
    // report, and so is what has 300 characters or more. Null and "" give an empty list.
    CQELLongList& FromString(const char* text, char separator);

    // The addresses in order; "0.0.0.0" for an empty list. The flags combine:
    //   1  ", " between two addresses, instead of " "
    //   2  each address right-aligned in 15 columns
    //   4  ";" between two addresses, whatever flag 1 says
    const std::string FormatIPString(ulong32 flags) const;

    // The addresses in order; "0.0.0.0" for an empty list. The one flag has two meanings:
    //   mode 1           15 columns for each address, flag aligns them left, and " " between them
    //   any other mode   no padding, flag puts ", " between them, otherwise " "
    const std::string GetFullIPString(bool flag, int mode) const;
};
