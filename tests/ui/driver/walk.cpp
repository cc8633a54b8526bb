// Does the main job with the real program as a user would: prints a line per step and takes pictures. Exits with 0 only
// if every step succeeded. Started by ./run, which also starts the demo server.
//
//   walk          the main job, and the window from every side
//   walk DPI      a short walk on a screen of that resolution
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "resources/resource.h"
#include "ui/driver/menus.h"
#include "ui/driver/program.h"

namespace {

std::string Utf8(const std::wstring& text) {
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes.data(), length, nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(length) - 1);
    return bytes;
}

std::wstring ReadAll(const std::wstring& path, bool& opened) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    opened = file != INVALID_HANDLE_VALUE;
    std::wstring bytes;
    if (!opened) return bytes;
    char block[65536];
    DWORD count = 0;
    while (ReadFile(file, block, sizeof(block), &count, nullptr) && count > 0) bytes.append(block, block + count);
    CloseHandle(file);
    return bytes;
}

// Compares the received file with the demo tree's own.
bool SameAsServers(const std::wstring& name, const std::wstring& folder, std::size_t& size) {
    const char* tree = std::getenv("ZARN_TREE");
    std::string unixTree = tree == nullptr ? "" : tree;
    std::wstring root = L"Z:" + std::wstring(unixTree.begin(), unixTree.end()) + folder + L"/" + name;
    for (wchar_t& c : root) {
        if (c == L'/') c = L'\\';
    }
    bool haveOurs = false;
    bool haveTheirs = false;
    const std::wstring ours = ReadAll(name, haveOurs);
    const std::wstring theirs = ReadAll(root, haveTheirs);
    size = ours.size();
    return haveOurs && haveTheirs && ours == theirs;
}

class Walk {
  public:
    int Run();
    int RunAtResolution(int dpi);

  private:
    bool Step(const char* what, bool held, const std::string& seen);
    void Picture(const char* name);
    bool StartProgram();
    bool Connect();
    bool EnterDirectory(const wchar_t* name, const wchar_t* path, const wchar_t* expectedFile);
    bool ReceiveOne(const std::wstring& name, const std::wstring& folder);
    bool ReceiveAll(const char* what, const std::wstring& folder, const char* picture);
    bool WaitForProgress();
    bool ShowViews();
    bool ShowView(const char* what, unsigned command, DWORD bits, int columns);
    bool ShowContextMenu();
    bool ToggleConsole();
    bool CheckResolution(int dpi);
    bool Disconnect();
    bool Exit();
    bool CheckReceived(const std::wstring& name, const std::wstring& folder, std::string& seen);

    Program program_;
    HTREEITEM place_ = nullptr;  // the directory that the walk is in
    int number_ = 0;
};

bool Walk::Step(const char* what, bool held, const std::string& seen) {
    std::printf("%-24s %s  %s\n", what, held ? "ok    " : "FAILED", seen.c_str());
    std::fflush(stdout);
    return held;
}

void Walk::Picture(const char* name) {
    const char* folder = std::getenv("ZARN_PICTURES");
    if (folder == nullptr) return;
    char path[512];
    std::snprintf(path, sizeof(path), "%s/%02d-%s.png", folder, ++number_, name);
    if (!TakeScreenshot(path)) Step("picture", false, path);
}

bool Walk::StartProgram() {
    if (!program_.Start()) return Step("start", false, "no window");
    program_.WaitFor([this] { return program_.FindInTree(nullptr, L"Demo server") != nullptr; });
    place_ = program_.FindInTree(nullptr, L"Demo server");
    program_.SelectInTree(place_);
    program_.Command(IDM_SHOWCONSOLE);  // the console
    const bool console = program_.WaitFor([this] {
        return program_.Console() != nullptr && IsWindowVisible(program_.Console());
    }) && program_.WaitIdle();
    Picture("start");
    return Step("start", place_ != nullptr && console,
                "window \"" + Utf8(program_.Title()) + "\", tree shows \"" + Utf8(program_.TreeText(place_)) + "\"");
}

