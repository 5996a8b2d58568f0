#pragma once

#include "base/export.h"
#include "base/types.h"
#include "text/qel_string.h"

// A CQELString that holds the dotted text of one IPv4 address. It adds nothing to the layout and no
// virtual function; everything that is said of CQELString holds for it too.
class QELKIT_API CQELIPString : public CQELString {
public:
    // "".
    CQELIPString();
    // The text of CQELIpToText(address, zeroPad).
    CQELIPString(ulong32 address, int zeroPad);
    // Copies share one text; moving copies.
    CQELIPString(const CQELIPString& other);
    CQELIPString(CQELIPString&& other);
    ~CQELIPString();

    CQELIPString& operator=(const CQELIPString& other);
    CQELIPString& operator=(CQELIPString&& other);
    // Any text; nobody checks that it is an address.
    CQELIPString& operator=(const char* text);
};
