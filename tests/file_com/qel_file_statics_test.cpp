// What the file class does with paths.

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "file_com/qel_file.h"
#include "pauses.h"
#include "platform/windows.h"
#include "support/guarded_buffer.h"
#include "support/temp_folder.h"
#include "support/working_folder.h"

namespace {

constexpr bool kRecord = false;

class FileStatics : public testing::Test {
protected:
    std::string Path(const char* name) const { return folder_ / name; }
    TempFolder folder_;
    const XQELFile status_{kRecord};
};

// What a failed call has to leave in the status.
void ExpectFailure(const XQELFile& status, int code, int error_number, const std::string& path) {
    EXPECT_EQ(code, status.Status());
    EXPECT_EQ(error_number, status.Errno());
    EXPECT_EQ(path, static_cast<const char*>(status.GetErrMessEx()));
}

// --- Questions ------------------------------------------------------------------------------------

TEST_F(FileStatics, AnswerQuestionsAboutPaths) {
    const ReadOnlyFile sealed(folder_.Write("there.txt", "x"));
    const auto allows = [](int mode) {
        return [mode](const char* path) { return CQELFile::Access(path, mode); };
    };
    const auto volume = [](const char* path) { return CQELFile::CheckVolume(path); };
    const auto extended = [](const char* path) { return CQELFile::IsExistsEx(path); };
    const auto is_folder = [](const char* path) { return CQELFile::IsFolder(path); };
    const std::tuple<std::function<bool(const char*)>, std::string, bool> cases[] = {
        {allows(0), "there.txt", true},
        {allows(4), "there.txt", true},
        {allows(2), "there.txt", false},  // read-only
        {allows(6), "there.txt", false},
        {allows(0), "missing", false},
        {volume, "C:\\no\\such\\file", true},
        {volume, "Q:\\file", false},
        {volume, "no\\such\\file", true},
        {volume, "\\\\no\\such", true},  // judged by the current drive
        {volume, "", true},
        {extended, "*.txt", true},
        {extended, "th?re.txt", true},
        {extended, "*.doc", false},
        {is_folder, "C:\\", true},
        {is_folder, "C:\\windows", true},
        {is_folder, "C:\\windows\\", false},
        {is_folder, "there.txt", false},
        {is_folder, "", false},
    };
    const WorkingFolder here(folder_.path());
    for (const auto& [ask, path, answer] : cases) {
        EXPECT_EQ(answer, ask(path.c_str())) << path;
        EXPECT_FALSE(ask(nullptr));
    }
}

int access_errno;
int RefuseAccess(const char*, int) {
    errno = access_errno;
    return -1;
}

TEST_F(FileStatics, ExistenceIsJudgedByTheErrorOfTheAccessCheck) {
    folder_.Write("there.txt", "x");
    EXPECT_TRUE(CQELFile::IsExists(Path("there.txt").c_str()));
    EXPECT_TRUE(CQELFile::IsExists(folder_.path().c_str()));
    EXPECT_FALSE(CQELFile::IsExists(Path("missing").c_str()));
    EXPECT_FALSE(CQELFile::IsExists(static_cast<const char*>(nullptr)));
    const ImportPatch refused(kLibrary, "_access", &RefuseAccess);
    const std::tuple<int, std::string, bool> cases[] = {
        {EACCES, Path("missing"), true},
        {ENOENT, Path("there.txt"), false},
        {EINVAL, "  " + Path("there.txt\\") + " ", true},
        {EINVAL, Path("there.txt/"), true},
        {EINVAL, Path("there.txt\\\\"), false},  // one slash only
        {EINVAL, Path("missing"), false},
        {EINVAL, Path("there.*"), true},
        {EINVAL, "   ", false},
    };
    for (const auto& [error_number, path, exists] : cases) {
        access_errno = error_number;
        EXPECT_EQ(exists, CQELFile::IsExists(path.c_str())) << error_number << " " << path;
        EXPECT_EQ(exists, CQELFile::IsExists(CQELString(path.c_str()))) << path;
    }
}

// --- Removing, copying, moving --------------------------------------------------------------------

bool Remove(const char* path, const char*, const XQELFile& status) {
    const int result = CQELFile::Remove(path, status);
    EXPECT_EQ(status.IsError() ? 43 : 0, result) << "43 also for 501";
    return result == 0;
}
bool Copy(const char* from, const char* to, const XQELFile& status) {
    return CQELFile::CopyFileA(from, to, false, status);
}
bool CopyAsNew(const char* from, const char* to, const XQELFile& status) {
    return CQELFile::CopyFileA(from, to, true, status);
}

TEST_F(FileStatics, RemoveCopyAndMoveWaitForTheTargetAndNameTheSource) {
    for (const char* name : {"from", "old", "to", "there"}) folder_.Write(name, name);
    const HeldFile held(folder_.Write("held", "old"));
    const ReadOnlyFile sealed(folder_.Write("sealed", "x"));
    const struct {
        bool (*call)(const char* from, const char* to, const XQELFile& status);
        const char* from;
        const char* to;
        int pauses, code, error_number;
    } cases[] = {
        {&Remove, "old", "", 0, 0, 0},
        {&Remove, "missing", "", 0, 43, ENOENT},
        {&Remove, "sealed", "", 19, 501, EACCES},
        {&Remove, "held", "", 19, 501, EACCES},
        {&Copy, "from", "to", 0, 0, 0},
        {&Copy, "from", "held", 19, 501, EACCES},
        {&CopyAsNew, "from", "there", 19, 64, EEXIST},
        {&Copy, "none", "new", 0, 64, ENOENT},
        {&Copy, "none", "there", 19, 64, ENOENT},
        {&CQELFile::MoveFileA, "from", "there", 19, 124, EEXIST},
        {&CQELFile::MoveFileA, "none", "new", 0, 124, ENOENT},
        {&CQELFile::MoveFileA, "held", "new", 19, 501, EACCES},
        {&CQELFile::MoveFileA, "from", "moved", 0, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const Pauses pauses;
        errno = EACCES;  // of some earlier call: must decide nothing
        status_.SetErrMessEx("");
        EXPECT_EQ(c.code == 0, c.call(Path(c.from).c_str(), Path(c.to).c_str(), status_));
        EXPECT_EQ(c.pauses, pauses.count());
        EXPECT_TRUE(pauses.were_regular());
        ExpectFailure(status_, c.code, c.error_number, c.code == 0 ? "" : Path(c.from));
    }
    EXPECT_FALSE(folder_.Has("old") || folder_.Has("from"));
    EXPECT_EQ("from from there",
              folder_.Read("to") + " " + folder_.Read("moved") + " " + folder_.Read("there"));
    const XQELFile raising(true);
    EXPECT_THROW(CQELFile::Remove(Path("missing").c_str(), raising), XQELFile);
}

TEST_F(FileStatics, RemovesAFileThatIsReleasedWhileItWaits) {
    std::optional<HeldFile> held(folder_.Write("held", "x"));
    const Pauses pauses([&](int number) {
        if (number == 2) held.reset();
    });
    EXPECT_EQ(0, CQELFile::Remove(Path("held").c_str(), status_));
    EXPECT_EQ(2, pauses.count());
    EXPECT_FALSE(folder_.Has("held"));
}

TEST_F(FileStatics, RemoveExTakesReadOnlyHiddenAndSystemFilesToo) {
    const std::string path = folder_.Write("sealed", "x");
    SetFileAttributesA(path.c_str(),
                       FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(0, CQELFile::RemoveEx(path.c_str(), status_));
    EXPECT_FALSE(folder_.Has("sealed"));
    EXPECT_EQ(43, CQELFile::RemoveEx(path.c_str(), status_));
}

// --- Attributes and lengths -----------------------------------------------------------------------

TEST_F(FileStatics, AttributesAndLengthsAreThoseOfTheSystem) {
    const std::string path = Path("file"), missing = Path("missing");
    CQELFile writer(path.c_str(), "wb", kRecord);
    writer.Write("12345", 5);
    writer.Flush();
    EXPECT_TRUE(CQELFile::Attributes(path.c_str(), FILE_ATTRIBUTE_HIDDEN, status_));
    EXPECT_EQ(GetFileAttributesA(path.c_str()), CQELFile::Attributes(path.c_str(), status_));
    EXPECT_TRUE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(5u, CQELFile::Length(path.c_str(), status_)) << "while others write it";
    EXPECT_FALSE(status_.IsError());
    EXPECT_EQ(0xFFFFFFFF, CQELFile::Attributes(missing.c_str(), status_));
    ExpectFailure(status_, 41, 0, missing);
    EXPECT_EQ(0xFFFFFFFF, CQELFile::Length(missing.c_str(), status_));
    ExpectFailure(status_, 17, ENOENT, missing);
    EXPECT_FALSE(CQELFile::Attributes(missing.c_str(), FILE_ATTRIBUTE_NORMAL, status_));
    ExpectFailure(status_, 41, 0, missing);
    EXPECT_EQ(0xFFFFFFFF, CQELFile::Length(nullptr, status_));
}

DWORD WINAPI SayCompressed(const char*) { return FILE_ATTRIBUTE_COMPRESSED; }
DWORD compressed_error;
DWORD WINAPI SayLarge(const char*, DWORD* high) {
    *high = 2;
    if (compressed_error != NO_ERROR) SetLastError(compressed_error);
    return 0xFFFFFFFF;  // a low half as good as any other when it sets no error
}
int RefuseStatus(const char*, struct _stat64*) {
    errno = EIO;
    return -1;
}

TEST_F(FileStatics, FileLengthOnDiskIsThatOfCompressedFilesOnly) {
    const std::string path = folder_.Write("file", "12345");
    const auto expect = [&](int result, std::uint64_t expected, bool on_disk) {
        std::uint64_t length = 1;
        SetLastError(ERROR_ACCESS_DENIED);  // of some earlier call
        EXPECT_EQ(result, CQELFile::GetFileLength(path.c_str(), length, on_disk));
        EXPECT_EQ(expected, length);
    };
    expect(0, 5, true);
    const ImportPatch compressed(kLibrary, "GetFileAttributesA", &SayCompressed);
    const ImportPatch size(kLibrary, "GetCompressedFileSizeA", &SayLarge);
    compressed_error = NO_ERROR;
    expect(0, 0x2FFFFFFFF, true);
    expect(0, 5, false);
    compressed_error = ERROR_ACCESS_DENIED;
    expect(45, 0, true);
    const ImportPatch refused(kLibrary, "_stat64", &RefuseStatus);
    expect(45, 0, false);
    EXPECT_TRUE(DeleteFileA(path.c_str()));
    expect(4, 0, false);
}

// --- Special new files ----------------------------------------------------------------------------

// Where the system puts temporary files, for as long as this lives.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& path) {
        GetEnvironmentVariableA("TMP", before_, sizeof before_);
        SetEnvironmentVariableA("TMP", path.c_str());
    }
    ~TemporaryFolder() { SetEnvironmentVariableA("TMP", *before_ ? before_ : nullptr); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

private:
    char before_[MAX_PATH] = "";
};

TEST_F(FileStatics, MakesTemporaryFilesOrThrows) {
    const char* const here = folder_.path().c_str();
    const std::string missing = Path("missing"), long_name(300, 'x');
    {
        const TemporaryFolder temporary(folder_.path());
        for (const auto& [folder, prefix, start] :
             {std::tuple(here, "abcd", "\\abc"), {here, nullptr, "\\qlk"}, {nullptr, "", "\\"}}) {
            const CQELString path = CQELFile::CreateTempFile(folder, prefix);
            EXPECT_EQ(0, path.Find((folder_.path() + start).c_str()));
            EXPECT_EQ(0u, CQELFile::Length(path, status_));
        }
    }
    const TemporaryFolder temporary(long_name);
    for (const char* folder :
         {missing.c_str(), long_name.c_str(), static_cast<const char*>(nullptr)}) {
        try {
            CQELFile::CreateTempFile(folder, "abc");
            ADD_FAILURE() << "not thrown";
        } catch (const XQELStatus& failure) {
            EXPECT_NE(0, failure.Status());
            EXPECT_STREQ(folder ? folder : "", failure.GetErrMessEx());
        }
    }
}

DWORD abilities;
BOOL WINAPI SayAbilities(const char*, char*, DWORD, DWORD*, DWORD*, DWORD* flags, char*, DWORD) {
    *flags = abilities;
    return TRUE;
}
DWORD control_code;
BOOL WINAPI AcceptControl(HANDLE, DWORD code, void* format, DWORD, void*, DWORD, DWORD*,
                          OVERLAPPED*) {
    control_code = code;
    return *static_cast<USHORT*>(format) == 1;  // the default format
}

TEST_F(FileStatics, MakesACompressedFileWhereTheVolumeCan) {
    EXPECT_EQ(121, CQELFile::CreateCompressedFile(folder_.Write("there", "x").c_str()));
    EXPECT_EQ(187, CQELFile::CreateCompressedFile("Q:\\new"));
    const ImportPatch volume(kLibrary, "GetVolumeInformationA", &SayAbilities);
    abilities = ~DWORD{FILE_FILE_COMPRESSION};
    EXPECT_EQ(47, CQELFile::CreateCompressedFile(Path("new").c_str()));
    EXPECT_FALSE(folder_.Has("new"));
    abilities = FILE_FILE_COMPRESSION;
    EXPECT_EQ(63, CQELFile::CreateCompressedFile(Path("none\\new").c_str()));
    EXPECT_EQ(41, CQELFile::CreateCompressedFile(Path("new").c_str()));  // not on this machine
    EXPECT_TRUE(folder_.Has("new"));
    const ImportPatch control(kLibrary, "DeviceIoControl", &AcceptControl);
    EXPECT_EQ(0, CQELFile::CreateCompressedFile(Path("newer").c_str()));
    EXPECT_EQ(0x9C040u, control_code);
    EXPECT_EQ("", folder_.Read("newer"));
}

// --- Names ----------------------------------------------------------------------------------------

TEST(FileNames, TheFileNameIsWhatFollowsTheLastSlashAndTheDrive) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:\\a\\b.txt", "b.txt"}, {"b.txt", "b.txt"}, {"C:b.txt", "b.txt"}, {"a/b.c.d", "b.c.d"},
        {"a\\.txt", ".txt"},       {"a\\", ""},        {"C:", ""},           {"", ""},
    };
    for (const auto& [path, name] : cases) {
        EXPECT_STREQ(name, CQELFile::FileNameFromFullName(path)) << path;
    }
}

