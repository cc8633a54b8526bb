#include "transfer/drop_actions_window.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <string>

#include "foundation/wide_text_window.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "resources/resource.h"
#include "support/dialog_user.h"
#include "support/local_folder.h"
#include "support/recording_transfer_view.h"
#include "support/session_harness.h"
#include "transfer/progress_dialog.h"

using namespace dialog_user;

namespace {

using Names = std::vector<std::string>;

// The block that the shell makes of names.
HGLOBAL MakeDrop(const Names& names) {
    std::wstring list;
    for (const std::string& name : names) list += Wide(name) + L'\0';
    list += L'\0';
    const SIZE_T bytes = list.size() * sizeof(wchar_t);
    const HGLOBAL block = GlobalAlloc(GHND, sizeof(DROPFILES) + bytes);
    auto* drop = static_cast<DROPFILES*>(GlobalLock(block));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::memcpy(drop + 1, list.data(), bytes);
    GlobalUnlock(block);
    return block;
}

int gFinished = 0;
Site* gDropSite = nullptr;
Names gDropFiles;

bool RecordDrop(Site* site, std::vector<std::string> files) {
    gDropSite = site;
    gDropFiles = std::move(files);
    return true;
}

class DropActionsWindow : public testing::Test {
  protected:
    void SetUp() override {
        SKIP_WITHOUT_DISPLAY();
        FillTransferView(gTransferView);
        gSessionView.waitForThread = WaitServing;
        gZarn.SENDUNIQUE = 0;
        gFinished = 0;
        gDropSite = nullptr;
        gDropFiles.clear();
        session_.server.AddFolder("/up");
        session_.server.SetHome("/up");
    }
    void FillClipboard(HGLOBAL block, UINT format) {
        ASSERT_TRUE(OpenClipboard(owner_.Handle()));
        EmptyClipboard();
        SetClipboardData(format, block);
        CloseClipboard();
    }
    static bool Pump(const std::function<bool()>& condition) {
        return PumpUntil(condition, TransferDialogWindow, test_support::kLongWait);
    }
    bool Send(Site* site, Names paths) {
        TransferJob job;
        job.localPaths = std::move(paths);
        return drop_files_fx(site, owner_.Handle(), std::move(job), [] { ++gFinished; });
    }
    bool SendNamed(Site* site, Names names) {
        TransferJob job;
        job.site = site;
        job.start = TransferStart::StandardInput;
        job.localPaths = std::move(names);
        return OpenTransferDialog(owner_.Handle(), std::move(job), [] { ++gFinished; });
    }

