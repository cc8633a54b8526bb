#include "transfer/replace_dialog.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/file_time.h"
#include "resources/resource.h"
#include "support/dialog_user.h"

using namespace dialog_user;

namespace {

constexpr char kCaption[] = "Confirm File Replace";

ReplaceQuestion Question(ExistingFile kind = ExistingFile::Ordinary) {
    ReplaceQuestion question;
    question.name = "Bücher & Co.txt";
    question.path = "C:\\somewhere\\Bücher & Co.txt";
    question.kind = kind;
    question.oldSize = 1234567;
    question.newSize = 5'000'000'000;
    CalendarToFileTime({1999, 2, 14, 13, 2, 3, 0}, question.oldTime);
    return question;
}

struct Shown {
    std::string text, oldSize, oldDate, newSize, newDate;
    int focus = 0;
    int defaultButton = 0;
    ReplaceAnswer answer = ReplaceAnswer::Cancel;
};

Shown Show(const ReplaceQuestion& question, int button) {
    Shown shown;
    DialogUser user(kCaption, [&](HWND dialog) {
        shown.text = ItemText(dialog, IDC_REPLACE_TEXT);
        shown.oldSize = ItemText(dialog, IDC_REPLACE_OLD_SIZE);
        shown.oldDate = ItemText(dialog, IDC_REPLACE_OLD_DATE);
        shown.newSize = ItemText(dialog, IDC_REPLACE_NEW_SIZE);
        shown.newDate = ItemText(dialog, IDC_REPLACE_NEW_DATE);
        shown.focus = FocusedItem(dialog);
        shown.defaultButton = DefaultButton(dialog);
        Press(dialog, button);
    });
    shown.answer = ShowReplaceDialog(nullptr, question);
    EXPECT_TRUE(user.Join());
    return shown;
}

TEST(ReplaceDialog, EachKindOfFileHasItsText) {
    SKIP_WITHOUT_DISPLAY();
    EXPECT_EQ(Show(Question(ExistingFile::Ordinary), IDNO).text,
              "This folder already contains a file called 'Bücher & Co.txt'.");
    EXPECT_EQ(Show(Question(ExistingFile::ReadOnly), IDNO).text,
              "This folder already contains a read-only file called 'Bücher & Co.txt'.");
    EXPECT_EQ(Show(Question(ExistingFile::System), IDNO).text,
              "This folder already contains a system file called 'Bücher & Co.txt'.");
}

TEST(ReplaceDialog, EachButtonIsAnAnswer) {
    SKIP_WITHOUT_DISPLAY();
    EXPECT_EQ(Show(Question(), IDYES).answer, ReplaceAnswer::Yes);
    EXPECT_EQ(Show(Question(), IDC_REPLACE_YES_TO_ALL).answer, ReplaceAnswer::YesToAll);
    EXPECT_EQ(Show(Question(), IDNO).answer, ReplaceAnswer::No);
    EXPECT_EQ(Show(Question(), IDCANCEL).answer, ReplaceAnswer::Cancel);
}

TEST(ReplaceDialog, EnterIsNoAndEscapeIsCancel) {
    SKIP_WITHOUT_DISPLAY();
    DialogUser enter(kCaption, [](HWND dialog) { PressKey(dialog, VK_RETURN); });
    EXPECT_EQ(ShowReplaceDialog(nullptr, Question()), ReplaceAnswer::No);
    EXPECT_TRUE(enter.Join());
    DialogUser escape(kCaption, [](HWND dialog) { PressKey(dialog, VK_ESCAPE); });
    EXPECT_EQ(ShowReplaceDialog(nullptr, Question()), ReplaceAnswer::Cancel);
    EXPECT_TRUE(escape.Join());
}

TEST(ReplaceDialog, ShowsSizesAndDatesOfBothFiles) {
    SKIP_WITHOUT_DISPLAY();
    const Shown shown = Show(Question(), IDNO);
    EXPECT_EQ(shown.oldSize, "1,234,567 bytes");
    // The date is written as the user's system writes dates.
    EXPECT_EQ(shown.oldDate.rfind("modified on ", 0), 0u) << shown.oldDate;
    EXPECT_NE(shown.oldDate.find("14"), std::string::npos) << shown.oldDate;
    EXPECT_NE(shown.oldDate.find("1999"), std::string::npos) << shown.oldDate;
    EXPECT_NE(shown.oldDate.find("02:03"), std::string::npos) << shown.oldDate;
    EXPECT_EQ(shown.newSize, "5,000,000,000 bytes");
    EXPECT_EQ(shown.newDate, "date unknown");
}

TEST(ReplaceDialog, OpensOnNo) {
    SKIP_WITHOUT_DISPLAY();
    const Shown shown = Show(Question(), IDNO);
    EXPECT_EQ(shown.focus, IDNO);
    EXPECT_EQ(shown.defaultButton, IDNO);
}

}  // namespace
