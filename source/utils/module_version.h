#pragma once

#include <memory>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "text/qel_string.h"

// What the version resource of a module file (a DLL, a program, a driver) says. Nothing here
// throws; a file without a readable version resource, without a translation table or without a
// fixed record answers false to everything. Damaged resources are such files. One object belongs to
// one thread at a time.

namespace QELUtils {

// Reads a module's version resource on the first question and answers from memory from then on.
//
//     QELUtils::CLibraryInfo info;
//     info.SetDllName("C:\\Windows\\System32\\kernel32.dll");
//     CQELString company;
//     if (info.GetCompanyName(company)) Show(company);
//
// The order of the fields is part of the binary interface: add only at the end.
class QELKIT_API CLibraryInfo {
public:
    // All texts of a module, in the system's ANSI code page. What the resource does not name is
    // empty.
    struct DLLINFO {
        CQELString module_name;    // as it was given to SetDllName
        CQELString company_name;   // "CompanyName"
        CQELString copyright;      // "LegalCopyright"
        CQELString description;    // "FileDescription"
        CQELString file_version;   // the text, which need not agree with the fixed file version
        CQELString major_version;  // the first number of the fixed file version
        CQELString minor_version;  // the second number of it
        CQELString internal_name;  // "InternalName"
        CQELString original_file_name;  // "OriginalFilename"
        CQELString product_name;        // "ProductName"
        CQELString product_version;     // "ProductVersion"
        CQELString fixed_file_version;  // "1.2.3.4"
        CQELString os;                  // "Win32 API on Windows NT"; empty when it has no name
        CQELString type;                // "Dynamic link library"; empty when it has no name
        CQELString language;            // the system's name for the language id
        CQELString character_set;       // "Cyrillic"; the number of a code page without a name
        CQELString file_date;           // the two halves of the fixed record, "%08X %08X"
        CQELString comments;            // "Comments"
    };

    // No name, nothing loaded.
    CLibraryInfo();
    virtual ~CLibraryInfo();
    CLibraryInfo(const CLibraryInfo&) = delete;
    CLibraryInfo& operator=(const CLibraryInfo&) = delete;

    // The module to ask about, by a path as LoadLibrary takes it. Setting the same name again keeps
    // what is loaded; any other makes the next question read the file. Null is "".
    void SetDllName(const char* path);
    // That path; never null, valid until the next SetDllName.
    const char* GetDllName() const;

    // The whole record, or the fixed record as the resource holds it; false leaves it untouched.
    bool GetDllInfo(DLLINFO& info);
    bool GetDllInfo(VS_FIXEDFILEINFO& record);
    // Only makes sure that the information is loaded; the argument is not used.
    bool GetDllInfo(unsigned char*);

    // Single texts. On false `out` is empty.
    bool GetCompanyName(CQELString& out);
    bool GetCopyRight(CQELString& out);
    bool GetDescription(CQELString& out);
    bool GetFileVersion(CQELString& out);
    bool GetMajorVersion(CQELString& out);
    bool GetMinorVer(CQELString& out);
    bool GetInternalName(CQELString& out);
    bool GetOrigFileName(CQELString& out);
    bool GetProductName(CQELString& out);
    bool GetProductVersion(CQELString& out);
    bool GetLanguage(CQELString& out);
    bool GetCharacterSet(CQELString& out);

    // The first entry of the translation table: language id and code page. False leaves the
    // argument untouched.
    bool GetLanguageId(unsigned short& language);
    bool GetCharacterset(unsigned short& code_page);

    // The text "Comments" alone, read from the file at each call; the loaded information stays.
    // Needs no fixed record. `error` becomes 0, or the system's code on false: that of the file, or
    // 1813 when there is no translation table. On false `out` is empty.
    bool CommentsOnly(CQELString& out, ulong32& error);

protected:
    // Read the resource into the object. GetDynamicInfo and GetFixedFileInfo are its two steps.
    bool GetInfo();
    bool GetDynamicInfo();
    bool GetFixedFileInfo();

private:
    bool IsLoaded();
    bool GetField(CQELString DLLINFO::*field, CQELString& out);

    std::unique_ptr<unsigned char[]> block_;
    VS_FIXEDFILEINFO fixed_;
    DLLINFO info_;
    unsigned short language_;
    unsigned short code_page_;
    bool loaded_;
};

inline bool CLibraryInfo::IsLoaded() { return loaded_ || GetInfo(); }
inline const char* CLibraryInfo::GetDllName() const { return info_.module_name; }

// The same, answering the fixed record by name.
class QELKIT_API CVersionDll : public CLibraryInfo {
public:
    // Both are GetDllInfo(record).
    bool GetFixedFileInfo(VS_FIXEDFILEINFO& record);
    bool GetVersion(VS_FIXEDFILEINFO& record);
};

// The high 32 bits of the file version of the module at `path`, 0x00010002 for 1.2.3.4; 0 when it
// has no readable version resource.
QELKIT_API ulong32 GetVersionInfo(const char* path);

// The text "Comments" of the module at `path`, empty when it has none. On false, when the module
// has no readable version resource, `out` is empty.
QELKIT_API bool GetCommentsString(const char* path, CQELString& out);
// The same by CLibraryInfo::CommentsOnly(out, error): without asking for a fixed record, and with
// the reason.
QELKIT_API bool GetCommentsStringOnly(const char* path, CQELString& out, ulong32& error);

}  // namespace QELUtils
