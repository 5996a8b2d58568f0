#include "text/c_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "platform/windows.h"
#include "support/guarded_buffer.h"

#include <mbctype.h>  // last: its macros break the standard headers

namespace {

constexpr std::size_t kPage = 4096;

DWORD ProtectionOf(const void* p) {
    MEMORY_BASIC_INFORMATION pages;
    VirtualQuery(p, &pages, sizeof pages);
    return pages.Protect;
}

// Three pages that can be read and written, and whatever a test makes of the last one.
class Pages : public testing::Test {
protected:
    Pages()
        : base_(static_cast<char*>(
              VirtualAlloc(nullptr, 3 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
        std::memset(base_, 'x', 3 * kPage);
    }
    ~Pages() override { VirtualFree(base_, 0, MEM_RELEASE); }

    // The last page gets this protection; 0 takes its memory away.
    void SetLast(DWORD protection) {
        DWORD before;
        if (protection == 0) {
            VirtualFree(last(), kPage, MEM_DECOMMIT);
        } else {
            VirtualProtect(last(), kPage, protection, &before);
        }
    }
    char* last() const { return base_ + 2 * kPage; }

    char* const base_;
};

TEST_F(Pages, AreValidAddressesAsFarAsTheirProtectionGoes) {
    const struct {
        DWORD protection;
        int read, write;
    } cases[] = {
        {PAGE_READWRITE, 1, 1},
        {PAGE_READONLY, 1, 0},
        {PAGE_EXECUTE_READ, 1, 0},
        {PAGE_EXECUTE_READWRITE, 1, 1},
        {PAGE_NOACCESS, 0, 0},
        {PAGE_READWRITE | PAGE_GUARD, 0, 0},
        {0, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.protection);
        SetLast(c.protection);
        EXPECT_EQ(c.read, QELIsValidAddress(last(), kPage, 0));
        EXPECT_EQ(c.write, QELIsValidAddress(last(), 1, 1));
        EXPECT_EQ(c.read, QELIsValidAddress(base_ + 1, 2 * kPage, 0));  // one byte of the last page
        EXPECT_EQ(c.write, QELIsValidAddress(base_ + 1, 2 * kPage, 1));
        EXPECT_EQ(1, QELIsValidAddress(base_, 2 * kPage, 1));
    }
}

TEST_F(Pages, EndAValidString) {
    for (DWORD protection : {DWORD{PAGE_NOACCESS}, DWORD{PAGE_READWRITE | PAGE_GUARD}, DWORD{0}}) {
        SCOPED_TRACE(protection);
        SetLast(protection);
        char* const end = last();
        end[-1] = 'x';
        EXPECT_EQ(0, QELIsValidString(end - 3, -1));
        EXPECT_EQ(0, QELIsValidString(end - 3, INT_MIN));
        EXPECT_EQ(0, QELIsValidString(end - 3, 4));
        EXPECT_EQ(1, QELIsValidString(end - 3, 3));
        EXPECT_EQ(0, QELIsValidString(end, 1));
        EXPECT_EQ(1, QELIsValidString(end, 0));
        end[-1] = '\0';
        EXPECT_EQ(1, QELIsValidString(end - 3, -1));
        EXPECT_EQ(1, QELIsValidString(base_, INT_MAX));
        if (protection == 0) break;
        SetLast(PAGE_READWRITE);
    }
}

TEST_F(Pages, ThatGuardStillGuardAfterAProbe) {
    SetLast(PAGE_READWRITE | PAGE_GUARD);
    EXPECT_EQ(0, QELIsValidString(base_, -1));
    EXPECT_EQ(0, QELIsValidAddress(last(), 1, 0));
    EXPECT_EQ(0, QELIsValidAddress(base_, 3 * kPage, 1));
    EXPECT_EQ(DWORD{PAGE_READWRITE | PAGE_GUARD}, ProtectionOf(last()));
}

TEST_F(Pages, AreWalkedWhenTheyDiffer) {
    SetLast(PAGE_READONLY);
    EXPECT_EQ(0, QELIsValidString(base_, 3 * kPage + 1) && QELIsValidAddress(base_, 3 * kPage, 1));
    EXPECT_EQ(1, QELIsValidString(base_, 3 * kPage));
    EXPECT_EQ(1, QELIsValidAddress(base_, 3 * kPage, 0));
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

// --- Search in blocks ----------------------------------------------------------------------------

// Where both searches find `needle` in the block; -1 for nowhere. Nothing behind the block is there.
int PlaceIn(const std::string& block, const char* needle, int size) {
    GuardedBuffer buffer(block.data(), block.size());
    const char* const hit = CTFStrStr(buffer.text(), needle, size);
    EXPECT_EQ(hit, CTFStrStrA(buffer.text(), needle, size));
    return hit ? static_cast<int>(hit - buffer.text()) : -1;
}

TEST(BlockSearch, GoesStringByStringWithinTheBlock) {
    const std::string block("one\0two\0three\0", 14);
    const struct {
        const char* needle;
        int size, place;
    } cases[] = {
        {"one", 14, 0},       {"two", 14, 4},    {"ree", 14, 10}, {"three", 14, 8},
        {"four", 14, -1},     {"wo", 7, 5},      {"wo", 6, -1},  // ends just within, just outside
        {"three", 13, 8},     {"three", 12, -1}, {"one", 3, 0},   {"one", 2, -1},
        {"ne", 2, -1},        {"two", 0, -1},    {"ne", 0, 1},  // 0: the first string only
        {"e", 14, 2},         {"", 14, 0},       {"", 0, 0},      {"one", -1, -1},
        {"one", INT_MIN, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << '"' << c.needle << "\" in " << c.size);
        EXPECT_EQ(c.place, PlaceIn(block, c.needle, c.size));
    }
    EXPECT_EQ(nullptr, CTFStrStr(nullptr, "x", 5));
    EXPECT_EQ(nullptr, CTFStrStrA("x", nullptr, 5));
}

TEST(BlockSearch, ReadsNoFurtherThanABlockWithoutItsLastTerminator) {
    EXPECT_EQ(4, PlaceIn(std::string("one\0two", 7), "two", 7));
    EXPECT_EQ(-1, PlaceIn(std::string("one\0two", 7), "two!", 7));
    EXPECT_EQ(-1, PlaceIn("one", "next", 3));
}

TEST(BlockSearch, StepsOverWholeCharactersOrNot) {
    const int before = _getmbcp();
    ASSERT_EQ(0, _setmbcp(932));
    // 83 5C is one character whose second byte is a backslash.
    const std::string block("\x83\\a\\\0\x83\\", 7);
    GuardedBuffer buffer(block.data(), block.size());
    EXPECT_EQ(buffer.text() + 3, CTFStrStr(buffer.text(), "\\", 7));
    EXPECT_EQ(buffer.text() + 1, CTFStrStrA(buffer.text(), "\\", 7));
    EXPECT_EQ(buffer.text() + 5, CTFStrStr(buffer.text() + 5, "\x83\\", 2));
    EXPECT_EQ(nullptr, CTFStrStr(buffer.text() + 5, "\\", 2));
    EXPECT_EQ(nullptr, CTFStrStr(buffer.text() + 6, "a", 1));
    _setmbcp(before);
}

// --- Patches -------------------------------------------------------------------------------------

// The text after a patch, in a buffer that ends with the one character that may be added.
std::string After(void (*patch)(char*), const std::string& text) {
    GuardedBuffer buffer(text.size() + 2);
    std::memcpy(buffer.text(), text.c_str(), text.size() + 1);
    patch(buffer.text());
    return buffer.text();
}

TEST(Slashes, AreAddedAndCutOnce) {
    const struct {
        const char *text, *checked, *cut;
    } cases[] = {
        {"C:", "C:\\", "C:"},       {"C:\\", "C:\\", "C:"}, {"C:\\\\", "C:\\\\", "C:\\"},
        {"dir/", "dir/\\", "dir/"}, {"", "\\", ""},         {"\\", "\\", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.checked, After(CheckEndSlash, c.text));
        EXPECT_EQ(c.cut, After(CutEndSlash, c.text));
    }
    const std::string longer(40000, 'x');
    EXPECT_EQ(longer + "\\", After(CheckEndSlash, longer));
    EXPECT_EQ(longer, After(CutEndSlash, longer + "\\"));
    CheckEndSlash(nullptr);
    CutEndSlash(nullptr);
}

TEST(Slashes, ReplaceAPathThatBeginsBeyondAscii) {
    EXPECT_EQ("\\", After(CheckEndSlash, "\xCF\xE0\xEF\xEA\xE0\\x"));
    EXPECT_EQ("\\", After(CheckEndSlash, "\x80"));
    EXPECT_EQ("D\xCF\\", After(CheckEndSlash, "D\xCF"));
    EXPECT_EQ("\x7F\\", After(CheckEndSlash, "\x7F"));
}

TEST(TrimEndSpaces, CutsBlanksOnly) {
    EXPECT_EQ(" a b", After(TrimEndSpaces, " a b  "));
    EXPECT_EQ("a\t", After(TrimEndSpaces, "a\t "));
    EXPECT_EQ("", After(TrimEndSpaces, "   "));
    EXPECT_EQ("", After(TrimEndSpaces, ""));
    TrimEndSpaces(nullptr);
}

TEST(NIKIn, ComparesUnsigned) {
    EXPECT_EQ(-1, NIKIn(4, 5, 7));
    EXPECT_EQ(0, NIKIn(5, 5, 7));
    EXPECT_EQ(0, NIKIn(7, 5, 7));
    EXPECT_EQ(1, NIKIn(0x80000000, 5, 7));
    EXPECT_EQ(-1, NIKIn(6, 7, 5));  // an empty range: below it first
}

}  // namespace
