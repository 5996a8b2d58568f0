#pragma once

#include <cstdint>
#include <cstdio>

#include "base/export.h"
#include "base/types.h"
#include "datetime/qel_datetime.h"
#include "runtime/reference.h"
#include "status/qel_status.h"
#include "text/qel_string.h"

// A buffered binary file over a stream of the C runtime, and a status object at the same time:
//
//     CQELFile file("record.dat", "wb", true);   // true: failures are thrown as XQELFile
//     file.Write(record, size);
//     file.Close();
//
//     CQELFile input("record.dat", "rb", false); // false: failures are only recorded
//     const ulong32 n = input.Read(record, size);
//     if (input.IsError()) Show(GetErrorString("Read", input));
//
// - Every operation of an object clears its status first and records its own outcome there; a
//   failure puts the file name into the additional text (GetErrMessEx). IsOpen, FileName, Seek and
//   the lock functions leave the status alone.
// - An operation on a file that is not open records status 117 with the text
//   "file - file_com, line - N" and returns the failure value that stands with it.
// - Copies share one open stream, position included; the last one to go closes it. A copy has the
//   raise flag and the file name of its source; its status is its own, 0 at first.
// - Lengths and positions are 32-bit. What does not fit is an error, never a wrapped number.
//
// One open file, with all its copies, belongs to one thread at a time.
//
// The order of the virtual functions (those of XQELFile; none is added) and of the fields is part
// of the binary interface: add only at the end.
class QELKIT_API CQELFile : public XQELFile {
public:
    // The open stream that copies of a file share. Closes it when the last one lets go.
    class QELKIT_API CQELFileImp : public CQELReference {
    public:
        // Takes over `stream`; the count is 1, for the creator.
        explicit CQELFileImp(FILE* stream);
        CQELFileImp(const CQELFileImp&) = delete;
        CQELFileImp& operator=(const CQELFileImp&) = delete;
        ~CQELFileImp() override;

        FILE* const stream_;  // open, and nobody else's
    };

    // --- Opening and closing -----------------------------------------------------------------

    // A file object with this raise flag, opened by Open(name, mode, raise). A null `name` makes
    // one that is not open.
    CQELFile(const char* name, const char* mode, bool raise);
    CQELFile(const CQELFile& other);
    // Shares the stream of `other` and takes its raise flag and file name; the recorded status of
    // this object stays as it is.
    CQELFile& operator=(const CQELFile& other);
    ~CQELFile() override;

    // Opens `name` in a `mode` of fopen; null opens an existing file for update and creates a
    // missing one (r+b, else w+b). What was open is released first, and the status becomes a fresh
    // one with this `raise` flag.
    //
    // An existing file that cannot be opened is tried 20 times: 200 ms apart while the mode asks
    // for rights that the file does not give or somebody holds it, at once otherwise (so a held
    // file costs about 4 s). A missing file is tried twice.
    //
    // Failure leaves the file closed and the file name as it was, puts `name` into the additional
    // text and records 501 (held, or rights missing), else 17 (it exists), else the status of the
    // system's error; always with errno.
    // A null `name`, or one on a volume that is not there, records no error, changes nothing but
    // the cleared status, and leaves a file open that was open: ask IsOpen().
    void Open(const char* name, const char* mode, bool raise);

    // Lets go of the stream. Not open: 117.
    void Close() const;

    // Whether there is an open stream.
    bool IsOpen() const;

    // The path of the last successful Open; "" before that. Never null.
    const char* FileName() const;

    // --- Data --------------------------------------------------------------------------------
    // A null buffer of more than 0 bytes records 28 (bad parameter) and transfers nothing.

    // Reads up to `n` bytes into `buf`; returns how many were read. The end of the file is no
    // error: only the stream's error indicator makes a short read one (5, with errno). Not open:
    // 117 and 0.
    ulong32 Read(void* buf, ulong32 n) const;

    // Writes the `n` bytes at `buf`; returns how many were taken. Fewer than `n` record 6, with
    // errno 0. Not open: 117 and 0. Writing 0 bytes does nothing at all: an earlier status stays.
    ulong32 Write(const void* buf, ulong32 n);
    // Writes the four bytes of `value`, lowest first.
    ulong32 Write(int value);

