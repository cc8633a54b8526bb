#include "ftp/control/remote_commands.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/host_types.h"
#include "ftp/control/control_connection.h"
#include "ftp/errors/server_error.h"
#include "support/session_harness.h"

namespace {

using Lines = std::vector<std::string>;

struct Connected {
    Connected() : site(h.ConnectedSite()) {}
    std::string Said() const { return h.replyText; }
    std::string Current() const { return site->pszCurrentDir.c_str(); }
    SessionHarness h;
    Site* site;
};

TEST(DoCWD, ASuccessIsRemembered) {
    Connected c;
    c.h.server.AddFolder("/tmp");
    EXPECT_EQ(DoCWD(c.site, "/tmp", c.h.reply, true), FTP_COMPLETE);
    EXPECT_EQ(c.Current(), "/tmp");
}

TEST(DoCWD, WithoutRememberNothingIsRemembered) {
    Connected c;
    c.h.server.AddFolder("/tmp");
    EXPECT_EQ(DoCWD(c.site, "/tmp", c.h.reply, false), FTP_COMPLETE);
    EXPECT_EQ(c.Current(), "/");
}

TEST(DoCWD, A550IsReturnedWholeAndChangesNothing) {
    Connected c;
    EXPECT_EQ(DoCWD(c.site, "/gone", c.h.reply, true), 550);
    EXPECT_EQ(c.Current(), "/");
}

TEST(DoCWD, WithoutSocketOrPathTellsWhy) {
    Connected c;
    EXPECT_EQ(DoCWD(nullptr, "/x", c.h.reply, true), FTP_ERROR);
    EXPECT_EQ(c.Said(), "Invalid Socket descriptor.");
    EXPECT_EQ(DoCWD(c.site, "", c.h.reply, true), FTP_ERROR);
    EXPECT_EQ(c.Said(), "Path is invalid.");
    EXPECT_EQ(DoCWD(c.site, nullptr, c.h.reply, true), FTP_ERROR);
}

TEST(DoPWD, LeavesTheAnswerInTheReply) {
    Connected c;
    EXPECT_EQ(DoPWD(c.site, c.h.reply), FTP_COMPLETE);
    EXPECT_EQ(c.Said(), "257 \"/\" is the current directory.");
}

TEST(DoNoop, WithoutConnectionIsAnError) {
    SessionHarness h;
    EXPECT_EQ(DoNoop(nullptr), FTP_ERROR);
    EXPECT_EQ(DoNoop(h.MakeSite()), FTP_ERROR);
}

TEST(DoMKD, MakesADirectory) {
    Connected c;
    EXPECT_EQ(DoMKD(c.site, "new", c.h.reply), FTP_COMPLETE);
    EXPECT_TRUE(c.h.server.Exists("/new"));
}

TEST(DoRMD, OrdinaryHostsGetRmdAnd550StaysWhole) {
    Connected c;
    c.h.server.AddFolder("/old");
    EXPECT_EQ(DoRMD(c.site, "old", c.h.reply), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.Commands().back(), "RMD old");
    EXPECT_EQ(DoRMD(c.site, "old", c.h.reply), 550);
}

TEST(DoRMD, AnIbmMvsHostGetsDeleAnd550Becomes5) {
    Connected c;
    c.site->dwCurType = HOST_TYPE_IBM_MVS;
    EXPECT_EQ(DoRMD(c.site, "old", c.h.reply), 5);
    EXPECT_EQ(c.h.server.Commands().back(), "DELE old");
}

TEST(DoRMD, ItsChecksDoNotStopTheCommand) {
    Connected c;
    DoRMD(c.site, "", c.h.reply);
    EXPECT_EQ(c.h.server.CountCommands("RMD"), 1);
    EXPECT_EQ(DoRMD(nullptr, "x", c.h.reply), FTP_ERROR);
}

TEST(DoDELE, A550Becomes5) {
    Connected c;
    EXPECT_EQ(DoDELE(c.site, "gone", c.h.reply), 5);
}

TEST(DoDELE, BadParametersAndALostConnectionAreZero) {
    Connected c;
    EXPECT_EQ(DoDELE(c.site, "", c.h.reply), 0);
    EXPECT_EQ(DoDELE(c.site, nullptr, c.h.reply), 0);
    EXPECT_EQ(DoDELE(c.site, "x", ReplyBuffer()), 0);
    c.h.server.On("DELE", {CloseControl()});
    EXPECT_EQ(DoDELE(c.site, "x", c.h.reply), 0);
}

TEST(DoDELE, DeletesAFileWithPercentSigns) {
    Connected c;
    c.h.server.AddFile("/%n%s", "");
    EXPECT_EQ(DoDELE(c.site, "%n%s", c.h.reply), FTP_COMPLETE);
    EXPECT_FALSE(c.h.server.Exists("/%n%s"));
}

TEST(DoRename, Needs350BeforeRnto) {
    Connected c;
    EXPECT_EQ(DoRename(c.site, c.h.reply, "gone", "new"), 550);
    EXPECT_EQ(c.h.server.CountCommands("RNTO"), 0);
    c.h.server.AddFile("/old", "x");
    EXPECT_EQ(DoRename(c.site, c.h.reply, "old", "new"), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.FileBytes("/new"), "x");
}

TEST(RenameRemoteItem, ShowsAFailure) {
    Connected c;
    EXPECT_FALSE(RenameRemoteItem(c.site, "", "new"));
    EXPECT_TRUE(c.h.view.ServerErrors().empty());
    EXPECT_FALSE(RenameRemoteItem(c.site, "gone", "new"));
    ASSERT_EQ(c.h.view.ServerErrors().size(), 1u);
    EXPECT_EQ(c.h.view.ServerErrors()[0].operation, kOperationRenameFile);
    EXPECT_EQ(c.h.view.ServerErrors()[0].reply, "550 gone: No such file or directory.");
}

TEST(MakeRemoteDirectory, ShowsAFailure) {
    Connected c;
    EXPECT_TRUE(MakeRemoteDirectory(c.site, "new"));
    EXPECT_FALSE(MakeRemoteDirectory(c.site, "new"));
    ASSERT_EQ(c.h.view.ServerErrors().size(), 1u);
    EXPECT_EQ(c.h.view.ServerErrors()[0].operation, kOperationMakeDirectory);
}

TEST(GetRemoteDirectory, IsTheQuotedPart) {
    Connected c;
    c.h.server.On("PWD", {Say("257 \"/home/u\" is current.\r\n")});
    EXPECT_STREQ(GetRemoteDirectory(c.site).c_str(), "/home/u");
    c.h.server.On("PWD", {Say("257 /home/u is current.\r\n")});
    EXPECT_FALSE(GetRemoteDirectory(c.site));
}

TEST(GetRemoteDirectory, TheCodeIsNotCompared) {
    Connected c;
    c.h.server.On("PWD", {Say("599 \"/odd\"\r\n")});
    EXPECT_STREQ(GetRemoteDirectory(c.site).c_str(), "/odd");
}

TEST(GetRemoteDirectory, ALineWithoutCodeIsNone) {
    Connected c;
    c.h.server.On("PWD", {Say("you are in \"/x\"\r\n")});
    EXPECT_FALSE(GetRemoteDirectory(c.site));
}

TEST(GetRemoteDirectory, MoreLinesAreNotLeftForTheNextCommand) {
    Connected c;
    c.h.server.On("PWD", {Say("257-\"/first\" is it\r\n257 \"/second\"\r\n")});
    EXPECT_STREQ(GetRemoteDirectory(c.site).c_str(), "/first");
    EXPECT_EQ(command(c.site, c.h.reply, "NOOP"), FTP_COMPLETE);
    EXPECT_EQ(c.Said(), "200 OK.");
}

TEST(GetRemoteDirectory, APathOf1000CharactersFits) {
    Connected c;
    const std::string path = "/" + std::string(999, 'd');
    c.h.server.On("PWD", {Say("257 \"" + path + "\" is current.\r\n")});
    EXPECT_STREQ(GetRemoteDirectory(c.site).c_str(), path.c_str());
}

TEST(GetRemoteDirectory, ALostConnectionIsNone) {
    Connected c;
    c.h.server.On("PWD", {CloseControl()});
    EXPECT_FALSE(GetRemoteDirectory(c.site));
}

TEST(ChangeRemoteDirectory, RemembersAndReturnsTheCode) {
    Connected c;
    c.h.server.AddFolder("/pub");
    int result = 0;
    EXPECT_TRUE(ChangeRemoteDirectory(c.site, "/pub", c.h.reply, &result, true));
    EXPECT_EQ(result, FTP_COMPLETE);
    EXPECT_EQ(c.Current(), "/pub");
    EXPECT_FALSE(ChangeRemoteDirectory(c.site, "", c.h.reply, &result, true));
    EXPECT_EQ(result, FTP_ERROR);
}

TEST(ChangeRemoteDirectory, ShowsAFailureOnlyWhenAsked) {
    Connected c;
    int result = 0;
    EXPECT_FALSE(ChangeRemoteDirectory(c.site, "/gone", c.h.reply, &result, false));
    EXPECT_TRUE(c.h.view.ServerErrors().empty());
    EXPECT_FALSE(ChangeRemoteDirectory(c.site, "/gone", c.h.reply, &result, true));
    EXPECT_EQ(result, 550);
    ASSERT_EQ(c.h.view.ServerErrors().size(), 1u);
    EXPECT_EQ(c.h.view.ServerErrors()[0].operation, kOperationChangeDirectory);
}

TEST(ChangeRemoteDirectory, ALostConnectionPutsItsTextIntoTheReply) {
    Connected c;
    c.h.server.On("CWD", {CloseControl()});
    EXPECT_FALSE(ChangeRemoteDirectory(c.site, "/x", c.h.reply, nullptr, false));
    EXPECT_EQ(c.Said().substr(0, 46), "The FTP Server has aborted your connection, po");
}

TEST(ChkForRdir, ADirectoryThatIsThereIsEntered) {
    Connected c;
    c.h.server.AddFolder("/a/b");
    EXPECT_EQ(ChkForRdir(c.site, "b", true, "/a"), FTP_COMPLETE);
    EXPECT_EQ(c.Current(), "/a/b");
    EXPECT_EQ(c.h.server.CountCommands("MKD"), 0);
}

TEST(ChkForRdir, AMissingOneIsMadeAndEntered) {
    Connected c;
    EXPECT_EQ(ChkForRdir(c.site, "new", true, ""), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.Commands(), (Lines{"CWD /new", "MKD /new", "CWD /new"}));
    EXPECT_EQ(c.Current(), "/new");
}

TEST(ChkForRdir, TheWordsOfWindowsServersCountToo) {
    Connected c;
    c.h.server.Once("CWD", {Say("550 new: The system cannot find the file specified.\r\n")});
    EXPECT_EQ(ChkForRdir(c.site, "new", false, nullptr), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.CountCommands("MKD"), 1);
}

TEST(ChkForRdir, AnyOtherRefusalMakesNothing) {
    Connected c;
    c.h.server.On("CWD", {Say("550 Permission denied.\r\n")});
    EXPECT_EQ(ChkForRdir(c.site, "new", false, nullptr), 550);
    EXPECT_EQ(c.h.server.CountCommands("MKD"), 0);
}

TEST(ChkForRdir, ARefusedMkdIsShown) {
    Connected c;
    c.h.server.On("MKD", {Say("553 no\r\n")});
    EXPECT_EQ(ChkForRdir(c.site, "new", false, nullptr), 5);
    ASSERT_EQ(c.h.view.ServerErrors().size(), 1u);
    EXPECT_EQ(c.h.view.ServerErrors()[0].operation, kOperationMakeDirectory);
}

TEST(ChkForRdir, BadParameters) {
    Connected c;
    EXPECT_EQ(ChkForRdir(c.site, nullptr, false, nullptr), FTP_ERROR);
    EXPECT_EQ(ChkForRdir(c.site, "x", true, nullptr), FTP_ERROR);
}

}  // namespace
