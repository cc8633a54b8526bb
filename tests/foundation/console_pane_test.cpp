#include "foundation/console_pane.h"

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <thread>
#include <vector>

#include "debugger_capture.h"
#include "foundation/text_width_window.h"
#include "support/bounded_wait.h"
#include "traced_test.h"

namespace {

int gSizeMessages = 0;
int gChanges = 0;

LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SIZE) ++gSizeMessages;
    return DefWindowProcW(window, message, wParam, lParam);
}

// A hidden parent of the program's usual size. Windows need a display.
class ConsolePane : public TracedTest {
  protected:
    void SetUp() override {
        TracedTest::SetUp();
        WNDCLASSW description = {};
        description.lpfnWndProc = ParentProc;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"ConsolePaneTestParent";
        RegisterClassW(&description);
        parent = CreateWindowW(L"ConsolePaneTestParent", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600, nullptr, nullptr,
                               description.hInstance, nullptr);
        if (parent == nullptr) GTEST_SKIP() << "no display, no windows";
        gSizeMessages = 0;
        gChanges = 0;
    }
    void TearDown() override {
        SetConsoleChanged(nullptr);
        if (parent != nullptr) DestroyWindow(parent);
        EXPECT_EQ(ConsoleWindow(), nullptr);
        TracedTest::TearDown();
    }
    static void PumpMessages() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    static std::string Line(int line) {
        char buffer[512];
        return EditGetLine(line, buffer, sizeof buffer) ? buffer : "(none)";
    }
    static std::string LastLine() { return Line(EditGetLineCount() - 1); }
    static std::pair<DWORD, DWORD> Selection() {
        DWORD from = 0, to = 0;
        SendMessageW(ConsoleWindow(), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
        return {from, to};
    }

    HWND parent = nullptr;
};

TEST_F(ConsolePane, Hidden_AppendingWritesOnlyToTheDebugger) {
    DebuggerCapture debugger;
    EXPECT_EQ(ConsolePrint("text"), 0);
    EXPECT_EQ(debugger.Take(), "ConsolePrint() ERROR. Either hWndConsole is NULL of pString is NULL. Returning\n");
    EXPECT_EQ(ConsoleHeight(), 0);
    EXPECT_EQ(EditGetLineCount(), 0);
    EXPECT_EQ(EditGetCurLine(), 0);
    EXPECT_EQ(Line(0), "(none)");
}

TEST_F(ConsolePane, NullOrEmptyText_IsRefused) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    DebuggerCapture debugger;
    EXPECT_EQ(ConsolePrint(nullptr), 0);
    EXPECT_EQ(ConsolePrint(""), 0);
    debugger.Take();
    EXPECT_EQ(EditGetLineCount(), 1);
}

TEST_F(ConsolePane, WindowIsAsDescribed) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    const HWND window = ConsoleWindow();
    EXPECT_EQ(GetDlgCtrlID(window), 605);
    const LONG style = GetWindowLongW(window, GWL_STYLE);
    const LONG wanted = WS_CHILD | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL;
    EXPECT_EQ(style & wanted, wanted);
    EXPECT_EQ(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
    EXPECT_TRUE(CreateFtpConsole(parent));
    EXPECT_EQ(ConsoleWindow(), window);
}

TEST_F(ConsolePane, HeightIsTenLinesOfItsFont) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    const HDC context = GetDC(ConsoleWindow());
    const HFONT font = reinterpret_cast<HFONT>(SendMessageW(ConsoleWindow(), WM_GETFONT, 0, 0));
    SelectObject(context, font);
    SIZE size = {};
    GetTextExtentPoint32W(context, L"5", 1, &size);
    ReleaseDC(ConsoleWindow(), context);
    EXPECT_GT(size.cy, 0);
    EXPECT_EQ(ConsoleHeight(), (size.cy + 1) * 10);
}

TEST_F(ConsolePane, ShowingSwitchesVerboseOnAndHidingOff) {
    SetConsoleChanged([] { ++gChanges; });
    Zarn_ShowConsole(parent, true);
    EXPECT_TRUE(gTrace.verbose);
    EXPECT_NE(ConsoleWindow(), nullptr);
    EXPECT_GT(ConsoleHeight(), 0);
    EXPECT_EQ(gChanges, 1);
    EXPECT_EQ(gSizeMessages, 1);

    Zarn_ShowConsole(parent, true);
    EXPECT_FALSE(gTrace.verbose);
    EXPECT_EQ(ConsoleWindow(), nullptr);
    EXPECT_EQ(ConsoleHeight(), 0);
    EXPECT_EQ(gChanges, 2);
    EXPECT_EQ(gSizeMessages, 2);
}

