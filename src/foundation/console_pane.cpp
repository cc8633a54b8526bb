#include "foundation/console_pane.h"

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "foundation/error_report.h"
#include "foundation/trace.h"
#include "platform/system.h"
#include "platform/utf8.h"
#include "resources/resource.h"

namespace {

constexpr UINT kQueueFilled = WM_APP + 605;
constexpr UINT_PTR kSubclassId = 605;
constexpr int kShownLines = 10;
// Beyond the one the oldest lines go, down to the other: the dialogue of days must not fill the memory.
constexpr int kMostLines = 4000;
constexpr int kKeptLines = 3000;
// Longer texts show their beginning, longer lines are broken; the log has them whole.
constexpr std::size_t kLongestText = 128 * 1024;
constexpr std::size_t kLongestLine = 1024;

struct Console {
    std::atomic<HWND> window{nullptr};
    std::atomic<int> lineCount{0};
    std::atomic<DWORD> threadId{0};
    int appendPosition = 0;  // in UTF-16 units, as the control counts
    int longestLine = 0;
    int height = 0;
    HFONT font = nullptr;
    void (*changed)() = nullptr;
};
Console gConsole;

struct Queue {
    std::mutex lock;
    std::vector<std::string> texts;
    bool messagePosted = false;
};
Queue gQueue;

LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(gConsole.window, message, wParam, lParam);
}

void RefreshCounts() {
    gConsole.appendPosition = GetWindowTextLengthW(gConsole.window);
    gConsole.lineCount = static_cast<int>(Send(EM_GETLINECOUNT));
}

void Select(int from, int to) {
    Send(EM_SETSEL, static_cast<WPARAM>(from), to);
}

int StartOfLine(int line) {
    return static_cast<int>(Send(EM_LINEINDEX, static_cast<WPARAM>(line)));
}

// Start of the line, or the end of the text behind the last line.
int StartOrEnd(int line) {
    return line < EditGetLineCount() ? StartOfLine(line) : gConsole.appendPosition;
}

bool IsSecondOfPair(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// The text as the control wants it: a lone line feed would not break the line, and wrapping one endless line takes the
// control time that grows with the square of its length (100 KB: ten seconds).
void AppendWide(std::u16string& wide, std::string_view text) {
    wide += u"\r\n";
    char16_t before = u'\0';
    std::size_t length = 0;
    for (const char16_t unit : platform::Utf8ToWide(text.substr(0, kLongestText))) {
        if (unit == u'\n' && before != u'\r') wide += u'\r';
        if (length >= kLongestLine && !IsSecondOfPair(unit)) {
            wide += u"\r\n";
            length = 0;
        }
        wide += unit;
        length = unit == u'\n' ? 0 : length + 1;
        before = unit;
    }
}

void ForgetOldestLines() {
    if (gConsole.lineCount <= kMostLines) return;
    // The first line stays, and stays empty.
    EditClear(1, gConsole.lineCount - kKeptLines);
    Select(gConsole.appendPosition, gConsole.appendPosition);
}

int Insert(const std::u16string& wide) {
    Select(gConsole.appendPosition, gConsole.appendPosition);
    Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide.c_str()));
    RefreshCounts();
    ForgetOldestLines();
    Send(EM_SCROLLCARET);
    return gConsole.lineCount;
}

void NoteLength(std::string_view text) {
    gConsole.longestLine = std::max(gConsole.longestLine, static_cast<int>(text.size()));
}

void Enqueue(HWND window, const char* text) {
    const std::lock_guard lock(gQueue.lock);
    gQueue.texts.emplace_back(text);
    // What would be thrown away on arrival need not wait for it.
    if (gQueue.texts.size() > 2 * kMostLines) gQueue.texts.erase(gQueue.texts.begin(), gQueue.texts.end() - kKeptLines);
    if (!gQueue.messagePosted) gQueue.messagePosted = PostMessageW(window, kQueueFilled, 0, 0) != 0;
}

