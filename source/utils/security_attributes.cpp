#include "utils/security_attributes.h"

namespace QELUtils {

static_assert(sizeof(CNullDaclSA) == 32 && sizeof(CWorldDaclSA) == 48,
              "the layout is part of the binary interface");

namespace {

// A descriptor with this access list; null without memory.
void* MakeDescriptor(ACL* list) {
    void* const descriptor = ::LocalAlloc(LPTR, SECURITY_DESCRIPTOR_MIN_LENGTH);
    if (descriptor && ::InitializeSecurityDescriptor(descriptor, SECURITY_DESCRIPTOR_REVISION) &&
        ::SetSecurityDescriptorDacl(descriptor, TRUE, list, FALSE)) {
        return descriptor;
    }
    ::LocalFree(descriptor);
    return nullptr;
}

constexpr DWORD kEntryRoom = 16;  // of the list, beside the SID: its own header and the entry's

}  // namespace

CNullDaclSA::CNullDaclSA()
    : attributes_{sizeof attributes_, nullptr, FALSE}, descriptor_(MakeDescriptor(nullptr)) {
    attributes_.lpSecurityDescriptor = descriptor_;
}

CNullDaclSA::~CNullDaclSA() { ::LocalFree(descriptor_); }

CWorldDaclSA::CWorldDaclSA()
    : attributes_{sizeof attributes_, nullptr, FALSE},
      descriptor_(nullptr),
      everyone_(nullptr),
      list_(nullptr) {
    // Without the entry the list would keep everybody out, and without the list let everybody in.
    if (Fill()) descriptor_ = MakeDescriptor(list_);
    attributes_.lpSecurityDescriptor = descriptor_;
}

bool CWorldDaclSA::Fill() {
    SID_IDENTIFIER_AUTHORITY world = {SECURITY_WORLD_SID_AUTHORITY};
    if (!::AllocateAndInitializeSid(&world, 1, SECURITY_WORLD_RID, 0, 0, 0, 0, 0, 0, 0,
                                    &everyone_)) {
        return false;
    }
    const DWORD size = ::GetLengthSid(everyone_) + kEntryRoom;
    list_ = static_cast<ACL*>(::LocalAlloc(LPTR, size));
    return list_ && ::InitializeAcl(list_, size, ACL_REVISION) &&
           ::AddAccessAllowedAceEx(list_, ACL_REVISION, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                                   GENERIC_ALL, everyone_);
}

CWorldDaclSA::~CWorldDaclSA() {
    if (everyone_) ::FreeSid(everyone_);
    ::LocalFree(list_);
    ::LocalFree(descriptor_);
}

}  // namespace QELUtils
