#include "ftp/login/stop.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "ftp/control/remote_commands.h"
#include "ftp/data/data_connection.h"
#include "ftp/data/data_send.h"
#include "ftp/login/connect_command.h"
#include "ftp/login/connect_site.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "ftp/working_session.h"

namespace {

using Lines = std::vector<std::string>;

TEST(Zarn_Abort, WithNothingRunningPrintsAndChangesNothing) {
    Working w;
    w.h.console.Clear();
    Zarn_Abort();
    EXPECT_TRUE(w.h.console.ConsoleLines().empty());
    EXPECT_FALSE(gSession.transferAbort);
    EXPECT_TRUE(HasControlSocket(w.site));
}

TEST(Zarn_Abort, DuringATransferLeavesTheSiteConnectedAndInStep) {
    Working w;
    w.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("some"), Hold(), WaitDataClosed(),
                           Say("426 Transfer aborted.\r\n")});
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(w.WaitUntilReceiving());
    w.h.server.Release();
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    EXPECT_EQ(w.result, FTP_ERROR);
    EXPECT_TRUE(w.NoTransferSockets());
    EXPECT_NE(w.site->bConnected, 0);
    EXPECT_FALSE(OperationRunning());
    EXPECT_TRUE(gSession.transferAbort);
    const Lines lines = w.h.console.ConsoleLines();
    const auto at = [&](const char* part) {
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines[i].find(part) != std::string::npos) return static_cast<int>(i);
        return -1;
    };
    EXPECT_GE(at("Aborting Remote thread"), 0);
    EXPECT_LT(at("Aborting Remote thread"), at("WARNING: If the abort fails you may have to close and exit"));
    EXPECT_LT(at("WARNING: If the abort fails"), at("Waiting for Abort Response message. (550)"));
    EXPECT_LT(at("Waiting for Abort Response"), at("Remote Operation Aborted"));
    EXPECT_FALSE(w.h.console.HasLine("Remote Connect Aborted"));
    EXPECT_TRUE(w.InStep());
    EXPECT_EQ(w.h.server.CountCommands("ABOR"), 0);
}

TEST(Zarn_Abort, WithoutALastWordClosesTheConnectionAndTellsTheUser) {
    Working w;
    w.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("some"), Hold(), Stall()});
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(w.WaitUntilReceiving());
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    EXPECT_FALSE(HasControlSocket(w.site));
    EXPECT_TRUE(w.h.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(w.h.view.PostedDisconnects(), 1);
    EXPECT_TRUE(w.h.console.HasLine("Remote Operation Aborted"));
}

TEST(Zarn_Abort, WhileWaitingForTheDataConnection) {
    Working w;
    w.h.server.On("RETR", {Say("150 go\r\n"), Hold(), Say("426 Transfer aborted.\r\n")});
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(w.h.server.WaitUntilHeld());
    ASSERT_TRUE(test_support::WaitUntil([&] { return BlockingCallInProgress(); }));
    w.h.server.Release();
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    EXPECT_TRUE(w.NoTransferSockets());
    EXPECT_TRUE(w.InStep());
}

