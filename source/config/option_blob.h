#pragma once

#include "base/export.h"

// Option blobs: tagged options (code, length, data) packed into one string of bytes, by which
// components hand sets of settings to one another. The bytes are described in docs/formats.md.
//
// Nothing here throws and nothing reports an error: a record that is cut short ends a blob, an
// allocation that fails leaves an empty option or an empty blob. An object is used by one thread
// at a time, and copying from an object counts as a use of it.
//
// The order of the fields and of the virtual functions is part of the binary interface: add only
// at the end.

// One option, which owns a copy of its data. Not copied: two would release the same data.
class QELKIT_API CQelOpt {
public:
    // Code 0, length 0, no data.
    CQelOpt();
    // As Set(code, length, data).
    CQelOpt(unsigned int code, unsigned int length, const unsigned char* data);
    CQelOpt(const CQelOpt&) = delete;
    CQelOpt& operator=(const CQelOpt&) = delete;
    ~CQelOpt();

    // Takes the code and a copy of length bytes of data, which may lie in this option's own data;
    // the old data is released. When the copy cannot be made (no memory, or data is null and
    // length is not 0) code and length become 0 and there is no data.
    void Set(unsigned int code, unsigned int length, const unsigned char* data);

    // The stored values. data points at the option's own bytes, not at a copy: they may be changed
    // in place and are valid until the next Set or the destructor. Null when length is 0.
    void Get(unsigned int& code, unsigned int& length, unsigned char*& data);

private:
    friend class CQelOpts;

    CQelOpt* next_;
    CQelOpt* previous_;
    unsigned int code_;
    unsigned int length_;
    unsigned char* data_;
};

// An ordered list of options; codes may repeat. Not copied, unlike CDrvOptsIp.
class QELKIT_API CQelOpts {
public:
    // No options, no cursor.
    CQelOpts();
    // Reads the options of a blob of length bytes. A record that does not fit into the rest of the
    // blob ends it; so does a rest of less than 8 bytes. Null is an empty blob.
    CQelOpts(const unsigned char* blob, unsigned int length);
    CQelOpts(const CQelOpts&) = delete;
    CQelOpts& operator=(const CQelOpts&) = delete;
    // Releases the options and the built blob. Not virtual.
    ~CQelOpts();

    // Appends an option with a copy of length bytes of data, whether or not there is one of that
    // code. When memory runs out it is an empty option of code 0, or none at all; none as well when
    // data is null and length is not 0. Always returns 0.
    int AddOption(unsigned int code, unsigned int length, const unsigned char* data);

    // Finds the first option of that code: true, its length and its own bytes (null when there are
    // none), valid and changeable as long as the option lives. Otherwise false, and length and data
    // are untouched.
    bool GetByCode(unsigned int code, unsigned int& length, unsigned char*& data);

    // The length in bytes of the blob that GetAllOptions builds; 0 when it would exceed 2^32 - 1.
    unsigned int GetLength();

    // Builds the blob of all options. It belongs to this object and is valid until the next
    // GetAllOptions, until this object is copied, reloaded or emptied, or until the destructor.
    // length 0 and null when there are no options, memory runs out or it would exceed 2^32 - 1.
    void GetAllOptions(unsigned int& length, unsigned char*& blob);

    // Puts the cursor on option `index`, counted from 0, and returns index. When there are fewer
    // options, the cursor is on the last one and its index is returned; -1 and no cursor when there
    // is none. A negative index is returned as it is, with the cursor on the first option.
    int SeekAt(int index);

    // The option at the cursor (its own bytes, as with GetByCode), and moves the cursor to the next
    // one; behind the last there is no cursor. Without a cursor all three are 0.
    void GetOption(unsigned int& code, unsigned int& length, unsigned char*& data);

private:
    friend class CDrvOptsIp;
    struct Store;  // the memory of the options

    CQelOpt head_;     // of the circular list; its other fields belong to Store
    CQelOpt* cursor_;  // null: none
    unsigned char* blob_;
};

// A list of options that can be copied, reloaded and derived from.
class QELKIT_API CDrvOptsIp : public CQelOpts {
public:
    // No options, no cursor.
    CDrvOptsIp();
    // The options of the `length` bytes at `blob`, as CQelOpts reads them.
    CDrvOptsIp(const unsigned char* blob, unsigned int length);
    // Copies of the options, made through the blob of `other`: it is built anew, and the blob that
    // other.GetAllOptions gave before is no longer valid. An object may be assigned to itself.
    // There is no cursor afterwards.
    CDrvOptsIp(const CDrvOptsIp& other);
    CDrvOptsIp& operator=(const CDrvOptsIp& other);
    virtual ~CDrvOptsIp();

    // Replaces the options by those of a blob, as the constructor reads it. The blob may be this
    // object's own.
    void Create(const unsigned char* blob, unsigned int length);

    // Leaves no options, no blob and no cursor.
    void Clean();

protected:
    // Releases the blob and every option.
    void FreeObject();
};
