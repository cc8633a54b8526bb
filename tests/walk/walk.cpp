// Performs the main job on the real program as a user would, one printed line per step, a picture where there is
// something to see. Ends with 0 only if every step held. Started by ./run, which also starts the demo server.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "ui_driver/program.h"

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

// The received file beside the demo tree's own.
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

  private:
    bool Step(const char* what, bool held, const std::string& seen);
    void Picture(const char* name);
    bool StartProgram();
    bool Connect();
    bool EnterDirectory();
    bool ReceiveOne();
    bool ReceiveSeveral();
    bool Disconnect();
    bool Exit();
    bool WaitForTransferEnd();
    bool CheckReceived(const std::wstring& name, std::string& seen);

    Program program_;
    int number_ = 0;
};

bool Walk::Step(const char* what, bool held, const std::string& seen) {
    std::printf("%-26s %s  %s\n", what, held ? "ok    " : "FAILED", seen.c_str());
    std::fflush(stdout);
    return held;
}

void Walk::Picture(const char* name) {
    const char* folder = std::getenv("ZARN_PICTURES");
    if (folder == nullptr) return;
    char path[512];
    std::snprintf(path, sizeof(path), "%s/%02d-%s.png", folder, ++number_, name);
    // Let what is drawn at idle time be drawn.
    Sleep(300);
    TakeScreenshot(path);
}

bool Walk::StartProgram() {
    const bool started = program_.Start();
    std::string seen = "no window";
    if (started) {
        program_.WaitFor([this] { return program_.FindInTree(nullptr, L"Demo server") != nullptr; });
        HTREEITEM site = program_.FindInTree(nullptr, L"Demo server");
        seen = "window \"" + Utf8(program_.Title()) + "\", tree shows " + (site != nullptr ? "\"Demo server\"" : "no site");
        program_.SelectInTree(site);
        program_.Command(40066);  // the console
        program_.WaitFor([this] { return program_.Console() != nullptr; });
        Picture("start");
        return Step("start", site != nullptr, seen);
    }
    return Step("start", false, seen);
}

bool Walk::Connect() {
    program_.WaitFor([this] { return program_.ToolbarEnabled(40021); });
    program_.Command(40021);
    const bool listed = program_.WaitFor([this] { return program_.ListCount() > 0; }, 20000) && program_.WaitIdle();
    const bool welcomed = program_.ConsoleText().find(L"220") != std::wstring::npos;
    const bool found = program_.FindInList(L"pub") >= 0;
    char seen[256];
    std::snprintf(seen, sizeof(seen), "title \"%s\", %d entries, welcome %s in the console", Utf8(program_.Title()).c_str(),
                  program_.ListCount(), welcomed ? "stands" : "is missing");
    Picture("connected");
    return Step("connect and list", listed && welcomed && found, seen);
}

bool Walk::EnterDirectory() {
    HTREEITEM site = program_.FindInTree(nullptr, L"Demo server");
    program_.ExpandInTree(site);
    HTREEITEM root = program_.TreeNext(site, TVGN_CHILD);
    program_.ExpandInTree(root);
    HTREEITEM directory = program_.FindInTree(root, L"pub");
    if (directory == nullptr) return Step("enter a directory", false, "no \"pub\" below the root in the tree");
    program_.SelectInTree(directory);
    const bool entered = program_.WaitFor(
        [this] { return program_.Title().find(L"::/pub") != std::wstring::npos && program_.FindInList(L"README.txt") >= 0; },
        20000);
    program_.WaitIdle();
    program_.Command(40057);  // details as on Unix
    program_.WaitIdle();
    Picture("directory");
    const int readme = program_.FindInList(L"README.txt");
    char seen[256];
    std::snprintf(seen, sizeof(seen), "title \"%s\", %d entries, README.txt: %s %s %s", Utf8(program_.Title()).c_str(),
                  program_.ListCount(), Utf8(program_.ListText(readme, 4)).c_str(),
                  Utf8(program_.ListText(readme, 6)).c_str(), Utf8(program_.ListText(readme, 7)).c_str());
    return Step("enter a directory", entered && !program_.ListText(readme, 4).empty(), seen);
}

bool Walk::WaitForTransferEnd() {
    // The dialog may be gone before it was ever seen; the status text and the toolbar tell the end.
    return program_.WaitIdle(60000) && program_.Dialog() == nullptr;
}

bool Walk::CheckReceived(const std::wstring& name, std::string& seen) {
    std::size_t size = 0;
    const bool same = SameAsServers(name, L"/pub", size);
    seen += Utf8(name) + " " + std::to_string(size) + " bytes " + (same ? "byte for byte" : "DIFFERS") + "; ";
    return same;
}

bool Walk::ReceiveOne() {
    program_.FocusPane(program_.List());
    program_.SelectInList(program_.FindInList(L"README.txt"));
    program_.WaitFor([this] { return program_.ToolbarEnabled(40054); });
    program_.Command(40054);
    program_.WaitFor([] { return GetFileAttributesW(L"README.txt") != INVALID_FILE_ATTRIBUTES; });
    const bool ended = WaitForTransferEnd();
    std::string seen;
    const bool same = CheckReceived(L"README.txt", seen);
    return Step("receive one file", ended && same, seen);
}

bool Walk::ReceiveSeveral() {
    std::vector<std::wstring> names;
    bool first = true;
    for (int i = 0; i < program_.ListCount(); ++i) {
        // Regular files, by their permission text.
        const std::wstring mode = program_.ListText(i, 2);
        const std::wstring name = program_.ListText(i);
        if (mode.empty() || mode[0] != L'-' || name == L"README.txt") continue;
        program_.SelectInList(i, !first);
        first = false;
        names.push_back(name);
    }
    program_.Command(40054);
    if (program_.WaitFor([this] { return program_.Dialog(L"Tessmir File Transfers") != nullptr; }, 3000)) Picture("receiving");
    const bool ended = WaitForTransferEnd();
    std::string seen;
    bool same = names.size() > 1;
    for (const std::wstring& name : names) same = CheckReceived(name, seen) && same;
    Picture("received");
    return Step("receive several files", ended && same, seen);
}

bool Walk::Disconnect() {
    program_.FocusPane(program_.Tree());
    program_.Command(40026);
    const bool gone = program_.WaitFor([this] { return program_.ListCount() == 0; }) && program_.WaitIdle();
    Picture("disconnected");
    return Step("disconnect", gone && program_.Title().find(L"::") == std::wstring::npos,
                "title \"" + Utf8(program_.Title()) + "\", list empty");
}

bool Walk::Exit() {
    const bool ended = program_.Close();
    return Step("exit", ended, ended ? "the program ended with 0" : "the program did not end in order");
}

int Walk::Run() {
    const bool held = StartProgram() && Connect() && EnterDirectory() && ReceiveOne() && ReceiveSeveral() && Disconnect();
    if (!held) Picture("failed");
    return (program_.Running() ? Exit() : false) && held ? 0 : 1;
}

}  // namespace

int main() { return Walk().Run(); }
