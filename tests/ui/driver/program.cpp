#include "ui/driver/program.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace {

constexpr std::size_t kRemoteSize = 8192;
constexpr std::size_t kTextOffset = 1024;
constexpr std::size_t kTextUnits = 1024;

struct WindowSearch {
    DWORD process;
    const wchar_t* className;  // null: any
    std::wstring caption;      // empty: any
    bool visible;
    HWND found;
};

BOOL CALLBACK MatchWindow(HWND window, LPARAM lParam) {
    auto* search = reinterpret_cast<WindowSearch*>(lParam);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search->process) return TRUE;
    wchar_t name[64] = L"";
    GetClassNameW(window, name, std::size(name));
    if (search->className != nullptr && wcscmp(name, search->className) != 0) return TRUE;
    if (search->visible && !IsWindowVisible(window)) return TRUE;
    if (!search->caption.empty() && Program::TextOf(window) != search->caption) return TRUE;
    search->found = window;
    return FALSE;
}

std::wstring OwnFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder = path;
    return folder.substr(0, folder.find_last_of(L'\\') + 1);
}

HWND FindChildOfClass(HWND parent, const wchar_t* className) {
    return FindWindowExW(parent, nullptr, className, nullptr);
}

}  // namespace

Program::~Program() {
    if (process_.hProcess == nullptr) return;
    if (Running()) TerminateProcess(process_.hProcess, 99);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
}

bool Program::Start(const std::wstring& arguments, const std::wstring& path, bool hidden) {
    const std::wstring program = path.empty() ? OwnFolder() + L"Zarn32.exe" : path;
    std::wstring commandLine = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process_)) {
        return false;
    }
    const bool shown = WaitFor([this, hidden] {
        WindowSearch search{process_.dwProcessId, L"Zarn", L"", !hidden, nullptr};
        EnumWindows(MatchWindow, reinterpret_cast<LPARAM>(&search));
        main_ = search.found;
        return main_ != nullptr;
    });
    if (!shown) return false;
    remote_ = VirtualAllocEx(process_.hProcess, nullptr, kRemoteSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    return remote_ != nullptr && WaitFor([this] { return List() != nullptr && Tree() != nullptr; });
}

bool Program::Running() const {
    return process_.hProcess != nullptr && WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

bool Program::Close(DWORD milliseconds) {
    PostMessageW(main_, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process_.hProcess, milliseconds) != WAIT_OBJECT_0) return false;
    DWORD exitCode = 1;
    GetExitCodeProcess(process_.hProcess, &exitCode);
    return exitCode == 0;
}

HWND Program::Child(int id) const {
    return GetDlgItem(main_, id);
}
HWND Program::StatusBar() const {
    return FindChildOfClass(main_, STATUSCLASSNAMEW);
}
HWND Program::Toolbar() const {
    return FindChildOfClass(main_, TOOLBARCLASSNAMEW);
}

