#include "text/c_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "platform/windows.h"

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

}  // namespace
