#include "listing_session.h"

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

constexpr wchar_t kSite[] = L"Benchmark";
// The server's first and last entry by name, in its own order as well.
constexpr wchar_t kFirstName[] = L"00-index.html";
constexpr wchar_t kLastName[] = L"zz-readme.txt";
constexpr char kServerLog[] = "server.log";
constexpr DWORD kLongestListing = 120000;  // milliseconds

constexpr unsigned kConnect = 40021, kSelectAll = 40060, kSortByName = 40074, kSortBySize = 40076;
// Large icons, small icons, list, details.
constexpr unsigned kViews[] = {40031, 40069, 40033, 40058};

bool Failed(const char* what) {
    std::fprintf(stderr, "failed: %s\n", what);
    const char* folder = std::getenv("ZARN_PICTURES");
    if (folder != nullptr) TakeScreenshot(std::string(folder) + "/list-failed.png");
    return false;
}

// When the server last logged the event for this folder; 0 for never.
double NotedByServer(const std::string& event, const std::string& folder) {
    std::ifstream log(kServerLog);
    std::string line;
    double last = 0;
    while (std::getline(log, line)) {
        std::istringstream fields(line);
        double time = 0;
        std::string noted, where;
        if (fields >> time >> noted >> where && noted == event && where == folder) last = time;
    }
    return last;
}

std::wstring FolderName(int entries) {
    return L"entries-" + std::to_wstring(entries);
}

bool IsDrawn(HWND window) {
    return !GetUpdateRect(window, nullptr, FALSE);
}

}  // namespace

bool ListingSession::Open() {
    if (!program_.Start()) return Failed("start the program");
    if (!program_.WaitFor([this] { return program_.FindInTree(nullptr, kSite) != nullptr; }))
        return Failed("find the site");
    program_.SelectInTree(program_.FindInTree(nullptr, kSite));
    if (!program_.WaitFor([this] { return program_.ToolbarEnabled(kConnect); })) return Failed("be offered to connect");
    program_.Command(kConnect);
    if (!program_.WaitFor([this] { return program_.ListCount() > 0; }, 20000) || !program_.WaitIdle()) {
        return Failed("connect and list the root");
    }
    rootEntries_ = program_.ListCount();
    program_.ExpandInTree(program_.FindInTree(nullptr, kSite));
    return true;
}

HTREEITEM ListingSession::Root() const {
    return program_.TreeNext(program_.FindInTree(nullptr, kSite), TVGN_CHILD);
}

// The list is drawn and the program accepts the next command (the toolbar offers another view).
bool ListingSession::Settled() const {
    return IsDrawn(program_.List()) && (program_.ToolbarEnabled(40031) || program_.ToolbarEnabled(40033));
}

bool ListingSession::WaitShown(int entries, ListingTimes& times) {
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < kLongestListing && program_.Running()) {
        const int count = program_.ListCount();
        if (times.firstShown == 0 && count > rootEntries_) times.firstShown = Now();
        if (count == entries && Settled()) {
            times.allShown = Now();
            return true;
        }
        Sleep(5);
    }
    return false;
}

bool ListingSession::List(int entries, ListingTimes& times) {
    HTREEITEM folder = nullptr;
    OpenSelected();  // listing a folder closes its node
    program_.WaitFor([&] { return (folder = program_.FindInTree(Root(), FolderName(entries))) != nullptr; });
    if (folder == nullptr) return Failed("find the folder in the tree");
    times = {};
    watch_.Start(program_.Main());
    program_.SelectInTree(folder);
    const bool shown = WaitShown(entries, times);
    watch_.Stop();
    if (!shown) return Failed("see every entry in the list pane");
    if (program_.ListText(0) != kFirstName || program_.ListText(entries - 1) != kLastName) {
        return Failed("find the first and the last name in their places");
    }
    const std::string path = "/entries-" + std::to_string(entries);
    const double began = NotedByServer("list", path);
    times.serverSent = NotedByServer("listed", path) - began;
    times.firstShown -= began;
    times.allShown -= began;
    times.longestStall = watch_.Longest();
    times.stallBegan = watch_.LongestBegan() - began;
    return began > 0 && times.serverSent > 0 ? true : Failed("find the listing in the server's log");
}

// By key, because the control notifies its parent of every opening by the user, but only of the first by a message.
void ListingSession::OpenSelected() const {
    program_.PressKey(program_.Tree(), VK_ADD);
}

// Sent, not posted, so that it returns when the command is done.
double ListingSession::TimedCommand(unsigned id) const {
    const double start = Now();
    SendMessageW(program_.Main(), WM_COMMAND, id, 0);
    program_.WaitFor([this] { return IsDrawn(program_.List()); });
    return Now() - start;
}

bool ListingSession::TimeCommands(int entries, CommandTimes& times) {
    times.sortBySize = TimedCommand(kSortBySize);
    if (program_.ListText(0) == kFirstName) return Failed("see another order after sorting by size");
    times.sortByName = TimedCommand(kSortByName);
    if (program_.ListText(0) != kFirstName || program_.ListText(entries - 1) != kLastName) {
        return Failed("see the order of names again");
    }
    for (unsigned view : kViews) times.changeView = std::max(times.changeView, TimedCommand(view));
    times.selectAll = TimedCommand(kSelectAll);
    if (program_.ListSelected() != entries) return Failed("select all");

    HTREEITEM folder = program_.FindInTree(Root(), FolderName(entries));
    double start = Now();
    OpenSelected();
    const bool opened = program_.WaitFor(
        [&] { return program_.TreeNext(folder, TVGN_CHILD) != nullptr && IsDrawn(program_.Tree()); }, 30000);
    times.openInTree = Now() - start;
    if (!opened) return Failed("open the folder in the tree");

    watch_.Start(program_.Main());
    program_.SelectInTree(Root());
    const bool left = program_.WaitFor([this] { return program_.ListCount() == rootEntries_ && Settled(); }, 30000);
    times.leave = Now() - NotedByServer("list", "/");
    watch_.Stop();
    times.leaveStall = watch_.Longest();
    return left ? true : Failed("leave the folder");
}

double ListingSession::PeakMegabytes() const {
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, program_.ProcessId());
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    const bool known = process != nullptr && GetProcessMemoryInfo(process, &counters, sizeof(counters));
    if (process != nullptr) CloseHandle(process);
    return known ? static_cast<double>(counters.PeakWorkingSetSize) / (1 << 20) : 0;
}
