#include "ftp/data/data_accept.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "ftp/data/data_connection.h"
#include "ftp/data/data_fixture.h"

namespace {

TEST(RetrieveFile, AnAbortFlagSetAfterThePreliminaryReplyClosesTheListener) {
    Connected c;
    std::atomic<bool> abort{false};
    c.h.server.On("RETR", {Hold(), Say("150 soon\r\n"), Say("426 given up\r\n")});
    int result = 0;
    {
        OtherThread retrieving([&] { result = RetrieveFile(c.site, c.h.reply, "RETR f", c.file.c_str(), 'A', abort); });
        ASSERT_TRUE(c.h.server.WaitUntilHeld());
        abort = true;
        c.h.server.Release();
    }
    EXPECT_EQ(result, FTP_ERROR);
    EXPECT_TRUE(c.NoTransferSockets());
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, ANameOf300CharactersIsReceived) {
    Connected c;
    const std::string name(300, 'n');
    c.h.server.AddFile("/" + name, "long name");
    c.h.server.On("RETR", {Say("150 Opening data connection for " + name + " (9 bytes).\r\n"), OpenData(),
                           DataBytes("long name"), CloseData(), Say("226 Sent " + name + ".\r\n")});
    EXPECT_EQ(c.Retrieve(("RETR " + name).c_str()), FTP_COMPLETE);
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "long name");
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, TheRestOfAFirstAnswerThatCameInTwoPacketsIsNotTheLastOne) {
    Connected c;
    c.h.server.AddFile("/a", "x");
    c.h.server.Once("RETR", {AnswerInPieces(ReplyPieces::Two, 1)});
    EXPECT_EQ(c.Retrieve("RETR a"), FTP_COMPLETE);
    EXPECT_STREQ(c.h.replyText, "226 Transfer complete.");
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "x");
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, AFirstAnswerWhoseCodeCameInPiecesEndsTheConnection) {
    Connected c;
    c.h.server.AddFile("/a", "x");
    c.h.server.Once("RETR", {Say("15"), Hold(), Say("0 here it comes\r\n"), Stall()});
    EXPECT_EQ(c.Retrieve("RETR a"), 0);
    c.h.server.Release();
    EXPECT_FALSE(HasControlSocket(c.site));
    EXPECT_TRUE(c.h.console.HasBox("has aborted your connection"));
}

TEST(RetrieveFile, WithoutAnAnswerNoneIsInTheReply) {
    Connected c;
    c.h.server.Once("RETR", {CloseControl()});
    EXPECT_EQ(c.Retrieve("RETR a"), 0);
    EXPECT_STREQ(c.h.replyText, "");
}

TEST(RetrieveFile, AnErrorReplyInsteadOfTheDataConnectionEndsTheWait) {
    Connected c;
    c.h.server.On("RETR", {Say("150 soon\r\n"), Say("425 Cannot open data connection.\r\n")});
    EXPECT_EQ(c.Retrieve("RETR f"), 4);
    EXPECT_STREQ(c.h.replyText, "425 Cannot open data connection.");
    EXPECT_TRUE(c.NoTransferSockets());
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, AHangUpInsteadOfTheDataConnectionEndsTheWait) {
    Connected c;
    c.h.server.On("RETR", {Say("150 soon\r\n"), CloseControl()});
    EXPECT_EQ(c.Retrieve("RETR f"), SOCKET_ERROR);
    EXPECT_TRUE(c.NoTransferSockets());
}

TEST(RetrieveFile, AStrangersDataConnectionIsClosedAndTheWaitGoesOn) {
    Connected c;
    c.h.server.On("RETR", {Say("150 soon\r\n"), OpenDataFrom("127.0.0.2"), WaitDataClosed(), OpenData(),
                           DataBytes("from the server"), CloseData(), Say("226 done\r\n")});
    EXPECT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE);
    EXPECT_TRUE(c.h.console.HasLine("Data connection from 127.0.0.2 refused"));
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "from the server");
}

TEST(RetrieveFile, AFinalReplyThatCameBeforeTheDataIsKept) {
    Connected c;
    c.h.server.On("RETR", {Say("150 go\r\n226 early\r\n"), OpenData(), DataBytes("data"), CloseData()});
    EXPECT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE);
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "data");
}

TEST(RetrieveFile, AReplyInPacketsIsStillAReply) {
    Connected c;
    c.h.server.AddFile("/f", "x");
    c.h.server.On("RETR", {Say("150-one\r\n"), Say("150 two\r\n"), OpenData(), CloseData(), Say("226 ok\r\n")});
    EXPECT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE);
}

TEST(RetrieveFile, ASuccessWithoutADataConnectionIsAFailure) {
    Connected c;
    c.h.server.On("RETR", {Say("150 soon\r\n"), Say("226 done\r\n")});
    EXPECT_EQ(c.Retrieve("RETR f"), FTP_ERROR);
    EXPECT_STREQ(c.h.replyText, "226 done");
    EXPECT_TRUE(c.NoTransferSockets());
    EXPECT_TRUE(c.InStep());
}

TEST(OpenDataConnection, ClosesTheListenerAndLeavesTheFinalReplyToTheCaller) {
    Connected c;
    c.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), WaitDataClosed(), Say("226 Transfer complete.\r\n")});
    ASSERT_TRUE(c.OpenDataFor("RETR f"));
    EXPECT_NE(c.site->pSock->data_skt, platform::kNoSocket);
    EXPECT_EQ(c.site->pSock->listen_skt, platform::kNoSocket);
    EXPECT_EQ(c.CloseAndReadFinalReply(CloseHow::Receive), FTP_COMPLETE);
    EXPECT_STREQ(c.h.replyText, "226 Transfer complete.");
    EXPECT_TRUE(c.InStep());
}

TEST(ClassOfCutReply, IsReadFromTheTextOnlyWhereThereIsNoResult) {
    EXPECT_EQ(ClassOfCutReply(kNoUsableReply, "150 Opening data connection"), kReplyPreliminary);
    EXPECT_EQ(ClassOfCutReply(kNoUsableReply, "226 Sent"), FTP_COMPLETE);
    EXPECT_EQ(ClassOfCutReply(kNoUsableReply, "451 Local error"), kReplyTransientFailure);
    EXPECT_EQ(ClassOfCutReply(kNoUsableReply, "Sent"), kNoUsableReply);
    EXPECT_EQ(ClassOfCutReply(kNoUsableReply, ""), kNoUsableReply);
    EXPECT_EQ(ClassOfCutReply(SOCKET_ERROR, "226 Sent"), SOCKET_ERROR);
    EXPECT_EQ(ClassOfCutReply(FTP_ERROR, "226 Sent"), FTP_ERROR);
}

}  // namespace
