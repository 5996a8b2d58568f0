#include "utils/security_attributes.h"

#include <gtest/gtest.h>

#include "support/import_patch.h"
#include "utils/access_lists.h"

namespace {

std::string ListOfEvent(SECURITY_ATTRIBUTES* attributes) {
    EXPECT_TRUE(attributes->nLength == 24 && !attributes->bInheritHandle);
    return AccessList(kit::KernelHandle(CreateEventA(attributes, TRUE, FALSE, nullptr)).get());
}

TEST(SecurityAttributes, GiveObjectsTheirAccessLists) {
    EXPECT_EQ("null", ListOfEvent(QELUtils::CNullDaclSA()));
    // Inherited by objects and containers, all rights, for the world.
    EXPECT_EQ("(A;OICI;GA;;;WD)", ListOfEvent(QELUtils::CWorldDaclSA()));
}

HLOCAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }

TEST(SecurityAttributes, AreTheDefaultWithoutMemory) {
    const ImportPatch allocate(kLibrary, "LocalAlloc", NoMemory);
    const auto descriptor = [](SECURITY_ATTRIBUTES* made) { return made->lpSecurityDescriptor; };
    EXPECT_EQ(nullptr, descriptor(QELUtils::CNullDaclSA()));
    EXPECT_EQ(nullptr, descriptor(QELUtils::CWorldDaclSA()));
}

}  // namespace
