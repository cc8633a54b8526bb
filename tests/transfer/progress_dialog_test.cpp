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
#include "transfer/selection_transfer.h"
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
        gSessionView.setTransferProgress = ShowTransferProgress;
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
    bool Open(TransferStart start) {
        TransferJob job;
        job.site = gSession.activeSite;
        job.start = start;
        if (start == TransferStart::ListSelection) job.remoteItems = ItemsOf(view_.selection);
        return OpenTransferDialog(owner_.Handle(), std::move(job), OnFinished);
    }
    // A dialog that shows and that no worker drives.
    HWND Show() {
        EXPECT_TRUE(Open(TransferStart::None));
        gTransferView.showDialog();
        EXPECT_TRUE(Pump(Visible));
        return TransferDialogWindow();
    }
    // Waits until the dialog has drawn the text.
    static std::string DrawnText(int item, const std::string& text) {
        const HWND dialog = TransferDialogWindow();
        Pump([&] { return ItemText(dialog, item) == text; });
        return ItemText(dialog, item);
    }
    static int DrawnBar(HWND dialog, int position) {
        Pump([&] { return Bar(dialog) == position; });
        return Bar(dialog);
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
    EXPECT_TRUE(TransferRunning());
    gTransferView.showDialog();
    EXPECT_FALSE(IsWindowVisible(dialog)) << "whoever asks for it does not wait";
    ASSERT_TRUE(Pump(Visible));
    EXPECT_FALSE(IsWindowEnabled(owner_.Handle())) << "the main window takes no input meanwhile";
    EXPECT_EQ(GetText(dialog), kCaption);
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_ABORT), "&Abort");
    EXPECT_EQ(FocusedItem(dialog), IDC_TRANSFER_ABORT);
}

TEST_F(ProgressDialogTest, OpeningForgetsTheLastTransfer) {
    RefreshCountersText({3, 2, 1});
    SetDlgTransferingText("old.txt");
    SetProgressBar(500);
    SetTransferAbort(true);
    const HWND dialog = Show();
    EXPECT_FALSE(gSession.transferAbort);
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_COUNTERS), "");
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_NAME), "");
    EXPECT_EQ(Bar(dialog), 0);
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
    EXPECT_FALSE(TransferRunning());
}

TEST_F(ProgressDialogTest, ShowsWhatTheWorkerTells) {
    Show();
    SetDlgTransferingText("Bücher & Co.txt");
    EXPECT_EQ(DrawnText(IDC_TRANSFER_NAME, "Transfering: Bücher & Co.txt"), "Transfering: Bücher & Co.txt");
    SetDlgCreatingText("new");
    EXPECT_EQ(DrawnText(IDC_TRANSFER_NAME, "Creating Directory: new "), "Creating Directory: new ");
    SetDlgFromText("Demo", "/pub");
    EXPECT_EQ(DrawnText(IDC_TRANSFER_FROM, "Demo : /pub"), "Demo : /pub");
    SetDlgSendToText("", "C:\\in");
    EXPECT_EQ(DrawnText(IDC_TRANSFER_TO, "C:\\in"), "C:\\in");
    RefreshCountersText({2, 3, 0});  // folders, files
    const std::string counters = "3 Files Transfered,  2 Folders Created";
    EXPECT_EQ(DrawnText(IDC_TRANSFER_COUNTERS, counters), counters);
}

TEST_F(ProgressDialogTest, ProgressIsCountedIn64Bits) {
    const HWND dialog = Show();
    ShowTransferProgress(7'000'000'000, 10'000'000'000);
    EXPECT_EQ(DrawnBar(dialog, 700), 700);
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_BYTES), "7000000000 of 10000000000");
    ShowTransferProgress(12, 0);
    EXPECT_EQ(DrawnText(IDC_TRANSFER_BYTES, "12"), "12") << "an unknown total is not shown";
    ShowTransferProgress(12, 10);
    EXPECT_EQ(DrawnBar(dialog, 1000), 1000) << "a file that grew fills the bar";
}

TEST_F(ProgressDialogTest, TheModeCheckedIsTheModeGiven) {
    const HWND dialog = Show();
    const auto checked = [dialog] {
        int found = 0;
        for (const int button : {IDC_TRANSFER_ASCII, IDC_TRANSFER_BINARY, IDC_TRANSFER_L8})
            if (IsDlgButtonChecked(dialog, button)) found = found == 0 ? button : -1;
        return found;
    };
    EXPECT_EQ(checked(), 0) << "no file has chosen a mode yet";
    for (const auto& [mode, button] :
         {std::pair('A', IDC_TRANSFER_ASCII), std::pair('L', IDC_TRANSFER_L8), std::pair('I', IDC_TRANSFER_BINARY)}) {
        ShowMode(mode);
        EXPECT_TRUE(Pump([&, wanted = button] { return checked() == wanted; })) << mode;
    }
}

