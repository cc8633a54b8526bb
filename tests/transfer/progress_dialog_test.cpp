#include "transfer/progress_dialog.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <string>

#include "ftp/control/remote_commands.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/worker.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "resources/resource.h"
#include "support/dialog_user.h"
#include "support/local_folder.h"
#include "support/recording_transfer_view.h"
#include "support/session_harness.h"
#include "transfer/transfer_progress.h"

using namespace dialog_user;

namespace {

constexpr char kCaption[] = "Tessmir File Transfers";
constexpr char kReplaceCaption[] = "Confirm File Replace";

// Seen when `finished` was called; reset by every fixture.
struct Finish {
    int calls = 0;
    bool dialogWasGone = false;
    bool ownerTookInput = false;
    HWND owner = nullptr;
};
Finish gFinish;

void OnFinished() {
    ++gFinish.calls;
    gFinish.dialogWasGone = TransferDialogWindow() == nullptr && FindDialog(kCaption) == nullptr;
    gFinish.ownerTookInput = IsWindowEnabled(gFinish.owner) != 0;
}

class ProgressDialogTest : public testing::Test {
  protected:
    void SetUp() override {
        SKIP_WITHOUT_DISPLAY();
        FillTransferView(gTransferView);
        gSessionView.waitForThread = WaitServing;
        gSessionView.setTransferProgress = [](std::uint64_t done, std::uint64_t total) {
            SetTransferDialogProgress(done, total);
        };
        gFinish = Finish();
        gFinish.owner = owner_.Handle();
    }
    void TearDown() override {
        if (TransferDialogWindow() == nullptr) return;
        PostMessageW(TransferDialogWindow(), WM_COMMAND, IDCANCEL, 0);
        Pump([] { return TransferDialogWindow() == nullptr; });
    }

    static bool Pump(const std::function<bool()>& condition, DWORD milliseconds = test_support::kLongWait) {
        return PumpUntil(condition, TransferDialogWindow, milliseconds);
    }
    bool Open(TransferStart start) { return OpenTransferDialog(owner_.Handle(), start, OnFinished); }
    // A dialog that shows and that no worker drives.
    HWND Show() {
        EXPECT_TRUE(Open(TransferStart::None));
        gTransferView.showDialog();
        return TransferDialogWindow();
    }
    static bool Visible() { return TransferDialogWindow() != nullptr && IsWindowVisible(TransferDialogWindow()); }
    static int Bar(HWND dialog) {
        return static_cast<int>(SendDlgItemMessageW(dialog, IDC_TRANSFER_BAR, PBM_GETPOS, 0, 0));
    }
    // The server has the file, it is listed and selected.
    void SelectFile(const std::string& name, const std::string& bytes) {
        server().AddFile("/" + name, bytes);
        view_.Select("-rw-r--r--   1 user     group    " + std::to_string(bytes.size()) + " Feb 14  1999 " + name);
    }
    ScriptedServer& server() { return session_.server; }

    SessionHarness session_;
    LocalFolder folder_;
    RecordingTransferView view_;
    OwnerWindow owner_;
};

TEST_F(ProgressDialogTest, StaysHiddenUntilThereIsSomethingToDo) {
    ASSERT_TRUE(Open(TransferStart::None));
    const HWND dialog = TransferDialogWindow();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(IsWindowVisible(dialog));
    EXPECT_TRUE(IsWindowEnabled(owner_.Handle()));
    EXPECT_TRUE(gTransfer.running);
    gTransferView.showDialog();
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_FALSE(IsWindowEnabled(owner_.Handle())) << "the main window takes no input meanwhile";
    EXPECT_EQ(GetText(dialog), kCaption);
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_ABORT), "&Abort");
    EXPECT_EQ(FocusedItem(dialog), IDC_TRANSFER_ABORT);
}

TEST_F(ProgressDialogTest, OpeningForgetsTheLastTransfer) {
    gTransfer.counters = {3, 2, 1};
    gTransfer.replaceAll = true;
    SetTransferAbort(true);
    ASSERT_TRUE(Open(TransferStart::None));
    EXPECT_FALSE(gSession.transferAbort);
    EXPECT_EQ(gTransfer.counters.files + gTransfer.counters.folders + gTransfer.counters.failures, 0);
    EXPECT_FALSE(gTransfer.replaceAll);
    const HWND dialog = TransferDialogWindow();
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_COUNTERS), "");
    PBRANGE range{};
    SendDlgItemMessageW(dialog, IDC_TRANSFER_BAR, PBM_GETRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    EXPECT_EQ(range.iLow, 0);
    EXPECT_EQ(range.iHigh, 1000);
}