std::vector<std::string> TakeQueue() {
    const std::lock_guard lock(gQueue.lock);
    gQueue.messagePosted = false;
    return std::exchange(gQueue.texts, {});
}

void ForgetConsole() {
    gConsole.window = nullptr;
    gConsole.lineCount = 0;
    gConsole.appendPosition = 0;
    gConsole.height = 0;
    TakeQueue();
}

LRESULT CALLBACK ConsoleProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    switch (message) {
        case kQueueFilled:
            FlushConsoleQueue();
            return 0;
        case WM_NCDESTROY:
            RemoveWindowSubclass(window, ConsoleProc, kSubclassId);
            if (window == gConsole.window) ForgetConsole();
            break;
        default:
            break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

int MeasureHeight() {
    const HWND window = gConsole.window;
    const HDC context = GetDC(window);
    if (context == nullptr) return 0;
    const HGDIOBJ before = SelectObject(
        context, gConsole.font != nullptr ? static_cast<HGDIOBJ>(gConsole.font) : GetStockObject(DEFAULT_GUI_FONT));
    SIZE size = {};
    if (!GetTextExtentPoint32W(context, L"5", 1, &size)) size.cy = 0;
    SelectObject(context, before);
    ReleaseDC(window, context);
    return (size.cy + 1) * kShownLines;
}

void ApplyFont() {
    const HGDIOBJ font =
        gConsole.font != nullptr ? static_cast<HGDIOBJ>(gConsole.font) : GetStockObject(DEFAULT_GUI_FONT);
    Send(WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    gConsole.height = MeasureHeight();
}

void DestroyConsole(HWND parent) {
    if (GetFocus() == gConsole.window) SetFocus(parent);
    DestroyWindow(gConsole.window);
    ForgetConsole();
    gTrace.verbose = false;
}

}  // namespace

bool CreateFtpConsole(WindowHandle parent) {
    static constexpr char kFuncName[] = "CreateFtpConsole";
    DbgVsprintf(kFuncName, "Entered");
    if (gConsole.window != nullptr) return true;
    gConsole.appendPosition = 0;
    gConsole.lineCount = 0;
    // A width from the start: lines that are wrapped to nothing cost time when the window gets its place.
    RECT area = {};
    GetClientRect(parent, &area);
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | WS_CLIPSIBLINGS | ES_MULTILINE | ES_READONLY |
                        ES_AUTOVSCROLL | ES_NOHIDESEL;
    const HWND window =
        CreateWindowExW(0, L"EDIT", L"", style, 0, 0, area.right, area.bottom, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_CONSOLE)), GetModuleHandleW(nullptr), nullptr);
    if (window == nullptr) {
        DbgPrintApiError(kFuncName, "CreateWindowEx()", platform::LastSystemError());
        DbgVsprintf(kFuncName, "ERROR. Returning FALSE");
        return false;
    }
    SetWindowSubclass(window, ConsoleProc, kSubclassId, 0);
    DragAcceptFiles(window, FALSE);
    // A line that another thread left while the last console went away belongs to that one.
    TakeQueue();
    gConsole.threadId = GetCurrentThreadId();
    gConsole.window = window;
    Send(EM_SETLIMITTEXT);
    ApplyFont();
    RefreshCounts();
    DbgVsprintf(kFuncName, "Done. Returning TRUE");
    return true;
}

void SetConsoleFont(void* font) {
    gConsole.font = static_cast<HFONT>(font);
    if (gConsole.window != nullptr) ApplyFont();
}

void Zarn_ShowConsole(WindowHandle parent, bool toggle) {
    static constexpr char kFuncName[] = "Zarn_ShowConsole";
    DbgVsprintf(kFuncName, "Entered");
    if (toggle && gConsole.window != nullptr) {
        DestroyConsole(parent);
    } else if (CreateFtpConsole(parent)) {
        gTrace.verbose = true;
    }
    if (gConsole.changed != nullptr) gConsole.changed();
    RECT area = {};
    GetClientRect(parent, &area);
    SendMessageW(parent, WM_SIZE, SIZE_RESTORED, MAKELPARAM(area.right, area.bottom));
    DbgVsprintf(kFuncName, "Done. Returning");
}

