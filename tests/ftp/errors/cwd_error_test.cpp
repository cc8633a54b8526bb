#include "ftp/errors/cwd_error.h"

#include <gtest/gtest.h>

#include "support/recording_view.h"

namespace {

TEST(Show550CwdError, AsksAbortRetryOrIgnoreAndReturnsTheAnswer) {
    RecordingView view;
    view.AnswerNext(BoxAnswer::Retry);
    EXPECT_EQ(Show550CwdError(), BoxAnswer::Retry);
    ASSERT_EQ(view.Boxes().size(), 1u);
    const RecordedBox box = view.Boxes().front();
    EXPECT_EQ(box.text,
              "The Ftp Server returned an error (550) while trying to  change\n the current remote directory.");
    EXPECT_EQ(box.buttons, BoxButtons::AbortRetryIgnore);
    EXPECT_EQ(box.icon, BoxIcon::Question);
    view.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(Show550CwdError(), BoxAnswer::Ignore);
}

}  // namespace
