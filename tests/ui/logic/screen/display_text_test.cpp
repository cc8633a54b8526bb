// Texts that controls ask for.
#include "ui/screen/display_text.h"

#include <gtest/gtest.h>

#include <string>

TEST(GiveText, AShortTextIsCopiedWholeWithItsEnd) {
    wchar_t buffer[] = L"xxxxxx";
    GiveText(L"abc", buffer, 7);
    EXPECT_EQ(std::wstring(buffer, 7), std::wstring(L"abc\0xx\0", 7));
}

TEST(GiveText, ALongTextIsCutToTheBuffer) {
    wchar_t buffer[] = L"xxxxxx";
    GiveText(L"abcdef", buffer, 4);
    EXPECT_EQ(std::wstring(buffer, 7), std::wstring(L"abc\0xx\0", 7)) << "nothing behind the buffer is touched";
}

TEST(GiveText, ATextThatJustFitsKeepsItsLastCharacter) {
    wchar_t buffer[] = L"xxxxxx";
    GiveText(L"abc", buffer, 4);
    EXPECT_EQ(std::wstring(buffer), L"abc");
}

TEST(GiveText, WithoutRoomNothingIsWritten) {
    wchar_t buffer[] = L"x";
    GiveText(L"abc", buffer, 0);
    EXPECT_EQ(buffer[0], L'x');
    GiveText(L"abc", nullptr, 4);
}
