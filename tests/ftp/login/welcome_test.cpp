#include "ftp/login/welcome.h"

#include <gtest/gtest.h>

#include "config/host_types.h"

namespace {

TEST(DetectHostType, TheFirstSignInTheListWins) {
    EXPECT_EQ(DetectHostType(7000, "220 unix box, Microsoft FTP Service"), 7002u);
    EXPECT_EQ(DetectHostType(7000, "220 Microsoft FTP Service (EXOS)"), 7014u);
    EXPECT_EQ(DetectHostType(7000, "220 Ambrel FTP server on UNIX"), 7004u);
    EXPECT_EQ(DetectHostType(7000, "220 a unix box"), 7001u);
    EXPECT_EQ(DetectHostType(7000, "220 a Unix box"), 7001u);
    EXPECT_EQ(DetectHostType(7000, "220 a UNIX box"), 7001u);
}

TEST(DetectHostType, CaseMatters) {
    EXPECT_EQ(DetectHostType(7000, "220 uNIX, microsoft ftp service, (exos"), 7000u);
}

TEST(DetectHostType, AConfiguredTypeStays) {
    EXPECT_EQ(DetectHostType(7003, "220 Microsoft FTP Service"), 7003u);
}

}  // namespace
