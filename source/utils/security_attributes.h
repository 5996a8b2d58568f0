#pragma once

#include "base/export.h"
#include "platform/windows.h"

// Security attributes for kernel objects that other processes and sessions have to open:
//
//     QELUtils::CWorldDaclSA everybody;
//     HANDLE event = CreateEventA(everybody, TRUE, FALSE, "Global\\Ready");
//
// Handles made with them are not inherited. When memory runs out they hold no descriptor, and the
// object gets the creator's own default list: never wider rights than were meant. The attributes
// belong to the object and are read only while a call makes something with them.

namespace QELUtils {

// A null access list: no restriction for anyone, not even for changing the list itself.
class QELKIT_API CNullDaclSA {
public:
    // Makes the descriptor.
    CNullDaclSA();
    ~CNullDaclSA();
    CNullDaclSA(const CNullDaclSA&) = delete;
    CNullDaclSA& operator=(const CNullDaclSA&) = delete;

    // The attributes for a call; they live as long as this object.
    operator SECURITY_ATTRIBUTES*();

private:
    SECURITY_ATTRIBUTES attributes_;
    void* descriptor_;
};

inline CNullDaclSA::operator SECURITY_ATTRIBUTES*() { return &attributes_; }

// An access list with one entry: full access for everyone (S-1-1-0), inherited by what is made
// inside.
class QELKIT_API CWorldDaclSA {
public:
    // Makes the descriptor.
    CWorldDaclSA();
    ~CWorldDaclSA();
    CWorldDaclSA(const CWorldDaclSA&) = delete;
    CWorldDaclSA& operator=(const CWorldDaclSA&) = delete;

    // The attributes for a call; they live as long as this object.
    operator SECURITY_ATTRIBUTES*();

private:
    bool Fill();

    SECURITY_ATTRIBUTES attributes_;
    void* descriptor_;
    PSID everyone_;
    ACL* list_;
};

inline CWorldDaclSA::operator SECURITY_ATTRIBUTES*() { return &attributes_; }

}  // namespace QELUtils
