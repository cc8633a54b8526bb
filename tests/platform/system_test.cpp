#include "platform/system.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"
#include "platform/utf8.h"

namespace platform_tests {
namespace {

TEST(System, LastErrorIsKept) {
    platform::SetLastSystemError(112);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorDiskFull);
}

TEST(System, ErrorTextsHaveNoLineEnd) {
    for (const std::uint32_t error : {2u, 3u, 5u, 80u, 112u, 183u}) {
        const std::string text = platform::SystemErrorText(error);
        ASSERT_FALSE(text.empty()) << error;
        EXPECT_GT(static_cast<unsigned char>(text.back()), ' ') << error;
    }
    EXPECT_NE(platform::SystemErrorText(2), platform::SystemErrorText(5));
}

TEST(System, UnknownErrorsHaveNoText) {
    EXPECT_EQ(platform::SystemErrorText(0x20001234), "");
}

TEST(System, AskingForATextKeepsTheLastError) {
    platform::SetLastSystemError(5);
    platform::SystemErrorText(0x20001234);
    EXPECT_EQ(platform::LastSystemError(), 5u);
}

TEST(System, DebuggerOutputKeepsTheLastError) {
    platform::SetLastSystemError(5);
    platform::WriteDebugger("a line for the debugger\n");
    EXPECT_EQ(platform::LastSystemError(), 5u);
}

TEST(System, NamesAreThere) {
    EXPECT_FALSE(platform::UserName().empty());
    const std::string path = platform::ProgramPath();
    EXPECT_NE(path.find("platform_tests"), std::string::npos) << path;
    platform::FileInfo info;
    EXPECT_TRUE(platform::GetFileInfo(path.c_str(), info));
    EXPECT_GT(info.size, 0u);
}

TEST(SystemPage, WesternBytesBecomeUtf8) {
    EXPECT_EQ(platform::SystemPageToUtf8("plain"), "plain");
    EXPECT_EQ(platform::SystemPageToUtf8("Gr\xFC\xDF"
                                         "e \x80 \x96"),
              "Grüße € –");
    EXPECT_EQ(platform::SystemPageToUtf8(""), "");
}

TEST(SystemPage, EveryByteGivesValidUtf8) {
    for (int byte = 1; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        const std::string text = platform::SystemPageToUtf8({&character, 1});
        EXPECT_TRUE(platform::IsValidUtf8(text)) << byte;
        EXPECT_FALSE(text.empty()) << byte;
    }
}

TEST(LocaleText, LowerWorksOnEveryLetter) {
    EXPECT_EQ(platform::LocaleLower("HOST-Name_42 ÄÖÜ É Ω Ж"), "host-name_42 äöü é ω ж");
    EXPECT_EQ(platform::LocaleLower(""), "");
}

void ExpectOrder(const char* first, const char* second) {
    EXPECT_LT(platform::LocaleCompare(first, second), 0) << first << " < " << second;
    EXPECT_GT(platform::LocaleCompare(second, first), 0) << second << " > " << first;
}

TEST(LocaleText, ComparesInWordOrder) {
    ExpectOrder("apple", "Banana");
    ExpectOrder("Apple", "banana");
    ExpectOrder("a", "ab");
    ExpectOrder("", "a");
    ExpectOrder("file1", "filea");
    ExpectOrder("_start", "0start");
    EXPECT_EQ(platform::LocaleCompare("same", "same"), 0);
    EXPECT_EQ(platform::LocaleCompare("", ""), 0);
}

TEST(LocaleText, SmallLettersAndPlainLettersComeFirstAmongEquals) {
    ExpectOrder("a", "A");
    ExpectOrder("e", "é");
    ExpectOrder("é", "f");
}

TEST(LocaleText, HyphensDoNotPartWords) {
    ExpectOrder("coop", "co-op");
    ExpectOrder("co-op", "coopx");
}

}  // namespace
}  // namespace platform_tests
