#include "net/ip_string.h"

#include "net/ip_text.h"

static_assert(sizeof(CQELIPString) == sizeof(CQELString), "the layout is that of CQELString");

CQELIPString::CQELIPString() = default;
CQELIPString::CQELIPString(const CQELIPString& other) = default;
CQELIPString::CQELIPString(CQELIPString&& other) = default;
CQELIPString::~CQELIPString() = default;

CQELIPString::CQELIPString(ulong32 address, int zeroPad) {
    char text[16];
    *this = CQELIpToText(text, address, zeroPad);
}

CQELIPString& CQELIPString::operator=(const CQELIPString& other) = default;
CQELIPString& CQELIPString::operator=(CQELIPString&& other) = default;

CQELIPString& CQELIPString::operator=(const char* text) {
    CQELString::operator=(text);
    return *this;
}