    // Reads a line into `buf`, at most size - 1 characters and a terminator, and drops its line
    // feed with a carriage return directly before it (and nothing else). Returns `buf`; null at
    // the end of the file, or on an error (5, with errno; 28 for a null buffer or a size below 1).
    // Not open: 117 and null.
    char* fgets(char* buf, int size) const;

    // Whether a read has met the end of the file. Not open: 117 and true.
    bool IsEOF() const;

    // Hands buffered data to the system, and on to the disk if the mode has the letter "c".
    // Failure: 120, errno 0. Not open: 117.
    void Flush();

    // --- Position and length -----------------------------------------------------------------

    // fseek(offset, whence), and its result: 0, or another value on failure, which is not recorded.
    // Not open: 117 and -1.
    int Seek(long32 offset, int whence) const;

    // The position from the start. 0xFFFFFFFF when it cannot be had or does not fit (118 with
    // errno) or the file is not open (117).
    ulong32 CurPos() const;

    // The length of the file as the system knows it: data still buffered here is not in it (Flush
    // first). 0xFFFFFFFF when it cannot be had or does not fit (45 with errno) or the file is not
    // open (117).
    ulong32 Length() const;

    // Makes the current position the end of the file. Returns success; failure: 119 with errno.
    // Not open: 117 and false.
    bool Truncate();

    // Not supported: do nothing and return 115.
    int LockRead(bool);
    int LockWrite(bool);
    int UnLock(bool);

    // --- Times -------------------------------------------------------------------------------

    // When the file was last modified, local time, milliseconds 0. A time that has no local form
    // gives the current time. All fields 0 when the system does not tell (123 with errno) or the
    // file is not open (117).
    CQELDateTime LastWriteTime();

    // Sets the times of last access and modification to this local time, in steps of two seconds
    // (1980 to 2107). Buffered data is written first, so that closing leaves the time alone.
    // Returns success; failure, also of a file that is not open: 122, errno 0.
    bool LastWriteTime(const CQELDateTime& time) const;

    // --- Operations on paths -----------------------------------------------------------------
    // Those with a `status` clear it, report into it (the failing path in the additional text, and
    // errno) and throw if its raise flag is set. Those returning bool return whether all went
    // well. A null path is treated as "".

    // Whether the C runtime grants `mode`: 0 exists, 2 may be written, 4 may be read, 6 both.
    static bool Access(const char* path, int mode);

    // Whether `path` exists, or else the root of its drive does: for a path without a drive (a
    // network path is one) the root of the current drive. Null: false.
    static bool CheckVolume(const char* path);

    // Whether there is a file or folder of that name. One that may not be looked at exists. A name
    // that the runtime cannot judge is searched for, outer blanks and one final slash removed.
    static bool IsExists(const char* path);
    static bool IsExists(const CQELString& path);
    // The same, or `path` as a search pattern finds anything.
    static bool IsExistsEx(const char* path);
    static bool IsExistsEx(const CQELString& path);

    // Whether `path` is a folder; false with a final slash, except for a root.
    static bool IsFolder(const char* path);

    // The name and extension of a path: what follows the last slash and the drive.
    static CQELString FileNameFromFullName(const CQELString& path);

    // Remove, CopyFileA and MoveFileA try 20 times, 200 ms apart, while access is denied or the
    // file (the target of a copy or move) exists, and once more when it does not. So a target that
    // is in the way costs about 4 s. Access denied in the end (errno 13): 501.

    // Deletes a file. Returns 0, or 43 whatever the recorded status is (43 or 501).
    static int Remove(const char* path, const XQELFile& status);
    // The same, read-only, hidden and system files included.
    static int RemoveEx(const char* path, const XQELFile& status);

    // Copies a file; one that is there already is replaced, or a failure with `fail_if_exists`.
    // Failure: 64 or 501, naming `from`. `unused` has no effect.
    static bool CopyFileA(const char* from, const char* to, bool fail_if_exists,
                          const XQELFile& status, bool unused = false);
    // Renames a file or folder, across drives too (a file). Failure: 124 or 501, naming `from`.
    static bool MoveFileA(const char* from, const char* to, const XQELFile& status);

