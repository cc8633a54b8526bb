#include "ftp/dialogs/local_dir_dialog.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/trace.h"
#include "platform/files.h"
#include "resources/resource.h"
#include "support/dialog_user.h"
#include "support/local_folder.h"
#include "support/recording_view.h"

using namespace dialog_user;

namespace {

constexpr char kCaption[] = "Change Local Directory";

class LocalDirDialog : public testing::Test {
  protected:
    // Types a text and presses OK; the dialog's answer.
    static bool Enter(const std::string& text) {
        DialogUser user(kCaption, [&](HWND dialog) {
            SetItemText(dialog, IDC_LOCAL_DIR, text);
            PressKey(dialog, VK_RETURN);
        });
        const bool changed = ShowLocalDirDialog(nullptr);
        EXPECT_TRUE(user.Join());
        return changed;
    }
    LocalFolder folder_;
    RecordingView view_;
};

TEST_F(LocalDirDialog, OpensWithTheCurrentFolderSelected) {
    SKIP_WITHOUT_DISPLAY();
    std::string shown;
    bool selected = false;
    int focus = 0;
    DialogUser user(kCaption, [&](HWND dialog) {
        shown = ItemText(dialog, IDC_LOCAL_DIR);
        selected = AllSelected(dialog, IDC_LOCAL_DIR);
        focus = FocusedItem(dialog);
        Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(ShowLocalDirDialog(nullptr));
    ASSERT_TRUE(user.Join());
    EXPECT_EQ(shown, platform::CurrentFolder());
    EXPECT_TRUE(selected);
    EXPECT_EQ(focus, IDC_LOCAL_DIR);
}

TEST_F(LocalDirDialog, ChangesTheFolder) {
    SKIP_WITHOUT_DISPLAY();
    const std::string target = folder_.PathOf("Übung");
    ASSERT_TRUE(platform::CreateFolder(target.c_str()));
    EXPECT_TRUE(Enter(target));
    EXPECT_EQ(platform::CurrentFolder(), target);
    EXPECT_TRUE(view_.Boxes().empty());
    platform::SetCurrentFolder(folder_.Path().c_str());
}

TEST_F(LocalDirDialog, ADriveAloneMeansItsRoot) {
    SKIP_WITHOUT_DISPLAY();
    EXPECT_TRUE(Enter("C:"));
    EXPECT_EQ(platform::CurrentFolder(), "C:\\");
    platform::SetCurrentFolder(folder_.Path().c_str());
}

TEST_F(LocalDirDialog, AFolderThatIsNotThereIsTold) {
    SKIP_WITHOUT_DISPLAY();
    const std::string before = platform::CurrentFolder();
    view_.AnswerNext(BoxAnswer::Cancel);
    EXPECT_FALSE(Enter("C:\\no such folder"));
    EXPECT_EQ(platform::CurrentFolder(), before);
    ASSERT_EQ(view_.Boxes().size(), 1u);
    const RecordedBox box = view_.Boxes().front();
    EXPECT_EQ(box.text.rfind("An error occured while trying to set the local directory to:\nC:\\no such folder.\n", 0),
              0u)
        << box.text;
    EXPECT_GT(box.text.size(), 82u) << "without the system's reason: " << box.text;
    EXPECT_EQ(box.buttons, BoxButtons::OkCancel);
}

TEST_F(LocalDirDialog, OkInTheBoxReturnsToTheField) {
    SKIP_WITHOUT_DISPLAY();
    view_.AnswerNext(BoxAnswer::Ok);
    bool selected = false, stillOpen = false;
    DialogUser user(kCaption, [&](HWND dialog) {
        SetItemText(dialog, IDC_LOCAL_DIR, "C:\\no such folder");
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        stillOpen = IsWindowVisible(dialog) != 0;
        selected = AllSelected(dialog, IDC_LOCAL_DIR);
        SetItemText(dialog, IDC_LOCAL_DIR, folder_.Path());
        Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowLocalDirDialog(nullptr));
    ASSERT_TRUE(user.Join());
    EXPECT_TRUE(stillOpen);
    EXPECT_TRUE(selected);
    EXPECT_EQ(view_.Boxes().size(), 1u);
}

TEST_F(LocalDirDialog, AnEmptyFieldIsAnInvalidName) {
    SKIP_WITHOUT_DISPLAY();
    view_.AnswerNext(BoxAnswer::Cancel);
    EXPECT_FALSE(Enter(""));
    ASSERT_EQ(view_.Boxes().size(), 1u);
    EXPECT_EQ(view_.Boxes().front().text, "The directory name has an invalid character.");
    EXPECT_EQ(view_.Boxes().front().buttons, BoxButtons::OkCancel);
}

TEST_F(LocalDirDialog, ARefusedFolderIsTraced) {
    SKIP_WITHOUT_DISPLAY();
    view_.AnswerNext(BoxAnswer::Cancel);
    gTrace.verbose = gTrace.debug = true;
    Enter("C:\\no such folder");
    gTrace.verbose = gTrace.debug = false;
    EXPECT_TRUE(view_.HasLine("ERROR. Call to SetCurrentDirectory(C:\\no such folder) Failed!"));
}

}  // namespace
