#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/export.h"
#include "base/types.h"
#include "file_com/file_name.h"
#include "file_com/name_mask.h"

// Finding files by masks, lists of what was found, and folders as values:
//
//     QEL::FileFinder finder;
//     finder.StartFind("C:\\data", QEL::FILENAME_MASK("*.txt", true, 0));
//     QEL::FilesList list;
//     while (finder.NextFile()) list.Add(finder.GetFileInfo());
//     list.DeleteFiles();
//
// Junctions and folder links are entries: never entered, and deleted themselves, not their targets.
// One object belongs to one thread at a time. What allocates throws std::bad_alloc.

namespace QEL {

// An entry that was found.
struct FF_FILE_INFO {
    FILENAME name;                 // the full path, below the folder that was searched
    ulong32 attributes = 0;        // the system's attribute word
    std::uint64_t size = 0;        // in bytes; 0 for a folder
    std::uint64_t write_time = 0;  // of the last change: UTC, in 100 ns since 1601
};

// A search of a folder, one entry after another.
//
// An entry is found when one of the masks matches it and takes its attributes.
// - Matching: the name for an entry directly in the folder; below it, the path from that folder on,
//   or for a mask that applies in subfolders the name alone as well. "." and ".." are never found.
// - Attributes: a filter of 0 takes everything but folders; any other takes what shares a bit with
//   it, the system's attribute bits or 0x4000, which everything but folders has.
// Folders below are searched if a mask applies in subfolders or has a "\". The entries of a folder
// come together, before those of the folders in it.
class QELKIT_API FileFinder {
public:
    // No search: Next() is false.
    FileFinder();
    FileFinder(const FileFinder&) = delete;
    FileFinder& operator=(const FileFinder&) = delete;
    ~FileFinder();

    // Begins a search by a mask, or by several `masks` at once, before its first entry; one that
    // was going on ends. Returns whether `folder` (null: the working folder) is one; if not,
    // nothing will be found.
    bool StartFind(const char* folder, const FILENAME_MASK& mask);
    bool StartFind(const char* folder, const std::vector<FILENAME_MASK>& masks);

    // Moves on to the next entry; false at the end, and from then on.
    bool Next();
    // Moves on to the next entry that is no folder.
    bool NextFile();
    // Leaves out what is left of the current folder; the folders in it are searched all the same.
    void SkipFiles();

    // Of the entry that Next or NextFile moved to; empty before the first and behind the last one.
    const FILENAME& GetCurDir() const;        // the folder that it is in
    const FILENAME& GetFilename() const;      // its name
    const FILENAME& GetFullFilename() const;  // its full path
    const FF_FILE_INFO& GetFileInfo() const;  // all that is known of it

private:
    struct Search;

    std::unique_ptr<Search> search_;
    FILENAME cur_dir_;
    FILENAME filename_;
    FF_FILE_INFO info_;
};

inline const FILENAME& FileFinder::GetCurDir() const { return cur_dir_; }
inline const FILENAME& FileFinder::GetFilename() const { return filename_; }
inline const FILENAME& FileFinder::GetFullFilename() const { return info_.name; }
inline const FF_FILE_INFO& FileFinder::GetFileInfo() const { return info_; }

// What was found, in order. Indexes run from 0 to size() - 1 and are not checked.
class QELKIT_API FilesList {
public:
    // Appends a copy of `file`; whether it exists is not looked at.
    void Add(const FF_FILE_INFO& file);
    // All of `other`, behind the present ones.
    void Append(const FilesList& other);
    // Everything that a search still finds, folders included if its masks take them.
    void Append(FileFinder& finder);

    // Deletes the listed files, read-only ones too, empty folders and links; from the last to the
    // first, so that what lies in a listed folder goes before it. What is gone leaves the list.
    // Returns how many could not be deleted.
    int DeleteFiles();

    // The sum of the sizes.
    std::uint64_t TotalSize() const;

    // The entries, as a container of the standard library has them. References and iterators hold
    // until the list changes.
    std::size_t size() const;
    bool isEmpty() const;
    void Clear();
    const FF_FILE_INFO& operator[](std::size_t index) const;
    std::vector<FF_FILE_INFO>::const_iterator begin() const;
    std::vector<FF_FILE_INFO>::const_iterator end() const;

private:
    std::vector<FF_FILE_INFO> files_;
};

inline void FilesList::Add(const FF_FILE_INFO& file) { files_.push_back(file); }
inline std::size_t FilesList::size() const { return files_.size(); }
inline bool FilesList::isEmpty() const { return files_.empty(); }
inline void FilesList::Clear() { files_.clear(); }
inline const FF_FILE_INFO& FilesList::operator[](std::size_t index) const { return files_[index]; }
inline std::vector<FF_FILE_INFO>::const_iterator FilesList::begin() const { return files_.begin(); }
inline std::vector<FF_FILE_INFO>::const_iterator FilesList::end() const { return files_.end(); }

// The path of a folder.
class QELKIT_API FOLDER : public FILENAME {
public:
    // The path as FILENAME has it: empty, the trimmed text (null is ""), or a copy.
    FOLDER();
    FOLDER(const char* path);
    FOLDER(const FILENAME& path);
    FOLDER(const FOLDER& other);
    FOLDER& operator=(const FOLDER& other);
    ~FOLDER() override;

    // Makes the folder and what is missing above it. Returns whether it is there.
    bool Create() const;
    // Removes it with everything in it, read-only files and names that begin with a dot included; a
    // link itself. Returns whether nothing of that name is left. "" and the root of a drive are
    // refused.
    bool Delete() const;
};

// A new folder for temporary files that goes, with everything in it, when the object does.
class QELKIT_API TEMPFOLDER : public FOLDER {
public:
    // In `folder` (null: the system's folder for temporary files), its name beginning with three
    // characters of `prefix` (null: "qlk"). Throws XQELStatus 61 when it cannot be made.
    explicit TEMPFOLDER(const char* folder = nullptr, const char* prefix = nullptr);
    TEMPFOLDER(const TEMPFOLDER&) = delete;
    TEMPFOLDER& operator=(const TEMPFOLDER&) = delete;
    ~TEMPFOLDER() override;
};

}  // namespace QEL
