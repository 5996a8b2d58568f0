#include "file_com/com_stream.h"

#include <gtest/gtest.h>

#include <shlwapi.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>

#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

// Owns one reference.
class Reference {
public:
    explicit Reference(IStream* stream) : stream_(stream) { EXPECT_NE(nullptr, stream); }
    ~Reference() {
        if (stream_) stream_->Release();
    }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;
    IStream* operator->() const { return stream_; }
    IStream* get() const { return stream_; }

private:
    IStream* const stream_;
};

constexpr ULONG kUntouched = 0xDEADBEEF;
constexpr DWORD kBoth = GENERIC_READ | GENERIC_WRITE;

LARGE_INTEGER Distance(std::int64_t value) {
    LARGE_INTEGER distance;
    distance.QuadPart = value;
    return distance;
}
ULARGE_INTEGER Size(std::uint64_t value) {
    ULARGE_INTEGER size;
    size.QuadPart = value;
    return size;
}

class ComStream : public testing::Test {
protected:
    IStream* Create(DWORD access = kBoth, DWORD disposition = OPEN_ALWAYS) const {
        return CQELSimpleFileStream::CreateInstance((folder_ / "file").c_str(), access,
                                                    disposition);
    }
    TempFolder folder_;
};

TEST_F(ComStream, OpensSharedWithOneReferenceOrGivesNull) {
    EXPECT_EQ(nullptr, Create(GENERIC_READ, OPEN_EXISTING));
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND}, GetLastError());
    EXPECT_EQ(nullptr, CQELSimpleFileStream::CreateInstance(nullptr, kBoth, OPEN_ALWAYS));

    folder_.Write("file", "abc");
    IStream* const first = Create();
    const Reference second(Create());
    EXPECT_EQ(2u, first->AddRef());
    EXPECT_EQ(1u, first->Release());
    EXPECT_EQ(0u, first->Release());
    EXPECT_FALSE(DeleteFileA((folder_ / "file").c_str())) << "sharing is not for deletion";
}

TEST_F(ComStream, ClosesItsHandleOnTheLastRelease) {
    Create()->Release();
    EXPECT_TRUE(DeleteFileA((folder_ / "file").c_str()));
}

TEST_F(ComStream, KnowsTwoInterfacesOnly) {
    const Reference stream(Create());
    for (const IID& id : {__uuidof(IUnknown), __uuidof(IStream)}) {
        void* object = nullptr;
        EXPECT_EQ(S_OK, stream->QueryInterface(id, &object));
        EXPECT_EQ(stream.get(), object);
        EXPECT_EQ(1u, stream->Release());
    }
    void* object = stream.get();
    EXPECT_EQ(E_NOINTERFACE, stream->QueryInterface(__uuidof(ISequentialStream), &object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(E_POINTER, stream->QueryInterface(__uuidof(IStream), nullptr));
}

TEST_F(ComStream, ReadsToTheEndAndSaysSo) {
    folder_.Write("file", "abcde");
    const Reference stream(Create());
    char bytes[8] = {};
    ULONG read = kUntouched;
    EXPECT_EQ(S_OK, stream->Read(bytes, 3, &read));
    EXPECT_EQ(3u, read);
    EXPECT_EQ(S_OK, stream->Read(bytes, 8, &read));
    EXPECT_EQ(2u, read);
    EXPECT_EQ(0, std::memcmp("dec", bytes, 3));
    EXPECT_EQ(S_FALSE, stream->Read(bytes, 8, &read));
    EXPECT_EQ(0u, read);
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Read(nullptr, 1, &read));
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Read(bytes, 1, nullptr));
    ULONG written = kUntouched;
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Write(nullptr, 1, &written));
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Write(bytes, 1, nullptr));
    EXPECT_EQ(kUntouched, written);
}

TEST_F(ComStream, TellsDeniedAccessFromOtherFailures) {
    folder_.Write("file", "abc");
    char byte = 'x';
    ULONG count = kUntouched;
    const Reference writing(Create(GENERIC_WRITE));
    EXPECT_EQ(STG_E_ACCESSDENIED, writing->Read(&byte, 1, &count));
    EXPECT_EQ(0u, count);
    const Reference reading(Create(GENERIC_READ));
    count = kUntouched;
    EXPECT_EQ(STG_E_ACCESSDENIED, reading->Write(&byte, 1, &count));
    EXPECT_EQ(0u, count);
    const Reference full(
        CQELSimpleFileStream::CreateInstance("Z:\\dev\\full", GENERIC_WRITE, OPEN_EXISTING));
    EXPECT_EQ(STG_E_MEDIUMFULL, full->Write(&byte, 1, &count));
}

TEST_F(ComStream, SeekTakesTheHighHalfFromTheResultLocation) {
    folder_.Write("file", "abcde");
    const Reference stream(Create());
    ULARGE_INTEGER position = Size(0);
    EXPECT_EQ(S_OK, stream->Seek(Distance(0x7'0000'0003), STREAM_SEEK_SET, &position));
    EXPECT_EQ(3u, position.QuadPart) << "the distance's own high half is not looked at";
    position.HighPart = 2;
    EXPECT_EQ(S_OK, stream->Seek(Distance(3), STREAM_SEEK_SET, &position));
    EXPECT_EQ(0x2'0000'0003u, position.QuadPart) << "garbage moves far beyond";
    position.HighPart = 0xFFFFFFFF;  // as a caller presets it to go backward
    EXPECT_EQ(S_OK, stream->Seek(Distance(-2), STREAM_SEEK_END, &position));
    EXPECT_EQ(3u, position.QuadPart);
    position.HighPart = 0;
    EXPECT_EQ(S_OK, stream->Seek(Distance(1), STREAM_SEEK_CUR, &position));
    EXPECT_EQ(4u, position.QuadPart);
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Seek(Distance(0), STREAM_SEEK_SET, nullptr));
}

