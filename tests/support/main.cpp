// The main of every test program. Under Windows it insists on code page 1251, in which the
// expected texts are written, and checks the heap after every test.

#include <gtest/gtest.h>

#ifdef _WIN32
#include <malloc.h>

#include "platform/windows.h"

namespace {

class HeapCheck : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo& test) override {
        const auto heap = reinterpret_cast<HANDLE>(_get_heap_handle());
        EXPECT_TRUE(HeapValidate(heap, 0, nullptr)) << "heap damaged by " << test.name();
    }
};

bool PrepareWindows() {
    if (GetACP() != 1251) {
        ADD_FAILURE() << "the tests need code page 1251, this is " << GetACP()
                      << "; start them through cmake/run-wine.sh";
        return false;
    }
    testing::UnitTest::GetInstance()->listeners().Append(new HeapCheck);
    return true;
}

}  // namespace
#endif

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
#ifdef _WIN32
    if (!PrepareWindows()) return 1;
#endif
    return RUN_ALL_TESTS();
}
