#include "runtime/reference.h"

#include "status/qel_status.h"
#include "status/status_codes.h"

static_assert(sizeof(CQELReference) == 16, "bodies of callers begin behind it");

CQELReference::~CQELReference() = default;

long32 CQELReference::AddRef() { return ++count_; }

long32 CQELReference::Release() {
    const long32 left = --count_;  // the object may be gone below: only this copy counts
    if (left == 0) delete this;
    return left;
}

void CQELReference::CheckImplementation(const CQELReference* p) {
    if (!p) throw XQELStatus(kStatusInternalError, true);
}
