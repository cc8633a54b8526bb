#include "ftp/data/data_connection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <string>

#include "foundation/message_expansion.h"
#include "ftp/data/data_fixture.h"
#include "ftp/login/login.h"
#include "ftp/worker/close_socket.h"
#include "platform/files.h"
#include "platform/system.h"

namespace {

TEST(PortCommand, NamesAddressAndPortInBytes) {
    EXPECT_EQ(PortCommand(0x0A000005, 5001), "PORT 10,0,0,5,19,137");
    EXPECT_EQ(PortCommand(0xFFFFFFFF, 65535), "PORT 255,255,255,255,255,255");
}

TEST(SetRepresentationType, TheFirstTextTransferSendsNoType) {
    Connected c;
    c.h.server.AddFile("/a", "x");
    c.Retrieve("RETR a", 'A');
    c.Retrieve("RETR a", 'A');
    EXPECT_EQ(c.h.server.CountCommands("TYPE"), 0);
    c.Retrieve("RETR a", 'I');
    c.Retrieve("RETR a", 'I');
    EXPECT_EQ(c.h.server.CountCommands("TYPE I"), 1);
    c.Retrieve("RETR a", 'A');
    EXPECT_EQ(c.h.server.CountCommands("TYPE A"), 1);
    c.Retrieve("RETR a", 'L');
    EXPECT_EQ(c.h.server.CountCommands("TYPE L 8"), 1);
}

TEST(SetRepresentationType, ANewConnectionIsToldAnew) {
    Connected c;
    c.h.server.AddFile("/a", "x");
    c.Retrieve("RETR a", 'I');
    CloseStoredSocket(c.site->pSock->ctrl_skt, CloseHow::Send);
    c.site->bConnected = 0;
    ASSERT_TRUE(DoConnect2(c.site));
    c.Retrieve("RETR a", 'I');
    EXPECT_EQ(c.h.server.CountCommands("TYPE I"), 2);
}

TEST(SetRepresentationType, ItsReplyIsNotExamined) {
    Connected c;
    c.h.server.AddFile("/a", "x");
    c.h.server.On("TYPE", {Say("504 never\r\n")});
    EXPECT_EQ(c.Retrieve("RETR a", 'I'), FTP_COMPLETE);
}

TEST(GetFTPListenSocket, AnnouncesTheControlConnectionsOwnAddress) {
    Connected c;
    EXPECT_EQ(GetFTPListenSocket(c.site, c.h.reply), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.Commands().back(), PortCommand(0x7F000001, c.site->pSock->listenPort));
    EXPECT_NE(c.site->pSock->listen_skt, platform::kNoSocket);
}

TEST(GetFTPListenSocket, ARefusedPortClosesTheListener) {
    Connected c;
    c.h.server.On("PORT", {Say("500 Illegal PORT command.\r\n")});
    EXPECT_EQ(c.Retrieve("RETR a"), 5);
    EXPECT_TRUE(c.h.console.HasLine("remote end did not understand our port command."));
    EXPECT_TRUE(c.NoTransferSockets());
    EXPECT_STREQ(c.h.replyText, "500 Illegal PORT command.");
}

TEST(RetrieveFile, A550ReturnsZeroWithItsTextAndOpensNoDataConnection) {
    Connected c;
    EXPECT_EQ(c.Retrieve("RETR gone"), 0);
    EXPECT_STREQ(c.h.replyText, "550 gone: No such file or directory.");
    EXPECT_TRUE(c.NoTransferSockets());
    platform::FileInfo info;
    EXPECT_FALSE(platform::GetFileInfo(c.file.c_str(), info));
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, WithoutConnectionSaysSo) {
    SessionHarness h;
    EXPECT_EQ(RetrieveFile(h.MakeSite(), h.reply, "LIST", h.LocalPath("x").c_str(), 'A', kNoAbort), SOCKET_ERROR);
    EXPECT_TRUE(h.console.HasLine("No control socket, command ignored"));
}

TEST(RetrieveFile, AnAbortFlagSetBeforehandSendsNothing) {
    Connected c;
    const std::atomic<bool> abort{true};
    EXPECT_EQ(RetrieveFile(c.site, c.h.reply, "LIST", c.file.c_str(), 'A', abort), FTP_ERROR);
    EXPECT_TRUE(c.h.server.Commands().empty());
}

TEST(RetrieveFile, NamesWithPercentSignsTravelUnchanged) {
    Connected c;
    c.h.server.AddFile("/%n%s 100%", "percent");
    EXPECT_EQ(c.Retrieve(("RETR " + DoublePercents("%n%s 100%")).c_str()), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.Commands().back(), "RETR %n%s 100%");
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "percent");
}

TEST(RetrieveFile, ANameThatDoesNotFitIntoACommandIsRefused) {
    Connected c;
    EXPECT_EQ(c.Retrieve(("RETR " + std::string(3000, 'n')).c_str()), 0);
    EXPECT_TRUE(c.NoTransferSockets());
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, ADataConnectionThatBreaksOffIsNoSuccessEvenWhenTheServerSaysSo) {
#ifdef _WIN32
    GTEST_SKIP() << "under Wine the reset of a server in this process may arrive as an ordinary end";
#endif
    Connected c;
    c.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes(Pattern(4000)), Hold(), ResetData(),
                           Say("226 all fine\r\n")});
    int result = 0;
    {
        OtherThread retrieving([&] { result = c.Retrieve("RETR f"); });
        ASSERT_TRUE(c.h.server.WaitUntilHeld());
        c.h.server.Release();
    }
    EXPECT_EQ(result, SOCKET_ERROR);
    EXPECT_STRNE(c.h.replyText, "");
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, A426AfterAnEarlyEndIsAFailure) {
    Connected c;
    c.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("part"), CloseData(), Say("426 lost\r\n")});
    EXPECT_EQ(c.Retrieve("RETR f"), 4);
    c.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("part"), CloseData(), Say("451 error\r\n")});
    EXPECT_EQ(c.Retrieve("RETR f"), 4);
    EXPECT_TRUE(c.InStep());
}

TEST(RetrieveFile, ALocalFileThatCannotBeMadeLeavesTheConnectionInStep) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(100));
    const std::string nowhere = c.h.LocalPath("no-such-folder") + platform::kPathSeparator + "x";
    EXPECT_EQ(RetrieveFile(c.site, c.h.reply, "RETR f", nowhere.c_str(), 'I', kNoAbort), SOCKET_ERROR);
    EXPECT_NE(c.h.replyText[0], 0) << "the system says why";
    EXPECT_TRUE(c.InStep());
}

TEST(DlgRetrieveFile, A550IsZeroInTheNode) {
    Connected c;
    TransferNode node = Node("gone", 1);
    EXPECT_EQ(DlgRetrieveFile(c.site, node, c.h.reply, "RETR gone", c.file.c_str(), 'I', kNoAbort), 0);
    EXPECT_EQ(node.iRetCode, 0);
}

}  // namespace
