#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "base/export.h"
#include "base/types.h"
#include "file_com/record_info.h"
#include "text/qel_string.h"

namespace kit {
struct FieldPlace;
}

// An array of records of one length in a binary file, behind a header that describes it (layout:
// docs/formats.md).
//
//     CRecFile log("events.rec", sizeof(Event), 1, nullptr);   // 1: update
//     log.Add(&event);
//     log.PutHeader();                                         // from here on the event is safe
//     for (long i = 0; i < log.Size(); ++i) log.Get(i, &event);
//
// Failures. Nothing is thrown. An operation returns whether the file is still ready; GetRetCode()
// tells the status. After any failure, an index out of bounds included, the file is not ready, and
// operations on records do nothing until Open. Statuses: 4 no such file, 5 read, 6 write, 16
// memory, 17 it cannot be opened, is not open, or the mode is none, 21 seek, 28 a null buffer, a
// negative length or an unusable description, 37 index out of bounds, 43 and 44 it cannot be
// removed or renamed, 74 the header is damaged.
//
// Crashes. Every write is handed to the system before the operation returns, so that the end of the
// program loses nothing of it. The record count, though, is in the header, and the header is
// written by PutHeader and Destroy only (and so is the place in the ring):
// - A record counts as stored once an Add *and a PutHeader behind it* have succeeded. Records added
//   later lie behind the count that the file states: whoever opens it next does not see them, and
//   its next Add goes over them.
// - Close, Open and Move do not write the header, and Destroy writes none after a failure. Call
//   PutHeader first; the destructor does it for a file that is open and ready.
// - The system may keep data in memory for a while. Against a failing machine only the application
//   can help, by having the file flushed to the disk (FlushFileBuffers on the handle of GetFptr()).
//
// Foreign files. A header is believed only as far as the file bears it out. Lengths, counts and
// fields that cannot be give 74, and the file stays as it was. An update (mode 1) lowers a count
// that claims more records than there are, and writes a fresh, empty header over one that cannot
// be read: a length below zero or beyond the end of the file, more fields than the caller
// describes, or no bytes behind the header for the records that it counts.
//
// Several objects on one file do not know of each other. An object belongs to one thread at a time.
//
// The order of the virtual functions and of the fields is part of the binary interface: add only at
// the end.
class QELKIT_API CRecFile {
public:
    // Opens `name` by Init.
    //   record_length  of the caller's records, 0 or more: every record buffer has this room
    //   mode           0 makes a new file in place of any old one, 1 updates, 2 only reads
    //   info           the fields of a record, or null; kept, not copied: it and its array live as
    //                  long as the file may be opened again
    // A file may hold records of another length than the caller's. Then the common part is
    // transferred, and the rest of the longer one is zeros.
    CRecFile(const char* name, long32 record_length, unsigned char mode, CRecordInfo* info);
    CRecFile(const CRecFile&) = delete;
    CRecFile& operator=(const CRecFile&) = delete;
    // Destroy().
    virtual ~CRecFile();

    // Reads record i into `buf`. 37 when there is none: by the count, or because the file ends
    // before it; 5 when the file ends inside it. `buf` is then untouched, or partly filled.
    virtual bool Get(long32 i, void* buf);
    // Writes `buf` as record i, one of those that there are. A longer record of the file ends in
    // zeros.
    virtual bool Put(long32 i, void* buf);
    // Appends `buf` as a record, or, once there are as many as MaxRecords(), writes it over the one
    // at the ring position, which goes on by one. After a failure the count is what it was.
    virtual bool Add(void* buf);
    // Writes the header as it is in memory. Does nothing when the file is not ready or not open.
    virtual bool PutHeader();

    // Closes, takes another name unless `name` is null or empty, and opens by Init: mode 0 makes
    // the file anew.
    bool Open(const char* name);
    // Closes the stream. The header is not written; the object keeps its count, name and readiness.
    void Close();
    // Writes the header if the file is open, closes it, and cuts off what lies behind the last
    // record: all of it for a ready file that is not read-only, once for each opening. A file with
    // bit 0 of the flags set keeps its length, and so does one that cannot be opened for it. The
    // object is then empty, until Open.
    void Destroy();

