#pragma once

#include "base/export.h"
#include "text/qel_string.h"

// Status objects: error sink and exception in one. An operation reports into the object it is
// given; the object records, and throws a copy of itself when its raise flag is set:
//
//     XQELFile status(false);                     // record only
//     CQELFile::Remove("old.dat", status);
//     if (status.IsError()) Show(GetErrorString("Remove", status));
//
//     try { CQELFile file("new.dat", "wb", true); ... }   // raise
//     catch (const XQELStatus& failure) { ... }           // catches the whole family
//
// The class tree is XQELBaseMsg <- XQELMsg <- XQELStatus <- XQELErrno <- XQELFile. What can be
// reported changes through const functions, so that a `const XQELFile&` is enough to report into.
// No constructor throws, whatever it is given. Copies take all fields, the raise flag included.
// Mind what converts: XQELFile("text") sets the raise flag and stores no text, and
// XQELStatus(false) is status 0 with the raise flag set.
//
// One object belongs to one thread at a time.
//
// The order of the virtual functions (destructor, IsError, ErrorMessage, Clear, Raise) and of the
// fields is part of the binary interface: add only at the end.

// The empty root of the family: catch it to catch everything. Not polymorphic.
class QELKIT_API XQELBaseMsg {};

// A raise flag and an additional text (for example the name of the file that failed).
class QELKIT_API XQELMsg : public XQELBaseMsg {
public:
    // The raise flag, and the additional text ("" without one).
    XQELMsg(bool raise = true);
    XQELMsg(const CQELString& text, bool raise);
    virtual ~XQELMsg();

    // Whether the object reports a failure.
    virtual bool IsError() const = 0;
    // A short technical text, for logs. For people there is GetErrorString (status_text.h).
    virtual CQELString ErrorMessage() const = 0;
    // Forgets the failure. The additional text stays.
    virtual void Clear() const = 0;

    // The additional text.
    const CQELString& GetErrMessEx() const;
    // Replaces the additional text; null and "" empty it.
    void SetErrMessEx(const char* text) const;
    // Throws a copy of the whole object, as its most derived status class, if the raise flag is
    // set, whatever is recorded; does nothing otherwise.
    void SetError() const;

protected:
    // Throws a copy of the object as the class that overrides this.
    virtual void Raise() const = 0;

    // For classes whose copies take the raise flag of `other` and nothing else of the status.
    void TakeRaiseFlag(const XQELMsg& other);

private:
    bool raise_;
    mutable CQELString text_;
};

inline const CQELString& XQELMsg::GetErrMessEx() const { return text_; }
inline void XQELMsg::TakeRaiseFlag(const XQELMsg& other) { raise_ = other.raise_; }

// A status code; 0 is no error.
class QELKIT_API XQELStatus : public XQELMsg {
public:
    // The status, the raise flag and the additional text ("" without one; null is "").
    XQELStatus(int status = 0, bool raise = true);
    XQELStatus(int status, const CQELString& text, bool raise);
    XQELStatus(int status, const char* text, bool raise);

    // The recorded status; 0 is no error.
    int Status() const;

    // status != 0
    bool IsError() const override;
    // "Status = %d"
    CQELString ErrorMessage() const override;
    // status = 0
    void Clear() const override;

    using XQELMsg::SetError;
    // Records `status`; if it is not 0 and the raise flag is set, throws.
    void SetError(int status) const;

protected:
    void Raise() const override;

private:
    mutable int status_;
};

inline int XQELStatus::Status() const { return status_; }

// A status and an error number of the C runtime; 0 is none.
class QELKIT_API XQELErrno : public XQELStatus {
public:
    // Status 0, this error number and raise flag.
    XQELErrno(int error_number, bool raise);

    // The recorded error number; 0 is no error.
    int Errno() const;

    // Error number != 0: the status is not looked at.
    bool IsError() const override;
    // The C runtime's text for the error number.
    CQELString ErrorMessage() const override;
    // Error number = 0: the status stays.
    void Clear() const override;

    using XQELMsg::SetError;
    // Records the error number; if it is not 0 and the raise flag is set, throws. Hides the one of
    // XQELStatus: for the status say XQELStatus::SetError(status).
    void SetError(int error_number) const;

protected:
    void Raise() const override;

private:
    mutable int error_number_;
};

inline int XQELErrno::Errno() const { return error_number_; }

// Status and error number together: what file operations report into, and the base of files.
class QELKIT_API XQELFile : public XQELErrno {
public:
    // Status 0, error number 0, this raise flag.
    XQELFile(bool raise = true);

    // Status != 0 or error number != 0.
    bool IsError() const override;
    // "Status = %d": the error number is not shown.
    CQELString ErrorMessage() const override;
    // Status = 0 and error number = 0.
    void Clear() const override;

    using XQELMsg::SetError;
    // Clears, then records the status, then the error number; each may throw. So a raising object
    // that is given a status throws before the error number is recorded: the thrown copy, and the
    // object itself, then have error number 0. Only a status of 0 throws with the error number.
    void SetError(int status, int error_number) const;

protected:
    void Raise() const override;
};
