#include "status/library_loader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>

#include "base/cp1251.h"
#include "platform/handles.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"
#include "support/working_folder.h"

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
        GetModuleFileNameA(GetModuleHandleA("libwinpthread-1.dll"), runtime, MAX_PATH);
        ASSERT_TRUE(CopyFileA(runtime, (folder_ / "anchor.dll").c_str(), TRUE));
        ASSERT_TRUE(CopyFileA(runtime, (folder_ / "beside.dll").c_str(), TRUE));
    }

    TempFolder folder_;
    ulong32 error_ = kUntouched;
    CQELString message_{"untouched"};
};

TEST_F(LibraryLoader, LoadsFromTheFolderOfTheAnchorOrOfThisLibraryAndNoOther) {
    const kit::Module anchor(LoadLibraryA((folder_ / "anchor.dll").c_str()));
    ASSERT_TRUE(static_cast<bool>(anchor));
    const kit::Module beside(
        LoadLibraryFromInstance("beside.dll", anchor.get(), &error_, &message_, 0));
    ASSERT_TRUE(static_cast<bool>(beside));
    EXPECT_EQ(GetModuleHandleA((folder_ / "beside.dll").c_str()), beside.get());
    const kit::Module own(
        LoadLibraryFromInstance("qelkit2_64.DLL", nullptr, &error_, &message_, 0));
    EXPECT_EQ(GetModuleHandleA(kLibrary), own.get());
    EXPECT_EQ(kUntouched, error_);
    EXPECT_STREQ("untouched", message_);
    const WorkingFolder here(folder_.path());
    EXPECT_EQ(nullptr, LoadLibraryFromInstance("beside.dll", nullptr, &error_, nullptr, 0));
    EXPECT_EQ(ulong32{ERROR_MOD_NOT_FOUND}, error_);
}

// What the message box was asked to show.
std::string shown;

int WINAPI RememberBox(HWND owner, const char* text, const char* caption, UINT style) {
    shown += (owner ? "owned " : "") + std::string(caption) + std::to_string(style) + text;
    return IDOK;
}

TEST_F(LibraryLoader, ShowsTheTextOnlyWhenAsked) {
    const ImportPatch patch(kLibrary, "MessageBoxA", RememberBox);
    LoadLibraryFromInstance("none.dll", nullptr, nullptr, nullptr, 0);
    EXPECT_EQ("", shown);
    LoadLibraryFromInstance("none.dll", nullptr, nullptr, nullptr, -1);
    EXPECT_EQ("LoadLibraryFromInstance48" + FailureText("126(0x0000007E) Library name=none.dll"),
              shown);
}

// A module path of exactly this length, or a longer one that was cut.
std::size_t path_length;

DWORD WINAPI LongPath(HMODULE, char* path, DWORD size) {
    const std::string whole = "C:\\" + std::string(path_length - 3, 'x') + '\0';
    if (whole.size() > size) SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return static_cast<DWORD>((std::min)(whole.copy(path, size), path_length));
}

DWORD flags_seen;

HMODULE WINAPI SeeFlags(const char*, HANDLE, DWORD flags) {
    flags_seen = flags;
    SetLastError(ERROR_SHARING_VIOLATION);
    return nullptr;
}

// Of what the library needs itself, only its own and the default folders are searched.
TEST_F(LibraryLoader, TakesAnchorPathsOfUpTo260Characters) {
    const ImportPatch path(kLibrary, "GetModuleFileNameA", LongPath);
    const ImportPatch load(kLibrary, "LoadLibraryExA", SeeFlags);
    path_length = 260;
    LoadLibraryFromInstance("a.dll", nullptr, &error_, nullptr, 0);
    EXPECT_EQ(ulong32{ERROR_SHARING_VIOLATION}, error_) << "whatever the message took to build";
    EXPECT_EQ(0x1100u, flags_seen);
    path_length = 261;
    LoadLibraryFromInstance("a.dll", nullptr, &error_, nullptr, 0);
    EXPECT_EQ(ulong32{ERROR_INSUFFICIENT_BUFFER}, error_);
}

TEST_F(LibraryLoader, FailureGivesCodeAndText) {
    folder_.Write("text.dll", "not a library");
    const kit::Module anchor(LoadLibraryA((folder_ / "anchor.dll").c_str()));
    const auto no_module = reinterpret_cast<HINSTANCE>(0x10000);
    const std::tuple<const char*, HINSTANCE, ulong32, const char*> cases[] = {
        {"none.dll", anchor.get(), 126, "126(0x0000007E) Library name=none.dll"},
        {"text.dll", anchor.get(), 193, "193(0x000000C1) Library name=text.dll"},
        {"%s", nullptr, 126, "126(0x0000007E) Library name=%s"},
        {nullptr, nullptr, 87, "87(0x00000057) Library name="},
        {"beside.dll", no_module, 126, "126(0x0000007E) Library name=beside.dll"},
    };
    for (const auto& [name, module, error, tail] : cases) {
        EXPECT_EQ(nullptr, LoadLibraryFromInstance(name, module, &error_, &message_, 0));
        EXPECT_EQ(error, error_) << tail;
        EXPECT_EQ(FailureText(tail), std::string(message_));
        EXPECT_EQ(nullptr, LoadLibraryFromInstance(name, module, nullptr, nullptr, 0));
    }
}

}  // namespace
