#include "ftp/control/reserved_names.h"

#include <gtest/gtest.h>

namespace {

TEST(FileNameIsReserved, SixNamesWithTheirDot) {
    for (const char* name : {"CON.txt", "aux.", "Prn.x", "nul.tar.gz", "lpt1.a", "LPT2.b"})
        EXPECT_TRUE(FileNameIsReserved(name)) << name;
}

TEST(FileNameIsReserved, NothingElse) {
    for (const char* name : {"console", "con", "com1.txt", "lpt3.x", "acon.txt", ""})
        EXPECT_FALSE(FileNameIsReserved(name)) << name;
    EXPECT_FALSE(FileNameIsReserved(nullptr));
}

}  // namespace
