#include "file_com/service_db_variant.h"

static_assert(sizeof(CSERVICEDBVariant) == 24, "part of the binary interface");

CSERVICEDBVariant::CSERVICEDBVariant() : first(0), second(0) {}

CSERVICEDBVariant::~CSERVICEDBVariant() { Clear(); }

void CSERVICEDBVariant::Clear() {
    first = 0;
    second = 0;
}
