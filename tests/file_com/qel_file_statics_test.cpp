#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string>
#include <utility>

#include "file_com/qel_file.h"
#include "pauses.h"
#include "platform/windows.h"
#include "support/temp_folder.h"

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

TEST_F(FileStatics, AccessFollowsTheReadOnlyAttribute) {
    const std::string sealed_path = folder_.Write("sealed", "x");
    const ReadOnlyFile sealed(sealed_path);
    const struct {
        const char* name;
        int mode;
        bool granted;
    } cases[] = {
        {"sealed", 0, true},  {"sealed", 4, true},   {"sealed", 2, false},
        {"sealed", 6, false}, {"missing", 0, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.granted, CQELFile::Access(Path(c.name).c_str(), c.mode)) << c.name << c.mode;
    }
    EXPECT_FALSE(CQELFile::Access(nullptr, 0));
}

TEST_F(FileStatics, AVolumeIsThereWhenThePathOrTheRootOfItsDriveIs) {
    const struct {
        const char* path;
        bool there;
    } cases[] = {
        {"C:\\no\\such\\file", true},
        {"C:", true},
        {"Q:\\file", false},
        {"no\\such\\file", true},
        {"\\\\no\\such", true},  // judged by the current drive
        {"", true},
        {nullptr, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.there, CQELFile::CheckVolume(c.path)) << (c.path ? c.path : "null");
    }
    EXPECT_TRUE(CQELFile::CheckVolume(folder_.path().c_str()));
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
    const struct {
        int error_number;
        std::string path;
        bool exists;
    } cases[] = {
        {EACCES, Path("missing"), true},
        {ENOENT, Path("there.txt"), false},
        {EINVAL, Path("there.txt"), true},
        {EINVAL, "  " + Path("there.txt\\") + " ", true},
        {EINVAL, Path("there.txt/"), true},
        {EINVAL, Path("there.txt\\\\"), false},  // one slash only
        {EINVAL, Path("missing"), false},
        {EINVAL, Path("there.*"), true},
        {EINVAL, "   ", false},
    };
    for (const auto& c : cases) {
        access_errno = c.error_number;
        EXPECT_EQ(c.exists, CQELFile::IsExists(c.path.c_str())) << c.error_number << " " << c.path;
        EXPECT_EQ(c.exists, CQELFile::IsExists(CQELString(c.path.c_str()))) << c.path;
    }
}

TEST_F(FileStatics, ExtendedExistenceTakesSearchPatterns) {
    folder_.Write("there.txt", "x");
    for (const char* name : {"*.txt", "th?re.txt", "there.txt"}) {
        EXPECT_TRUE(CQELFile::IsExistsEx(Path(name).c_str())) << name;
    }
    EXPECT_TRUE(CQELFile::IsExistsEx(CQELString(Path("*").c_str())));
    EXPECT_FALSE(CQELFile::IsExistsEx(Path("*.doc").c_str()));
}

TEST_F(FileStatics, TellsFoldersFromFiles) {
    for (const char* folder : {"C:\\", "C:\\windows"}) EXPECT_TRUE(CQELFile::IsFolder(folder));
    const std::string file = folder_.Write("file", "x");
    for (const char* other : {file.c_str(), "C:\\windows\\", "C:\\none", ""}) {
        EXPECT_FALSE(CQELFile::IsFolder(other)) << other;
    }
    EXPECT_FALSE(CQELFile::IsFolder(nullptr));
}

