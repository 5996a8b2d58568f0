#pragma once

#include <list>
#include <string>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "status/qel_status.h"
#include "text/qel_string.h"

// A failure that comes from the system: a text for people and the system's error code.
class QELKIT_API XQELWinMsg : public XQELBaseMsg {
public:
    // Both are stored as they are: a `message` for people and the system's `code`.
    XQELWinMsg(const CQELString& message, ulong32 code);

    // The text, in the ANSI code page; valid as long as the object.
    const CQELString& GetErrorMessage() const;
    // The system's error code; 0 where the failure is the library's own finding.
    ulong32 GetErrorCode() const;

private:
    CQELString message_;
    ulong32 code_;
};

inline XQELWinMsg::XQELWinMsg(const CQELString& message, ulong32 code)
    : message_(message), code_(code) {}
inline const CQELString& XQELWinMsg::GetErrorMessage() const { return message_; }
inline ulong32 XQELWinMsg::GetErrorCode() const { return code_; }

// What the registry class throws.
class QELKIT_API XQELRegError : public XQELWinMsg {
public:
    using XQELWinMsg::XQELWinMsg;
};

// One open key of the registry.
//
//     CQelRegHCU key("Software\\Company\\Product", CQelReg::kWrite | CQelReg::kCreate);
//     key.SetValue("Language", "RUS");
//     CQELString folder;
//     key.GetExpandedValue("Folder", folder, 4096);
//
// - Failures throw XQELRegError with a message of the library's table and the system's code; the
//   object stays usable. GetValue, GetMemoryNoThrow, GetValueTypeAndLength, SetValueNoThrow and
//   DelValue answer 1 or 0 instead.
// - Names of values may be null or "" for the key's default value. Names of keys go below this key.
// - Texts are in the system's ANSI code page. Lengths and sizes are bytes, terminators included.
// - Texts and lists of texts that were stored without a terminator get one where they are read, as
//   far as there is room. Only a buffer that they fill to the last byte comes back without.
// - Assignment copies the CONTENTS of keys, and deletes what the source does not have. So does the
//   assignment of two objects of a subclass. There is no copy construction.
//
// One object belongs to one thread at a time.
//
// The order of the fields, and the destructor as the only virtual function, are part of the binary
// interface.
class QELKIT_API CQelReg {
public:
    // Bits; combine them with |.
    enum AccessMode {
        kRead = 0,       // the rights for reading
        kWrite = 1,      // all rights instead of those for reading
        kCreate = 2,     // makes the key when it does not exist
        kEveryone = 4,   // makes or opens the key, with all rights; a new one is open to everybody
        k64BitView = 8,  // the registry of 64-bit programs
    };

    // Opens root\keyPath with the rights and in the view of `mode`. A path of more than 255
    // characters throws the code 111. Null is "", the root itself.
    CQelReg(HKEY root, const char* keyPath, AccessMode mode);
    // Opens the key `subKey` below another, `parent`, which is needed for the time of the call
    // only; `mode` as above. A null `parent` throws the code 87.
    CQelReg(const CQelReg* parent, const char* subKey, AccessMode mode);
    // Writes the key's changes to disk and closes it. Never throws.
    virtual ~CQelReg();

    CQelReg(const CQelReg&) = delete;
    // CopyClean(source)
    CQelReg& operator=(const CQelReg& source);
    // Copy(source)
    CQelReg& operator<<(const CQelReg& source);

    // --- Values --------------------------------------------------------------------------------

    // Any value as it is stored, into buffer[0, size): 1, or 0 when it is missing or larger. A null
    // buffer asks whether there is such a value.
    int GetValue(const char* name, char* buffer, int size) const;
    // The same, for binary values.
    int GetMemoryNoThrow(const char* name, void* buffer, int size) const;
    // The same for a value of this type; 1. Throws message 1015, for a value of another type with
    // code 1629; the buffer may then be written.
    int GetValueEx(const char* name, void* buffer, int size, ulong32 type) const;
    // GetValueEx for a binary value.
    int GetMemory(const char* name, void* buffer, int size) const;
    // A text whose stored form has at most `size` bytes, with the references to environment
    // variables in it replaced; 1. Throws message 1015 and leaves `value` alone: code 234 when it
    // is longer, 1629 when it is no text.
    int GetExpandedValue(const char* name, CQELString& value, ulong32 size) const;
    // The size of a value's data; throws message 1015.
    ulong32 GetBufferLength(const char* name) const;
    // Size and type of a value: 1, or 0 with both untouched.
    int GetValueTypeAndLength(const char* name, ulong32& length, ulong32& type) const;

    // Write a text with its terminator, or a number of 32 bits: 1. Throw message 1014; a null text
    // is code 87.
    int SetValue(const char* name, const char* text);
    int SetValue(const char* name, ulong32 number);
    // The same: 1, or 0 and the old value stays. Throws nothing.
    int SetValueNoThrow(const char* name, ulong32 number);
    // Writes data of any type: 1. Throws message 1014.
    int SetValueEx(const char* name, ulong32 type, const unsigned char* data, ulong32 length);
    // Writes the `length` bytes at `data` as a binary value: 1. Throws message 1014; a negative
    // length is code 87.
    int PutMemory(const char* name, void* data, int length);
    // 1, or 0 when there was none or it cannot be deleted.
    int DelValue(const char* name);

    // A list of texts. True; throws message 1015 and leaves `list` alone, false when it is null.
    bool GetStringList(const char* name, std::list<std::string>* list);
    // True; throws message 1014. An empty text ends the list for everybody who reads it.
    bool SetStringList(const char* name, const std::list<std::string>& list);

