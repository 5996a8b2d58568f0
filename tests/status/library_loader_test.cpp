#include "status/library_loader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/cp1251.h"
#include "platform/handles.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

constexpr ulong32 kUntouched = 0xDEADBEEF;

std::string FailureText(const std::string& tail) {
    constexpr auto message = kit::Cp1251(u"Ошибка при загрузке библиотеки приложения.");
    return std::string(message.data()) + " (::GetLastError=" + tail + ")";
}

// A folder with two libraries that nobody has loaded: copies of one that every program here has.
class LibraryLoader : public testing::Test {
protected:
    void SetUp() override {
        char runtime[MAX_PATH];
        ASSERT_NE(0u,
                  GetModuleFileNameA(GetModuleHandleA("libwinpthread-1.dll"), runtime, MAX_PATH));
        ASSERT_TRUE(CopyFileA(runtime, (folder_ / "anchor.dll").c_str(), TRUE));
        ASSERT_TRUE(CopyFileA(runtime, (folder_ / "beside.dll").c_str(), TRUE));
    }

    TempFolder folder_;
    ulong32 error_ = kUntouched;
    CQELString message_{"untouched"};
};

TEST_F(LibraryLoader, LoadsFromTheFolderOfTheAnchor) {
    const kit::Module anchor(LoadLibraryA((folder_ / "anchor.dll").c_str()));
    ASSERT_TRUE(static_cast<bool>(anchor));
    const kit::Module beside(
        LoadLibraryFromInstance("beside.dll", anchor.get(), &error_, &message_, 0));
    ASSERT_TRUE(static_cast<bool>(beside));
    EXPECT_EQ(GetModuleHandleA((folder_ / "beside.dll").c_str()), beside.get());
    EXPECT_EQ(kUntouched, error_);
    EXPECT_STREQ("untouched", message_);
}

TEST_F(LibraryLoader, NoAnchorMeansTheFolderOfTheLibrary) {
    const kit::Module own(
        LoadLibraryFromInstance("qelkit2_64.DLL", nullptr, &error_, &message_, 0));
    EXPECT_EQ(GetModuleHandleA("QELKIT2_64.dll"), own.get());
    EXPECT_EQ(kUntouched, error_);
}

TEST_F(LibraryLoader, NeverLooksInTheWorkingFolder) {
    char before[MAX_PATH];
    ASSERT_NE(0u, GetCurrentDirectoryA(MAX_PATH, before));
    ASSERT_TRUE(SetCurrentDirectoryA(folder_.path().c_str()));
    EXPECT_EQ(nullptr, LoadLibraryFromInstance("beside.dll", nullptr, &error_, nullptr, 0));
    EXPECT_EQ(ulong32{ERROR_MOD_NOT_FOUND}, error_);
    EXPECT_TRUE(SetCurrentDirectoryA(before));
}

DWORD flags_seen;

HMODULE WINAPI SeeFlags(const char*, HANDLE, DWORD flags) {
    flags_seen = flags;
    SetLastError(ERROR_SHARING_VIOLATION);
    return nullptr;
}

TEST_F(LibraryLoader, SearchesOnlyTheOwnAndTheDefaultFoldersForWhatIsNeeded) {
    const ImportPatch patch("QELKIT2_64.dll", "LoadLibraryExA", reinterpret_cast<void*>(SeeFlags));
    EXPECT_EQ(nullptr, LoadLibraryFromInstance("a.dll", nullptr, &error_, nullptr, 0));
    EXPECT_EQ(0x1100u, flags_seen);
    EXPECT_EQ(32u, error_) << "the error of the load, whatever the message took to build";
}

// What the message box was asked to show.
struct Box {
    HWND owner;
    std::string text, caption;
    UINT style;
};
std::vector<Box> boxes;

int WINAPI RememberBox(HWND owner, const char* text, const char* caption, UINT style) {
    boxes.push_back({owner, text, caption, style});
    return IDOK;
}

TEST_F(LibraryLoader, ShowsTheTextOnlyWhenAsked) {
    const ImportPatch patch("QELKIT2_64.dll", "MessageBoxA", reinterpret_cast<void*>(RememberBox));
    LoadLibraryFromInstance("none.dll", nullptr, nullptr, nullptr, 0);
    EXPECT_TRUE(boxes.empty());
    LoadLibraryFromInstance("none.dll", nullptr, nullptr, nullptr, -1);
    ASSERT_EQ(1u, boxes.size());
    EXPECT_EQ(nullptr, boxes[0].owner);
    EXPECT_EQ(FailureText("126(0x0000007E) Library name=none.dll"), boxes[0].text);
    EXPECT_EQ("LoadLibraryFromInstance", boxes[0].caption);
    EXPECT_EQ(48u, boxes[0].style);
}

// A module path of exactly this length, or a longer one that was cut.
DWORD path_length;

DWORD WINAPI LongPath(HMODULE, char* path, DWORD size) {
    const DWORD length = path_length < size ? path_length : size;
    for (DWORD i = 0; i < length; ++i) path[i] = i == 2 ? '\\' : 'x';
    if (length < size) path[length] = '\0';
    if (length == size) SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return length;
}

TEST_F(LibraryLoader, TakesAnchorPathsOfUpTo260Characters) {
    const ImportPatch path("QELKIT2_64.dll", "GetModuleFileNameA",
                           reinterpret_cast<void*>(LongPath));
    const ImportPatch load("QELKIT2_64.dll", "LoadLibraryExA", reinterpret_cast<void*>(SeeFlags));
    path_length = 260;
    LoadLibraryFromInstance("a.dll", nullptr, &error_, nullptr, 0);
    EXPECT_EQ(ulong32{ERROR_SHARING_VIOLATION}, error_) << "the load was tried";
    path_length = 261;
    LoadLibraryFromInstance("a.dll", nullptr, &error_, nullptr, 0);
    EXPECT_EQ(ulong32{ERROR_INSUFFICIENT_BUFFER}, error_);
}

TEST_F(LibraryLoader, FailureGivesCodeAndText) {
    folder_.Write("text.dll", "not a library");
    const kit::Module anchor(LoadLibraryA((folder_ / "anchor.dll").c_str()));
    const struct {
        const char* name;
        HINSTANCE anchor;
        ulong32 error;
        const char* tail;
    } cases[] = {
        {"none.dll", anchor.get(), 126, "126(0x0000007E) Library name=none.dll"},
        {"text.dll", anchor.get(), 193, "193(0x000000C1) Library name=text.dll"},
        {"%s", nullptr, 126, "126(0x0000007E) Library name=%s"},
        {nullptr, nullptr, 87, "87(0x00000057) Library name="},
        // No module: its path cannot be had.
        {"beside.dll", reinterpret_cast<HINSTANCE>(0x10000), 126,
         "126(0x0000007E) Library name=beside.dll"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tail);
        EXPECT_EQ(nullptr, LoadLibraryFromInstance(c.name, c.anchor, &error_, &message_, 0));
        EXPECT_EQ(c.error, error_);
        EXPECT_EQ(FailureText(c.tail), std::string(message_));
        EXPECT_EQ(nullptr, LoadLibraryFromInstance(c.name, c.anchor, nullptr, nullptr, 0));
    }
}

}  // namespace
