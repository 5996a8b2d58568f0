#include "status/qel_status.h"

#include <cstring>

// Callers derive from these classes and copy them, compiled apart from us.
#ifdef _MSC_VER
constexpr std::size_t kErrnoSize = 48;
#else
constexpr std::size_t kErrnoSize = 40;  // the error number lies in the padding of its base
#endif
static_assert(sizeof(XQELBaseMsg) == 1);
static_assert(sizeof(XQELMsg) == 32);
static_assert(sizeof(XQELStatus) == 40);
static_assert(sizeof(XQELErrno) == kErrnoSize);
static_assert(sizeof(XQELFile) == kErrnoSize);

// --- XQELMsg -----------------------------------------------------------------------------------

XQELMsg::XQELMsg(bool raise) : raise_(raise) {}

XQELMsg::XQELMsg(const CQELString& text, bool raise) : raise_(raise), text_(text) {}

XQELMsg::~XQELMsg() = default;

void XQELMsg::SetErrMessEx(const char* text) const { text_ = text; }

void XQELMsg::SetError() const {
    if (raise_) Raise();
}

// --- XQELStatus --------------------------------------------------------------------------------

XQELStatus::XQELStatus(int status, bool raise) : XQELMsg(raise), status_(status) {}

XQELStatus::XQELStatus(int status, const CQELString& text, bool raise)
    : XQELMsg(text, raise), status_(status) {}

XQELStatus::XQELStatus(int status, const char* text, bool raise)
    : XQELMsg(CQELString(text), raise), status_(status) {}

bool XQELStatus::IsError() const { return status_ != 0; }

CQELString XQELStatus::ErrorMessage() const {
    CQELString text;
    text.Format("Status = %d", status_);
    return text;
}

void XQELStatus::Clear() const { status_ = 0; }

// Asks its own IsError: the one of XQELErrno knows nothing of the status.
void XQELStatus::SetError(int status) const {
    status_ = status;
    if (XQELStatus::IsError()) XQELMsg::SetError();
}

void XQELStatus::Raise() const { throw *this; }

// --- XQELErrno ---------------------------------------------------------------------------------

XQELErrno::XQELErrno(int error_number, bool raise)
    : XQELStatus(0, raise), error_number_(error_number) {}

// Quirk: the status is not looked at, so an object with a status alone reports no error. Derived
// classes of callers count on it. Pinned by QelStatus.ErrnoLooksAtItsErrorNumberOnly.
bool XQELErrno::IsError() const { return error_number_ != 0; }

CQELString XQELErrno::ErrorMessage() const { return CQELString(std::strerror(error_number_)); }

void XQELErrno::Clear() const { error_number_ = 0; }

void XQELErrno::SetError(int error_number) const {
    error_number_ = error_number;
    if (XQELErrno::IsError()) XQELMsg::SetError();
}

void XQELErrno::Raise() const { throw *this; }

// --- XQELFile ----------------------------------------------------------------------------------

XQELFile::XQELFile(bool raise) : XQELErrno(0, raise) {}

bool XQELFile::IsError() const { return XQELStatus::IsError() || XQELErrno::IsError(); }

// Quirk: the error number has no part in the text ("Status = 0" for an error number alone); logs
// are searched for this form. Pinned by QelStatus.FileMessageShowsTheStatusOnly.
CQELString XQELFile::ErrorMessage() const { return XQELStatus::ErrorMessage(); }

void XQELFile::Clear() const {
    XQELStatus::Clear();
    XQELErrno::Clear();
}

// Quirk: a raising object throws on its status before the error number is stored, so what is
// caught has error number 0. Catchers tell the two kinds of failure apart by it. Pinned by
// QelStatus.RaisingFileStatusThrowsBeforeItsErrorNumber.
void XQELFile::SetError(int status, int error_number) const {
    XQELFile::Clear();
    XQELStatus::SetError(status);
    XQELErrno::SetError(error_number);
}

void XQELFile::Raise() const { throw *this; }