    // --- Enumeration -----------------------------------------------------------------------------

    // How many sub-keys (values) there are. Throw message 1015.
    int GetSubKeysCount() const;
    int GetValuesCount() const;
    // The index-th name into buffer[0, size), terminated; throws message 1016, code 259 behind the
    // last, 234 when it has no room.
    void GetSubKeyName(int index, char* buffer, int size) const;
    // The same; *size is the room, then the length without the terminator.
    void GetValueName(int index, char* buffer, ulong32* size) const;

    // --- Trees -------------------------------------------------------------------------------------

    // Deletes the sub-key `subKey` with everything below it; of a link to another key only the
    // link. Throws messages 1012, 1016 and 1018; what was deleted until then stays deleted. This
    // key's path with the sub-key's has at most 256 characters, else message 1018 with code 0 and
    // nothing is deleted. A sub-key without a name is code 87.
    void DeleteAll(const char* subKey);
    // The same for a path below the root, in a buffer of `bufferSize` bytes in which the paths of
    // all keys below it are made; without a throw it is then as it was. Throws message 1017 or,
    // below the first level, 1019 when one of them and its terminator have no room.
    void DeleteAll(char* path, int bufferSize);

    // Writes every value of `source` that is missing or different here, and copies every sub-key.
    // What is here alone stays. A failed write throws message 1020. Names and values of any length
    // are copied exactly, whatever the code page; names of sub-keys have to be in it.
    void Copy(const CQelReg& source);
    // Deletes every value that `source` does not have with the same type, and every sub-key that it
    // does not have, on all levels. What cannot be looked up in `source` for another reason is kept
    // and throws.
    void CleanNotExisted(const CQelReg& source);
    // Both: this key becomes a copy of `source`.
    void CopyClean(const CQelReg& source);

protected:
    // What the constructors do with a path below `root` and `mode`. Once for an object: a key that
    // is open already would not be closed.
    void Init(const char* path, AccessMode mode);

    // Throws the system's text for a code, and the code.
    [[noreturn]] static void ThrowRegError(ulong32 code);

private:
    CQELString JoinedPath(const char* subKey) const;
    void OpenForEveryone(REGSAM view);
    void DeleteTree(char* path, std::size_t room, bool is_first);
    void DeleteSubKeys(HKEY key, char* path, std::size_t room, bool is_first);

    HKEY hKey;
    HKEY root;
    char keyPath[256];
};

// The bits of both.
constexpr CQelReg::AccessMode operator|(CQelReg::AccessMode a, CQelReg::AccessMode b) {
    return static_cast<CQelReg::AccessMode>(static_cast<int>(a) | static_cast<int>(b));
}

// Keys below the predefined roots: `keyPath` and `mode` are those of CQelReg(root, keyPath, mode).

// Keys below HKEY_CLASSES_ROOT.
class QELKIT_API CQelRegHCR : public CQelReg {
public:
    // Opens HKEY_CLASSES_ROOT\keyPath.
    CQelRegHCR(const char* keyPath, AccessMode mode);
};

inline CQelRegHCR::CQelRegHCR(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_CLASSES_ROOT, keyPath, mode) {}

// Keys below HKEY_CURRENT_USER.
class QELKIT_API CQelRegHCU : public CQelReg {
public:
    // Opens HKEY_CURRENT_USER\keyPath.
    CQelRegHCU(const char* keyPath, AccessMode mode);
};

inline CQelRegHCU::CQelRegHCU(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_CURRENT_USER, keyPath, mode) {}

// Keys below HKEY_LOCAL_MACHINE.
class QELKIT_API CQelRegHLM : public CQelReg {
public:
    // Opens HKEY_LOCAL_MACHINE\keyPath.
    CQelRegHLM(const char* keyPath, AccessMode mode);
};

inline CQelRegHLM::CQelRegHLM(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_LOCAL_MACHINE, keyPath, mode) {}

// Keys below HKEY_USERS.
class QELKIT_API CQelRegHUS : public CQelReg {
public:
    // Opens HKEY_USERS\keyPath.
    CQelRegHUS(const char* keyPath, AccessMode mode);
};

inline CQelRegHUS::CQelRegHUS(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_USERS, keyPath, mode) {}

// Keys below HKEY_PERFORMANCE_DATA.
class QELKIT_API CQelRegHPD : public CQelReg {
public:
    // Opens HKEY_PERFORMANCE_DATA\keyPath.
    CQelRegHPD(const char* keyPath, AccessMode mode);
};

inline CQelRegHPD::CQelRegHPD(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_PERFORMANCE_DATA, keyPath, mode) {}

// Keys below HKEY_CURRENT_CONFIG.
class QELKIT_API CQelRegHCC : public CQelReg {
public:
    // Opens HKEY_CURRENT_CONFIG\keyPath.
    CQelRegHCC(const char* keyPath, AccessMode mode);
};

inline CQelRegHCC::CQelRegHCC(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_CURRENT_CONFIG, keyPath, mode) {}

// Keys below HKEY_DYN_DATA.
class QELKIT_API CQelRegHDD : public CQelReg {
public:
    // Opens HKEY_DYN_DATA\keyPath.
    CQelRegHDD(const char* keyPath, AccessMode mode);
};

inline CQelRegHDD::CQelRegHDD(const char* keyPath, AccessMode mode)
    : CQelReg(HKEY_DYN_DATA, keyPath, mode) {}