TEST_F(FileStatics, RemovesAndTellsWhatStoodInTheWay) {
    EXPECT_EQ(0, CQELFile::Remove(folder_.Write("file", "x").c_str(), status_));
    EXPECT_FALSE(folder_.Has("file"));
    EXPECT_FALSE(status_.IsError());

    const ReadOnlyFile sealed(folder_.Write("sealed", "x"));
    const HeldFile held(folder_.Write("held", "x"));
    const struct {
        const char* name;
        int pauses, code, error_number;
    } cases[] = {
        {"missing", 0, 43, ENOENT},
        {"sealed", 19, 501, EACCES},
        {"held", 19, 501, EACCES},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Pauses pauses;
        EXPECT_EQ(43, CQELFile::Remove(Path(c.name).c_str(), status_)) << "43 also for 501";
        EXPECT_EQ(c.pauses, pauses.count());
        EXPECT_TRUE(pauses.were_regular());
        ExpectFailure(status_, c.code, c.error_number, Path(c.name));
    }
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

TEST_F(FileStatics, CopiesAndMoves) {
    folder_.Write("from", "new");
    folder_.Write("to", "old bytes");
    EXPECT_TRUE(
        CQELFile::CopyFileA(Path("from").c_str(), Path("to").c_str(), false, status_, true));
    EXPECT_EQ("new", folder_.Read("to"));
    EXPECT_TRUE(folder_.Has("from"));
    EXPECT_TRUE(CQELFile::MoveFileA(Path("from").c_str(), Path("moved").c_str(), status_));
    EXPECT_EQ("new", folder_.Read("moved"));
    EXPECT_FALSE(folder_.Has("from"));
    EXPECT_FALSE(status_.IsError());
}

bool Copy(const char* from, const char* to, const XQELFile& status) {
    return CQELFile::CopyFileA(from, to, false, status);
}
bool CopyAsNew(const char* from, const char* to, const XQELFile& status) {
    return CQELFile::CopyFileA(from, to, true, status);
}

TEST_F(FileStatics, CopyAndMoveWaitForTheTargetAndNameTheSource) {
    folder_.Write("from", "new");
    folder_.Write("there", "old");
    const HeldFile held(folder_.Write("held", "old"));
    const struct {
        const char* name;
        bool (*call)(const char* from, const char* to, const XQELFile& status);
        const char* from;
        const char* to;
        int pauses, code, error_number;
    } cases[] = {
        {"copy onto a held file", &Copy, "from", "held", 19, 501, EACCES},
        {"copy that must not replace", &CopyAsNew, "from", "there", 19, 64, EEXIST},
        {"copy of nothing", &Copy, "none", "new", 0, 64, ENOENT},
        {"copy of nothing onto something", &Copy, "none", "there", 19, 64, ENOENT},
        {"move onto something", &CQELFile::MoveFileA, "from", "there", 19, 124, EEXIST},
        {"move of nothing", &CQELFile::MoveFileA, "none", "new", 0, 124, ENOENT},
        {"move of a held file", &CQELFile::MoveFileA, "held", "new", 19, 501, EACCES},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Pauses pauses;
        errno = EACCES;  // of some earlier call: must decide nothing
        EXPECT_FALSE(c.call(Path(c.from).c_str(), Path(c.to).c_str(), status_));
        EXPECT_EQ(c.pauses, pauses.count());
        ExpectFailure(status_, c.code, c.error_number, Path(c.from));
    }
    EXPECT_EQ("old", folder_.Read("there"));
}

TEST_F(FileStatics, AttributesAreThoseOfTheSystem) {
    const std::string path = folder_.Write("file", "x");
    EXPECT_TRUE(CQELFile::Attributes(path.c_str(), FILE_ATTRIBUTE_HIDDEN, status_));
    EXPECT_EQ(GetFileAttributesA(path.c_str()), CQELFile::Attributes(path.c_str(), status_));
    EXPECT_TRUE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_FALSE(status_.IsError());

    EXPECT_EQ(0xFFFFFFFF, CQELFile::Attributes(Path("missing").c_str(), status_));
    ExpectFailure(status_, 41, 0, Path("missing"));
    status_.Clear();
    EXPECT_FALSE(CQELFile::Attributes(Path("missing").c_str(), FILE_ATTRIBUTE_NORMAL, status_));
    ExpectFailure(status_, 41, 0, Path("missing"));
}

TEST_F(FileStatics, LengthReadsAFileThatOthersWrite) {
    CQELFile writer(Path("file").c_str(), "wb", kRecord);
    writer.Write("12345", 5);
    writer.Flush();
    EXPECT_EQ(5u, CQELFile::Length(Path("file").c_str(), status_));
    EXPECT_FALSE(status_.IsError());
    EXPECT_EQ(0xFFFFFFFF, CQELFile::Length(Path("missing").c_str(), status_));
    ExpectFailure(status_, 17, ENOENT, Path("missing"));
    EXPECT_EQ(0xFFFFFFFF, CQELFile::Length(nullptr, status_));
}

DWORD WINAPI SayCompressed(const char*) { return FILE_ATTRIBUTE_COMPRESSED; }
DWORD WINAPI SayLarge(const char*, DWORD* high) {
    *high = 2;
    return 0xFFFFFFFF;  // a low half as good as any other when it sets no error
}
DWORD WINAPI RefuseSize(const char*, DWORD*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_FILE_SIZE;
}
int RefuseStatus(const char*, struct _stat64*) {
    errno = EIO;
    return -1;
}

TEST_F(FileStatics, FileLengthOnDiskIsThatOfCompressedFilesOnly) {
    const std::string path = folder_.Write("file", "12345");
    std::uint64_t length = 1;
    const auto expect = [&](int result, std::uint64_t expected, bool on_disk) {
        length = 1;
        SetLastError(ERROR_ACCESS_DENIED);  // of some earlier call
        EXPECT_EQ(result, CQELFile::GetFileLength(path.c_str(), length, on_disk));
        EXPECT_EQ(expected, length);
    };
    expect(0, 5, true);
    {
        const ImportPatch compressed(kLibrary, "GetFileAttributesA", &SayCompressed);
        std::optional<ImportPatch> size(std::in_place, kLibrary, "GetCompressedFileSizeA",
                                        &SayLarge);
        expect(0, 0x2FFFFFFFF, true);
        expect(0, 5, false);
        size.reset();
        size.emplace(kLibrary, "GetCompressedFileSizeA", &RefuseSize);
        expect(45, 0, true);
    }
    EXPECT_EQ(4, CQELFile::GetFileLength(Path("missing").c_str(), length, false));
    EXPECT_EQ(0u, length);
    const ImportPatch refused(kLibrary, "_stat64", &RefuseStatus);
    expect(45, 0, false);
}

// Where the system puts temporary files, for as long as this lives.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& path) {
        has_before_ = GetEnvironmentVariableA("TMP", before_, sizeof before_) > 0;
        SetEnvironmentVariableA("TMP", path.c_str());
    }
    ~TemporaryFolder() { SetEnvironmentVariableA("TMP", has_before_ ? before_ : nullptr); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

private:
    char before_[MAX_PATH];
    bool has_before_;
};

