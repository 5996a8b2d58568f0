#include <gtest/gtest.h>

#include "runtime/universal_hash.h"
#include "support/failing_memory.h"

TEST(UniversalHashMemory, ClearsTheCallersVariableWhenATableCannotBeMade) {
    for (int allowed : {0, 1}) {
        SCOPED_TRACE(allowed);
        int anything;
        auto* table = reinterpret_cast<CQELUniversalHash*>(&anything);
        const failing_memory::After limit(allowed);
        new CQELUniversalHash(10, 4, 4, &table);
        EXPECT_EQ(nullptr, table);
    }
}

// Growing takes three allocations: the object, its pool, its buckets.
TEST(UniversalHashMemory, KeepsTheFullTableWhenItCannotGrow) {
    const int keys[] = {1, 2, 3};
    for (int allowed : {0, 1, 2}) {
        SCOPED_TRACE(allowed);
        CQELUniversalHash* table = nullptr;
        new CQELUniversalHash(2, 4, 4, &table);
        for (int i : {0, 1}) ASSERT_EQ(0, table->Add(&keys[i], &keys[i]));
        const auto* full = table;
        {
            const failing_memory::After limit(allowed);
            EXPECT_EQ(2, table->Add(&keys[2], &keys[2]));
            EXPECT_EQ(2, table->Add(&keys[0], &keys[0]));
        }
        EXPECT_EQ(full, table);
        EXPECT_EQ(0, table->Add(&keys[2], &keys[2]));
        for (int key : keys) EXPECT_EQ(0, table->Find(&key, nullptr)) << key;
        delete table;
    }
}
