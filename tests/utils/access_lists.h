#pragma once

#include <sddl.h>

#include <string>

#include "platform/handles.h"

// The access list of a kernel object as the system writes it: "(A;;GA;;;WD)" is one entry that
// gives everyone all rights. "null" when the object has the list that keeps nobody out.
inline std::string AccessList(HANDLE object) {
    BYTE descriptor[1024];
    DWORD size = sizeof descriptor;
    BOOL is_present = FALSE, is_default = FALSE;
    ACL* list = nullptr;
    char* text = nullptr;
    if (!GetKernelObjectSecurity(object, DACL_SECURITY_INFORMATION, descriptor, size, &size) ||
        !GetSecurityDescriptorDacl(descriptor, &is_present, &list, &is_default) || !is_present ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorA(
            descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr)) {
        return "none";
    }
    const kit::LocalBlock owner(text);
    return list ? text + 2 : "null";
}
