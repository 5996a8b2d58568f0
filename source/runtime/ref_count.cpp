#include "runtime/ref_count.h"

static_assert(sizeof(CRefCnt) == 16, "the count lies right behind the table pointer");

CRefCnt::~CRefCnt() = default;