TEST_F(ConsolePane, ShownAgain_StartsEmpty) {
    Zarn_ShowConsole(parent, true);
    ConsolePrint("old");
    Zarn_ShowConsole(parent, true);
    Zarn_ShowConsole(parent, true);
    EXPECT_EQ(EditGetLineCount(), 1);
    EXPECT_EQ(ConsolePrint("new"), 2);
    EXPECT_EQ(Line(1), "new");
}

TEST_F(ConsolePane, WithoutToggle_AShownConsoleStays) {
    Zarn_ShowConsole(parent, true);
    ConsolePrint("stays");
    Zarn_ShowConsole(parent, false);
    EXPECT_EQ(LastLine(), "stays");
    EXPECT_TRUE(gTrace.verbose);
}

TEST_F(ConsolePane, OneLine_MakesTwoAndTheFirstIsEmpty) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    EXPECT_EQ(ConsolePrint("220 Ready"), 2);
    EXPECT_EQ(Line(0), "");
    EXPECT_EQ(Line(1), "220 Ready");
}

TEST_F(ConsolePane, TextWithItsOwnLineBreaks_ShowsThem) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    EXPECT_EQ(ConsolePrint("one\r\ntwo\nthree"), 4);
    EXPECT_EQ(Line(1), "one");
    EXPECT_EQ(Line(2), "two");
    EXPECT_EQ(Line(3), "three");
}

TEST_F(ConsolePane, EveryCharacterShows) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    const std::string text = "h\xc3\xa4 \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 %s%n";
    ConsolePrint(text.c_str());
    EXPECT_EQ(Line(1), text);
}

TEST_F(ConsolePane, GetLine_DropsTrailingBlanksAndKnowsTheEnd) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    ConsolePrint("  text \t ");
    EXPECT_EQ(Line(1), "  text");
    char buffer[8] = "old";
    EXPECT_FALSE(EditGetLine(2, buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
    EXPECT_FALSE(EditGetLine(-1, buffer, sizeof buffer));
    EXPECT_TRUE(EditGetLine(1, buffer, 5));
    EXPECT_STREQ(buffer, "  te");
    EXPECT_FALSE(EditGetLine(1, buffer, 0));
}

TEST_F(ConsolePane, AppendingGoesToTheEndWhereverTheCaretStands) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    ConsolePrint("one");
    ConsolePrint("two");
    EditSelectLine(1);
    ConsolePrint("three");
    EXPECT_EQ(Line(1), "one");
    EXPECT_EQ(Line(2), "two");
    EXPECT_EQ(Line(3), "three");
}

TEST_F(ConsolePane, Clear_KeepsTheLastTwentyLines) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    for (int line = 1; line <= 50; ++line) ConsolePrint(("line " + std::to_string(line)).c_str());
    EditClear(0, EditGetLineCount() - 20);
    EXPECT_EQ(EditGetLineCount(), 20);
    EXPECT_EQ(Line(0), "line 31");
    ConsolePrint("line 51");
    EXPECT_EQ(Line(19), "line 50");
    EXPECT_EQ(Line(20), "line 51");
    EditClear(0, 5 - 20);  // fewer than twenty lines
    EditClear(3, 3);
    EXPECT_EQ(EditGetLineCount(), 21);
    EditClear(0, 1000);
    EXPECT_EQ(EditGetLineCount(), 1);
}

TEST_F(ConsolePane, CurrentAndSelectedLine) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    ConsolePrint("one");
    ConsolePrint("two");
    EXPECT_EQ(EditGetCurLine(), 2);
    EditSetCurLine(1);
    EXPECT_EQ(EditGetCurLine(), 1);
    EXPECT_EQ(Selection(), std::make_pair(DWORD{2}, DWORD{2}));
    EditSelectLine(1);
    EXPECT_EQ(Selection(), std::make_pair(DWORD{2}, DWORD{7}));
    EditSelectLine(2);
    EXPECT_EQ(Selection(), std::make_pair(DWORD{7}, DWORD{10}));
    EditSelectLine(3);
    EditSetCurLine(-1);
    EXPECT_EQ(Selection(), std::make_pair(DWORD{7}, DWORD{10}));
}

