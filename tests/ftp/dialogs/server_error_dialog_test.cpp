#include "ftp/dialogs/server_error_dialog.h"

#include <gtest/gtest.h>

#include <string>

#include "ftp/errors/server_error.h"
#include "ftp/worker/session_view.h"
#include "resources/resource.h"
#include "support/dialog_user.h"
#include "support/recording_session_view.h"

using namespace dialog_user;

namespace {

constexpr char kCaption[] = "Ftp Port Command Failure";

struct Shown {
    std::string code, returned, definition, task;
    int focus = 0;
    int defaultButton = 0;
};

// What the dialog shows for a reply; it is closed with `button`.
Shown Show(int operation, const char* reply, int button = IDOK) {
    Shown shown;
    DialogUser user(kCaption, [&](HWND dialog) {
        shown = {ItemText(dialog, IDC_ERROR_CODE),
                 ItemText(dialog, IDC_ERROR_REPLY),
                 ItemText(dialog, IDC_ERROR_DEFINITION),
                 ItemText(dialog, IDC_ERROR_TASK),
                 FocusedItem(dialog),
                 DefaultButton(dialog)};
        Press(dialog, button);
    });
    ShowServerErrorDialog(nullptr, operation, reply);
    EXPECT_TRUE(user.Join());
    return shown;
}

TEST(ServerErrorDialog, ShowsCodeReplyExplanationAndTask) {
    SKIP_WITHOUT_DISPLAY();
    const Shown shown = Show(kOperationChangeDirectory, "550 /nowhere: No such file or directory");
    EXPECT_EQ(shown.code, "550");
    EXPECT_EQ(shown.returned, " /nowhere: No such file or directory");
    EXPECT_EQ(shown.definition, "Requested action not taken:  file unavailable (e.g.  file busy)");
    EXPECT_EQ(shown.task, "An error occured while trying to change the remote directory.");
}

TEST(ServerErrorDialog, WithoutACodeTheCodeIs0AndTheExplanationEmpty) {
    SKIP_WITHOUT_DISPLAY();
    const Shown shown = Show(kOperationList, "Connection reset by peer", IDCANCEL);
    EXPECT_EQ(shown.code, "0");
    EXPECT_EQ(shown.returned, "Connection reset by peer");
    EXPECT_EQ(shown.definition, "");
    EXPECT_EQ(shown.task, "An error occured while trying to list a remote directory.");
}

TEST(ServerErrorDialog, UnlistedOperationsArePortCommands) {
    SKIP_WITHOUT_DISPLAY();
    EXPECT_EQ(Show(651, "500 no").task, "An error occured while excecuting a PORT command.");
}

TEST(ServerErrorDialog, LinesOfAReplyStandInLinesOfTheField) {
    SKIP_WITHOUT_DISPLAY();
    EXPECT_EQ(Show(kOperationList, "550-first\n second\r\n550 end").returned, "-first\r\n second\r\n550 end");
}

TEST(ServerErrorDialog, OpensOnItsOkButton) {
    SKIP_WITHOUT_DISPLAY();
    const Shown shown = Show(kOperationList, "550 no");
    EXPECT_EQ(shown.focus, IDOK);
    EXPECT_EQ(shown.defaultButton, IDOK);
}

TEST(ServerErrorDialog, ClosingTheWindowIsCancel) {
    SKIP_WITHOUT_DISPLAY();
    DialogUser user(kCaption, [](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); });
    ShowServerErrorDialog(nullptr, kOperationList, "550 no");
    EXPECT_TRUE(user.Join());
    EXPECT_EQ(FindDialog(kCaption), nullptr);
}

TEST(ServerErrorDialog, ASecondOneIsNotShownWhileOneIsOpen) {
    SKIP_WITHOUT_DISPLAY();
    const RecordingSessionView view;
    static int opened = 0;
    opened = 0;
    gSessionView.showServerError = [](int operation, const char* reply) {
        ++opened;
        ShowServerErrorDialog(nullptr, operation, reply);
    };
    DialogUser user(kCaption, [](HWND dialog) {
        ShowServerError(kOperationList, "550 second");
        Press(dialog, IDOK);
    });
    ShowServerError(kOperationList, "550 first");
    EXPECT_TRUE(user.Join());
    EXPECT_EQ(opened, 1);
    DialogUser later(kCaption, [](HWND dialog) { Press(dialog, IDOK); });
    ShowServerError(kOperationList, "550 third");
    EXPECT_TRUE(later.Join());
    EXPECT_EQ(opened, 2);
}

}  // namespace