TEST_F(FileStatics, MakesTemporaryFiles) {
    const TemporaryFolder temporary(folder_.path());
    const struct {
        const char* folder;
        const char* prefix;
        const char* start;
    } cases[] = {
        {folder_.path().c_str(), "abcd", "\\abc"},
        {folder_.path().c_str(), nullptr, "\\qlk"},
        {nullptr, nullptr, "\\qlk"},
    };
    for (const auto& c : cases) {
        const CQELString path = CQELFile::CreateTempFile(c.folder, c.prefix);
        const std::string start = folder_.path() + c.start;
        EXPECT_EQ(start, std::string(path).substr(0, start.size()));
        EXPECT_EQ(0u, CQELFile::Length(path, status_));
    }
}

TEST_F(FileStatics, ThrowsWhenNoTemporaryFileCanBeMade) {
    const std::string missing = Path("missing");
    const std::string long_name(300, 'x');
    const struct {
        const char* name;
        const char* folder;
        const char* text;
    } cases[] = {
        {"no such folder", missing.c_str(), missing.c_str()},
        {"folder name too long", long_name.c_str(), long_name.c_str()},
        {"no temporary folder", nullptr, ""},
    };
    const TemporaryFolder temporary(long_name);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        try {
            CQELFile::CreateTempFile(c.folder, "abc");
            ADD_FAILURE() << "not thrown";
        } catch (const XQELStatus& failure) {
            EXPECT_NE(0, failure.Status());
            EXPECT_STREQ(c.text, failure.GetErrMessEx());
        }
    }
}

DWORD abilities;
BOOL volume_answers;
BOOL WINAPI SayAbilities(const char*, char*, DWORD, DWORD*, DWORD*, DWORD* flags, char*, DWORD) {
    *flags = abilities;
    return volume_answers;
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
    volume_answers = TRUE;
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

}  // namespace
