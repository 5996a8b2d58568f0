#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "base/cp1251.h"
#include "platform/handles.h"
#include "support/import_patch.h"
#include "text/qel_string.h"

// The string tables: strings.rc.in for this program, strings_of_library.rc for a library beside it.

namespace {

constexpr char kLibraryOfStrings[] = "qelkit_test_strings.dll";
constexpr auto kSeventh = kit::Cp1251(u"Седьмая строка библиотеки");
constexpr auto kFileNotFound = kit::Cp1251(u"Файл не найден.");

const char* const kNoName = nullptr;

// What is loaded from a table into a string that has held something else.
std::string Loaded(int id, const char* module) {
    CQELString s("before");
    return static_cast<const char*>(s.LoadStringA(id, module));
}

bool IsLoaded() { return GetModuleHandleA(kLibraryOfStrings) != nullptr; }

// Whether nobody holds the library's file: not even its resources are mapped.
bool IsFileFree() {
    char path[MAX_PATH];
    SearchPathA(nullptr, kLibraryOfStrings, nullptr, sizeof path, path, nullptr);
    return static_cast<bool>(kit::FileHandle(
        CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
}

TEST(StringResource, IsLoadedWholeWhateverItsLength) {
    for (int length : {255, 256, 257, 511, 512, 513, 1024}) {
        const std::string expected(length, 's');
        EXPECT_EQ(expected, Loaded(length, nullptr));
        EXPECT_STREQ(expected.c_str(), CQELString().LoadStringA(length, HINSTANCE{}));
        EXPECT_STREQ(expected.c_str(), CQELString(length, kNoName));
    }
}

TEST(StringResource, OfThisLibraryIsFoundByTheBeginningOfItsName) {
    for (const char* name : {"QELKIT2", "qelkit2", "QelKit2_64.dll", "QELKIT2-any other name"}) {
        EXPECT_EQ(kFileNotFound.data(), Loaded(4, name)) << name;
    }
    EXPECT_EQ("", Loaded(4, "QELKIT"));
    EXPECT_STREQ(kFileNotFound.data(), CQELString().LoadQelkitString(4));
}

TEST(StringResource, ThatIsMissingEmptiesTheString) {
    const std::string endless(100000, 'x');
    for (const char* name :
         {"QELKIT2", kNoName, kLibraryOfStrings, "no_such.dll", "", "C:\\x.dll", endless.c_str()}) {
        EXPECT_EQ("", Loaded(29999, name)) << (name ? name : "(null)");
    }
    for (int id : {-1, 0x10004}) EXPECT_FALSE(CQELString("before").LoadQelkitString(id).IsValid());
}

TEST(StringResource, IsReadFromALibraryBesideTheProgramWithoutKeepingIt) {
    ASSERT_FALSE(IsLoaded());
    EXPECT_EQ(kSeventh.data(), Loaded(7, kLibraryOfStrings));
    EXPECT_EQ(kSeventh.data(), Loaded(7, "QELKIT_test_strings"));
    EXPECT_EQ("seven of the program", Loaded(7, nullptr));
    EXPECT_FALSE(IsLoaded());
    EXPECT_TRUE(IsFileFree());
    char ran[8];
    EXPECT_EQ(0u, GetEnvironmentVariableA("QELKIT_TEST_STRINGS_RAN", ran, sizeof ran));
}

TEST(StringResource, LeavesALoadedLibraryLoaded) {
    kit::Module library(LoadLibraryA(kLibraryOfStrings));
    ASSERT_TRUE(static_cast<bool>(library));
    EXPECT_EQ(kSeventh.data(), Loaded(7, kLibraryOfStrings));
    EXPECT_TRUE(IsLoaded());
    library.Reset();
    EXPECT_FALSE(IsLoaded());  // no reference was left behind either
}

int allocations_left;

void* LimitedMemory(std::size_t size) {
    return allocations_left-- > 0 ? std::malloc(size) : nullptr;
}

TEST(StringResource, ReleasesTheLibraryWhenMemoryRunsOut) {
    int failures = 0;
    for (bool failed = true; failed; failures += failed) {
        CQELString s;
        const ImportPatch limited("libstdc++-6.dll", "malloc", &LimitedMemory);
        allocations_left = failures;
        try {
            s.LoadStringA(7, kLibraryOfStrings);
            failed = false;
        } catch (const std::bad_alloc&) {
        }
        allocations_left = 1000000;
        EXPECT_TRUE(failed || s == kSeventh.data());
        EXPECT_FALSE(IsLoaded());
        EXPECT_TRUE(IsFileFree());
    }
    EXPECT_LT(1, failures);  // the path, then the buffer
}

}  // namespace
