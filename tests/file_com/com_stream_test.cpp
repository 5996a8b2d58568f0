#include "file_com/com_stream.h"

#include <gtest/gtest.h>

#include <shlwapi.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

struct Releaser {
    void operator()(IStream* stream) const { stream->Release(); }
};
using Reference = std::unique_ptr<IStream, Releaser>;

constexpr DWORD kBoth = GENERIC_READ | GENERIC_WRITE;

class ComStream : public testing::Test {
protected:
    Reference Create(DWORD access = kBoth, DWORD disposition = OPEN_ALWAYS) const {
        return Reference(
            CQELSimpleFileStream::CreateInstance((folder_ / "file").c_str(), access, disposition));
    }
    // The outcome of a Seek with this high half preset, and the position then.
    static std::string Seek(IStream& stream, std::int64_t distance, DWORD origin, DWORD high = 0) {
        ULARGE_INTEGER position;
        position.HighPart = high;
        const HRESULT result = stream.Seek({.QuadPart = distance}, origin, &position);
        std::ostringstream text;
        text << std::hex << result << " " << position.QuadPart;
        return text.str();
    }
    TempFolder folder_;
};

TEST_F(ComStream, OpensSharedWithOneReferenceOrGivesNull) {
    EXPECT_EQ(nullptr, Create(GENERIC_READ, OPEN_EXISTING));
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND}, GetLastError());
    EXPECT_EQ(nullptr, CQELSimpleFileStream::CreateInstance(nullptr, kBoth, OPEN_ALWAYS));
    IStream* const first = Create().release();
    {
        const Reference second = Create();
        EXPECT_EQ(2u, first->AddRef());
        EXPECT_EQ(1u, first->Release());
        EXPECT_EQ(0u, first->Release());
        EXPECT_FALSE(DeleteFileA((folder_ / "file").c_str())) << "sharing is not for deletion";
    }
    EXPECT_TRUE(DeleteFileA((folder_ / "file").c_str())) << "the last release closes";
}

