#pragma once

// Scratch folders and the states of files that tests need. Windows only.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/handles.h"
#include "platform/windows.h"

// A new empty folder that goes away with everything in it. Paths have no final backslash.
class TempFolder {
public:
    TempFolder() {
        char base[MAX_PATH];
        GetTempPathA(sizeof base, base);
        static int count = 0;
        do {
            path_ = std::string(base) + "qelkit-" + std::to_string(GetCurrentProcessId()) + "-" +
                    std::to_string(++count);
        } while (!CreateDirectoryA(path_.c_str(), nullptr));
    }
    ~TempFolder() { Remove(path_); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "\\" + name; }

    // Makes a file of these bytes and returns its path.
    std::string Write(const std::string& name, const std::string& bytes) const {
        const std::string file = *this / name;
        FILE* stream = std::fopen(file.c_str(), "wb");
        EXPECT_NE(nullptr, stream) << file;
        if (stream) {
            EXPECT_EQ(bytes.size(), std::fwrite(bytes.data(), 1, bytes.size(), stream));
            std::fclose(stream);
        }
        return file;
    }
    // The bytes of a file of this folder; fails the test when it is not there.
    std::string Read(const std::string& name) const {
        std::string bytes;
        FILE* stream = std::fopen((*this / name).c_str(), "rb");
        EXPECT_NE(nullptr, stream) << name;
        if (!stream) return bytes;
        char block[4096];
        for (std::size_t n; (n = std::fread(block, 1, sizeof block, stream)) > 0;) {
            bytes.append(block, n);
        }
        std::fclose(stream);
        return bytes;
    }
    bool Has(const std::string& name) const {
        return GetFileAttributesA((*this / name).c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    std::string MakeFolder(const std::string& name) const {
        const std::string folder = *this / name;
        EXPECT_TRUE(CreateDirectoryA(folder.c_str(), nullptr)) << folder;
        return folder;
    }

private:
    // With the system's own calls: the library's enumeration is private to the DLL.
    static void Remove(const std::string& folder) {
        WIN32_FIND_DATAA entry;
        kit::FindHandle find(FindFirstFileA((folder + "\\*").c_str(), &entry));
        for (bool found = static_cast<bool>(find); found;
             found = FindNextFileA(find.get(), &entry) != FALSE) {
            const std::string name = entry.cFileName;
            if (name != "." && name != "..") RemoveEntry(folder + "\\" + name, entry);
        }
        find.Reset();
        RemoveDirectoryA(folder.c_str());
    }
    // A link to a folder goes; what it leads to stays.
    static void RemoveEntry(const std::string& path, const WIN32_FIND_DATAA& entry) {
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            DeleteFileA(path.c_str());
        } else if (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) {
            RemoveDirectoryA(path.c_str());
        } else {
            Remove(path);
        }
    }

    std::string path_;
};

// Gives an existing file another length; what is new of it takes no room on the disk.
inline void SetLength(const std::string& path, std::int64_t length) {
    const kit::FileHandle file(
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER distance;
    distance.QuadPart = length;
    EXPECT_TRUE(SetFilePointerEx(file.get(), distance, nullptr, FILE_BEGIN)) << path;
    EXPECT_TRUE(SetEndOfFile(file.get())) << path;
}

// A file that another program holds open without sharing, for as long as this lives.
class HeldFile {
public:
    explicit HeldFile(const std::string& path)
        : handle_(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_TRUE(static_cast<bool>(handle_)) << path;
    }
    void Release() { handle_.Reset(); }

private:
    kit::FileHandle handle_;
};

// A file with its read-only attribute set, for as long as this lives.
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(std::string path) : path_(std::move(path)) {
        EXPECT_TRUE(SetFileAttributesA(path_.c_str(), FILE_ATTRIBUTE_READONLY));
    }
    ~ReadOnlyFile() { SetFileAttributesA(path_.c_str(), FILE_ATTRIBUTE_NORMAL); }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;

private:
    std::string path_;
};
