#pragma once

#include <list>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "status/qel_status.h"
#include "text/qel_string.h"

// Configuration files of sections in brackets and lines "key=value", read and written by the
// system's private-profile functions. Theirs are the rules of the syntax: the case of names does
// not matter, the first of duplicates counts, blanks and one pair of quotes around a value fall
// away, every write goes to the file at once.

// One key of a section.
struct CConfigFileKeyListItem {
    CQELString key;    // its name, as the file spells it
    CQELString value;  // its text; empty when it could not be read
};

// One section with its keys in the order of the file.
struct QELKIT_API CConfigFileSectionListItem {
    // The value of the first item with exactly this key, in this case; empty when there is none.
    CQELString GetKeyValue(const char* key) const;

    CQELString name;                         // without the brackets
    std::list<CConfigFileKeyListItem> keys;  // in the order of the file
};

// One configuration file.
//
//     CQELConfigInfoFile file("settings.ini", false, 0);
//     file.PutProfileString("Window", "Width", "800");
//     CQELString width;
//     if (file.GetProfileStringA("Window", "Width", &width)) Use(width);
//
// - A name without a folder is in the current folder, as IsFileExist and the system see it.
// - Values are cut to 4093 bytes, names to 254, lists of names to 4092 bytes with their
//   terminators.
// - The operations on lists return true although some reads or writes failed. Failures are recorded
//   in a status that keeps until another comes: code 5 for reading, 6 for writing, the file's name
//   as additional text. They are thrown, as XQELStatus, only where a subclass has set throwOnError.
// - Operations on lists work through the virtual functions, so that a subclass that overrides
//   GetProfileStringA or PutProfileString changes them all.
// - Null for a text or a list that is needed: false, and nothing happens.
//
// One object belongs to one thread at a time.
//
// The order of the virtual functions and of the fields is part of the binary interface: add only at
// the end.
class QELKIT_API CQELConfigInfoFile {
public:
    // The file `fileName`, which need not exist; it is not opened. The bool has no meaning; `flags`
    // are kept for subclasses.
    CQELConfigInfoFile(const char* fileName, bool, ulong32 flags);
    virtual ~CQELConfigInfoFile();

    // The recorded status (into `status`: with its additional text) and the additional text alone
    // (into `message`; the pointer is valid until the next failure). Both orders are one layout:
    // Visual C++ lays out overloads of one name in reverse.
#ifdef _MSC_VER
    virtual int ReturnStatus() const;
    virtual void ReturnStatus(XQELStatus* status) const;
    virtual const char* ReturnErrMess();
    virtual void ReturnErrMess(CQELString* message);
#else
    virtual void ReturnStatus(XQELStatus* status) const;
    virtual int ReturnStatus() const;
    virtual void ReturnErrMess(CQELString* message);
    virtual const char* ReturnErrMess();
#endif

    // Whether the file was there when this object was made, or has been written since.
    virtual bool IsFileExist();

    // Reads a value. A key that is missing reads as the empty text, successfully; so does a value
    // "(Default)". False, with `value` untouched, for a key with an empty value and while
    // IsFileExist() is false.
    virtual bool GetProfileStringA(const char* section, const char* key, CQELString* value);
    // Writes a value, making file and section as needed; the folder must be there. A null `value`
    // removes the key, a null `key` the whole section. False, with nothing written, when the system
    // refuses or when one of the texts holds a carriage return or a line feed: it would come
    // back as entries of its own.
    virtual bool PutProfileString(const char* section, const char* key, const char* value);

    // All names in the order of the file, duplicates included. True. The keys of a section that is
    // missing are one name "(Default)".
    virtual bool GetSectionNameList(std::list<CQELString>* names);
    virtual bool GetKeyNameList(const char* section, std::list<CQELString>* names);

    // The keys of a section with their values, as the new content of `items`. True; keys whose read
    // fails, for example on an empty value, are there without a value and record status 5.
    virtual bool GetSection(const char* section, std::list<CConfigFileKeyListItem>* items);
    // Writes all items; keys of the section that are not among them stay. False for an empty list,
    // else true; failed writes record status 6.
    virtual bool PutSection(const char* section, const std::list<CConfigFileKeyListItem>& items);
    // The same for the whole file.
    virtual bool GetAllSections(std::list<CConfigFileSectionListItem>* sections);
    virtual bool PutAllSections(const std::list<CConfigFileSectionListItem>& sections);

protected:
    XQELStatus status;    // the last failure
    CQELString fileName;  // as it was given
    bool throwOnError;    // failures are thrown as well as recorded; false at first
    bool fileExists;      // what IsFileExist answers
    ulong32 flags;        // the subclass's own

private:
    bool Finish(int failures, int code);
};
