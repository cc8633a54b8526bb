#include "ui/driver/menus.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

constexpr UINT kGetMenuHandle = 0x01E1;  // MN_GETHMENU
constexpr DWORD kRemoteCall = 5000;      // milliseconds

std::wstring BesideThisProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder = path;
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + name;
}

// Runs a function in the program, on a new thread there; returns the thread's exit code.
DWORD CallIn(HANDLE process, LPTHREAD_START_ROUTINE function, void* argument) {
    HANDLE thread = CreateRemoteThread(process, nullptr, 0, function, argument, 0, nullptr);
    if (thread == nullptr) return 0;
    DWORD result = 0;
    if (WaitForSingleObject(thread, kRemoteCall) == WAIT_OBJECT_0) GetExitCodeThread(thread, &result);
    CloseHandle(thread);
    return result;
}

struct MenuSearch {
    DWORD process;
    HWND found;
};

BOOL CALLBACK MatchMenu(HWND window, LPARAM argument) {
    auto& search = *reinterpret_cast<MenuSearch*>(argument);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[16] = L"";
    GetClassNameW(window, name, std::size(name));
    if (process != search.process || wcscmp(name, L"#32768") != 0 || !IsWindowVisible(window)) return TRUE;
    search.found = window;
    return FALSE;
}

// System libraries have the same address in every process.
LPTHREAD_START_ROUTINE LoaderFunction() {
    return reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW")));
}

}  // namespace

const MenuItem* ItemOf(const MenuItems& items, unsigned id) {
    const auto found = std::find_if(items.begin(), items.end(), [id](const MenuItem& item) { return item.id == id; });
    return found == items.end() ? nullptr : &*found;
}

const MenuItem* ItemOf(const MenuItems& items, const std::wstring& text) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const MenuItem& item) { return item.text == text; });
    return found == items.end() ? nullptr : &*found;
}

Menus::Menus(const Program& program) : program_(program) {
    const std::wstring path = BesideThisProgram(L"menu_probe.dll");
    block_ = VirtualAllocEx(program.Process(), nullptr, sizeof(MenuQuery), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    if (block_ == nullptr) return;
    WriteProcessMemory(program.Process(), block_, path.c_str(), (path.size() + 1) * sizeof(wchar_t), nullptr);
    const DWORD there = CallIn(program.Process(), LoaderFunction(), block_);
    // Loaded only to find the function's offset, so its start-up code need not run. It stays loaded.
    static HMODULE here = LoadLibraryExW(path.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (there == 0 || here == nullptr) return;
    const void* function = reinterpret_cast<void*>(GetProcAddress(here, "DescribeMenu"));
    if (function == nullptr) return;
    const auto offset = reinterpret_cast<std::uintptr_t>(function) - reinterpret_cast<std::uintptr_t>(here);
    describe_ = reinterpret_cast<LPTHREAD_START_ROUTINE>(there + offset);
}

Menus::~Menus() {
    if (block_ != nullptr) VirtualFreeEx(program_.Process(), block_, 0, MEM_RELEASE);
}

MenuItems Menus::Read(HMENU menu) const {
    if (!Ready()) return {};
    auto query = std::make_unique<MenuQuery>();
    query->menu = menu;
    query->count = -1;
    WriteProcessMemory(program_.Process(), block_, query.get(), sizeof(MenuQuery), nullptr);
    CallIn(program_.Process(), describe_, block_);
    ReadProcessMemory(program_.Process(), block_, query.get(), sizeof(MenuQuery), nullptr);
    MenuItems items;
    for (int i = 0; i < query->count && i < MenuQuery::kMostItems; ++i) {
        const MenuQuery::Item& item = query->items[i];
        std::wstring text = item.text;
        items.push_back({item.id, text.substr(0, text.find(L'\t')), (item.state & (MF_GRAYED | MF_DISABLED)) == 0,
                         (item.state & MF_SEPARATOR) != 0, (item.state & MF_HILITE) != 0, item.subMenu});
    }
    return items;
}

// The innermost open menu: the newest window comes first.
HWND Menus::Shown() const {
    MenuSearch search{program_.ProcessId(), nullptr};
    EnumWindows(MatchMenu, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool Menus::InMenuMode() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(program_.Main(), nullptr), &info);
    return (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
}

MenuItems Menus::ReadShown() const {
    HWND shown = Shown();
    if (shown == nullptr) return {};
    return Read(reinterpret_cast<HMENU>(SendMessageW(shown, kGetMenuHandle, 0, 0)));
}

MenuItems Menus::OpenFromBar(const std::wstring& letters) {
    downsToFirst_ = 0;
    PostMessageW(program_.Main(), WM_SYSCOMMAND, SC_KEYMENU, letters[0]);
    if (!program_.WaitFor([this] { return Shown() != nullptr; })) return {};
    for (std::size_t i = 1; i < letters.size(); ++i) {
        HWND outer = Shown();
        PostMessageW(program_.Main(), WM_CHAR, letters[i], 1);
        if (!program_.WaitFor([&] { return Shown() != outer; })) return {};
    }
    return ReadShown();
}

MenuItems Menus::OpenContext(HWND pane, POINT screen) {
    downsToFirst_ = 1;
    // The pointer must be at the menu's place, or the menu closes at once.
    SetCursorPos(screen.x, screen.y);
    PostMessageW(program_.Main(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(pane), MAKELPARAM(screen.x, screen.y));
    if (!program_.WaitFor([this] { return Shown() != nullptr; }, kNoMenuWait)) return {};
    return ReadShown();
}

MenuItems Menus::OpenByKey(HWND pane) {
    downsToFirst_ = 1;
    PostMessageW(program_.Main(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(pane), MAKELPARAM(-1, -1));
    if (!program_.WaitFor([this] { return Shown() != nullptr; }, kNoMenuWait)) return {};
    return ReadShown();
}

bool Menus::HighlightFirst() const {
    program_.PressKey(program_.Main(), VK_DOWN);
    return program_.WaitFor([this] {
        const MenuItems items = ReadShown();
        return !items.empty() && items.front().highlighted;
    });
}

bool Menus::Choose(const MenuItems& items, unsigned id) const {
    if (ItemOf(items, id) == nullptr) return false;
    int downs = downsToFirst_;
    for (const MenuItem& item : items) {
        if (item.id == id) break;
        if (!item.separator) ++downs;
    }
    for (int i = 0; i < downs; ++i) program_.PressKey(program_.Main(), VK_DOWN);
    program_.PressKey(program_.Main(), VK_RETURN);
    return program_.WaitFor([this] { return Shown() == nullptr && !InMenuMode(); });
}

bool Menus::Close() const {
    return program_.WaitFor([this] {
        if (Shown() == nullptr && !InMenuMode()) return true;
        PostMessageW(program_.Main(), WM_CANCELMODE, 0, 0);
        Sleep(20);
        return false;
    });
}