TEST_F(ProgressDialogTest, EndsInOrder) {
    ASSERT_NE(Show(), nullptr);
    gTransferView.closeDialog();
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(gFinish.calls, 1);
    EXPECT_TRUE(gFinish.dialogWasGone);
    EXPECT_TRUE(gFinish.ownerTookInput);
    EXPECT_EQ(GetActiveWindow(), owner_.Handle());
    EXPECT_FALSE(gTransfer.running);
}

TEST_F(ProgressDialogTest, ShowsWhatTheWorkerTells) {
    const HWND dialog = Show();
    SetDlgTransferingText("Bücher & Co.txt");
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_NAME), "Transfering: Bücher & Co.txt");
    SetDlgCreatingText("new");
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_NAME), "Creating Directory: new ");
    SetDlgFromText("Demo", "/pub");
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_FROM), "Demo : /pub");
    SetDlgSendToText("", "C:\\in");
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_TO), "C:\\in");
    gTransfer.counters = {2, 3, 0};  // folders, files
    RefreshCountersText();
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_COUNTERS), "3 Files Transfered,  2 Folders Created");
}

TEST_F(ProgressDialogTest, ProgressIsCountedIn64Bits) {
    const HWND dialog = Show();
    SetTransferDialogProgress(7'000'000'000, 10'000'000'000);
    EXPECT_EQ(Bar(dialog), 700);
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_BYTES), "7000000000 of 10000000000");
    SetTransferDialogProgress(12, 0);
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_BYTES), "12") << "an unknown total is not shown";
    SetTransferDialogProgress(12, 10);
    EXPECT_EQ(Bar(dialog), 1000) << "a file that grew fills the bar";
}

TEST_F(ProgressDialogTest, TheModeCheckedIsTheModeGiven) {
    const HWND dialog = Show();
    const auto checked = [dialog] {
        int found = 0;
        for (const int button : {IDC_TRANSFER_ASCII, IDC_TRANSFER_BINARY, IDC_TRANSFER_L8})
            if (IsDlgButtonChecked(dialog, button)) found = found == 0 ? button : -1;
        return found;
    };
    gTransferView.setMode('A');
    EXPECT_EQ(checked(), IDC_TRANSFER_ASCII);
    gTransferView.setMode('L');
    EXPECT_EQ(checked(), IDC_TRANSFER_L8);
    gTransferView.setMode('I');
    EXPECT_EQ(checked(), IDC_TRANSFER_BINARY);
}

TEST_F(ProgressDialogTest, LongPathsAreShortenedToFit) {
    const HWND dialog = Show();
    std::string path;
    for (int level = 0; level < 30; ++level) path += "/some folder";
    SetDlgFromText("Demo", (path + "/last one").c_str());
    const std::string shown = ItemText(dialog, IDC_TRANSFER_FROM);
    EXPECT_EQ(shown.rfind("Demo : /some folder", 0), 0u) << shown;
    EXPECT_NE(shown.find("/.../last one"), std::string::npos) << shown;
    const std::string unbroken(500, 'x');
    SetDlgSendToText("", unbroken.c_str());
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_TO), unbroken) << "nothing to leave out: the control cuts it";
}

TEST_F(ProgressDialogTest, ASecondOneIsRefused) {
    const HWND dialog = Show();
    EXPECT_FALSE(Open(TransferStart::None));
    EXPECT_EQ(TransferDialogWindow(), dialog);
    EXPECT_EQ(session_.console.CountLines("Currently busy with another remote operation..."), 1);
}

TEST_F(ProgressDialogTest, WhileAnOperationRunsNoneIsOpenedAndItsAbortStands) {
    gSession.busy = true;
    SetTransferAbort(true);
    EXPECT_FALSE(Open(TransferStart::ListSelection));
    EXPECT_TRUE(gSession.transferAbort);
    gSession.busy = false;
    EXPECT_EQ(TransferDialogWindow(), nullptr);
    EXPECT_EQ(session_.console.CountLines("Currently busy with another remote operation..."), 1);
}

