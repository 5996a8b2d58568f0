#include "text/c_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <tuple>

#include "platform/windows.h"
#include "support/code_page.h"
#include "support/guarded_buffer.h"

namespace {

constexpr std::size_t kPage = 4096;

// Three pages of "x" that can be read and written, and what a test makes of the last one.
struct Pages {
    Pages() { std::memset(base, 'x', 3 * kPage); }
    ~Pages() { VirtualFree(base, 0, MEM_RELEASE); }

    // Gives the last page this protection; 0 takes its memory away.
    void Protect(DWORD protection) {
        DWORD before;
        if (protection == 0) VirtualFree(last, kPage, MEM_DECOMMIT);
        if (protection != 0) VirtualProtect(last, kPage, protection, &before);
    }

    char* const base = static_cast<char*>(
        VirtualAlloc(nullptr, 3 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    char* const last = base + 2 * kPage;
};

TEST(Probes, GoAsFarAsTheProtectionOfPages) {
    constexpr DWORD kGuard = PAGE_READWRITE | PAGE_GUARD;
    const std::tuple<DWORD, int, int> cases[] = {
        {PAGE_READWRITE, 1, 1},
        {PAGE_READONLY, 1, 0},
        {PAGE_EXECUTE_READ, 1, 0},
        {PAGE_EXECUTE_READWRITE, 1, 1},
        {PAGE_NOACCESS, 0, 0},
        {kGuard, 0, 0},
        {0, 0, 0},
    };
    for (const auto& [protection, read, write] : cases) {
        SCOPED_TRACE(protection);
        Pages pages;
        char *const base = pages.base, *const last = pages.last;
        last[kPage - 1] = '\0';
        pages.Protect(protection);
        EXPECT_EQ(read, QELIsValidAddress(last, kPage, 0));
        EXPECT_EQ(write, QELIsValidAddress(last, 1, 1));
        EXPECT_EQ(read, QELIsValidAddress(base + 1, 2 * kPage, 0));  // one byte of the last page
        EXPECT_EQ(write, QELIsValidAddress(base + 1, 2 * kPage, 1));
        EXPECT_EQ(1, QELIsValidAddress(base, 2 * kPage, 1));
        const std::tuple<int, int, int> strings[] = {
            {3, -1, read}, {3, INT_MIN, read}, {3, 4, read}, {3, 3, 1}, {0, 1, read}, {0, 0, 1}};
        for (const auto& [before, most, valid] : strings) {
            EXPECT_EQ(valid, QELIsValidString(last - before, most)) << before << ' ' << most;
        }
        last[-1] = '\0';
        EXPECT_EQ(1, QELIsValidString(base, INT_MAX));
        MEMORY_BASIC_INFORMATION found;
        VirtualQuery(last, &found, sizeof found);
        EXPECT_EQ(protection, found.Protect);  // a guard page still guards
    }
}

TEST(Probes, RefuseWhatIsNoAddress) {
    const char* const wild = reinterpret_cast<const char*>(1);
    const char* const top = reinterpret_cast<const char*>(UINTPTR_MAX - 10);
    for (const char* p : {static_cast<const char*>(nullptr), wild, top}) {
        EXPECT_EQ(0, QELIsValidAddress(p, 1, 0));
        EXPECT_EQ(0, QELIsValidAddress(p, UINT_MAX, 1));
        EXPECT_EQ(0, QELIsValidString(p, -1));
    }
    EXPECT_EQ(0, QELIsValidAddress(nullptr, 0, 0));
    EXPECT_EQ(0, QELIsValidString(nullptr, 0));
    EXPECT_EQ(1, QELIsValidAddress(&wild, 0, 1));
    EXPECT_EQ(0, QELIsValidAddress(&wild, UINT_MAX, 1));
    EXPECT_EQ(1, QELIsValidString("text", -1));
    EXPECT_EQ(0, QELIsValidAddress("text", 1, 1));  // constants cannot be written
}

// Where both searches find `needle` in the block; -1 for nowhere. Nothing behind the block is there.
int PlaceIn(const std::string& block, const char* needle, int size) {
    GuardedBuffer buffer(block.data(), block.size());
    const char* const hit = CTFStrStr(buffer.text(), needle, size);
    EXPECT_EQ(hit, CTFStrStrA(buffer.text(), needle, size));
    return hit ? static_cast<int>(hit - buffer.text()) : -1;
}

TEST(BlockSearch, GoesStringByStringWithinTheBlock) {
    const std::string block("one\0two\0three\0", 14);
    const std::tuple<const char*, int, int> cases[] = {
        {"one", 14, 0}, {"two", 14, 4}, {"ree", 14, 10},  {"three", 14, 8},     {"four", 14, -1},
        {"wo", 7, 5},   {"wo", 6, -1},  {"three", 13, 8}, {"three", 12, -1},    {"one", 3, 0},
        {"one", 2, -1}, {"ne", 2, -1},  {"two", 0, -1},   {"ne", 0, 1},         {"e", 14, 2},
        {"", 14, 0},    {"", 0, 0},     {"one", -1, -1},  {"one", INT_MIN, -1},
    };
    for (const auto& [needle, size, place] : cases) {
        EXPECT_EQ(place, PlaceIn(block, needle, size)) << '"' << needle << "\" in " << size;
    }
    EXPECT_EQ(4, PlaceIn(std::string("one\0two", 7), "two", 7));  // no last terminator
    EXPECT_EQ(-1, PlaceIn(std::string("one\0two", 7), "two!", 7));
    EXPECT_EQ(nullptr, CTFStrStr(nullptr, "x", 5));
    EXPECT_EQ(nullptr, CTFStrStrA("x", nullptr, 5));
}

TEST(BlockSearch, StepsOverWholeCharactersOrNot) {
    const MultiByteCodePage japanese(932);
    // 83 5C is one character whose second byte is a backslash.
    GuardedBuffer buffer("\x83\\a\\\0\x83\\", 7);
    EXPECT_EQ(buffer.text() + 3, CTFStrStr(buffer.text(), "\\", 7));
    EXPECT_EQ(buffer.text() + 1, CTFStrStrA(buffer.text(), "\\", 7));
    EXPECT_EQ(buffer.text() + 5, CTFStrStr(buffer.text() + 5, "\x83\\", 2));
    EXPECT_EQ(nullptr, CTFStrStr(buffer.text() + 5, "\\", 2));
    EXPECT_EQ(nullptr, CTFStrStr(buffer.text() + 6, "a", 1));
}

// The text after a patch, in a buffer that ends with the one character that may be added.
std::string After(void (*patch)(char*), const std::string& text) {
    GuardedBuffer buffer(text.size() + 2);
    std::memcpy(buffer.text(), text.c_str(), text.size() + 1);
    patch(buffer.text());
    patch(nullptr);
    return buffer.text();
}

TEST(Slashes, OfACTextAreAddedAndCutOnce) {
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"C:", "C:\\", "C:"},       {"C:\\", "C:\\", "C:"}, {"C:\\\\", "C:\\\\", "C:\\"},
        {"dir/", "dir/\\", "dir/"}, {"", "\\", ""},         {"\\", "\\", ""},
    };
    for (const auto& [text, checked, cut] : cases) {
        EXPECT_EQ(checked, After(CheckEndSlash, text));
        EXPECT_EQ(cut, After(CutEndSlash, text));
    }
    const std::string longer(40000, 'x');
    EXPECT_EQ(longer + "\\", After(CheckEndSlash, longer));
}

TEST(Slashes, ReplaceAPathThatBeginsBeyondAscii) {
    EXPECT_EQ("\\", After(CheckEndSlash, "\xCF\xE0\xEF\xEA\xE0\\x"));
    EXPECT_EQ("\\", After(CheckEndSlash, "\x80"));
    EXPECT_EQ("\x7F\xCF\\", After(CheckEndSlash, "\x7F\xCF"));
}

TEST(CText, TrimsBlanksAndComparesUnsigned) {
    EXPECT_EQ(" a b", After(TrimEndSpaces, " a b  "));
    EXPECT_EQ("a\t", After(TrimEndSpaces, "a\t "));
    EXPECT_EQ("", After(TrimEndSpaces, "   "));
    EXPECT_EQ(-1, NIKIn(4, 5, 7));
    EXPECT_EQ(0, NIKIn(5, 5, 7));
    EXPECT_EQ(0, NIKIn(7, 5, 7));
    EXPECT_EQ(1, NIKIn(0x80000000, 5, 7));
    EXPECT_EQ(-1, NIKIn(6, 7, 5));  // an empty range: below it first
}

}  // namespace
