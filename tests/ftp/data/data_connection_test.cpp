#include "ftp/data/data_connection.h"

#include <gtest/gtest.h>

#include <fstream>

#include "foundation/message_expansion.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_copy.h"
#include "ftp/data/data_send.h"
#include "ftp/data/transfer_statistics.h"
#include "ftp/login/login.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "platform/files.h"
#include "platform/system.h"
#include "support/session_harness.h"

namespace {

using Lines = std::vector<std::string>;
const std::atomic<bool> kNoAbort{false};

std::string Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 31 + i / 251) & 0xFF);
    return bytes;
}

struct Connected {
    Connected() : site(h.ConnectedSite()), file(h.LocalPath("out.bin")) {}
    int Retrieve(const char* commandText, char type = 'I') {
        return RetrieveFile(site, h.reply, commandText, file.c_str(), type, kNoAbort);
    }
    // The connection is in step when the next command gets its own reply.
    bool InStep() { return command(site, h.reply, "NOOP") == FTP_COMPLETE && std::string(h.replyText) == "200 OK."; }
    bool NoTransferSockets() const {
        return site->pSock->data_skt == platform::kNoSocket && site->pSock->listen_skt == platform::kNoSocket;
    }
    SessionHarness h;
    Site* site;
    std::string file;
};

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

TEST(RetrieveFile, ReceivesByteForByte) {
    Connected c;
    for (const std::size_t size : {0u, 1u, 2047u, 2048u, 2049u, 65536u, 1'000'003u}) {
        c.h.server.AddFile("/f", Pattern(size));
        ASSERT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE) << size;
        ASSERT_EQ(SessionHarness::LocalBytes(c.file), Pattern(size)) << size;
    }
    EXPECT_TRUE(c.NoTransferSockets());
}

TEST(RetrieveFile, TextArrivesUnchanged) {
    Connected c;
    c.h.server.AddFile("/t", "a\r\nb\nc\r");
    EXPECT_EQ(c.Retrieve("RETR t", 'A'), FTP_COMPLETE);
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "a\r\nb\nc\r");
}

TEST(RetrieveFile, AShorterFileReplacesALongerOneWhole) {
    Connected c;
    c.h.server.AddFile("/long", Pattern(5000));
    c.h.server.AddFile("/short", "s");
    c.Retrieve("RETR long");
    c.Retrieve("RETR short");
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "s");
}