WindowHandle ConsoleWindow() {
    return gConsole.window;
}

int ConsoleHeight() {
    return gConsole.window != nullptr ? gConsole.height : 0;
}

void SetConsoleChanged(void (*changed)()) {
    gConsole.changed = changed;
}

int ConsolePrint(const char* text) {
    const HWND window = gConsole.window;
    if (window == nullptr || text == nullptr || *text == '\0') {
        // "of" for "or" is part of the text.
        Zarn_DebuggerPrint("ConsolePrint() ERROR. Either hWndConsole is NULL of pString is NULL. Returning");
        return 0;
    }
    if (GetCurrentThreadId() != gConsole.threadId) {
        Enqueue(window, text);
        return gConsole.lineCount;
    }
    // What other threads said before comes first.
    FlushConsoleQueue();
    NoteLength(text);
    std::u16string wide;
    AppendWide(wide, text);
    return Insert(wide);
}

void FlushConsoleQueue() {
    if (gConsole.window == nullptr || GetCurrentThreadId() != gConsole.threadId) return;
    const std::vector<std::string> texts = TakeQueue();
    if (texts.empty()) return;
    const std::size_t skipped = texts.size() > kMostLines ? texts.size() - kKeptLines : 0;
    std::u16string wide;
    for (std::size_t at = skipped; at < texts.size(); ++at) {
        NoteLength(texts[at]);
        AppendWide(wide, texts[at]);
    }
    Insert(wide);
}

void EditClear(int fromLine, int toLine) {
    if (gConsole.window == nullptr || fromLine < 0 || toLine <= fromLine) return;
    const int from = StartOrEnd(fromLine);
    const int to = StartOrEnd(toLine);
    if (to <= from) return;
    Select(from, to);
    Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
    RefreshCounts();
}

int EditGetLineCount() {
    return gConsole.window != nullptr ? static_cast<int>(Send(EM_GETLINECOUNT)) : 0;
}

bool EditGetLine(int line, char* buffer, std::size_t capacity) {
    if (buffer == nullptr || capacity == 0) return false;
    *buffer = '\0';
    if (line < 0 || line >= EditGetLineCount()) return false;
    // Room for the whole line; the control reads it from the first word.
    const int length = static_cast<int>(Send(EM_LINELENGTH, static_cast<WPARAM>(StartOfLine(line))));
    const std::size_t room = std::clamp<std::size_t>(static_cast<std::size_t>(length), 1, 0xFFFF);
    std::u16string wide(room, u'\0');
    wide[0] = static_cast<char16_t>(room);
    const LRESULT copied = Send(EM_GETLINE, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(wide.data()));
    wide.resize(static_cast<std::size_t>(copied));
    std::string text = platform::WideToUtf8(wide);
    if (text.size() >= capacity) text.resize(capacity - 1);
    while (!text.empty() && std::string_view(" \t\r\n").find(text.back()) != std::string_view::npos) text.pop_back();
    std::copy_n(text.c_str(), text.size() + 1, buffer);
    return true;
}

int EditGetCurLine() {
    return gConsole.window != nullptr ? static_cast<int>(Send(EM_LINEFROMCHAR, static_cast<WPARAM>(-1))) : 0;
}

void EditSetCurLine(int line) {
    if (gConsole.window == nullptr || line < 0 || line >= EditGetLineCount()) return;
    const int start = StartOfLine(line);
    Select(start, start);
    Send(EM_SCROLLCARET);
}

void EditSelectLine(int line) {
    if (gConsole.window == nullptr || line < 0 || line >= EditGetLineCount()) return;
    Select(StartOfLine(line), StartOrEnd(line + 1));
}
