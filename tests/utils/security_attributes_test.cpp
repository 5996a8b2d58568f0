#include "utils/security_attributes.h"

#include <gtest/gtest.h>

#include <string>

#include "support/import_patch.h"
#include "utils/access_lists.h"

namespace {

std::string ListOfEvent(SECURITY_ATTRIBUTES* attributes) {
    return AccessList(kit::KernelHandle(CreateEventA(attributes, TRUE, FALSE, nullptr)).get());
}

TEST(SecurityAttributes, GiveObjectsTheirAccessLists) {
    QELUtils::CNullDaclSA nobody_is_kept_out;
    QELUtils::CWorldDaclSA everyone;
    EXPECT_EQ("null", ListOfEvent(nobody_is_kept_out));
    // Inherited by objects and containers, all rights, for the world.
    EXPECT_EQ("(A;OICI;GA;;;WD)", ListOfEvent(everyone));
    for (const SECURITY_ATTRIBUTES* attributes :
         {static_cast<SECURITY_ATTRIBUTES*>(nobody_is_kept_out),
          static_cast<SECURITY_ATTRIBUTES*>(everyone)}) {
        EXPECT_EQ(24u, attributes->nLength);
        EXPECT_FALSE(attributes->bInheritHandle);
    }
}

HLOCAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }

TEST(SecurityAttributes, AreTheDefaultWithoutMemory) {
    const ImportPatch allocate(kLibrary, "LocalAlloc", NoMemory);
    QELUtils::CNullDaclSA null_list;
    QELUtils::CWorldDaclSA world;
    EXPECT_EQ(nullptr, static_cast<SECURITY_ATTRIBUTES*>(null_list)->lpSecurityDescriptor);
    EXPECT_EQ(nullptr, static_cast<SECURITY_ATTRIBUTES*>(world)->lpSecurityDescriptor);
}

}  // namespace