TEST(Zarn_Abort, WhileWaitingForAReplyClosesTheConnection) {
    Working w;
    w.h.server.On("CWD", {Hold()});
    ASSERT_TRUE(StartWorker("test", [&] { w.result = DoCWD(w.site, "/x", w.h.reply, true); }));
    ASSERT_TRUE(w.h.server.WaitUntilHeld());
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    EXPECT_EQ(w.result, SOCKET_ERROR);
    EXPECT_FALSE(HasControlSocket(w.site));
    EXPECT_TRUE(w.h.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(w.h.console.Boxes().size(), 1u);
}

TEST(Zarn_Abort, DuringAConnectionSendsQuitAndLeavesTheSiteDisconnected) {
    SessionHarness h;
    h.server.On("USER", {Hold(), Stall()});
    Site* site = h.MakeSite();
    ASSERT_TRUE(StartWorker("connect", [&] { Zarn_IdmConnect(site); }));
    ASSERT_TRUE(h.server.WaitUntilHeld());
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    h.server.Release();
    EXPECT_TRUE(h.server.WaitForCommand("QUIT"));
    EXPECT_TRUE(h.console.HasLine("Remote Connect Aborted"));
    EXPECT_FALSE(h.console.HasLine("Remote Operation Aborted"));
    EXPECT_EQ(site->bConnected, 0);
    EXPECT_FALSE(HasControlSocket(site));
    EXPECT_FALSE(OperationRunning());
    EXPECT_TRUE(h.console.Boxes().empty());
}

TEST(Zarn_Abort, DuringTheWelcomeOfASilentServer) {
    SessionHarness h;
    h.server.On(kWelcome, {Hold(), Stall()});
    Site* site = h.MakeSite();
    gZarn.port.retries = 5;
    ASSERT_TRUE(StartWorker("connect", [&] { Zarn_IdmConnect(site); }));
    ASSERT_TRUE(h.server.WaitUntilHeld());
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    EXPECT_EQ(h.server.Connections(), 1);  // no retry after an abort
    EXPECT_FALSE(HasControlSocket(site));
}

TEST(Zarn_Abort, DuringAnUploadToAStalledServer) {
    Working w;
    const std::string file = w.h.LocalPath("big");
    std::ofstream(file, std::ios::binary) << std::string(20'000'000, 'u');
    TransferNode node;
    std::string folder = w.h.LocalPath("");
    folder.pop_back();
    node.pszLocalName = OwnedText::Copy("big");
    node.pszLocation = OwnedText::Copy(folder);
    node.pszDestination = OwnedText::Copy("/");
    w.h.server.On("STOU", {Say("150 go\r\n"), OpenData(), Hold(), WaitDataClosed(), Say("426 cut\r\n")});
    std::atomic<bool> sent{true};
    ASSERT_TRUE(StartWorker("put", [&] { sent = DlgSendFile(w.site, node, w.h.reply, 'I', gSession.transferAbort); }));
    ASSERT_TRUE(w.h.server.WaitUntilHeld());
    ASSERT_TRUE(test_support::WaitUntil([&] { return !w.h.view.Progress().empty(); }));
    w.h.server.Release();
    EXPECT_LT(Microseconds(Zarn_Abort), kLongestStop);
    EXPECT_FALSE(sent);
    EXPECT_TRUE(w.NoTransferSockets());
    EXPECT_FALSE(OperationRunning());
}

TEST(Zarn_IdmDisconnect, ClosesWithoutQuit) {
    Working w;
    Zarn_IdmDisconnect(w.site);
    EXPECT_TRUE(w.h.server.WaitForConnections(0));
    EXPECT_EQ(w.h.server.CountCommands("QUIT"), 0);
    EXPECT_EQ(w.site->bConnected, 0);
    EXPECT_FALSE(w.site->pszCurrentDir);
    EXPECT_EQ(w.site->lastCommandTicks, 0u);
    EXPECT_EQ(w.h.view.Disconnected(), 1);
    EXPECT_FALSE(OperationRunning());
}

TEST(Zarn_IdmDisconnect, ASiteWithoutNodeIsLeftAlone) {
    Working w;
    w.h.view.SetSiteHasNode(false);
    Zarn_IdmDisconnect(w.site);
    EXPECT_TRUE(HasControlSocket(w.site));
}

TEST(Zarn_IdmDisconnect, StopsWhatRuns) {
    Working w;
    w.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("some"), Hold(), Stall()});
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(w.WaitUntilReceiving());
    EXPECT_LT(Microseconds([&] { Zarn_IdmDisconnect(w.site); }), kLongestStop);
    EXPECT_FALSE(OperationRunning());
    EXPECT_TRUE(w.NoTransferSockets());
    EXPECT_TRUE(w.h.console.Boxes().empty());
}

TEST(Zarn_IdmExit, OfAConnectedSiteSavesAndCloses) {
    Working w;
    Zarn_IdmExit(w.site, kExitCommand);
    EXPECT_EQ(w.h.view.ClosedPrograms(), 1);
    EXPECT_EQ(w.h.view.SavedConfigurations(), 1);
    EXPECT_EQ(w.h.view.Disconnected(), 1);
    EXPECT_TRUE(w.h.server.WaitForConnections(0));
}

TEST(Zarn_IdmExit, WithoutSaveOnExitSavesNothing) {
    Working w;
    gZarn.SAVEONEXIT = 0;
    Zarn_IdmExit(w.site, kExitCommand);
    EXPECT_EQ(w.h.view.SavedConfigurations(), 0);
}

TEST(Zarn_IdmExit, ClosingASiteLeavesTheProgramOpen) {
    Working w;
    Zarn_IdmExit(w.site, IDM_DISCONNECT);
    EXPECT_EQ(w.h.view.ClosedPrograms(), 0);
    EXPECT_FALSE(gSession.exiting);
}

TEST(Zarn_IdmExit, DuringATransferSaysSoAndStopsIt) {
    Working w;
    w.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("some"), Hold(), Stall()});
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(w.WaitUntilReceiving());
    EXPECT_LT(Microseconds([&] { Zarn_IdmExit(w.site, kExitCommand); }), kLongestStop);
    EXPECT_TRUE(w.h.console.HasLine("Aborting thread before closing or exiting"));
    EXPECT_TRUE(w.h.console.HasLine("Waiting for Abort Response message. (550)"));
    EXPECT_EQ(w.h.view.ClosedPrograms(), 1);
    EXPECT_FALSE(OperationRunning());
    EXPECT_TRUE(w.h.console.Boxes().empty());
}

TEST(Zarn_IdmExit, ANotYetLoggedInConnectionGetsItsQuit) {
    SessionHarness h;
    Site* site = h.MakeSite();
    ASSERT_TRUE(Zarn_ConnectSite(site, "ftp", "tcp"));
    Zarn_IdmExit(site, kExitCommand);
    EXPECT_TRUE(h.server.WaitForCommand("QUIT"));
    EXPECT_FALSE(HasControlSocket(site));
}

}  // namespace
