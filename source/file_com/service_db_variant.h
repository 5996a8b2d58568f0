#pragma once

#include <cstdint>

#include "base/export.h"

// Two 64-bit values whose meaning is the caller's, 0 at first.
//
// The order of the virtual functions and of the fields is part of the binary interface: add only
// at the end.
class QELKIT_API CSERVICEDBVariant {
public:
    // Both values are 0.
    CSERVICEDBVariant();
    CSERVICEDBVariant(const CSERVICEDBVariant&);
    CSERVICEDBVariant& operator=(const CSERVICEDBVariant&);
    virtual ~CSERVICEDBVariant();

    // Both values become 0.
    void Clear();

    std::int64_t first;   // the caller's
    std::int64_t second;  // the caller's
};

inline CSERVICEDBVariant::CSERVICEDBVariant(const CSERVICEDBVariant&) = default;
inline CSERVICEDBVariant& CSERVICEDBVariant::operator=(const CSERVICEDBVariant&) = default;