std::wstring Program::TextOf(HWND window) {
    const auto length = static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

std::wstring Program::Title() const {
    return TextOf(main_);
}
std::wstring Program::ConsoleText() const {
    return Console() == nullptr ? std::wstring() : TextOf(Console());
}

bool Program::ReadRemote(std::size_t offset, void* to, std::size_t size) const {
    return ReadProcessMemory(process_.hProcess, static_cast<char*>(Remote()) + offset, to, size, nullptr) != 0;
}
bool Program::WriteRemote(std::size_t offset, const void* from, std::size_t size) const {
    return WriteProcessMemory(process_.hProcess, static_cast<char*>(Remote()) + offset, from, size, nullptr) != 0;
}

std::wstring Program::StatusPart(int part) const {
    const auto length = LOWORD(SendMessageW(StatusBar(), SB_GETTEXTLENGTHW, static_cast<WPARAM>(part), 0));
    if (length >= kTextUnits) return {};
    SendMessageW(StatusBar(), SB_GETTEXTW, static_cast<WPARAM>(part),
                 reinterpret_cast<LPARAM>(static_cast<char*>(Remote()) + kTextOffset));
    std::wstring text(length, L'\0');
    ReadRemote(kTextOffset, text.data(), length * sizeof(wchar_t));
    return text;
}

std::wstring Program::ListText(int item, int column) const {
    LVITEMW request{};
    request.mask = LVIF_TEXT;
    request.iItem = item;
    request.iSubItem = column;
    request.pszText = reinterpret_cast<wchar_t*>(static_cast<char*>(Remote()) + kTextOffset);
    request.cchTextMax = kTextUnits - 1;
    const wchar_t nothing[kTextUnits] = L"";
    WriteRemote(kTextOffset, nothing, sizeof(nothing));
    WriteRemote(0, &request, sizeof(request));
    const auto length = static_cast<std::size_t>(
        SendMessageW(List(), LVM_GETITEMTEXTW, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(Remote())));
    std::wstring text(std::min(length, kTextUnits - 1), L'\0');
    ReadRemote(kTextOffset, text.data(), text.size() * sizeof(wchar_t));
    return text;
}

std::vector<std::wstring> Program::ListNames() const {
    std::vector<std::wstring> names;
    for (int i = 0; i < ListCount(); ++i) names.push_back(ListText(i));
    return names;
}

int Program::FindInList(const std::wstring& name) const {
    for (int i = 0; i < ListCount(); ++i) {
        if (ListText(i) == name) return i;
    }
    return -1;
}

void Program::SelectInList(int item, bool add) const {
    if (!add) UnselectAll();
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    WriteRemote(0, &state, sizeof(state));
    SendMessageW(List(), LVM_SETITEMSTATE, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(Remote()));
}

void Program::UnselectAll() const {
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    WriteRemote(0, &state, sizeof(state));
    SendMessageW(List(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(Remote()));
}

void Program::FocusPane(HWND pane) const {
    const DWORD thread = GetWindowThreadProcessId(main_, nullptr);
    SetForegroundWindow(main_);
    AttachThreadInput(GetCurrentThreadId(), thread, TRUE);
    SetFocus(pane);
    AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
}

void Program::PressKey(HWND window, WORD key) const {
    PostMessageW(window, WM_KEYDOWN, key, 1);
    PostMessageW(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

HTREEITEM Program::TreeNext(HTREEITEM item, UINT relation) const {
    return reinterpret_cast<HTREEITEM>(SendMessageW(Tree(), TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

std::wstring Program::TreeText(HTREEITEM item) const {
    TVITEMW request{};
    request.mask = TVIF_TEXT;
    request.hItem = item;
    request.pszText = reinterpret_cast<wchar_t*>(static_cast<char*>(Remote()) + kTextOffset);
    request.cchTextMax = kTextUnits - 1;
    WriteRemote(0, &request, sizeof(request));
    if (!SendMessageW(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(Remote()))) return {};
    wchar_t text[kTextUnits] = L"";
    ReadRemote(0, &request, sizeof(request));
    // For a text on demand the control may return a pointer of its own.
    const auto* start = reinterpret_cast<const char*>(request.pszText);
    ReadProcessMemory(process_.hProcess, start, text, sizeof(text) - sizeof(wchar_t), nullptr);
    return text;
}

HTREEITEM Program::FindInTree(HTREEITEM parent, const std::wstring& text) const {
    HTREEITEM item = parent == nullptr ? TreeNext(nullptr, TVGN_ROOT) : TreeNext(parent, TVGN_CHILD);
    while (item != nullptr && TreeText(item) != text) item = TreeNext(item, TVGN_NEXT);
    return item;
}

void Program::SelectInTree(HTREEITEM item) const {
    SendMessageW(Tree(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

void Program::ExpandInTree(HTREEITEM item) const {
    SendMessageW(Tree(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
}

HWND Program::Dialog(const std::wstring& caption) const {
    WindowSearch search{process_.dwProcessId, L"#32770", caption, true, nullptr};
    EnumWindows(MatchWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool Program::WaitFor(const std::function<bool()>& condition, DWORD milliseconds) const {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > milliseconds || !Running()) return condition();
        Sleep(10);
    }
    return true;
}

bool Program::WaitIdle(DWORD milliseconds) const {
    return WaitFor(
        [this] {
            DWORD_PTR result = 0;
            if (!SendMessageTimeoutW(main_, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 2000, &result)) return false;
            return ToolbarEnabled(IDM_VIEW_LARGE_ICONS) || ToolbarEnabled(IDM_VIEW_LIST);
        },
        milliseconds);
}

namespace {

constexpr DWORD kScreenshotWait = 10000;  // milliseconds

// A PNG file ends with the chunk "IEND", four bytes of checksum behind its name.
bool IsWholePng(const std::string& path) {
    constexpr LONG kEnd = 8;
    HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    char end[kEnd] = "";
    DWORD count = 0;
    const bool read = SetFilePointer(file, -kEnd, nullptr, FILE_END) != INVALID_SET_FILE_POINTER &&
                      ReadFile(file, end, kEnd, &count, nullptr) && count == kEnd;
    CloseHandle(file);
    return read && std::string_view(end, 4) == "IEND";
}

}  // namespace

// Wine cannot wait for a process of the host, so wait for the complete file.
bool TakeScreenshot(const std::string& unixPath) {
    std::string path = "Z:" + unixPath;
    std::replace(path.begin(), path.end(), '/', '\\');
    DeleteFileA(path.c_str());
    std::string commandLine = "import -silent -screen -window root " + unixPath;
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA("Z:\\usr\\bin\\import", commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    const DWORD start = GetTickCount();
    while (!IsWholePng(path)) {
        if (GetTickCount() - start > kScreenshotWait) return false;
        Sleep(10);
    }
    return true;
}
