#include "ftp/dialogs/ask_text_dialog.h"

#include <gtest/gtest.h>

#include <string>

#include "resources/resource.h"
#include "support/dialog_user.h"

using namespace dialog_user;

namespace {

TextQuestion Question(bool isSecret = false) {
    TextQuestion question;
    question.caption = "Zarn asks";
    question.prompt = "Enter remote file name for Übung.txt:";
    question.isSecret = isSecret;
    question.longest = 10;
    return question;
}

TEST(AskTextDialog, ReturnsWhatTheUserTyped) {
    SKIP_WITHOUT_DISPLAY();
    std::string prompt, prefill, answer = "old";
    bool selected = false;
    int focus = 0, defaultButton = 0;
    DialogUser user("Zarn asks", [&](HWND dialog) {
        prompt = ItemText(dialog, IDC_ASK_PROMPT);
        prefill = ItemText(dialog, IDC_ASK_TEXT);
        selected = AllSelected(dialog, IDC_ASK_TEXT);
        focus = FocusedItem(dialog);
        defaultButton = DefaultButton(dialog);
        SetItemText(dialog, IDC_ASK_TEXT, "größer");
        PressKey(dialog, VK_RETURN);
    });
    EXPECT_TRUE(ShowAskTextDialog(nullptr, Question(), answer));
    ASSERT_TRUE(user.Join());
    EXPECT_EQ(prompt, "Enter remote file name for Übung.txt:");
    EXPECT_EQ(prefill, "old");
    EXPECT_TRUE(selected);
    EXPECT_EQ(focus, IDC_ASK_TEXT);
    EXPECT_EQ(defaultButton, IDOK);
    EXPECT_EQ(answer, "größer");
}

TEST(AskTextDialog, CancelLeavesTheAnswerAsItWas) {
    SKIP_WITHOUT_DISPLAY();
    std::string answer = "old";
    DialogUser user("Zarn asks", [](HWND dialog) {
        SetItemText(dialog, IDC_ASK_TEXT, "new");
        Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(ShowAskTextDialog(nullptr, Question(), answer));
    ASSERT_TRUE(user.Join());
    EXPECT_EQ(answer, "old");
}

TEST(AskTextDialog, EscapeCancels) {
    SKIP_WITHOUT_DISPLAY();
    std::string answer = "old";
    DialogUser user("Zarn asks", [](HWND dialog) { PressKey(dialog, VK_ESCAPE); });
    EXPECT_FALSE(ShowAskTextDialog(nullptr, Question(), answer));
    EXPECT_TRUE(user.Join());
}

TEST(AskTextDialog, ASecretIsMasked) {
    SKIP_WITHOUT_DISPLAY();
    std::string answer;
    LRESULT secretMask = 0;
    LRESULT openMask = 1;
    DialogUser secret("Zarn asks", [&](HWND dialog) {
        secretMask = SendDlgItemMessageW(dialog, IDC_ASK_TEXT, EM_GETPASSWORDCHAR, 0, 0);
        SetItemText(dialog, IDC_ASK_TEXT, "geheim");
        Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowAskTextDialog(nullptr, Question(true), answer));
    ASSERT_TRUE(secret.Join());
    EXPECT_EQ(answer, "geheim");
    DialogUser open("Zarn asks", [&](HWND dialog) {
        openMask = SendDlgItemMessageW(dialog, IDC_ASK_TEXT, EM_GETPASSWORDCHAR, 0, 0);
        Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowAskTextDialog(nullptr, Question(false), answer));
    ASSERT_TRUE(open.Join());
    EXPECT_NE(secretMask, 0);
    EXPECT_EQ(openMask, 0);
}

TEST(AskTextDialog, MoreBytesThanAllowedAreNotAccepted) {
    SKIP_WITHOUT_DISPLAY();
    std::string answer;
    LRESULT limit = 0;
    bool tooLongOk = true, fittingOk = false;
    DialogUser user("Zarn asks", [&](HWND dialog) {
        limit = SendDlgItemMessageW(dialog, IDC_ASK_TEXT, EM_GETLIMITTEXT, 0, 0);
        SetItemText(dialog, IDC_ASK_TEXT, "ööööööö");  // 7 characters, 14 bytes
        tooLongOk = IsWindowEnabled(GetDlgItem(dialog, IDOK)) != 0;
        SetItemText(dialog, IDC_ASK_TEXT, "ööööö");
        fittingOk = IsWindowEnabled(GetDlgItem(dialog, IDOK)) != 0;
        Press(dialog, IDOK);
    });
    EXPECT_TRUE(ShowAskTextDialog(nullptr, Question(), answer));
    ASSERT_TRUE(user.Join());
    EXPECT_EQ(limit, 10);
    EXPECT_FALSE(tooLongOk);
    EXPECT_TRUE(fittingOk);
    EXPECT_EQ(answer, "ööööö");
}

TEST(AskTextDialog, ALongPromptIsShownWhole) {
    SKIP_WITHOUT_DISPLAY();
    TextQuestion question = Question();
    RECT shortPrompt{}, longPrompt{}, field{};
    std::string answer;
    DialogUser brief("Zarn asks", [&](HWND dialog) {
        GetWindowRect(GetDlgItem(dialog, IDC_ASK_PROMPT), &shortPrompt);
        Press(dialog, IDOK);
    });
    ShowAskTextDialog(nullptr, question, answer);
    ASSERT_TRUE(brief.Join());
    for (int word = 0; word < 40; ++word) question.prompt += " and on";
    DialogUser user("Zarn asks", [&](HWND dialog) {
        GetWindowRect(GetDlgItem(dialog, IDC_ASK_PROMPT), &longPrompt);
        GetWindowRect(GetDlgItem(dialog, IDC_ASK_TEXT), &field);
        Press(dialog, IDOK);
    });
    ShowAskTextDialog(nullptr, question, answer);
    ASSERT_TRUE(user.Join());
    EXPECT_GE(longPrompt.bottom - longPrompt.top, 3 * (shortPrompt.bottom - shortPrompt.top));
    EXPECT_GE(field.top, longPrompt.bottom);
}

}  // namespace
