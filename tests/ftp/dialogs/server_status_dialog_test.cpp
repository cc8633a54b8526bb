#include "ftp/dialogs/server_status_dialog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ftp/control/remote_commands.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "resources/resource.h"
#include "support/dialog_user.h"
#include "support/session_harness.h"

using namespace dialog_user;

namespace {

constexpr char kCaption[] = "Statistics for 127.0.0.1";

std::vector<std::string> Lines(HWND dialog) {
    std::vector<std::string> lines;
    const HWND list = GetDlgItem(dialog, IDC_STATUS_LIST);
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT at = 0; at < count; ++at) {
        const auto index = static_cast<WPARAM>(at);
        std::wstring line(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, index, 0)) + 1, L'\0');
        line.resize(
            static_cast<std::size_t>(SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(line.data()))));
        lines.push_back(Narrow(line));
    }
    return lines;
}

// The lines once the last one is `last`.
std::vector<std::string> LinesUntil(HWND dialog, const std::string& last) {
    std::vector<std::string> lines;
    test_support::WaitUntil([&] {
        lines = Lines(dialog);
        return !lines.empty() && lines.back().find(last) != std::string::npos;
    });
    return lines;
}

TEST(ServerStatusDialog, ShowsTheReplyToStatLineByLine) {
    SKIP_WITHOUT_DISPLAY();
    SessionHarness h;
    Site* site = h.ConnectedSite();
    ASSERT_NE(site, nullptr);
    h.server.On("STAT", {Say("211-Status of the server:\r\n     Größe: 5 files\r\n211 End\r\n")});
    std::vector<std::string> lines;
    DialogUser user(kCaption, [&](HWND dialog) {
        lines = LinesUntil(dialog, "End");
        Press(dialog, IDOK);
    });
    ShowServerStatus(nullptr, site);
    ASSERT_TRUE(user.Join());
    ASSERT_GE(lines.size(), 3u);
    EXPECT_NE(lines[0].find("Status of the server:"), std::string::npos);
    EXPECT_NE(lines[1].find("Größe: 5 files"), std::string::npos);
    EXPECT_EQ(h.server.CountCommands("STAT"), 1);
    EXPECT_TRUE(StopWorker(5000));
    EXPECT_EQ(DoNoop(site), 2) << "the next command gets its own reply";
}

TEST(ServerStatusDialog, AFailedSendIsTold) {
    SKIP_WITHOUT_DISPLAY();
    SessionHarness h;
    Site* site = h.MakeSite();  // not connected
    std::vector<std::string> lines;
    DialogUser user(kCaption, [&](HWND dialog) {
        lines = LinesUntil(dialog, "statistics");
        Press(dialog, IDCANCEL);
    });
    ShowServerStatus(nullptr, site);
    ASSERT_TRUE(user.Join());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "An error occured while trying to obtain the statistics from the FTP Server.");
}

TEST(ServerStatusDialog, ClosedBeforeTheServerAnsweredItLeavesTheSessionInStep) {
    SKIP_WITHOUT_DISPLAY();
    SessionHarness h;
    Site* site = h.ConnectedSite();
    ASSERT_NE(site, nullptr);
    h.server.On("STAT", {Hold(), Say("211-Late\r\n line\r\n211 End\r\n")});
    DialogUser user(kCaption, [&](HWND dialog) {
        h.server.WaitUntilHeld();
        Press(dialog, IDCANCEL);
    });
    ShowServerStatus(nullptr, site);
    ASSERT_TRUE(user.Join());
    h.server.Release();
    EXPECT_TRUE(test_support::WaitUntil([] { return !WorkerRunning() && !OperationRunning(); }));
    EXPECT_EQ(DoNoop(site), 2);
}

TEST(ServerStatusDialog, DoesNotOpenWhileAnOperationRuns) {
    SKIP_WITHOUT_DISPLAY();
    SessionHarness h;
    Site* site = h.ConnectedSite();
    ASSERT_NE(site, nullptr);
    gSession.busy = true;
    ShowServerStatus(nullptr, site);
    gSession.busy = false;
    EXPECT_EQ(FindDialog(kCaption), nullptr);
    EXPECT_TRUE(h.console.HasLine("Currently busy with another remote operation..."));
    EXPECT_EQ(h.server.CountCommands("STAT"), 0);
}

}  // namespace
