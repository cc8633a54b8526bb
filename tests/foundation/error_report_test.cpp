#include "foundation/error_report.h"

#include <cstdio>

#include "foundation/error_text.h"
#include "foundation/message_ids.h"
#include "platform/threads.h"
#include "traced_test.h"

namespace {

class ErrorReport : public TracedTest {};

std::string ErrorStamp() {
    char stamp[32];
    std::snprintf(stamp, sizeof stamp, "ZARN:(%x) ", static_cast<unsigned>(platform::CurrentThreadId()));
    return stamp;
}

std::string SystemText(std::uint32_t error) {
    return platform::SystemErrorText(error);
}

TEST_F(ErrorReport, TextOfAnErrorOrOfTheLastOne) {
    EXPECT_FALSE(SystemText(5).empty());
    EXPECT_EQ(GetErrorText(5).view(), SystemText(5));
    platform::SetLastSystemError(112);
    EXPECT_EQ(GetErrorText(0).view(), SystemText(112));
    EXPECT_EQ(platform::LastSystemError(), 112U);
}

TEST_F(ErrorReport, ApiError_OneConsoleLineWithNameNumberAndText) {
    DbgPrintApiError("Caller", "WriteFile()", 112);
    ASSERT_EQ(view.ConsoleLines().size(), 1U);
    EXPECT_EQ(view.ConsoleLines()[0],
              ErrorStamp() + "Caller() WriteFile() Failed. Error is 112:" + SystemText(112) + ".");
}

TEST_F(ErrorReport, FileCreateError_NamesTheFile) {
    DbgFileCreateError("Caller", "a%n.txt", 5);
    ASSERT_EQ(view.ConsoleLines().size(), 1U);
    EXPECT_EQ(view.ConsoleLines()[0],
              ErrorStamp() + "Caller() Call to CreateFile(a%n.txt) Failed. Error is 5: " + SystemText(5) + ".");
}

TEST_F(ErrorReport, ErrorZeroSaysNothing) {
    DbgPrintApiError("Caller", "WriteFile()", 0);
    DbgFileCreateError("Caller", "file", 0);
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(ErrorReport, ReportingKeepsTheLastSystemError) {
    platform::SetLastSystemError(1234);
    DbgPrintApiError("Caller", "WriteFile()", 112);
    DbgFileCreateError("Caller", "file", 5);
    EXPECT_EQ(platform::LastSystemError(), 1234U);
}

TEST_F(ErrorReport, MissingMessageIsTracedAndNothingElseHappens) {
    SetText(1, "other");
    TraceToConsole();
    DbgPrintApiError("Caller", "WriteFile()", 112);
    EXPECT_TRUE(view.HasLine("DbgPrintApiError() Call to Zarn_ResString(7039) Failed"));
    EXPECT_FALSE(view.HasLine("ZARN:"));
}

TEST_F(ErrorReport, OwnLineHasTheSameForm) {
    PrintErrorLine("Caller", "said");
    EXPECT_EQ(view.ConsoleLines(), std::vector<std::string>{ErrorStamp() + "Caller() said"});
}

TEST_F(ErrorReport, NoMemoryBox) {
    ShowNoMemoryError();
    ASSERT_EQ(view.Boxes().size(), 1U);
    EXPECT_EQ(view.Boxes()[0].text, "Zarn was unable to allocate memory. Close some\napplications and try again.");
    EXPECT_EQ(view.Boxes()[0].caption, "Zarnish Ftp");
    EXPECT_EQ(view.Boxes()[0].buttons, BoxButtons::Ok);
}

TEST_F(ErrorReport, ApiErrorBox) {
    EXPECT_TRUE(ShowApiError(5));
    platform::SetLastSystemError(112);
    EXPECT_TRUE(ShowApiError(0));
    ASSERT_EQ(view.Boxes().size(), 2U);
    EXPECT_EQ(view.Boxes()[0].text, SystemText(5));
    EXPECT_EQ(view.Boxes()[1].text, SystemText(112));
}

TEST_F(ErrorReport, WithoutAViewNothingIsShownAndNothingBreaks) {
    const FoundationView recording = gFoundationView;
    gFoundationView = {};
    PrintToConsole("text");
    EXPECT_EQ(ShowMessageBox("text", nullptr, BoxButtons::YesNo, BoxIcon::Question), BoxAnswer::None);
    EXPECT_FALSE(ShowApiError(5));
    gFoundationView = recording;
}

TEST_F(ErrorReport, BoxAnswersComeFromTheView) {
    view.AnswerNext(BoxAnswer::No);
    EXPECT_EQ(ShowMessageBox("sure?", "Caption", BoxButtons::YesNo, BoxIcon::Question), BoxAnswer::No);
    EXPECT_EQ(view.Boxes().at(0).caption, "Caption");
    EXPECT_EQ(view.Boxes().at(0).icon, BoxIcon::Question);
}

TEST_F(ErrorReport, BoxWithoutCatalogueHasABuiltInCaption) {
    SetText(1, "other");
    ShowMessageBox("text", nullptr, BoxButtons::Ok, BoxIcon::None);
    EXPECT_EQ(view.Boxes().at(0).caption, "Zarn32");
}

}  // namespace