bool Walk::Connect() {
    program_.WaitFor([this] { return program_.ToolbarEnabled(IDM_CONNECT); });
    program_.Command(IDM_CONNECT);
    const bool listed =
        program_.WaitFor([this] { return program_.FindInList(L"pub") >= 0; }, 20000) && program_.WaitIdle();
    const bool welcomed = program_.ConsoleText().find(L"220") != std::wstring::npos;
    program_.ExpandInTree(place_);
    place_ = program_.TreeNext(place_, TVGN_CHILD);
    Picture("connected");
    return Step("connect and list", listed && welcomed && place_ != nullptr,
                "title \"" + Utf8(program_.Title()) + "\", " + std::to_string(program_.ListCount()) +
                    " entries, the welcome " + (welcomed ? "stands" : "is missing") + " in the console");
}

bool Walk::EnterDirectory(const wchar_t* name, const wchar_t* path, const wchar_t* expectedFile) {
    program_.ExpandInTree(place_);
    HTREEITEM directory = program_.FindInTree(place_, name);
    if (directory == nullptr) return Step("enter a directory", false, Utf8(name) + " is not in the tree");
    program_.SelectInTree(directory);
    const bool entered =
        program_.WaitFor([&] { return program_.FindInList(expectedFile) >= 0; }, 20000) && program_.WaitIdle();
    const bool titled = program_.Title().ends_with(std::wstring(L"::") + path);
    place_ = directory;
    const int entry = program_.FindInList(expectedFile);
    std::string seen = "title \"" + Utf8(program_.Title()) + "\", " + std::to_string(program_.ListCount()) +
                       " entries, " + Utf8(program_.ListText(entry));
    bool complete = true;
    for (int column : {4, 6, 7}) {  // owner, size, date in the Unix layout
        const std::wstring text = program_.ListText(entry, column);
        complete = complete && !text.empty();
        seen += ", " + Utf8(text);
    }
    return Step("enter a directory", entered && titled && complete, seen);
}

bool Walk::CheckReceived(const std::wstring& name, const std::wstring& folder, std::string& seen) {
    std::size_t size = 0;
    const bool same = SameAsServers(name, folder, size);
    if (!same) seen += "; " + Utf8(name) + " DIFFERS";
    return same;
}

// Waits for the progress dialog to show more than a megabyte.
bool Walk::WaitForProgress() {
    constexpr int kBytesText = 1046;
    constexpr std::size_t kSevenDigits = 7;
    return program_.WaitFor(
        [this] {
            HWND dialog = program_.Dialog(L"Tessmir File Transfers");
            if (dialog == nullptr) return false;
            const std::wstring bytes = Program::TextOf(GetDlgItem(dialog, kBytesText));
            return bytes.find(L" of 12582912") != std::wstring::npos && bytes.find(L' ') >= kSevenDigits;
        },
        10000);
}

// The dialog may open and close unseen; the toolbar shows when the operation is over.
bool Walk::ReceiveOne(const std::wstring& name, const std::wstring& folder) {
    program_.FocusPane(program_.List());
    program_.SelectInList(program_.FindInList(name));
    program_.WaitFor([this] { return program_.ToolbarEnabled(IDM_RECEIVE); });
    program_.Command(IDM_RECEIVE);
    program_.WaitFor([&] { return GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES; });
    const bool ended = program_.WaitIdle(60000);
    std::string seen = Utf8(name);
    const bool same = CheckReceived(name, folder, seen);
    return Step("receive one file", ended && same, seen + (same ? ", byte for byte" : ""));
}