    SessionHarness session_;
    LocalFolder folder_;
    RecordingTransferView view_;
    OwnerWindow owner_;
};

TEST_F(DropActionsWindow, NamesOfADropAreReadInTheirOrderWithEveryCharacter) {
    const Names names = {"C:\\a\\b.txt", "C:\\Größe\\灯台 🗼.txt", "D:\\100% %s"};
    const HGLOBAL drop = MakeDrop(names);
    EXPECT_EQ(names, FilesOfDrop(drop));
    GlobalFree(drop);
}

TEST_F(DropActionsWindow, FilesOnTheClipboardAreRead) {
    const Names names = {"C:\\a\\Grüße.txt", "C:\\b"};
    FillClipboard(MakeDrop(names), CF_HDROP);
    EXPECT_EQ(names, FilesOnClipboard(owner_.Handle()));
    EXPECT_EQ(names, FilesOnClipboard(owner_.Handle())) << "they stay there";
}

TEST_F(DropActionsWindow, TextOnTheClipboardIsNoFile) {
    const HGLOBAL text = GlobalAlloc(GHND, 8);
    std::memcpy(GlobalLock(text), "C:\\a", 5);
    GlobalUnlock(text);
    FillClipboard(text, CF_TEXT);
    EXPECT_TRUE(FilesOnClipboard(owner_.Handle()).empty());
    EXPECT_FALSE(paste_files_fx(session_.ConnectedSite(), owner_.Handle(), RecordDrop));
    EXPECT_EQ(gDropSite, nullptr);
    EXPECT_TRUE(session_.console.Boxes().empty());
}

TEST_F(DropActionsWindow, PastedFilesGoTheWayOfDroppedOnes) {
    Site* site = session_.ConnectedSite();
    FillClipboard(MakeDrop({"C:\\a\\b.txt"}), CF_HDROP);
    EXPECT_TRUE(paste_files_fx(site, owner_.Handle(), RecordDrop));
    EXPECT_EQ(gDropSite, site);
    EXPECT_EQ(gDropFiles, (Names{"C:\\a\\b.txt"}));
}

TEST_F(DropActionsWindow, PasteWithoutAConnectionIsToldAndPastesNothing) {
    FillClipboard(MakeDrop({"C:\\a\\b.txt"}), CF_HDROP);
    EXPECT_FALSE(paste_files_fx(session_.MakeSite(), owner_.Handle(), RecordDrop));
    EXPECT_EQ(gDropSite, nullptr);
    EXPECT_TRUE(session_.console.HasBox("NOT CONNECTED!! Files(s) ignored."));
}

TEST_F(DropActionsWindow, DropWhileDisconnectedIsToldAndTransfersNothing) {
    folder_.Write("a.txt", "aaa");
    EXPECT_FALSE(Send(session_.MakeSite(), {folder_.PathOf("a.txt")}));
    EXPECT_TRUE(session_.console.HasBox("NOT CONNECTED!! Files(s) ignored."));
    EXPECT_EQ(TransferDialogWindow(), nullptr);
    EXPECT_FALSE(WorkerRunning());
    EXPECT_EQ(gFinished, 0);
    EXPECT_TRUE(session_.server.Commands().empty());
}

TEST_F(DropActionsWindow, DroppedTreeIsSentBehindTheDialogWhichThenCloses) {
    Site* site = session_.ConnectedSite();
    site->pszCurrentDir = OwnedText::Copy("/up");
    folder_.Write("dir/a.txt", "aaa");
    folder_.Write("Grüße 灯台.txt", "bbb");
    ASSERT_TRUE(Send(site, {folder_.PathOf("dir"), folder_.PathOf("Grüße 灯台.txt")}));
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(gFinished, 1);
    EXPECT_EQ(session_.server.FileBytes("/up/dir/a.txt"), "aaa");
    EXPECT_EQ(session_.server.FileBytes("/up/Grüße 灯台.txt"), "bbb");
    EXPECT_EQ(view_.counters.back(), "2 Files Transfered,  1 Folders Created");
}

TEST_F(DropActionsWindow, AbortButtonEndsAnUploadAndKeepsTheConnection) {
    Site* site = session_.ConnectedSite();
    site->pszCurrentDir = OwnedText::Copy("/up");
    session_.server.On("STOR", {Say("150 ok\r\n"), OpenData(), Hold(), CloseData(), Say("426 gone\r\n")});
    folder_.Write("big.bin", std::string(20'000'000, 'x'));
    ASSERT_TRUE(Send(site, {folder_.PathOf("big.bin")}));
    ASSERT_TRUE(Pump([this] { return !session_.view.Progress().empty(); }));
    PostMessageW(TransferDialogWindow(), WM_COMMAND, IDC_TRANSFER_ABORT, 0);
    session_.server.Release();
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_TRUE(session_.console.HasLine("'big.bin' was not sent."));
    EXPECT_TRUE(session_.console.Boxes().empty());
    EXPECT_TRUE(HasControlSocket(site));
}

TEST_F(DropActionsWindow, StandardInputWithoutNamesOpensNoDialog) {
    EXPECT_FALSE(SendNamed(session_.ConnectedSite(), {}));
    EXPECT_EQ(TransferDialogWindow(), nullptr);
}

TEST_F(DropActionsWindow, FilesNamedOnStandardInputAreSent) {
    Site* site = session_.ConnectedSite();
    site->pszCurrentDir = OwnedText::Copy("/up");
    folder_.Write("a.txt", "aaa");
    ASSERT_TRUE(SendNamed(site, {"a.txt"}));
    ASSERT_TRUE(Pump([] { return TransferDialogWindow() == nullptr; }));
    EXPECT_EQ(gFinished, 1);
    EXPECT_EQ(session_.server.FileBytes("/up/a.txt"), "aaa");
}

}  // namespace
