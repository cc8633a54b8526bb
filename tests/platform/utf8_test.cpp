#include "platform/utf8.h"

#include <gtest/gtest.h>

#include "platform/system.h"

namespace platform_tests {
namespace {

TEST(Utf8, ValidTextsAreRecognised) {
    for (const char* text : {"", "plain", "ü", "日本", "\xF0\x9F\x98\x80", "\xEF\xBF\xBF", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(platform::IsValidUtf8(text)) << text;
    }
    EXPECT_TRUE(platform::IsValidUtf8(std::string_view("a\0b", 3)));
}

TEST(Utf8, MalformedTextsAreRecognised) {
    for (const char* text : {"\xFC", "a\x80", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
                             "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE6\x97", "\xE6\x97x", "\xFF"}) {
        EXPECT_FALSE(platform::IsValidUtf8(text)) << text;
    }
}

TEST(Utf8, WideTextAndBack) {
    EXPECT_EQ(platform::Utf8ToWide("aü日\xF0\x9F\x98\x80"), u"aü日😀");
    EXPECT_EQ(platform::WideToUtf8(u"aü日😀"), "aü日\xF0\x9F\x98\x80");
    EXPECT_EQ(platform::Utf8ToWide(""), u"");
    EXPECT_EQ(platform::WideToUtf8(u""), "");
}

TEST(Utf8, EveryCodePointSurvivesTheRoundTrip) {
    for (char32_t value = 1; value <= 0x10FFFF; value += value < 0x3000 ? 1 : 97) {
        if (value >= 0xD800 && value <= 0xDFFF) continue;
        std::string text;
        platform::AppendUtf8(text, value);
        ASSERT_TRUE(platform::IsValidUtf8(text)) << static_cast<unsigned long>(value);
        ASSERT_EQ(platform::WideToUtf8(platform::Utf8ToWide(text)), text) << static_cast<unsigned long>(value);
    }
}

TEST(Utf8, MalformedBytesBecomeReplacementCharacters) {
    EXPECT_EQ(platform::Utf8ToWide("a\xFCz"), u"a\uFFFDz");
    // One for each broken sequence, not one for each byte of it.
    EXPECT_EQ(platform::Utf8ToWide("\xE6\x97z"), u"\uFFFDz");
    EXPECT_EQ(platform::Utf8ToWide("\xC0\x80"), u"\uFFFD\uFFFD");
    EXPECT_EQ(platform::Utf8ToWide("\xF0\x9F\x98"), u"\uFFFD");
}

TEST(Utf8, LoneSurrogatesBecomeReplacementCharacters) {
    const char16_t high[] = {u'a', 0xD83D, u'z', 0};
    const char16_t low[] = {0xDE00, 0};
    const char16_t last[] = {0xD83D, 0};
    EXPECT_EQ(platform::WideToUtf8(high), "a\xEF\xBF\xBDz");
    EXPECT_EQ(platform::WideToUtf8(low), "\xEF\xBF\xBD");
    EXPECT_EQ(platform::WideToUtf8(last), "\xEF\xBF\xBD");
}

std::string Cut(std::string_view text, std::size_t longest) {
    return std::string(platform::CutUtf8(text, longest));
}

TEST(Utf8, CutNeverSplitsACharacter) {
    EXPECT_EQ(Cut("abc", 3), "abc");
    EXPECT_EQ(Cut("abc", 2), "ab");
    EXPECT_EQ(Cut("aü", 2), "a");
    EXPECT_EQ(Cut("aü", 3), "aü");
    EXPECT_EQ(Cut("日", 2), "");
    EXPECT_EQ(Cut("abc", 0), "");
}

}  // namespace
}  // namespace platform_tests