TEST_F(ComStream, SeekTellsALowHalfOfAllOnesFromAFailure) {
    const Reference stream(Create());
    ULARGE_INTEGER position = Size(0);
    SetLastError(ERROR_ACCESS_DENIED);  // of an earlier call
    EXPECT_EQ(S_OK, stream->Seek(Distance(0xFFFFFFFF), STREAM_SEEK_SET, &position));
    EXPECT_EQ(0xFFFFFFFFu, position.QuadPart);

    position.HighPart = 0xFFFFFFFF;
    EXPECT_EQ(STG_E_INVALIDFUNCTION, stream->Seek(Distance(-1), STREAM_SEEK_SET, &position));
    EXPECT_EQ(0xFFFFFFFF'FFFFFFFFu, position.QuadPart);
    position.HighPart = 0;
    EXPECT_EQ(E_FAIL, stream->Seek(Distance(0), 7, &position));
    EXPECT_EQ(0xFFFFFFFFu, position.HighPart);
}

TEST_F(ComStream, SetsItsSizeWithTheSizesOwnHighHalf) {
    folder_.Write("file", "abcde");
    const Reference stream(Create());
    EXPECT_EQ(S_OK, stream->SetSize(Size(3)));
    EXPECT_EQ("abc", folder_.Read("file"));
    ULONG written = 0;
    EXPECT_EQ(S_OK, stream->Write("X", 1, &written));
    EXPECT_EQ("abcX", folder_.Read("file")) << "the position is at the size";
    EXPECT_EQ(S_OK, stream->SetSize(Size(0x1'0000'0002)));
    STATSTG stat;
    EXPECT_EQ(S_OK, stream->Stat(&stat, STATFLAG_NONAME));
    EXPECT_EQ(0x1'0000'0002u, stat.cbSize.QuadPart);
    EXPECT_EQ(STG_E_INVALIDFUNCTION, stream->SetSize(Size(0xFFFFFFFF'FFFFFFFF)));

    const Reference reading(Create(GENERIC_READ));
    EXPECT_EQ(E_FAIL, reading->SetSize(Size(1)));
}

BOOL WINAPI RefuseInformation(HANDLE, BY_HANDLE_FILE_INFORMATION*) { return FALSE; }

TEST_F(ComStream, DescribesItself) {
    folder_.Write("file", "abcde");
    const Reference stream(Create());
    STATSTG stat;
    std::memset(&stat, 0x55, sizeof stat);
    ASSERT_EQ(S_OK, stream->Stat(&stat, STATFLAG_DEFAULT));
    ASSERT_NE(nullptr, stat.pwcsName);
    EXPECT_EQ(3u, std::wcslen(stat.pwcsName));
    CoTaskMemFree(stat.pwcsName);
    EXPECT_EQ(DWORD{STGTY_STREAM}, stat.type);
    EXPECT_EQ(5u, stat.cbSize.QuadPart);
    EXPECT_EQ(0u, stat.grfMode);
    EXPECT_EQ(DWORD{LOCK_EXCLUSIVE}, stat.grfLocksSupported);
    EXPECT_EQ(CLSID{}, stat.clsid);
    EXPECT_EQ(0u, stat.grfStateBits);
    WIN32_FILE_ATTRIBUTE_DATA file;
    ASSERT_TRUE(GetFileAttributesExA((folder_ / "file").c_str(), GetFileExInfoStandard, &file));
    EXPECT_EQ(0, CompareFileTime(&file.ftLastWriteTime, &stat.mtime));
    EXPECT_EQ(0, CompareFileTime(&file.ftLastAccessTime, &stat.atime));
    EXPECT_EQ(0, CompareFileTime(&file.ftCreationTime, &stat.ctime));

    ASSERT_EQ(S_OK, stream->Stat(&stat, STATFLAG_NONAME));
    EXPECT_EQ(nullptr, stat.pwcsName);
    EXPECT_EQ(STG_E_INVALIDPOINTER, stream->Stat(nullptr, STATFLAG_DEFAULT));
    const ImportPatch refused(kLibrary, "GetFileInformationByHandle", &RefuseInformation);
    EXPECT_EQ(E_FAIL, stream->Stat(&stat, STATFLAG_DEFAULT));
    EXPECT_EQ(nullptr, stat.pwcsName);
}

TEST_F(ComStream, ServesThePlatformsOwnConsumers) {
    std::string bytes(10000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    IStream* source = nullptr;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &source));
    const Reference memory(source);
    ULONG written = 0;
    ASSERT_EQ(S_OK, memory->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written));
    ULARGE_INTEGER start = Size(0);
    ASSERT_EQ(S_OK, memory->Seek(Distance(0), STREAM_SEEK_SET, &start));

    const Reference file(Create());
    ULARGE_INTEGER copied = Size(0);
    EXPECT_EQ(S_OK, memory->CopyTo(file.get(), Size(bytes.size()), nullptr, &copied));
    EXPECT_EQ(bytes.size(), copied.QuadPart);
    EXPECT_EQ(bytes, folder_.Read("file"));

    ULARGE_INTEGER size = Size(0);
    EXPECT_EQ(S_OK, IStream_Size(file.get(), &size));
    EXPECT_EQ(bytes.size(), size.QuadPart);
    start = Size(0);
    EXPECT_EQ(S_OK, file->Seek(Distance(0), STREAM_SEEK_SET, &start));
    std::string back(bytes.size(), '.');
    EXPECT_EQ(S_OK, IStream_Read(file.get(), back.data(), static_cast<ULONG>(back.size())));
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
    const Reference stream(Create());
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