TEST_F(ConsolePane, LinesOfOtherThreads_ArriveInOrderWhenTheWindowIsIdle) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    std::thread worker([] {
        for (int line = 1; line <= 100; ++line) EXPECT_EQ(ConsolePrint(("w" + std::to_string(line)).c_str()), 1);
    });
    worker.join();
    EXPECT_EQ(EditGetLineCount(), 1);
    PumpMessages();
    ASSERT_EQ(EditGetLineCount(), 101);
    for (int line = 1; line <= 100; ++line) ASSERT_EQ(Line(line), "w" + std::to_string(line));
}

TEST_F(ConsolePane, OwnLineComesAfterWhatOtherThreadsSaidBefore) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    std::thread([] { ConsolePrint("worker"); }).join();
    ConsolePrint("window");
    EXPECT_EQ(Line(1), "worker");
    EXPECT_EQ(Line(2), "window");
    PumpMessages();
    EXPECT_EQ(EditGetLineCount(), 3);
}

TEST_F(ConsolePane, OtherThreadsAfterAFlush_WakeItAgain) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    for (int round = 1; round <= 3; ++round) {
        std::thread([] { ConsolePrint("worker"); }).join();
        PumpMessages();
        EXPECT_EQ(EditGetLineCount(), 1 + round);
    }
}

TEST_F(ConsolePane, HiddenMeanwhile_DropsWhatWasQueued) {
    Zarn_ShowConsole(parent, true);
    std::thread([] { ConsolePrint("lost"); }).join();
    Zarn_ShowConsole(parent, true);
    Zarn_ShowConsole(parent, true);
    PumpMessages();
    EXPECT_EQ(EditGetLineCount(), 1);
    std::thread([] { ConsolePrint("seen"); }).join();
    PumpMessages();
    EXPECT_EQ(Line(1), "seen");
}

TEST_F(ConsolePane, OldestLinesAreForgottenAndAppendingGoesOnBehindTheRest) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    int most = 0;
    for (int line = 1; line <= 4600; ++line) most = std::max(most, ConsolePrint(std::to_string(line).c_str()));
    EXPECT_EQ(most, 4000);
    EXPECT_EQ(Line(0), "");
    EXPECT_EQ(LastLine(), "4600");
    const int count = EditGetLineCount();
    EXPECT_EQ(Line(1), std::to_string(4600 - (count - 2)));
}

TEST_F(ConsolePane, AFloodFromAnotherThreadKeepsItsNewestLines) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    const DWORD start = GetTickCount();
    std::thread([] {
        for (int line = 1; line <= 100000; ++line) ConsolePrint(std::to_string(line).c_str());
    }).join();
    PumpMessages();
    EXPECT_LE(EditGetLineCount(), 4001);
    EXPECT_GE(EditGetLineCount(), 2900);
    EXPECT_EQ(LastLine(), "100000");
    RecordProperty("milliseconds", static_cast<int>(GetTickCount() - start));
}

TEST_F(ConsolePane, AnEndlessLineIsBrokenSoThatTheWindowStaysAlive) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    ConsolePrint(std::string(100000, 'x').c_str());
    // All of it, one line end before it and one after every 1024 characters but the last.
    EXPECT_EQ(GetWindowTextLengthW(ConsoleWindow()), 100000 + 2 + 2 * 97);
    ConsolePrint("next");
    EXPECT_EQ(LastLine(), "next");
}

TEST_F(ConsolePane, ATextWithoutEndShowsItsBeginning) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    ConsolePrint(std::string(1024 * 1024, 'x').c_str());
    EXPECT_LT(GetWindowTextLengthW(ConsoleWindow()), 132 * 1024);
    EXPECT_LE(EditGetLineCount(), 4001);
}

TEST_F(ConsolePane, TextWidth_InTheWindowsOwnFont) {
    ASSERT_TRUE(CreateFtpConsole(parent));
    const int one = ZarnGetStringWidth(ConsoleWindow(), "WWWW");
    EXPECT_GT(one, 0);
    EXPECT_EQ(ZarnGetStringWidth(ConsoleWindow(), "WWWWWWWW"), 2 * one);
    TraceToConsole();
    EXPECT_EQ(ZarnGetStringWidth(ConsoleWindow(), ""), 0);
    EXPECT_EQ(ZarnGetStringWidth(nullptr, "text"), 0);
    EXPECT_EQ(view.CountLines("ERROR: Invalid Parameter passed in."), 2);
    EXPECT_EQ(view.CountLines("Warning: Returning ZERO"), 2);
    ZarnGetStringWidth(ConsoleWindow(), "WWWW");
    EXPECT_TRUE(view.HasLine("ZarnGetStringWidth() Returning " + std::to_string(one)));
}

}  // namespace