TEST_F(ProgressDialogTest, AbortWhileRunningSetsTheFlagAndLeavesTheDialog) {
    const HWND dialog = Show();
    SendMessageW(dialog, WM_COMMAND, IDC_TRANSFER_ABORT, 0);
    EXPECT_TRUE(gSession.transferAbort);
    EXPECT_EQ(TransferDialogWindow(), dialog);
    SetTransferAbort(false);
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_TRUE(gSession.transferAbort) << "the window's close request is an abort too";
    EXPECT_EQ(TransferDialogWindow(), dialog);
}

TEST_F(ProgressDialogTest, AbortWhileNotRunningCloses) {
    const HWND dialog = Show();
    gTransfer.running = false;
    SendMessageW(dialog, WM_COMMAND, IDC_TRANSFER_ABORT, 0);
    EXPECT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(gFinish.calls, 1);
}

TEST_F(ProgressDialogTest, ReceivesTheSelectionAndCloses) {
    ASSERT_NE(session_.ConnectedSite(), nullptr);
    SelectFile("a.txt", "first");
    SelectFile("b.txt", "second");
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(folder_.Read("a.txt"), "first");
    EXPECT_EQ(folder_.Read("b.txt"), "second");
    EXPECT_EQ(gFinish.calls, 1);
    EXPECT_TRUE(gFinish.ownerTookInput);
    EXPECT_FALSE(OperationRunning());
    EXPECT_FALSE(gSession.transferAbort);
}

TEST_F(ProgressDialogTest, NothingSelectedShowsNothing) {
    ASSERT_NE(session_.ConnectedSite(), nullptr);
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    bool seen = false;
    ASSERT_TRUE(Pump([&] {
        seen = seen || Visible();
        return TransferDialogWindow() == nullptr;
    }));
    EXPECT_FALSE(seen);
    EXPECT_EQ(gFinish.calls, 1);
}

TEST_F(ProgressDialogTest, AbortEndsAStalledTransferAndKeepsTheConnection) {
    Site* site = session_.ConnectedSite();
    ASSERT_NE(site, nullptr);
    SelectFile("a.txt", "0123456789");
    server().Once("RETR", {Say("150 here it comes\r\n"), OpenData(), DataBytes("01234"), WaitDataClosed(),
                           Say("426 transfer aborted\r\n")});
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    ASSERT_TRUE(Pump([] { return Visible() && ItemText(TransferDialogWindow(), IDC_TRANSFER_BYTES) == "5 of 10"; }));
    const std::uint32_t start = platform::TickCount();
    Press(TransferDialogWindow(), IDC_TRANSFER_ABORT);
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_LT(platform::TickCount() - start, 3000u);
    EXPECT_FALSE(folder_.Exists("a.txt")) << "no half file under the final name";
    EXPECT_TRUE(folder_.Contents().empty());
    EXPECT_NE(site->bConnected, 0);
    EXPECT_EQ(DoNoop(site), 2) << "the next command gets its own reply";
    EXPECT_TRUE(gFinish.ownerTookInput);
}

TEST_F(ProgressDialogTest, EscapeCancelsAndTheWindowStaysAlive) {
    Site* site = session_.ConnectedSite();
    ASSERT_NE(site, nullptr);
    SelectFile("a.txt", "0123456789");
    server().Once("RETR", {Say("150 here it comes\r\n"), OpenData(), DataBytes("01234"), WaitDataClosed(),
                           Say("426 transfer aborted\r\n")});
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    ASSERT_TRUE(Pump([] { return Visible() && ItemText(TransferDialogWindow(), IDC_TRANSFER_BYTES) == "5 of 10"; }));
    PressKey(TransferDialogWindow(), VK_ESCAPE);
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(DoNoop(site), 2);
    EXPECT_FALSE(folder_.Exists("a.txt"));
}

// Holds the worker where no cancelled call can reach it.
platform::EventHandle gHold = 0;