TEST_F(ComStream, KnowsTwoInterfacesOnly) {
    const Reference stream = Create();
    void* object = nullptr;
    for (const IID& id : {__uuidof(IUnknown), __uuidof(IStream)}) {
        EXPECT_EQ(S_OK, stream->QueryInterface(id, &object));
        EXPECT_EQ(stream.get(), object);
        EXPECT_EQ(1u, stream->Release());
    }
    EXPECT_EQ(E_NOINTERFACE, stream->QueryInterface(__uuidof(ISequentialStream), &object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(E_POINTER, stream->QueryInterface(__uuidof(IStream), nullptr));
}

TEST_F(ComStream, ReadsToTheEndAndTellsWhyItCannotGoOn) {
    folder_.Write("file", "abcde");
    char bytes[8] = "";
    ULONG count = 99;
    const auto expect = [&count](HRESULT result, ULONG transferred, HRESULT outcome) {
        EXPECT_EQ(result, outcome);
        EXPECT_EQ(transferred, std::exchange(count, 99));
    };
    const Reference both = Create(), reading = Create(GENERIC_READ),
                    writing = Create(GENERIC_WRITE);
    const Reference full(
        CQELSimpleFileStream::CreateInstance("Z:\\dev\\full", GENERIC_WRITE, OPEN_EXISTING));
    expect(S_OK, 3, both->Read(bytes, 3, &count));
    expect(S_OK, 2, both->Read(bytes, 8, &count));
    EXPECT_STREQ("dec", bytes);
    expect(S_FALSE, 0, both->Read(bytes, 8, &count));
    expect(STG_E_INVALIDPOINTER, 99, both->Read(nullptr, 1, &count));
    expect(STG_E_INVALIDPOINTER, 99, both->Read(bytes, 1, nullptr));
    expect(STG_E_INVALIDPOINTER, 99, both->Write(nullptr, 1, &count));
    expect(STG_E_INVALIDPOINTER, 99, both->Write(bytes, 1, nullptr));
    expect(STG_E_ACCESSDENIED, 0, writing->Read(bytes, 1, &count));
    expect(STG_E_ACCESSDENIED, 0, reading->Write(bytes, 1, &count));
    expect(STG_E_MEDIUMFULL, 0, full->Write(bytes, 1, &count));
}

TEST_F(ComStream, SeekTakesTheHighHalfFromTheResultLocation) {
    folder_.Write("file", "abcde");
    const Reference stream = Create();
    constexpr DWORD kBackward = 0xFFFFFFFF;
    EXPECT_EQ("0 3", Seek(*stream, 0x700000003, STREAM_SEEK_SET));  // not the distance's own
    EXPECT_EQ("0 200000003", Seek(*stream, 3, STREAM_SEEK_SET, 2)) << "garbage moves far beyond";
    EXPECT_EQ("0 3", Seek(*stream, -2, STREAM_SEEK_END, kBackward));
    EXPECT_EQ("0 4", Seek(*stream, 1, STREAM_SEEK_CUR));
    SetLastError(ERROR_ACCESS_DENIED);                                    // of an earlier call
    EXPECT_EQ("0 ffffffff", Seek(*stream, 0xFFFFFFFF, STREAM_SEEK_SET));  // no failure
    EXPECT_EQ("80030001 ffffffffffffffff", Seek(*stream, -1, STREAM_SEEK_SET, kBackward));
    EXPECT_EQ("80004005 ffffffffffffffff", Seek(*stream, 0, 7));
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Seek({}, STREAM_SEEK_SET, nullptr));
}

TEST_F(ComStream, SetsItsSizeWithTheSizesOwnHighHalf) {
    folder_.Write("file", "abcde");
    const Reference stream = Create();
    EXPECT_EQ(S_OK, stream->SetSize({.QuadPart = 3}));
    ULONG written = 0;
    EXPECT_EQ(S_OK, stream->Write("X", 1, &written));
    EXPECT_EQ("abcX", folder_.Read("file")) << "the position is at the size";
    EXPECT_EQ(S_OK, stream->SetSize({.QuadPart = 0x100000002}));
    STATSTG stat;
    EXPECT_EQ(S_OK, stream->Stat(&stat, STATFLAG_NONAME));
    EXPECT_EQ(0x100000002u, stat.cbSize.QuadPart);
    EXPECT_EQ(STG_E_INVALIDFUNCTION, stream->SetSize({.QuadPart = ~0ull}));
    EXPECT_EQ(E_FAIL, Create(GENERIC_READ)->SetSize({.QuadPart = 1}));
}

BOOL WINAPI RefuseInformation(HANDLE, BY_HANDLE_FILE_INFORMATION*) { return FALSE; }

TEST_F(ComStream, DescribesItself) {
    folder_.Write("file", "abcde");
    const Reference stream = Create();
    STATSTG stat;
    ASSERT_EQ(S_OK, stream->Stat(&stat, STATFLAG_DEFAULT));
    EXPECT_STREQ(L"qel", stat.pwcsName);
    CoTaskMemFree(stat.pwcsName);
    WIN32_FILE_ATTRIBUTE_DATA file;
    ASSERT_TRUE(GetFileAttributesExA((folder_ / "file").c_str(), GetFileExInfoStandard, &file));
    STATSTG expected = {};
    expected.pwcsName = stat.pwcsName;
    expected.type = STGTY_STREAM;
    expected.cbSize.QuadPart = 5;
    expected.mtime = file.ftLastWriteTime;
    expected.ctime = file.ftCreationTime;
    expected.atime = file.ftLastAccessTime;
    expected.grfLocksSupported = LOCK_EXCLUSIVE;
    EXPECT_EQ(0, std::memcmp(&expected, &stat, sizeof stat));
    EXPECT_EQ(S_OK, stream->Stat(&stat, STATFLAG_NONAME));
    EXPECT_EQ(nullptr, stat.pwcsName);
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Stat(nullptr, STATFLAG_DEFAULT));
    const ImportPatch refused(kLibrary, "GetFileInformationByHandle", &RefuseInformation);
    EXPECT_EQ(E_FAIL, stream->Stat(&stat, STATFLAG_DEFAULT));
    EXPECT_EQ(nullptr, stat.pwcsName);
}

TEST_F(ComStream, ServesThePlatformsOwnConsumers) {
    std::string bytes(10000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    const auto size = static_cast<ULONG>(bytes.size());
    IStream* memory = nullptr;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &memory));
    const Reference source(memory), file = Create();
    ASSERT_EQ(S_OK, IStream_Write(memory, bytes.data(), size));
    ASSERT_EQ(S_OK, IStream_Reset(memory));
    ULARGE_INTEGER length{.QuadPart = size};
    EXPECT_EQ(S_OK, memory->CopyTo(file.get(), length, nullptr, nullptr));
    EXPECT_EQ(bytes, folder_.Read("file"));
    EXPECT_EQ(S_OK, IStream_Size(file.get(), &length));
    EXPECT_EQ(size, length.QuadPart);
    EXPECT_EQ("0 0", Seek(*file, 0, STREAM_SEEK_SET));
    std::string back(size, '.');
    EXPECT_EQ(S_OK, IStream_Read(file.get(), back.data(), size));
    EXPECT_EQ(bytes, back);
    EXPECT_EQ(STG_E_INVALIDPOINTER, WriteClassStm(file.get(), CLSID{}))
        << "a consumer that leaves out the count is refused";
}

std::atomic<int> inside;
std::atomic<bool> met;
BOOL WINAPI WriteSlowly(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) {
    if (++inside > 1) met = true;
    Sleep(2);
    --inside;
    return TRUE;
}

TEST_F(ComStream, LetsOneThreadAtATimeAtTheFile) {
    const Reference stream = Create();
    const ImportPatch slow(kLibrary, "WriteFile", &WriteSlowly);
    met = false;
    const auto work = [&stream] {
        ULONG written = 0;
        for (int i = 0; i < 5; ++i) stream->Write("x", 1, &written);
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_FALSE(met);
}

}  // namespace
