#include <gtest/gtest.h>

#include "text/qel_string.h"

namespace {

// This program is linked with the library's objects, messages included.
TEST(CQELSprintf, FindsTheMessagesOfTheMainExecutable) {
    EXPECT_STREQ("Open returns error 5", CQELSprintf(1010, "Open", 5));
    EXPECT_STREQ("", CQELSprintf(65000));
}

}  // namespace