bool Walk::ReceiveAll(const char* what, const std::wstring& folder, const char* picture) {
    std::vector<std::wstring> names;
    program_.FocusPane(program_.List());
    program_.UnselectAll();
    for (int i = 0; i < program_.ListCount(); ++i) {
        const std::wstring name = program_.ListText(i);
        const bool isFile = program_.ListText(i, 2).starts_with(L'-');
        if (!isFile || GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES) continue;
        program_.SelectInList(i, true);
        names.push_back(name);
    }
    program_.WaitFor([this] { return program_.ToolbarEnabled(IDM_RECEIVE); });
    program_.Command(IDM_RECEIVE);
    if (picture != nullptr && WaitForProgress()) Picture(picture);
    program_.WaitFor([&] { return GetFileAttributesW(names.back().c_str()) != INVALID_FILE_ATTRIBUTES; }, 60000);
    const bool ended = program_.WaitIdle(60000);
    std::string seen = std::to_string(names.size()) + " files of " + Utf8(folder);
    bool same = names.size() > 1;
    for (const std::wstring& name : names) same = CheckReceived(name, folder, seen) && same;
    return Step(what, ended && same, seen + (same ? ", byte for byte" : ""));
}

// Checks a view by the control's style and, in details, by its headings.
bool Walk::ShowView(const char* what, unsigned command, DWORD bits, int columns) {
    program_.Command(command);
    const bool shown = program_.WaitFor([&] {
        const DWORD style = static_cast<DWORD>(GetWindowLongW(program_.List(), GWL_STYLE));
        return (style & LVS_TYPEMASK) == bits &&
               (columns == 0 || SendMessageW(program_.Header(), HDM_GETITEMCOUNT, 0, 0) == columns);
    });
    program_.WaitIdle();
    Picture(what);
    return Step("view", shown && program_.ListCount() > 0,
                std::string(what) + ", " + std::to_string(program_.ListCount()) + " entries");
}

bool Walk::ShowViews() {
    bool held = ShowView("large-icons", IDM_VIEW_LARGE_ICONS, LVS_ICON, 0);
    held = ShowView("small-icons", IDM_VIEW_SMALL_ICONS, LVS_SMALLICON, 0) && held;
    held = ShowView("list", IDM_VIEW_LIST, LVS_LIST, 0) && held;
    held = ShowView("details-windows", IDM_DETAILS_WINDOWS, LVS_REPORT, 4) && held;
    return ShowView("details-unix", IDM_DETAILS_UNIX, LVS_REPORT, 8) && held;
}

// Opens an entry's context menu at its place.
bool Walk::ShowContextMenu() {
    Menus menus(program_);
    program_.FocusPane(program_.List());
    program_.SelectInList(1);
    const POINT place = program_.ToScreen(program_.List(), program_.ListPlace(1));
    const MenuItems items = menus.OpenContext(program_.List(), place);
    const MenuItem* receive = ItemOf(items, IDM_LV_RECEIVE);
    const bool openBefore = menus.HighlightFirst();
    Picture("context-menu");
    const bool stillOpen = openBefore && menus.IsOpen();
    const bool closed = menus.Close();
    return Step("context menu", receive != nullptr && receive->enabled && stillOpen && closed,
                std::to_string(items.size()) + " items for \"" + Utf8(program_.ListText(1)) + "\"");
}

bool Walk::ToggleConsole() {
    program_.Command(IDM_SHOWCONSOLE);
    const bool hidden = program_.WaitFor([this] { return program_.Console() == nullptr; }) && program_.WaitIdle();
    Picture("console-hidden");
    program_.Command(IDM_SHOWCONSOLE);
    const bool shown = program_.WaitFor([this] { return program_.Console() != nullptr; }) && program_.WaitIdle();
    program_.Command(IDM_TV_REFRESH);
    const bool talks = program_.WaitFor([this] { return program_.ConsoleText().find(L"226") != std::wstring::npos; }) &&
                       program_.WaitIdle();
    Picture("console-shown");
    return Step("console", hidden && shown && talks, "hidden and shown again, with the server's answers");
}

