#pragma once

#include "base/export.h"
#include "blob/int64.h"
#include "status/qel_status.h"
#include "text/qel_string.h"

// A folder's path, a status object, and the library's folder operations:
//
//     CQELFolder folder("C:\\data\\new\\place", false);
//     if (!folder.Create() && !CQELFile::IsFolder(folder)) Show(GetErrorString("Create", folder));
//
// - Operations with a `status` clear it, report into it (the path in the additional text, and
//   errno) and throw if its raise flag is set; those of an object report into the object. The
//   others return codes and throw nothing but what the allocator throws.
// - A null path is treated as "".
// - A junction or folder link that a walk meets is an entry: it is never entered, its target never
//   touched, and where folders are removed the link itself is. A link that is given as the path
//   itself stands for its target.
//
// ClearFolder and RecursiveDirProcess share process-wide counters: neither may run concurrently
// with itself. What changes the working folder does so for the whole process.
//
// The order of the virtual functions (those of XQELFile; none is added) and of the fields is part
// of the binary interface: add only at the end.
class QELKIT_API CQELFolder : public XQELFile {
public:
    // With an empty path. `raise`: whether failures are thrown as XQELFile.
    explicit CQELFolder(bool raise);
    // With that path; the folder need not exist.
    CQELFolder(const char* path, bool raise);
    CQELFolder(const CQELString& path, bool raise);
    // A text alone would pass for a raise flag.
    CQELFolder(const char* path) = delete;
    // Copies have the raise flag and the path of their source; their status is their own.
    CQELFolder(const CQELFolder& other);
    CQELFolder& operator=(const CQELFolder& other);
    ~CQELFolder() override;

    // The path, never null.
    operator const char*() const;
    // A copy of the path.
    operator CQELString() const;

    // --- One folder --------------------------------------------------------------------------

    // Makes every missing folder along the path; leading blanks are skipped. The root is taken to
    // exist: of "\\server\...", "\\?\UNC\server\..." and "\\?\C:\..." the prefix and the next
    // component, otherwise everything up to the first separator (so "a\b" makes no "a").
    // Returns whether at least one folder was made and none failed: an existing folder gives
    // false, with 61. A folder that cannot be made ends the work: 61 with errno.
    bool Create();
    static bool Create(const char* path, const XQELFile& status);

    // Removes an empty folder, or a link to a folder. Failure: false, 62 with errno.
    bool Remove();
    static bool Remove(const char* path, const XQELFile& status);

    // Makes it the process's working folder, on its drive. Failure: false, 60 with errno.
    bool Chdir();
    static bool Chdir(const char* path, const XQELFile& status);

    // Makes the folder and what is missing above it. Returns 0, also for an existing folder, or 61.
    static int MakeFolder(const char* path);
    // Removes an empty folder. Returns 0, also when there is nothing of that name, or 62.
    static int RemoveFolder(const char* path);

    // Makes a new folder of a unique name in `folder` (null: the system's folder for temporary
    // files) and returns its path. The name begins with the first three characters of `prefix`
    // (null: "qlk"). Throws XQELStatus with 61, and the folder as additional text.
    static CQELString CreateTempDir(const char* folder, const char* prefix);

    // Cuts a path down to its folder part, without a final separator unless it is a root:
    // "C:\d\f" becomes "C:\d", "C:\f" becomes "C:\", "f" becomes empty.
    static void GetFolderNameFromFile(CQELString& path);

    // Makes a drive and folder current. Returns 0; -1 when either cannot be, or for a path of 260
    // characters and more, which changes nothing. "" changes nothing. "C:" is the root of C.
    static int DosSetCat(const char* path);

    // --- Room on disk ------------------------------------------------------------------------

    // The bytes that are available to the caller, or that there are, on the volume that holds an
    // existing file or folder. Failure: false, 126 with errno, `bytes` unchanged.
    static bool GetDiskFree(const char* path, CQELInt64& bytes, const XQELFile& status);
    static bool GetDiskTotal(const char* path, CQELInt64& bytes, const XQELFile& status);

    // --- Contents ----------------------------------------------------------------------------

    // Removes a file, an empty folder or a link, read-only ones too. Returns 0, also when there is
    // nothing of that name; else another value (-1 without a full path, 41 when a read-only
    // attribute cannot be cleared, 43 or 62), and then its attributes are what they were.
    static int UnLink(const char* path);

    // Deletes the files of a folder and of the folders below it, with `remove_subfolders` (not 0)
    // these as well; the folder itself stays. Entries whose name begins with a dot are left alone,
    // and so is the process's working folder, with everything in it, wherever the walk meets it.
    // Returns 0 (a missing folder included), or 62 when the last file directly in the folder could
    // not be deleted: what failed before it or deeper is not told.
    static int ClearFolder(const char* path, char remove_subfolders);

    // What RecursiveDirProcess does.
    enum DirProcessFlags : unsigned char {
        DIR_RESET_ATTRIBUTES = 0x01,  // everything to archive only
        DIR_DELETE_FILES = 0x02,      // files only
        DIR_DELETE_ALL = 0x04,        // files, and each subfolder after its contents
        DIR_SUM_LENGTHS = 0x08,       // adds up the lengths of the files
    };
    // Walks a tree as ClearFolder does. `total` receives the sum of the file lengths, 0 unless it
    // was asked for; it is unchanged when nothing is walked: no flags, no such path, the working
    // folder. Returns false for a missing path, else true, whatever became of single entries.
    static bool RecursiveDirProcess(const CQELString& path, unsigned char flags, CQELInt64& total);

    // Copies the files of the folder `from`, overwriting, into another, `to`, which is made when it
    // is missing; with `recursive` the folders below as well. Links to folders are left out.
    // Returns 0; what MakeFolder returned (nothing more is done then); 28 when a recursive copy
    // would go into the folder itself; or the status of the first failed copy (64, 501), after
    // which the work goes on.
    static int CopyFolder(const char* from, const char* to, bool recursive);

    // Copies the files (no folders) that match a pattern of the system, `mask` (null: "*.*"), into
    // another folder, which is made when it is missing.
    //   count       null, or receives how many were copied
    //   error_text  null, or room for 255 characters; receives the path of the first failure
    //   overwrite   0 leaves files alone that are there already, which is no failure
    // Returns 0 or the status of the first failure, after which the work goes on.
    static int CopyFilesFromDirToDir(const char* from, const char* to, const char* mask, int* count,
                                     char* error_text, int overwrite);
    // Deletes the files (no folders) of `folder` that match `mask`, read-only ones too.
    // `error_text` and result as above.
    static int DelFilesFromDir(const char* folder, const char* mask, char* error_text);

    // --- Names -------------------------------------------------------------------------------
    // The path of something that does not exist yet below the held path: two random characters,
    // "\" and six more; or eight and ".$$$". Stored in `out`, whose text is returned. Nothing is
    // made. They draw from rand(): the first seeds it with the time, in seconds; the second does
    // so in one case of 32768.
    const char* UniqueDirectoryName(CQELString& out);
    const char* UniqueFileName(CQELString& out);

private:
    CQELString path_;
};

inline CQELFolder::operator const char*() const { return path_; }
inline CQELFolder::operator CQELString() const { return path_; }
