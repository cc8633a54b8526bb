#include "config/password_form.h"

#include <gtest/gtest.h>

TEST(PasswordForm, AbOfAnOrdinaryUserIs6163) {
    EXPECT_EQ(EncodePassword("ab", "kim"), "6163");
    EXPECT_EQ(DecodePassword("6163", "kim"), "ab");
}

TEST(PasswordForm, AnonymousIsStoredAsItStands) {
    EXPECT_EQ(EncodePassword("ab", "anonymous"), "ab");
    EXPECT_EQ(DecodePassword("ab", "anonymous"), "ab");
}

TEST(PasswordForm, AnonymousIsComparedWithCase) {
    EXPECT_EQ(EncodePassword("ab", "Anonymous"), "6163");
    EXPECT_EQ(EncodePassword("ab", ""), "6163");
}

TEST(PasswordForm, EveryAsciiPasswordComesBack) {
    std::string password;
    for (char character = ' '; character < 127; ++character) password.push_back(character);
    EXPECT_EQ(DecodePassword(EncodePassword(password, "kim"), "kim"), password);
}

TEST(PasswordForm, ByteOf128AndMoreGivesEightDigitsAndDoesNotSurvive) {
    EXPECT_EQ(EncodePassword("\xE9", "kim"), "FFFFFFE9");
    EXPECT_NE(DecodePassword("FFFFFFE9", "kim"), "\xE9");
    EXPECT_EQ(DecodePassword("FFFFFFE9", "kim"), "\xFF\xFE\xFD\xE6");
}

TEST(PasswordForm, NegativeByteThatThePositionMakesZeroGivesTwoDigits) {
    const std::string password = std::string(1, 'a') + "\xFF";
    EXPECT_EQ(EncodePassword(password, "kim"), "6100");
}

TEST(PasswordForm, SmallDigitsAndALoneLastDigitAreRead) {
    EXPECT_EQ(DecodePassword("6a", "kim"), "j");
    EXPECT_EQ(DecodePassword("61637", "kim"), "ab");
    EXPECT_EQ(DecodePassword("6", "kim"), "");
}

TEST(PasswordForm, TextThatIsNoStoredFormGivesNoPassword) {
    EXPECT_EQ(DecodePassword("61zz", "kim"), "");
    EXPECT_EQ(DecodePassword("", "kim"), "");
}
