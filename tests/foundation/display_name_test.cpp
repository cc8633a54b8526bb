#include "foundation/display_name.h"

#include <gtest/gtest.h>

namespace {

TEST(DisplayNames, KeepsUtf8AndReadsOtherBytesInTheSystemPage) {
    EXPECT_EQ(DisplayName("h\xc3\xa4"), "h\xc3\xa4");
    EXPECT_EQ(DisplayName("h\xe4"), "h\xc3\xa4");
}

}  // namespace
