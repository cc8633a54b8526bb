#include "foundation/trace.h"

#include <algorithm>
#include <thread>
#include <vector>

#include "debugger_capture.h"
#include "traced_test.h"

namespace {

class Trace : public TracedTest {};

TEST_F(Trace, AllSwitchesOff_NothingIsFormattedOrPrinted) {
    gBounds.limit = -7;
    gBounds.written = -7;
    DebuggerCapture debugger;
    DbgVsprintf("Func", "text %d", 1);
    DbgVsprintfID("Func", 7302);
    EXPECT_EQ(debugger.Take(), "");
    EXPECT_TRUE(view.ConsoleLines().empty());
    // Formatting would have recorded its bounds.
    EXPECT_EQ(gBounds.limit, -7);
    EXPECT_EQ(gBounds.written, -7);
}

TEST_F(Trace, LineIsStampedWithProcessThreadAndFunction) {
    TraceToConsole();
    DbgVsprintf("GetLogfileHandle", "Entered");
    ASSERT_EQ(view.ConsoleLines().size(), 1U);
    EXPECT_EQ(view.ConsoleLines()[0], Stamp() + "GetLogfileHandle() Entered");
}

TEST_F(Trace, NullFormat_NothingIsPrinted) {
    TraceToConsole();
    const char* format = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
#pragma GCC diagnostic ignored "-Wformat-security"
    DbgVsprintf("Func", format);
#pragma GCC diagnostic pop
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(Trace, EmptyMessage_YieldsTheFailedLineUnstamped) {
    TraceToConsole();
    DbgVsprintf("Func", "%s", "");
    ASSERT_EQ(view.ConsoleLines().size(), 1U);
    EXPECT_EQ(view.ConsoleLines()[0], "DbgVsprintf:Func. Call to vsprintf(buf, %s, vaArgs) failed.");
}

TEST_F(Trace, DebugSwitchAlone_ReachesOnlyTheDebugger) {
    gTrace.debug = true;
    DebuggerCapture debugger;
    DbgVsprintf("Func", "text");
    EXPECT_EQ(debugger.Take(), Stamp() + "Func() text\n");
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(Trace, OverlongMessage_IsCutAndTheOverrunReportedOnce) {
    TraceToConsole();
    const std::string text(3000, 'x');
    DbgVsprintf("Func", "%s", text.c_str());
    ASSERT_EQ(view.ConsoleLines().size(), 2U);
    EXPECT_EQ(view.ConsoleLines()[0],
              Stamp() + "Func() ERROR. we just outstepped our Bounds by 953 chars for " + std::string(2047, 'x'));
    EXPECT_EQ(view.ConsoleLines()[1], Stamp() + "Func() " + std::string(2047, 'x'));
    EXPECT_EQ(gBounds.limit, 2047);
    EXPECT_EQ(gBounds.written, 3000);
}

TEST_F(Trace, BytesFromOutsideAreNeverAFormat) {
    TraceToConsole();
    DbgVsprintf("Func", "%s", "%n%s%99$x");
    EXPECT_EQ(view.ConsoleLines().at(0), Stamp() + "Func() %n%s%99$x");
}

TEST_F(Trace, TracingKeepsTheLastSystemError) {
    TraceToConsole();
    platform::SetLastSystemError(1234);
    DbgVsprintf("Func", "text");
    DbgVsprintf("Func", "%s", "");
    EXPECT_EQ(platform::LastSystemError(), 1234U);
}

TEST_F(Trace, Vsprintf_YieldsAnOwnedText) {
    const OwnedText text = Zarn_Vsprintf("Func", "%s-%d", "a", 5);
    ASSERT_TRUE(text);
    EXPECT_EQ(text.view(), "a-5");
}

TEST_F(Trace, Vsprintf_FunctionNameWithPercent_IsRefused) {
    TraceToConsole();
    EXPECT_FALSE(Zarn_Vsprintf("Fu%snc", "%s", "text"));
    ASSERT_EQ(view.ConsoleLines().size(), 1U);
    EXPECT_EQ(view.ConsoleLines()[0], "Invalid Char in FuncName(Fu%snc). Returning NULL");
}

TEST_F(Trace, Vsprintf_NullName_IsRefused) {
    TraceToConsole();
    EXPECT_FALSE(Zarn_Vsprintf(nullptr, "%s", "text"));
    EXPECT_TRUE(view.HasLine("Zarn_Vsprintf() ERROR. Entered with NULL First Param"));
}

TEST_F(Trace, Vsprintf_NullFormat_IsRefused) {
    TraceToConsole();
    const char* format = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
#pragma GCC diagnostic ignored "-Wformat-security"
    EXPECT_FALSE(Zarn_Vsprintf("Func", format));
#pragma GCC diagnostic pop
    EXPECT_TRUE(view.HasLine("Zarn_Vsprintf() ERROR. Entered with NULL Second Param"));
}

TEST_F(Trace, Vsprintf_EmptyResult_IsNull) {
    TraceToConsole();
    EXPECT_FALSE(Zarn_Vsprintf("Func", "%s", ""));
    EXPECT_EQ(view.ConsoleLines().at(0), "Zarn_Vsprintf(Func) Call to vsprintf(buf, %s, vaArgs) failed.");
}

TEST_F(Trace, Vsprintf_ZeroFirstByte_IsNull) {
    EXPECT_FALSE(Zarn_Vsprintf("Func", "%cabc", 0));
}

TEST_F(Trace, Vsprintf_OverlongResult_IsCutTo2047) {
    const std::string text(5000, 'y');
    EXPECT_EQ(Zarn_Vsprintf("Func", "%s", text.c_str()).view(), std::string(2047, 'y'));
}

TEST_F(Trace, FormatBounded_ExactFitIsNotAnOverrun) {
    TraceToConsole();
    EXPECT_EQ(FormatBounded("Func", 5, "%s", "abcd"), "abcd");
    EXPECT_EQ(gBounds.limit, 4);
    EXPECT_EQ(gBounds.written, 4);
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(Trace, FormatBounded_OverrunIsCutAndReported) {
    TraceToConsole();
    EXPECT_EQ(FormatBounded("Func", 5, "%s", "abcdefg"), "abcd");
    EXPECT_EQ(gBounds.written, 7);
    EXPECT_EQ(view.ConsoleLines().at(0), Stamp() + "Func() ERROR. we just outstepped our Bounds by 3 chars for abcd");
}

TEST_F(Trace, Router_NullLine_DoesNothing) {
    DebuggerCapture debugger;
    OutPutPrint(nullptr);
    EXPECT_EQ(debugger.Take(), "");
}

TEST_F(Trace, Router_AllSwitchesOff_StillWritesToTheDebugger) {
    DebuggerCapture debugger;
    OutPutPrint("[line");
    EXPECT_EQ(debugger.Take(), "[line\n");
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(Trace, Router_VerboseWithoutDebug_ShowsRepliesAndBracketedLinesOnly) {
    gTrace.verbose = true;
    DbgVsprintf("Func", "Entered");
    EXPECT_TRUE(view.ConsoleLines().empty());
    OutPutPrint("220 ");  // four characters
    OutPutPrint("600 not a code");
    OutPutPrint("220 Ready");
    OutPutPrint("[x] said");
    EXPECT_EQ(view.ConsoleLines(), (std::vector<std::string>{"220 Ready", "[x] said"}));
}

TEST_F(Trace, Router_VerboseWithDebug_ShowsEverything) {
    TraceToConsole();
    OutPutPrint("anything");
    EXPECT_EQ(view.ConsoleLines(), std::vector<std::string>{"anything"});
}

TEST_F(Trace, Debugger_TextWithItsOwnLineFeed_GetsNoSecondOne) {
    DebuggerCapture debugger;
    Zarn_DebuggerPrint("one\n");
    Zarn_DebuggerPrint("two");
    Zarn_DebuggerPrint("");
    Zarn_DebuggerPrint(nullptr);
    EXPECT_EQ(debugger.Take(), "one\ntwo\n");
}

TEST_F(Trace, IsReplyLine_Forms) {
    EXPECT_TRUE(IsReplyLine("220 x"));
    EXPECT_TRUE(IsReplyLine("220-x"));
    EXPECT_TRUE(IsReplyLine("100 x"));
    EXPECT_TRUE(IsReplyLine("599 x"));
    EXPECT_FALSE(IsReplyLine("220 "));
    EXPECT_FALSE(IsReplyLine("099 x"));
    EXPECT_FALSE(IsReplyLine("600 x"));
    EXPECT_FALSE(IsReplyLine("22x x"));
    EXPECT_FALSE(IsReplyLine("220x "));
    EXPECT_FALSE(IsReplyLine("2200 "));
    EXPECT_FALSE(IsReplyLine(""));
    EXPECT_FALSE(IsReplyLine("\xb2\xb3\xb2 x"));
}

TEST_F(Trace, ManyThreads_EveryLineArrivesWhole) {
    TraceToConsole();
    constexpr int kThreads = 4;
    constexpr int kLines = 50;
    DebuggerCapture debugger;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int line = 0; line < kLines; ++line) DbgVsprintf("Func", "line %d of %d", line, thread);
        });
    }
    for (std::thread& thread : threads) thread.join();
    debugger.Take();
    EXPECT_EQ(view.ConsoleLines().size(), static_cast<std::size_t>(kThreads * kLines));
    for (int thread = 0; thread < kThreads; ++thread) {
        EXPECT_EQ(view.CountLines("of " + std::to_string(thread)), kLines);
    }
}

}  // namespace