// Checks that icons, text and the bars above the panes follow the resolution.
bool Walk::CheckResolution(int dpi) {
    const LRESULT buttons = SendMessageW(program_.Toolbar(), TB_GETBUTTONSIZE, 0, 0);
    RECT status{};
    GetWindowRect(program_.StatusBar(), &status);
    const int height = status.bottom - status.top;
    const int wantedHeight = 15 * dpi / 96;
    return Step("resolution", HIWORD(buttons) >= 16 * dpi / 96 && height >= wantedHeight,
                std::to_string(dpi) + " dpi: buttons " + std::to_string(HIWORD(buttons)) + " high, status bar " +
                    std::to_string(height));
}

bool Walk::Disconnect() {
    program_.FocusPane(program_.Tree());
    program_.Command(IDM_DISCONNECT);
    const bool gone = program_.WaitFor([this] { return program_.ListCount() == 0; }) && program_.WaitIdle();
    Picture("disconnected");
    return Step("disconnect", gone && program_.Title().find(L"::") == std::wstring::npos,
                "title \"" + Utf8(program_.Title()) + "\", " + std::to_string(program_.ListCount()) + " entries");
}

bool Walk::Exit() {
    const bool ended = program_.Close();
    return Step("exit", ended, ended ? "the program ended with 0" : "the program did not end in order");
}

int Walk::Run() {
    bool held = StartProgram() && Connect();
    if (held) program_.Command(IDM_DETAILS_UNIX);  // details as on Unix
    held = held && EnterDirectory(L"pub", L"/pub", L"source") && EnterDirectory(L"source", L"/pub/source", L"lamp.c");
    held = held && ShowViews() && ShowContextMenu() && ToggleConsole();
    held =
        held && ReceiveOne(L"lamp.c", L"/pub/source") && ReceiveAll("receive several files", L"/pub/source", nullptr);
    if (held) place_ = program_.TreeNext(place_, TVGN_PARENT);
    held = held && EnterDirectory(L"names", L"/pub/names", L"no_extension") &&
           ReceiveAll("receive special names", L"/pub/names", nullptr);
    if (held) Picture("names");
    if (held) place_ = program_.TreeNext(place_, TVGN_PARENT);
    held = held && EnterDirectory(L"big", L"/pub/big", L"random-12MiB.bin") &&
           ReceiveAll("receive big files", L"/pub/big", "receiving");
    held = held && Disconnect();
    if (!held) Picture("failed");
    return program_.Running() && Exit() && held ? 0 : 1;
}

int Walk::RunAtResolution(int dpi) {
    bool held = StartProgram() && CheckResolution(dpi) && Connect();
    if (held) program_.Command(IDM_DETAILS_UNIX);
    held = held && EnterDirectory(L"pub", L"/pub", L"source") && EnterDirectory(L"source", L"/pub/source", L"lamp.c");
    if (held) Picture("directory");
    held = held && ShowView("large-icons", IDM_VIEW_LARGE_ICONS, LVS_ICON, 0) &&
           ShowView("details-windows", IDM_DETAILS_WINDOWS, LVS_REPORT, 4) && ShowContextMenu();
    if (held) place_ = program_.TreeNext(place_, TVGN_PARENT);
    if (held) program_.Command(IDM_DETAILS_UNIX);
    held = held && EnterDirectory(L"big", L"/pub/big", L"random-12MiB.bin") &&
           ReceiveAll("receive big files", L"/pub/big", "receiving") && Disconnect();
    if (!held) Picture("failed");
    return program_.Running() && Exit() && held ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return Walk().Run();
    const int dpi = static_cast<int>(std::strtol(argv[1], nullptr, 10));
    if (dpi <= 0) {
        std::fputs("usage: walk [DPI]\n", stderr);
        return 2;
    }
    return Walk().RunAtResolution(dpi);
}
