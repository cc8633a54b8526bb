#include "ftp/control/reply_receive.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/trace.h"
#include "ftp/control/control_connection.h"
#include "ftp/login/connect_site.h"
#include "platform/sockets.h"
#include "support/session_harness.h"

namespace {

// A connection whose server has said `bytes` instead of a welcome; nothing has been read of them.
struct Greeted {
    explicit Greeted(ServerScript welcome) {
        h.server.On(kWelcome, std::move(welcome));
        site = h.MakeSite();
        EXPECT_TRUE(Zarn_ConnectSite(site, "ftp", "tcp"));
    }
    int Read() { return ReadDisplayLine(site, h.reply); }
    SessionHarness h;
    Site* site = nullptr;
};

struct Line {
    int status = 0;
    int code = 0;
    int taken = 0;
    std::string text;
};

Line ReadLine(Site* site, int limit, bool& continuing) {
    std::vector<char> buffer(static_cast<std::size_t>(limit) + 1);
    Line line;
    line.taken = limit;
    line.status = ReadOneLine(site, buffer, line.taken, line.code, continuing);
    line.text = buffer.data();
    return line;
}

TEST(ReadDisplayLine, ClassOfASingleLine) {
    struct Case {
        const char* reply;
        int result;
    };
    for (const Case& c :
         {Case{"230 in\r\n", 2}, {"550 no\r\n", 550}, {"553 no\r\n", 5}, {"099 x\r\n", 0}, {"600 x\r\n", 0}}) {
        Greeted g({Say(c.reply)});
        EXPECT_EQ(g.Read(), c.result) << c.reply;
    }
}

TEST(ReadDisplayLine, JoinsTheLinesOfAMultiLineReplyWithoutSeparators) {
    Greeted g({Say("220-one\r\n two\r\n220 three\r\n")});
    EXPECT_EQ(g.Read(), 2);
    EXPECT_STREQ(g.h.replyText, "220-one two220 three");
}

TEST(ReadDisplayLine, AMultiLineReplyEndsAtAnyThreeDigitsAndABlank) {
    Greeted g({Say("220-one\r\n200 inner\r\n220 last\r\n")});
    EXPECT_EQ(g.Read(), 2);
    EXPECT_STREQ(g.h.replyText, "220-one200 inner");
    // Quirk: what is left is read as the reply to the next command, kept.
    EXPECT_EQ(command(g.site, g.h.reply, "NOOP"), 2);
    EXPECT_STREQ(g.h.replyText, "220 last");
}

TEST(ReadDisplayLine, InnerLinesAreForcedOntoTheConsole) {
    Greeted g({Say("220-one\r\nplain words\r\n220 three\r\n")});
    g.Read();
    EXPECT_TRUE(g.h.console.HasLine("plain words"));
    EXPECT_TRUE(g.h.console.HasLine("220 three"));
}

TEST(ReadDisplayLine, InnerLinesCanBeKeptOffTheConsole) {
    Greeted g({Say("220-one\r\nplain words\r\n220 three\r\n")});
    SuppressInnerReplyLines(true);
    g.Read();
    SuppressInnerReplyLines(false);
    EXPECT_FALSE(g.h.console.HasLine("plain words"));
    EXPECT_TRUE(g.h.console.HasLine("220 three"));
}

TEST(ReadDisplayLine, ALineOver260GivesNoClass) {
    Greeted g({Say("220 " + std::string(300, 'x') + "\r\n")});
    EXPECT_EQ(g.Read(), 0);
    EXPECT_EQ(std::string(g.h.replyText), "220 " + std::string(255, 'x'));
}

TEST(ReadDisplayLine, HangUpIsSocketError) {
    Greeted g({CloseControl()});
    EXPECT_EQ(g.Read(), SOCKET_ERROR);
    EXPECT_TRUE(HasControlSocket(g.site));  // closing is the caller's
}

TEST(ReadDisplayLine, ResetIsSocketError) {
    Greeted g({Say("220-half\r\n"), Hold(), ResetControl()});
    g.h.server.WaitUntilHeld();
    g.h.server.Release();
    EXPECT_EQ(g.Read(), SOCKET_ERROR);
}

TEST(ReadDisplayLine, NoSocketIsZero) {
    SessionHarness h;
    EXPECT_EQ(ReadDisplayLine(h.MakeSite(), h.reply), 0);
}

TEST(ReadDisplayLine, AnEndlessMultiLineReplyMeetsItsLimit) {
    std::string lines;
    for (int number = 0; number < 11'000; ++number) lines += "220-and so on\r\n";
    Greeted g({Say(lines), Stall()});
    gTrace.verbose = false;  // 10,000 lines on the debugger stream take their time
    EXPECT_EQ(g.Read(), SOCKET_ERROR);
    // The rest of it must not be taken for replies.
    EXPECT_FALSE(HasControlSocket(g.site));
    EXPECT_TRUE(g.h.console.HasBox("The FTP Server has aborted your connection"));
}

TEST(ReadDisplayLine, AReplyOf100KilobytesInOneLineIsSurvived) {
    Greeted g({Say("220 " + std::string(100'000, 'x') + "\r\n")});
    EXPECT_EQ(g.Read(), 0);
    EXPECT_EQ(command(g.site, g.h.reply, "NOOP"), 2) << g.h.replyText;
    EXPECT_STREQ(g.h.replyText, "200 OK.");
}

TEST(ReadDisplayLine, ANulInALineDoesNotHideTheRest) {
    Greeted g({Say(std::string("220 a\0b\r\n", 9))});
    EXPECT_EQ(g.Read(), 2);
    EXPECT_STREQ(g.h.replyText, "220 a b");
}

TEST(ReadOneLine, ALineThatArrivesWithoutItsLineFeedIsTakenAtOnce) {
    Greeted g({Say("230 Log"), Hold(), Say("ged on\r\n")});
    bool continuing = false;
    const Line first = ReadLine(g.site, 260, continuing);
    EXPECT_EQ(first.status, 1);
    EXPECT_EQ(first.code, 230);
    EXPECT_EQ(first.text, "230 Log");
    g.h.server.Release();
    const Line second = ReadLine(g.site, 260, continuing);
    EXPECT_EQ(second.code, 0);
    EXPECT_EQ(second.text, "ged on");
}

TEST(ReadOneLine, TheRestOfASplitLineIsNotTakenForTheNextReply) {
    Greeted g({Say("230 Log"), Hold(), Say("ged on\r\n")});
    EXPECT_EQ(g.Read(), 2);
    g.h.server.Release();
    while (platform::WaitReadable(g.site->pSock->ctrl_skt, 1000) == 0) {
    }
    EXPECT_EQ(command(g.site, g.h.reply, "NOOP"), 2);
    EXPECT_STREQ(g.h.replyText, "200 OK.");
}

TEST(ReadOneLine, ALineOf300ReadWith260IsCutAndItsCodeIs12) {
    Greeted g({Say("220 " + std::string(296, 'y') + "\r\n230 next\r\n")});
    bool continuing = false;
    const Line line = ReadLine(g.site, 260, continuing);
    EXPECT_EQ(line.status, 1);
    EXPECT_EQ(line.code, FTP_INSUFFICIENT_BUFFER);
    EXPECT_EQ(line.text, "220 " + std::string(256, 'y'));
    EXPECT_EQ(ReadLine(g.site, 260, continuing).text, "230 next");  // the rest of the long one is lost
}

TEST(ReadOneLine, StripsLineEndsAndBlanksDownToTwoCharacters) {
    Greeted g({Say("22 \r \n    \r\n")});
    bool continuing = false;
    EXPECT_EQ(ReadLine(g.site, 260, continuing).text, "22");
    EXPECT_EQ(ReadLine(g.site, 260, continuing).text, "  ");
}

TEST(ReadOneLine, TellsHowManyBytesItTook) {
    Greeted g({Say("220 ok\r\n")});
    bool continuing = false;
    EXPECT_EQ(ReadLine(g.site, 260, continuing).taken, 8);
}

TEST(ReadOneLine, LinesOfEveryLengthAroundThePeeks) {
    for (const std::size_t length : {1u, 78u, 79u, 80u, 81u, 82u, 83u, 340u, 341u, 342u, 343u, 602u, 5000u}) {
        const std::string text = "220 " + std::string(length, 'z');
        Greeted g({Say(text + "\r\n221 next\r\n")});
        bool continuing = false;
        EXPECT_EQ(ReadLine(g.site, 6000, continuing).text, text);
        EXPECT_EQ(ReadLine(g.site, 6000, continuing).text, "221 next");
    }
}

TEST(ReadOneLine, WithoutASocketFails) {
    SessionHarness h;
    bool continuing = false;
    EXPECT_EQ(ReadLine(h.MakeSite(), 260, continuing).status, SOCKET_ERROR);
}

TEST(ReadDisplayServerStat, CutsEveryLineToTheShortestBeforeIt) {
    Greeted g({Say("211-Status of it\r\n ab\r\n a longer line\r\n211 End\r\n")});
    std::vector<std::string> rows;
    const int code = ReadDisplayServerStat(
        g.site,
        [](void* context, const char* line) { static_cast<std::vector<std::string>*>(context)->push_back(line); },
        &rows);
    EXPECT_EQ(code, 211);  // the whole code
    EXPECT_EQ(rows, (std::vector<std::string>{"211-Status of it", " ab", " a lo", "211 E"}));
}

}  // namespace