    // The system's attribute word; 0xFFFFFFFF with 41, errno 0, on failure.
    static ulong32 Attributes(const char* path, const XQELFile& status);
    // Sets the system's attribute word. Failure: 41, errno 0.
    static bool Attributes(const char* path, ulong32 attributes, const XQELFile& status);

    // The length of a file, also of one that others have open. 0xFFFFFFFF when it cannot be opened
    // (17) or its length cannot be had or does not fit (45).
    static ulong32 Length(const char* path, const XQELFile& status);

    // The 64-bit length of a file; with `on_disk`, of a compressed file the room it takes on disk.
    // Returns 0; else 45 (the file exists) or 4 (it does not), and `length` is 0.
    static int GetFileLength(const char* path, std::uint64_t& length, bool on_disk);

    // When the file was last modified, local time; the current time when there is no such file,
    // which is not reported.
    static CQELDateTime LastWriteTime(const char* path, const XQELFile& status);

    // Sets the times of last access and modification to a local time, taken with the daylight
    // saving that is in force now. A time that cannot be set becomes the current time; if that
    // cannot be set either: 122.
    static bool LastWriteTime(const char* path, const CQELDateTime& time, const XQELFile& status);

    // Makes a new empty file of a unique name in `folder` (null: the system's folder for temporary
    // files) and returns its path. Of `prefix` (null: "qlk") three characters are used.
    // Throws XQELStatus with the status of the system's error, and the folder as additional text
    // when it was the name that could not be made.
    static CQELString CreateTempFile(const char* folder, const char* prefix);

    // Makes a new empty file that the file system compresses. Returns 0, or 121 (it exists), 187
    // (no information about its volume), 47 (the volume does not compress), 63 (it cannot be
    // made), 41 (compression cannot be switched on; the file stays).
    static int CreateCompressedFile(const char* path);

    // Replaces the path in `buf`, which has room for `size` characters with the terminator, by its
    // full path, and every pair of backslashes by one. A full path that has no room in `buf`, or
    // that the system cannot give, leaves the given path there, its double backslashes reduced.
    // Always true.
    static bool NormalizeFileName(char* buf, int size);
    // The same with room for 260 characters; a longer path stays as it is.
    static bool NormalizeFileName(CQELString& name);

    // A copy with "_" for every character below 128 that is neither a letter, a digit, a blank nor
    // one of $%'-_@~`!(){}^#&+,;=[] (the dot is replaced too), cut to 252 characters.
    static CQELString RemoveUnacceptableCharactersFromName(const CQELString& name);

private:
    FILE* Begin(int line, int not_open = 117) const;
    void Fail(int status, int error_number) const;
    void FailNotOpen(int line, int status = 117) const;
    ulong32 Fitting(std::int64_t value, int status) const;
    void Release() const;

    CQELString name_;
    mutable CQELFileImp* handle_ = nullptr;
};

inline CQELFile::CQELFileImp::CQELFileImp(FILE* stream) : stream_(stream) {}
inline bool CQELFile::IsOpen() const { return handle_ != nullptr; }
inline const char* CQELFile::FileName() const { return name_; }

// A file whose Flush reaches the disk: every mode that writes gets the letter "c".
class QELKIT_API CQELDirectFile : public CQELFile {
public:
    // Open(name, mode, raise); not open when `name` is null.
    CQELDirectFile(const char* name, const char* mode, bool raise);
    CQELDirectFile(const CQELDirectFile&);
    CQELDirectFile& operator=(const CQELDirectFile&);
    ~CQELDirectFile() override;

    // CQELFile::Open(name, mode, raise) with "c" added to a mode that writes (one with "a", "w" or
    // "+"), unless the part before the first comma has "c" or "n" (no commit). Null: "r+bc" for an
    // existing file, else "w+bc".
    void Open(const char* name, const char* mode, bool raise);
};

inline CQELDirectFile::CQELDirectFile(const CQELDirectFile&) = default;
inline CQELDirectFile& CQELDirectFile::operator=(const CQELDirectFile&) = default;
