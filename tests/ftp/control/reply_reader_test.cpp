#include "ftp/control/reply_reader.h"

#include <gtest/gtest.h>

namespace {

TEST(LineLength, EndsAtTheLineFeedEvenWhenMoreFollows) {
    EXPECT_EQ(LineLength("220 a\r\n230 b\r\n", 82), 7u);
}

TEST(LineLength, ALineWithoutLineFeedThatCameAloneIsTakenAsItIs) {
    EXPECT_EQ(LineLength("220 hel", 82), 7u);
}

TEST(LineLength, AFullPeekWithoutLineFeedAsksForMore) {
    EXPECT_EQ(LineLength(std::string(82, 'x'), 82), 0u);
    std::string line(82, 'x');
    line.back() = '\n';
    EXPECT_EQ(LineLength(line, 82), 82u);
}

TEST(ReplyLineCode, ABlankAfterTheCodeEndsTheReply) {
    bool continuing = true;
    EXPECT_EQ(ReplyLineCode("220 ready", continuing), 220);
    EXPECT_FALSE(continuing);
}

TEST(ReplyLineCode, AHyphenBeginsAndKeepsAMultiLineReply) {
    bool continuing = false;
    EXPECT_EQ(ReplyLineCode("220-a", continuing), 220);
    EXPECT_TRUE(continuing);
    EXPECT_EQ(ReplyLineCode("220-b", continuing), 220);
    EXPECT_TRUE(continuing);
}

TEST(ReplyLineCode, ALineWithoutDigitsLeavesTheStateAlone) {
    bool continuing = true;
    EXPECT_EQ(ReplyLineCode(" 220 text", continuing), 0);
    EXPECT_TRUE(continuing);
    continuing = false;
    EXPECT_EQ(ReplyLineCode("hello", continuing), 0);
    EXPECT_FALSE(continuing);
}

TEST(ReplyLineCode, TheCodeOfTheEndLineIsNotCompared) {
    bool continuing = true;
    EXPECT_EQ(ReplyLineCode("999 anything", continuing), 999);
    EXPECT_FALSE(continuing);
}

TEST(ReplyLineCode, AFourthDigitBelongsToTheNumber) {
    bool continuing = false;
    EXPECT_EQ(ReplyLineCode("2201x", continuing), 2201);
}

TEST(ReplyLineCode, ShortLines) {
    bool continuing = false;
    EXPECT_EQ(ReplyLineCode("", continuing), 0);
    EXPECT_EQ(ReplyLineCode("22", continuing), 0);
    EXPECT_EQ(ReplyLineCode("220", continuing), 220);
}

TEST(ReplyClass, IsTheFirstDigit) {
    EXPECT_EQ(ReplyClass(150), 1);
    EXPECT_EQ(ReplyClass(230), 2);
    EXPECT_EQ(ReplyClass(331), 3);
    EXPECT_EQ(ReplyClass(421), 4);
    EXPECT_EQ(ReplyClass(553), 5);
    EXPECT_EQ(ReplyClass(599), 5);
}

TEST(ReplyClass, 550IsPassedThroughWhole) {
    EXPECT_EQ(ReplyClass(550), 550);
}

TEST(ReplyClass, OutOfRangeIsZero) {
    for (const int code : {0, 12, 99, 600, 2201, -1}) EXPECT_EQ(ReplyClass(code), 0) << code;
}

TEST(JoinReplyLine, AppendsWithoutSeparatorWhileItFits) {
    std::string joined = "220-one";
    JoinReplyLine(joined, "two", 260);
    JoinReplyLine(joined, "220 three", 260);
    EXPECT_EQ(joined, "220-onetwo220 three");
}

TEST(JoinReplyLine, ALineThatDoesNotFitOverwritesTheStart) {
    std::string joined(10, 'a');
    JoinReplyLine(joined, "0123456789ABC", 20);  // 20 - 10 - 2 = 8 characters of it
    EXPECT_EQ(joined, "01234567aa");
}

TEST(JoinReplyLine, ALineLongerThanTheBufferIsLeftOut) {
    std::string joined(10, 'a');
    JoinReplyLine(joined, std::string(30, 'b'), 20);
    EXPECT_EQ(joined, std::string(10, 'a'));
}

TEST(JoinReplyLine, NeverGrowsBeyondTheBuffer) {
    for (std::size_t size = 0; size < 40; ++size) {
        std::string joined;
        for (std::size_t length = 0; length < 40; ++length) {
            JoinReplyLine(joined, std::string(length, 'x'), size);
            ASSERT_LE(joined.size() + 1, std::max<std::size_t>(size, 1)) << size << ' ' << length;
        }
    }
}

TEST(QuotedDirectory, IsTheTextBetweenTheFirstTwoQuotes) {
    std::string directory;
    EXPECT_TRUE(QuotedDirectory("257 \"/home/u\" is \"here\"", directory));
    EXPECT_EQ(directory, "/home/u");
    EXPECT_TRUE(QuotedDirectory("\"\"", directory));
    EXPECT_EQ(directory, "");
}

TEST(QuotedDirectory, NeedsTwoQuotes) {
    std::string directory = "kept";
    EXPECT_FALSE(QuotedDirectory("257 /home/u", directory));
    EXPECT_FALSE(QuotedDirectory("257 \"/home/u", directory));
    EXPECT_EQ(directory, "kept");
}

}  // namespace
