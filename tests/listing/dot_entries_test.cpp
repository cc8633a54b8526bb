#include "listing/dot_entries.h"

#include <gtest/gtest.h>

TEST(DotEntries, OnlyOneAndTwoDotsAreDotEntries) {
    EXPECT_TRUE(IsDotEntry("."));
    EXPECT_TRUE(IsDotEntry(".."));
    for (const char* name : {"", "...", ".a", "..a", "a.", ". ", " ."}) EXPECT_FALSE(IsDotEntry(name)) << name;
}