TEST_F(ProgressDialogTest, AWorkerThatDoesNotStopWithin5SecondsIsLeftBehind) {
    gHold = platform::CreateManualEvent();
    static std::atomic<bool> held;
    held = false;
    gTransferView.selectedEntries = [] {
        held = true;
        platform::WaitEvent(gHold, 20'000);
        gTransferView.setItem("too late");
        return std::vector<const LVobject*>();
    };
    ASSERT_NE(session_.ConnectedSite(), nullptr);
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    ASSERT_TRUE(Pump([] { return held.load(); }));
    const std::uint32_t start = platform::TickCount();
    PostMessageW(TransferDialogWindow(), WM_COMMAND, IDCANCEL, 0);
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    const std::uint32_t waited = platform::TickCount() - start;
    EXPECT_GE(waited, 4900u);
    EXPECT_LT(waited, 7000u);
    EXPECT_EQ(gFinish.calls, 1);
    EXPECT_TRUE(WorkerRunning());
    platform::SignalEvent(gHold);
    EXPECT_TRUE(Pump([] { return !WorkerRunning(); }));
    EXPECT_TRUE(StopWorker(5000));
    platform::CloseEvent(gHold);
    EXPECT_EQ(gFinish.calls, 1) << "its late end closes nothing";
}

TEST_F(ProgressDialogTest, AFileInTheWayIsAskedForInFrontOfTheDialog) {
    ASSERT_NE(session_.ConnectedSite(), nullptr);
    SelectFile("a.txt", "new bytes");
    folder_.Write("a.txt", "old");
    HWND owner = nullptr;
    std::string oldSize, newSize;
    DialogUser user(kReplaceCaption, [&](HWND dialog) {
        owner = GetWindow(dialog, GW_OWNER);
        oldSize = ItemText(dialog, IDC_REPLACE_OLD_SIZE);
        newSize = ItemText(dialog, IDC_REPLACE_NEW_SIZE);
        Press(dialog, IDYES);
    });
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    const HWND dialog = TransferDialogWindow();
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    ASSERT_TRUE(user.Join());
    EXPECT_EQ(owner, dialog);
    EXPECT_EQ(oldSize, "3 bytes");
    EXPECT_EQ(newSize, "9 bytes");
    EXPECT_EQ(folder_.Read("a.txt"), "new bytes");
}

TEST_F(ProgressDialogTest, NoLeavesTheFileAndCancelEndsTheTransfer) {
    ASSERT_NE(session_.ConnectedSite(), nullptr);
    SelectFile("a.txt", "new bytes");
    SelectFile("b.txt", "second");
    folder_.Write("a.txt", "old");
    {
        DialogUser user(kReplaceCaption, [](HWND dialog) { Press(dialog, IDNO); });
        ASSERT_TRUE(Open(TransferStart::ListSelection));
        ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
        ASSERT_TRUE(user.Join());
    }
    EXPECT_EQ(folder_.Read("a.txt"), "old");
    EXPECT_EQ(folder_.Read("b.txt"), "second");
    platform::DeleteFilePath(folder_.PathOf("b.txt").c_str());
    DialogUser user(kReplaceCaption, [](HWND dialog) { Press(dialog, IDCANCEL); });
    ASSERT_TRUE(Open(TransferStart::ListSelection));
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    ASSERT_TRUE(user.Join());
    EXPECT_EQ(folder_.Read("a.txt"), "old");
    EXPECT_FALSE(folder_.Exists("b.txt"));
}

TEST_F(ProgressDialogTest, AfterAnAbortNothingIsAskedAnyMore) {
    Show();
    SetTransferAbort(true);
    DialogUser unwanted(
        kReplaceCaption, [](HWND dialog) { Press(dialog, IDNO); }, 500);
    EXPECT_EQ(gTransferView.confirmReplace({}), ReplaceAnswer::Cancel);
    EXPECT_FALSE(unwanted.Join());
}

TEST_F(ProgressDialogTest, WithoutADialogTheWorkersCallsDoNothing) {
    ASSERT_EQ(TransferDialogWindow(), nullptr);
    gTransferView.showDialog();
    gTransferView.setItem("x");
    gTransferView.setSource("x");
    gTransferView.setMode('A');
    gTransferView.setBar(5);
    gTransferView.closeDialog();
    SetTransferDialogProgress(1, 2);
    EXPECT_EQ(gTransferView.confirmReplace({}), ReplaceAnswer::Cancel);
    EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(ProgressDialogTest, GoesWithItsOwner) {
    {
        const OwnerWindow other;
        ASSERT_TRUE(OpenTransferDialog(other.Handle(), TransferStart::None, OnFinished));
        gTransferView.showDialog();
    }
    EXPECT_EQ(TransferDialogWindow(), nullptr);
    gTransferView.setItem("x");
    EXPECT_TRUE(Open(TransferStart::None));
}

}  // namespace