    // Reads field j of record i into `buf`, or writes it from there: as many bytes as its
    // descriptor in the file says. The descriptors of a file opened with a description have the
    // sizes that stand there. 37 also when the file has no such field, or it does not lie inside
    // the record.
    bool GetField(long32 i, long32 j, void* buf);
    bool PutField(long32 i, long32 j, void* buf);

    // Reads n bytes from where the stream stands into `buf`. Fewer: 5.
    bool GetEx(void* buf, long32 n);
    // Writes the length n where the stream stands, as four bytes; 0 is an index out of bounds (37).
    // The data itself is not written: that is left to the caller, on the stream of GetFptr().
    bool PutEx(void* data, long32 n);
    // PutEx(data, n), and one record more.
    bool AddEx(void* data, long32 n);
    // Reads what PutEx wrote, from where the stream stands. 0 on failure, which is not recorded.
    long32 GetSizeRec() const;

    // The number of records.
    long32 Size() const;
    // The ring position: the record that Add overwrites next.
    long32 Current() const;
    // Sets how many records there may be, m, and gives up those beyond (Destroy cuts them off):
    // with 0, which stands for no limit, all of them. Reaches the disk with the next PutHeader.
    // Below zero: 28.
    bool MaxRecords(long32 m);
    // How many records there may be; 0 is no limit. 0 also when the file is not ready.
    long32 MaxRecords() const;

    // Closes the file and gives it a new name; waits for a busy one as CQELFile::MoveFileA does.
    // Whatever is then left under the old name is removed. The object keeps the old name and stays
    // closed. Returns success, ready or not; failure: 44.
    bool Move(const char* new_name);
    // Closes the file and deletes it, read-only or not. Returns success; no such file is one.
    // Failure: 43.
    bool Remove();

    // Another description of the fields, for the next Init.
    void ResetFieldInfo(CRecordInfo* info);

    // The stream, null when closed. Stays the object's.
    FILE* GetFptr() const;
    // The status of the last failure, or 0.
    int GetRetCode() const;
    // The mode that the constructor was given.
    unsigned char ModeOpen() const;
    // The file's name. Never null; valid until the next Open.
    const char* Name() const;

protected:
    // Opens or makes the file. Returns whether it is ready.
    virtual bool Init();

private:
    friend struct CRecFileLayout;

    int OpenFile();
    int CreateNew();
    int OpenExisting();
    int UpdateCount(std::int64_t file_length);
    int StartAfresh();
    int TakeFreshHeader();
    int StoreHeader();
    int OpenStream(const char* mode);
    void ForgetHeader();
    void TrimFile() const;
    bool AddToRing(void* buf);
    void CountOneMore();
    bool Start(const void* buf, long32 n);
    bool StartField(long32 i, long32 j, const void* buf, kit::FieldPlace& place);
    bool Settle(int status);
    bool IsReadOnly() const;
    bool IsRecord(long32 i) const;
    std::size_t RoomOfRecord() const;
    std::size_t CommonLength() const;
    int ReadAt(std::int64_t offset, void* to, std::size_t size) const;
    int WriteAt(std::int64_t offset, const void* from, std::size_t size, std::size_t zeros);
    int Write(const void* from, std::size_t size, std::size_t zeros);

    bool ready_ = false;
    int status_ = 0;
    unsigned char* header_;  // builtin_, or the block of a longer one
    alignas(4) unsigned char builtin_[36] = {};
    unsigned char mode_;
    CQELString name_;
    long32 record_length_;
#ifdef _MSC_VER
#pragma warning(suppress : 4251)  // no caller touches it
#endif
    std::unique_ptr<unsigned char[]> block_;
    bool destroyed_ = false;
    FILE* stream_ = nullptr;
    bool appending_ = false;
    std::int32_t count_at_open_ = 0;
    CRecordInfo* info_;
};

inline FILE* CRecFile::GetFptr() const { return stream_; }
inline int CRecFile::GetRetCode() const { return status_; }
inline unsigned char CRecFile::ModeOpen() const { return mode_; }
inline const char* CRecFile::Name() const { return name_; }
