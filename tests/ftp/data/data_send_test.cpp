#include "ftp/data/data_send.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <string>

#include "ftp/data/data_accept.h"
#include "ftp/data/data_connection.h"
#include "ftp/data/data_fixture.h"
#include "ftp/data/transfer_node.h"
#include "platform/files.h"

namespace {

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

TEST(DlgSendBuffer, SendsItsBytesAndMovesTheProgress) {
    Connected c;
    ASSERT_TRUE(c.OpenDataFor("STOR b"));
    EXPECT_EQ(DlgSendBuffer(c.site, "abc", 3, 0, 6), FTP_COMPLETE);
    EXPECT_EQ(DlgSendBuffer(c.site, "def", 3, 3, 6), FTP_COMPLETE);
    EXPECT_EQ(c.CloseAndReadFinalReply(CloseHow::Send), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.LastUpload(), "abcdef");
    const auto progress = c.h.view.Progress();
    ASSERT_EQ(progress.size(), 2u);
    EXPECT_EQ(progress[0].done, 3u);
    EXPECT_EQ(progress[1].done, 6u);
    EXPECT_EQ(progress[1].total, 6u);
}

TEST(DlgSendMass, SendsTheNodesFileOnTheOpenConnection) {
    Connected c;
    TransferNode node = Upload(c.h, "up.bin", Pattern(100'000));
    ASSERT_TRUE(c.OpenDataFor("STOR up.bin"));
    EXPECT_TRUE(DlgSendMass(c.site, node));
    EXPECT_EQ(c.CloseAndReadFinalReply(CloseHow::Send), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.LastUpload(), Pattern(100'000));
}

TEST(DlgSendMass, AFileThatCannotBeOpenedIsAnError) {
    Connected c;
    TransferNode node = Upload(c.h, "up.txt", "x");
    platform::DeleteFilePath(c.h.LocalPath("up.txt").c_str());
    c.h.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(DlgSendMass(c.site, node));
    EXPECT_EQ(node.iRetCode, FTP_ERROR);
    EXPECT_TRUE(c.h.console.HasBox("Unable to open the local file <up.txt>."));
}

TEST(SendItem, KeepsTheNameThatTheServerChose) {
    struct Row {
        const char* answer;
        const char* name;
    };
    for (const Row& row :
         {Row{"150 FILE: up.txt.1\r\n", "up.txt.1"}, Row{"150 FILE: /pub/up.txt.1\r\n", "up.txt.1"},
          Row{"125 unique file: two words \r\n", "two words"}, Row{"150-FILE: up.txt.2\r\n150 go\r\n", "up.txt.2"},
          Row{"150 go\r\n", ""}, Row{"150 FILE: \r\n", ""}}) {
        Connected c;
        TransferNode node = Upload(c.h, "up.txt", "x");
        c.h.server.On("STOU", {Say(row.answer), OpenData(), ReadData(), CloseData(), Say("226 done\r\n")});
        const ItemOutcome outcome = SendItem(c.site, node, 'I');
        EXPECT_EQ(outcome.code, FTP_COMPLETE) << row.answer;
        EXPECT_EQ(outcome.reply, "226 done") << row.answer;
        EXPECT_STREQ(node.pszStoredName.c_str(), row.name) << row.answer;
    }
}

TEST(SendItem, ANameInTheAnswerToAPlainStoreIsNotKept) {
    Connected c;
    gZarn.SENDUNIQUE = 0;
    TransferNode node = Upload(c.h, "up.txt", "x");
    c.h.server.On("STOR", {Say("150 FILE: other.txt\r\n"), OpenData(), ReadData(), CloseData(), Say("226 done\r\n")});
    EXPECT_EQ(SendItem(c.site, node, 'I').code, FTP_COMPLETE);
    EXPECT_TRUE(node.pszStoredName.empty());
}

}  // namespace