TEST_F(ProgressDialogTest, LongPathsAreShortenedToFit) {
    const HWND dialog = Show();
    std::string path;
    for (int level = 0; level < 30; ++level) path += "/some folder";
    SetDlgFromText("Demo", (path + "/last one").c_str());
    ASSERT_TRUE(Pump([dialog] { return !ItemText(dialog, IDC_TRANSFER_FROM).empty(); }));
    const std::string shown = ItemText(dialog, IDC_TRANSFER_FROM);
    EXPECT_EQ(shown.rfind("Demo : /some folder", 0), 0u) << shown;
    EXPECT_NE(shown.find("/.../last one"), std::string::npos) << shown;
    const std::string unbroken(500, 'x');
    SetDlgSendToText("", unbroken.c_str());
    EXPECT_EQ(DrawnText(IDC_TRANSFER_TO, unbroken), unbroken) << "nothing to leave out: the control cuts it";
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
    SetTransferRunning(false);
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
    gTransferView.showDialog = [] {
        held = true;
        platform::WaitEvent(gHold, 20'000);
        SetDlgTransferingText("too late");
    };
    ASSERT_NE(session_.ConnectedSite(), nullptr);
    SelectFile("a.txt", "first");
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

// Every text that the control has been given.
std::vector<std::string> gDrawn;
LRESULT CALLBACK KeepTexts(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    if (message == WM_SETTEXT) gDrawn.push_back(Narrow(reinterpret_cast<const wchar_t*>(lParam)));
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(ProgressDialogTest, TheLastStateIsDrawnBeforeTheDialogCloses) {
    const HWND dialog = Show();
    gDrawn.clear();
    SetWindowSubclass(GetDlgItem(dialog, IDC_TRANSFER_COUNTERS), KeepTexts, 1, 0);
    KillTimer(dialog, 3);  // the end itself draws
    RefreshCountersText({0, 1, 0});
    RefreshCountersText({0, 2, 0});
    gTransferView.closeDialog();
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(gDrawn, (std::vector<std::string>{"2 Files Transfered"}));
}

TEST_F(ProgressDialogTest, WhatWasPublishedWhileItWasHiddenIsThereWhenItShows) {
    ASSERT_TRUE(Open(TransferStart::None));
    SetDlgTransferingText("a.txt");
    ShowTransferProgress(5, 10);
    gTransferView.showDialog();
    const HWND dialog = reinterpret_cast<HWND>(ShownTransferDialog());
    ASSERT_NE(dialog, nullptr) << "a box that is about to stand in front of it does not wait for the posted message";
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_NAME), "Transfering: a.txt");
    EXPECT_EQ(ItemText(dialog, IDC_TRANSFER_BYTES), "5 of 10");
    EXPECT_EQ(Bar(dialog), 500);
}

TEST_F(ProgressDialogTest, AHiddenDialogThatNobodyAskedForIsNoneToStandInFrontOf) {
    ASSERT_TRUE(Open(TransferStart::None));
    EXPECT_EQ(ShownTransferDialog(), nullptr);
    EXPECT_FALSE(Visible());
}

// This thread, which owns the dialog, serves no message while the other one publishes.
TEST_F(ProgressDialogTest, TheWorkerDoesNotWaitForABusyWindow) {
    Show();
    std::atomic<bool> done{false};
    OtherThread worker([&done] {
        for (int file = 1; file <= 1000; ++file) {
            SetDlgTransferingText("a.txt");
            SetDlgFromText("Demo", "/pub");
            SetDlgSendToText("", "C:\\in");
            ShowMode('I');
            ShowTransferProgress(static_cast<std::uint64_t>(file), 1000);
            RefreshCountersText({0, file, 0});
        }
        gTransferView.showDialog();
        done = true;
    });
    EXPECT_TRUE(test_support::WaitUntil([&done] { return done.load(); }));
    EXPECT_EQ(DrawnText(IDC_TRANSFER_COUNTERS, "1000 Files Transfered"), "1000 Files Transfered");
}

// As the folder of many small files in practice: the worker alone publishes thousands of changes.
TEST_F(ProgressDialogTest, ManyChangesAreDrawnAtMostTwentyTimesASecond) {
    const HWND dialog = Show();
    gDrawn.clear();
    SetWindowSubclass(GetDlgItem(dialog, IDC_TRANSFER_COUNTERS), KeepTexts, 1, 0);
    const std::uint32_t start = platform::TickCount();
    int file = 0;
    Pump([&] {
        RefreshCountersText({0, ++file, 0});
        return platform::TickCount() - start >= 500;
    });
    const std::uint32_t passed = platform::TickCount() - start;
    EXPECT_GT(gDrawn.size(), 1u);
    EXPECT_LE(gDrawn.size(), passed / 50 + 1);
    EXPECT_GT(file, static_cast<int>(gDrawn.size()));
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
    SetDlgTransferingText("x");
    gTransferView.closeDialog();
    ShowTransferProgress(1, 2);
    EXPECT_EQ(gTransferView.confirmReplace({}), ReplaceAnswer::Cancel);
    EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(ProgressDialogTest, GoesWithItsOwner) {
    {
        const OwnerWindow other;
        ASSERT_TRUE(OpenTransferDialog(other.Handle(), TransferJob(), OnFinished));
        gTransferView.showDialog();
        ASSERT_TRUE(Pump(Visible));
    }
    EXPECT_EQ(TransferDialogWindow(), nullptr);
    SetDlgTransferingText("x");
    EXPECT_TRUE(Open(TransferStart::None));
}

}  // namespace
