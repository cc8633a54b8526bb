#include "platform/strings.h"

#include <gtest/gtest.h>

#include "platform/system.h"
#include "platform/utf8.h"

namespace platform_tests {
namespace {

constexpr unsigned kKnownText = 6021;
constexpr unsigned kNoText = 65'000;

TEST(StringTable, TextsAreFoundByNumber) {
    std::string text;
    ASSERT_TRUE(platform::LoadText(kKnownText, 1000, text));
    EXPECT_EQ(text.substr(0, 16), "Local Host name:");
    EXPECT_NE(text.find("%1!s!"), std::string::npos);
}

TEST(StringTable, LongerTextsKeepTheirFirstCharacters) {
    std::string text;
    ASSERT_TRUE(platform::LoadText(kKnownText, 10, text));
    EXPECT_EQ(text, "Local Host");
}

TEST(StringTable, AnAbsentTextGivesError1814AndEmptiesTheResult) {
    std::string text = "old";
    platform::SetLastSystemError(0);
    EXPECT_FALSE(platform::LoadText(kNoText, 1000, text));
    EXPECT_EQ(platform::LastSystemError(), 1814u);
    EXPECT_EQ(text, "");
}

TEST(StringTable, NumbersBesideKnownOnesAreAbsentToo) {
    // Sixteen texts share a block of the table; a hole in a block is another case than a missing block.
    std::string text;
    for (unsigned id = 1; id < 65'000; ++id) {
        platform::SetLastSystemError(0);
        if (platform::LoadText(id, 4096, text)) continue;
        ASSERT_EQ(platform::LastSystemError(), 1814u) << id;
        ASSERT_EQ(text, "") << id;
    }
}

TEST(StringTable, EveryTextIsValidUtf8) {
    std::string text;
    int count = 0;
    for (unsigned id = 1; id < 65'000; ++id) {
        if (!platform::LoadText(id, 4096, text)) continue;
        ++count;
        EXPECT_TRUE(platform::IsValidUtf8(text)) << id;
    }
    EXPECT_GT(count, 100);
}

}  // namespace
}  // namespace platform_tests