TEST(RetrieveFile, EveryPacketSizeWorks) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(300'000));
    for (const std::uint32_t size : {1u, 512u, 2048u, 8096u, 1u << 20, 0u}) {
        gZarn.port.packetSize = size;
        ASSERT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE) << size;
        ASSERT_EQ(SessionHarness::LocalBytes(c.file), Pattern(300'000)) << size;
    }
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

TEST(RetrieveFile, NamesWithPercentSignsTravelUnchanged) {
    Connected c;
    c.h.server.AddFile("/%n%s 100%", "percent");
    EXPECT_EQ(c.Retrieve(("RETR " + DoublePercents("%n%s 100%")).c_str()), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.Commands().back(), "RETR %n%s 100%");
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "percent");
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

TEST(RetrieveFile, ANameThatDoesNotFitIntoACommandIsRefused) {
    Connected c;
    EXPECT_EQ(c.Retrieve(("RETR " + std::string(3000, 'n')).c_str()), 0);
    EXPECT_TRUE(c.NoTransferSockets());
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

TEST(RetrieveFile, ALocalFileThatCannotBeMadeLeavesTheConnectionInStep) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(100));
    const std::string nowhere = c.h.LocalPath("no-such-folder") + platform::kPathSeparator + "x";
    EXPECT_EQ(RetrieveFile(c.site, c.h.reply, "RETR f", nowhere.c_str(), 'I', kNoAbort), SOCKET_ERROR);
    EXPECT_NE(c.h.replyText[0], 0) << "the system says why";
    EXPECT_TRUE(c.InStep());
}

TEST(ReadMass, WithoutDataSocketReturnsMinusOneAndEmptiesTheReply) {
    Connected c;
    EXPECT_EQ(ReadMass(c.site, c.h.reply, c.file.c_str(), true), -1);
    EXPECT_STREQ(c.h.replyText, "");
}

TEST(ReceiveStatistics, 500BytesIn300MillisecondsAre4000BitsPerSecond) {
    const TransferStatistics s = ReceiveStatistics(500, 300, true);
    EXPECT_EQ(s.messageId, 6065u);
    EXPECT_EQ(s.seconds, 1u);
    EXPECT_EQ(s.bitsPerSecond, 4000u);
}

TEST(ReceiveStatistics, SecondsAreTruncatedButAtLeastOne) {
    EXPECT_EQ(ReceiveStatistics(1, 0, true).seconds, 1u);
    EXPECT_EQ(ReceiveStatistics(1, 1000, true).seconds, 1u);
    EXPECT_EQ(ReceiveStatistics(1, 1999, true).seconds, 1u);
    EXPECT_EQ(ReceiveStatistics(1, 2000, true).seconds, 2u);
}

TEST(ReceiveStatistics, The1025thByteChangesTheMessage) {
    EXPECT_EQ(ReceiveStatistics(1024, 1, true).messageId, 6065u);
    EXPECT_EQ(ReceiveStatistics(1025, 1, true).messageId, 7025u);
    EXPECT_EQ(ReceiveStatistics(1024, 1, false).messageId, 6064u);
    EXPECT_EQ(ReceiveStatistics(1025, 1, false).messageId, 6064u);
}

TEST(SendStatistics, UseTheirOwnMessages) {
    EXPECT_EQ(SendStatistics(1024, 1, true).messageId, 6045u);
    EXPECT_EQ(SendStatistics(1024, 1, false).messageId, 6044u);
    EXPECT_EQ(SendStatistics(1025, 1, true).messageId, 6043u);
    EXPECT_EQ(SendStatistics(1025, 1, false).messageId, 6042u);
}

TEST(ReceiveStatistics, FilesAbove4GigabytesAreCountedWhole) {
    const std::uint64_t bytes = 5'000'000'000;
    EXPECT_EQ(ReceiveStatistics(bytes, 10'000, true).bitsPerSecond, 4'000'000'000u);
    SessionHarness h;
    PrintStatistics(ReceiveStatistics(bytes, 10'000, true), bytes);
    EXPECT_TRUE(h.console.HasLine("5000000000 bytes received in 10.00 seconds, (488281.25Kbytes/sec)"));
}

TEST(RetrieveFile, PrintsItsStatisticsAndAddsToTheTotals) {
    Connected c;
    c.h.server.AddFile("/small", std::string(500, 's'));
    c.h.server.AddFile("/big", std::string(2048, 'b'));
    c.Retrieve("RETR small");
    EXPECT_TRUE(c.h.console.HasLine("Received 500 bytes in 1 sec, 4000 bps, transfer succeeded"));
    EXPECT_EQ(gSession.totalTransfers, 0u);
    c.Retrieve("RETR big");
    EXPECT_TRUE(c.h.console.HasLine("2048 bytes received in 1.00 seconds, (2.00Kbytes/sec), transfer succeeded"));
    EXPECT_EQ(gSession.totalTransfers, 1u);
    EXPECT_EQ(gSession.totalBytes, 2048u);
    EXPECT_EQ(gSession.totalSeconds, 1u);
}

TransferNode Node(const char* remote, std::uint32_t size) {
    TransferNode node;
    node.pszRemoteName = OwnedText::Copy(remote);
    node.NodeType = kNodeFile;
    node.iSize = size;
    return node;
}

TEST(DlgRetrieveFile, ShowsProgressAndSetsTheNodesResult) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(200'000));
    TransferNode node = Node("f", 200'000);
    EXPECT_EQ(DlgRetrieveFile(c.site, node, c.h.reply, "RETR f", c.file.c_str(), 'I', kNoAbort), FTP_COMPLETE);
    EXPECT_EQ(node.iRetCode, FTP_COMPLETE);
    const auto progress = c.h.view.Progress();
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.back().done, 200'000u);
    EXPECT_EQ(progress.back().total, 200'000u);
}

TEST(DlgRetrieveFile, ProgressComesAtMostTwentyTimesASecond) {
    Connected c;
    gZarn.port.packetSize = 512;
    c.h.server.AddFile("/f", Pattern(3'000'000));
    TransferNode node = Node("f", 3'000'000);
    const std::uint64_t startedAt = platform::Microseconds();
    DlgRetrieveFile(c.site, node, c.h.reply, "RETR f", c.file.c_str(), 'I', kNoAbort);
    const std::uint64_t elapsed = platform::Microseconds() - startedAt;
    EXPECT_LE(c.h.view.Progress().size(), elapsed / 50'000 + 4);
}

TEST(DlgRetrieveFile, A550IsZeroInTheNode) {
    Connected c;
    TransferNode node = Node("gone", 1);
    EXPECT_EQ(DlgRetrieveFile(c.site, node, c.h.reply, "RETR gone", c.file.c_str(), 'I', kNoAbort), 0);
    EXPECT_EQ(node.iRetCode, 0);
}

TEST(DlgRetrieveFile, AShortFileSaysHowMuchArrived) {
    Connected c;
    c.h.server.On("RETR",
                  {Say("150 go\r\n"), OpenData(), DataBytes(Pattern(4000)), Hold(), ResetData(), Say("426 lost\r\n")});
    TransferNode node = Node("f", 10'000);
    int result = 0;
    {
        OtherThread retrieving(
            [&] { result = DlgRetrieveFile(c.site, node, c.h.reply, "RETR f", c.file.c_str(), 'I', kNoAbort); });
        ASSERT_TRUE(c.h.server.WaitUntilHeld());
        while (SessionHarness::LocalBytes(c.file).size() < 4000) {
        }
        c.h.server.Release();
    }
    EXPECT_EQ(result, 4);
    EXPECT_TRUE(c.h.console.HasLine("closed early: 4,000 of 10,000 bytes arrived."));
}

TransferNode Upload(SessionHarness& h, const std::string& name, const std::string& bytes) {
    std::ofstream(h.LocalPath(name), std::ios::binary) << bytes;
    TransferNode node;
    std::string folder = h.LocalPath("");
    folder.pop_back();
    node.pszLocalName = OwnedText::Copy(name);
    node.pszLocation = OwnedText::Copy(folder);
    node.pszDestination = OwnedText::Copy("/");
    node.NodeType = kNodeFile;
    return node;
}

TEST(DlgSendFile, StoresWithStouUnlessToldOtherwise) {
    Connected c;
    TransferNode node = Upload(c.h, "up.txt", "hello");
    EXPECT_TRUE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_EQ(c.h.server.Commands().back(), "STOU up.txt");
    gZarn.SENDUNIQUE = 0;
    EXPECT_TRUE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_EQ(c.h.server.Commands().back(), "STOR up.txt");
    EXPECT_EQ(c.h.server.FileBytes("/up.txt"), "hello");
    EXPECT_EQ(node.iRetCode, FTP_COMPLETE);
    EXPECT_TRUE(c.NoTransferSockets());
}

TEST(DlgSendFile, SendsByteForByte) {
    Connected c;
    gZarn.SENDUNIQUE = 0;
    for (const std::size_t size : {0u, 1u, 2048u, 2049u, 500'000u}) {
        TransferNode node = Upload(c.h, "up.bin", Pattern(size));
        ASSERT_TRUE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort)) << size;
        ASSERT_EQ(c.h.server.LastUpload(), Pattern(size)) << size;
    }
    EXPECT_TRUE(c.InStep());
}

TEST(DlgSendFile, UsesTheRemoteNameWhenThereIsOne) {
    Connected c;
    TransferNode node = Upload(c.h, "up.txt", "x");
    node.pszRemoteName = OwnedText::Copy("100% %s.txt");
    EXPECT_TRUE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_EQ(c.h.server.Commands().back(), "STOU 100% %s.txt");
}

TEST(DlgSendFile, RefusesANodeThatLacksNamesOrFolders) {
    Connected c;
    TransferNode node;
    EXPECT_FALSE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_EQ(node.iRetCode, FTP_ERROR);
    EXPECT_TRUE(c.h.server.Commands().empty());
}

TEST(DlgSendFile, ARefusalLeavesTheConnectionInStep) {
    Connected c;
    c.h.server.On("STOU", {Say("553 not here\r\n")});
    TransferNode node = Upload(c.h, "up.txt", "x");
    EXPECT_FALSE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_STREQ(c.h.replyText, "553 not here");
    EXPECT_TRUE(c.NoTransferSockets());
    EXPECT_TRUE(c.InStep());
}

TEST(DlgSendFile, AFailedFinalReplyIsAFailure) {
    Connected c;
    c.h.server.On("STOU", {Say("150 go\r\n"), OpenData(), ReadData(), CloseData(), Say("552 disk full\r\n")});
    TransferNode node = Upload(c.h, "up.txt", "x");
    EXPECT_FALSE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_EQ(node.iRetCode, FTP_ERROR);
    EXPECT_TRUE(c.InStep());
}

TEST(DlgSendFile, AMissingLocalFileAsksAndSendsNothing) {
    Connected c;
    TransferNode node = Upload(c.h, "up.txt", "x");
    platform::DeleteFilePath(c.h.LocalPath("up.txt").c_str());
    c.h.console.AnswerNext(BoxAnswer::Retry);
    c.h.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_EQ(c.h.console.Boxes().size(), 2u);
    EXPECT_TRUE(c.h.console.HasBox("Unable to open the local file <up.txt>."));
    EXPECT_EQ(node.iRetCode, FTP_ERROR);
    EXPECT_TRUE(c.h.server.Commands().empty());
}

TEST(DlgSendFile, APeerThatClosesEarlyIsAFailure) {
    Connected c;
    c.h.server.On("STOU", {Say("150 go\r\n"), OpenData(), ResetData(), Say("426 gone\r\n")});
    TransferNode node = Upload(c.h, "up.bin", Pattern(4'000'000));
    EXPECT_FALSE(DlgSendFile(c.site, node, c.h.reply, 'I', kNoAbort));
    EXPECT_TRUE(c.InStep());
}

TEST(DlgSendBuffer, RefusesANullBuffer) {
    Connected c;
    EXPECT_EQ(DlgSendBuffer(c.site, nullptr, 5, 0, 5), FTP_ERROR);
}

TEST(DlgSendBuffer, ALengthOf0SetsTheBarToItsEnd) {
    Connected c;
    EXPECT_EQ(DlgSendBuffer(c.site, "", 0, 0, 0), FTP_COMPLETE);
    ASSERT_EQ(c.h.view.Progress().size(), 1u);
    EXPECT_EQ(c.h.view.Progress()[0].done, c.h.view.Progress()[0].total);
}

TEST(DlgSendBuffer, WithoutDataConnectionIsSocketError) {
    Connected c;
    EXPECT_EQ(DlgSendBuffer(c.site, "abc", 3, 0, 3), SOCKET_ERROR);
}

}  // namespace