TEST(FileNames, NormalizesToTheFullPathWithSingleBackslashes) {
    const std::pair<std::string, std::string> cases[] = {
        {"C:\\a\\..\\b\\.\\c", "C:\\b\\c"},
        {"C:/a//b\\\\c", "C:\\a\\b\\c"},
        {"\\\\server\\share\\f", "\\server\\share\\f"},  // the network path's own pair goes too
        {"C:\\", "C:\\"},
        {"x\\\\y", "C:\\windows\\x\\y"},
        {std::string(259, 'x'), std::string(259, 'x')},  // no room for its folder
        {std::string(260, 'x'), std::string(260, 'x')},
        {std::string(1000, 'x'), std::string(1000, 'x')},
    };
    const WorkingFolder here("C:\\windows");
    for (const auto& [given, full] : cases) {
        CQELString text(given.c_str());
        EXPECT_TRUE(CQELFile::NormalizeFileName(text));
        EXPECT_EQ(full, static_cast<const char*>(text));
    }
}

TEST(FileNames, NormalizingKeepsToTheRoomOfTheBuffer) {
    const WorkingFolder here("C:\\windows");
    const std::tuple<std::string, std::size_t, int, std::string> cases[] = {
        {"x\\\\y", 14, 14, "x\\y"},  // the full path, C:\windows\x\y, has no room
        {"C:/a", 5, 5, "C:\\a"},    {"abcd", 4, 4, "abcd"},  // without an end
        {"..", 3, 0, ".."},         {"..", 3, -1, ".."},
    };
    for (const auto& [given, room, size, result] : cases) {
        GuardedBuffer buffer(room);
        given.copy(buffer.text(), room);
        EXPECT_TRUE(CQELFile::NormalizeFileName(buffer.text(), size));
        EXPECT_EQ(result, std::string(buffer.text(), result.size()));
        EXPECT_TRUE(result.size() == room || buffer.text()[result.size()] == '\0');
    }
    EXPECT_TRUE(CQELFile::NormalizeFileName(nullptr, 10));
}

TEST(FileNames, CharactersThatNamesMayNotHoldAreReplaced) {
    const std::pair<std::string, std::string> cases[] = {
        {"Report 2024.txt", "Report 2024_txt"},  // the dot too
        {"a\\b/c:d*e?f\"g<h>i|j\t", "a_b_c_d_e_f_g_h_i_j_"},
        {"$%'-_@~`!(){}^#&+,;=[] ", "$%'-_@~`!(){}^#&+,;=[] "},
        {"\xCF\xF0\xE8\xE2\xE5\xF2\xFF.\x98", "\xCF\xF0\xE8\xE2\xE5\xF2\xFF_\x98"},
        {std::string(300, 'x'), std::string(252, 'x')},
    };
    for (const auto& [given, clean] : cases) {
        EXPECT_EQ(clean, static_cast<const char*>(
                             CQELFile::RemoveUnacceptableCharactersFromName(given.c_str())));
    }
}

}  // namespace
