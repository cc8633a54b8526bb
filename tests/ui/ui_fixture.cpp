#include "ui/ui_fixture.h"

#include <algorithm>
#include <cstdlib>

#include "config/connection_defaults.h"
#include "config/defaults_store.h"
#include "config/settings.h"
#include "config/site_store.h"
#include "config/store_key.h"
#include "foundation/text_copy.h"
#include "platform/registry.h"
#include "platform/sockets.h"
#include "platform/system.h"
#include "platform/utf8.h"
#include "resources/resource.h"

namespace {

bool RunsUnderWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

std::wstring UiTest::Wide(const std::string& text) {
    const std::u16string wide = platform::Utf8ToWide(text);
    return std::wstring(wide.begin(), wide.end());
}

void UiTest::SetUp() {
    if (!RunsUnderWine()) GTEST_SKIP() << "the program's settings on this machine belong to a user";
    static std::string library;
    if (library.empty()) {
        ASSERT_EQ(platform::StartSockets(library), 0);
    }
    platform::DeleteRegistryTree(kRootKey);
    server_ = std::make_unique<ScriptedServer>();
    folder_ = std::make_unique<LocalFolder>();
    LoadConfiguration();
    settings_ = gZarn;
    settings_.VERBOSE = 1;
    portInfo_.timeout = 20;
}

void UiTest::TearDown() {
    if (HasFailure()) Picture(std::string("failed-") + testing::UnitTest::GetInstance()->current_test_info()->name());
    if (program_ != nullptr && program_->Running()) {
        const bool ended = program_->Close();
        if (!ended) Picture(std::string("hangs-") + testing::UnitTest::GetInstance()->current_test_info()->name());
        EXPECT_TRUE(ended) << "the program does not end";
    }
    program_.reset();
    server_.reset();
    folder_.reset();
    platform::DeleteRegistryTree(kRootKey);
    if (!logPath_.empty()) DeleteFileA(logPath_.c_str());
}

void UiTest::FillStore() {
    gZarn = settings_;
    SaveDefaults();
    portInfo_.ftpPort = port_ != 0 ? port_ : server_->Port();
    SavePortInfo("", portInfo_);
    ModeInfo mode = settings_.defaultMode;
    mode.mode = 'I';
    SaveModeInfo("", mode);
    StoreSite("Test");
    SetLastSession("Test");
}

void UiTest::StoreSite(const char* name) {
    SitePtr site(Zarn_CreateDefaultSite(name));
    site->pszHost = DupString(host_.c_str());
    site->pszUID = DupString(user_.c_str());
    site->pszPWD = DupString(password_.c_str());
    site->bSavePwd = 1;
    SaveSiteInfo(site.get());
}

void UiTest::StartProgram() {
    FillStore();
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    ASSERT_TRUE(program_->WaitFor([this] { return program_->FindInTree(nullptr, L"Test") != nullptr; }));
}

void UiTest::Restart() {
    if (program_ != nullptr && program_->Running()) {
        ASSERT_TRUE(program_->Close());
    }
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    ASSERT_TRUE(program_->WaitFor([this] { return program_->FindInTree(nullptr, L"Test") != nullptr; }));
}

void UiTest::Connect() {
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_CONNECT); }));
    program_->Command(IDM_CONNECT);
}

void UiTest::StartConnected() {
    StartProgram();
    if (HasFatalFailure()) return;
    Connect();
    ASSERT_TRUE(program_->WaitFor([this] { return program_->Title().find(L"::/") != std::wstring::npos; }))
        << "port " << server_->Port();
    ASSERT_TRUE(program_->WaitIdle());
}

bool UiTest::WaitListed(const std::wstring& name) {
    return program_->WaitFor([&] { return program_->FindInList(name) >= 0; }) && program_->WaitIdle();
}

HTREEITEM UiTest::EnterFolder(const std::wstring& name) {
    HTREEITEM root = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    program_->ExpandInTree(root);
    HTREEITEM item = program_->FindInTree(root, name);
    if (item != nullptr) program_->SelectInTree(item);
    return item;
}

void UiTest::ReceiveSelected() {
    program_->FocusPane(program_->List());
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_RECEIVE); }));
    program_->Command(IDM_RECEIVE);
}

std::wstring UiTest::DialogText(HWND dialog) {
    std::wstring text;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        text += Program::TextOf(child) + L"\n";
    }
    return text;
}

bool UiTest::AnswerDialog(const std::wstring& caption, const std::wstring& text, int button) {
    HWND dialog = nullptr;
    const bool shown = program_->WaitFor([&] {
        dialog = program_->Dialog(caption);
        return dialog != nullptr && DialogText(dialog).find(text) != std::wstring::npos;
    });
    if (!shown) return false;
    Picture(std::string("dialog-") + testing::UnitTest::GetInstance()->current_test_info()->name());
    Program::PressButton(dialog, button);
    return program_->WaitFor([&] { return !IsWindow(dialog) || !IsWindowVisible(dialog); });
}

void UiTest::Picture(const std::string& name) {
    const char* folder = std::getenv("ZARN_PICTURES");
    if (folder == nullptr) return;
    std::string file = name;
    std::replace(file.begin(), file.end(), '/', '-');
    TakeScreenshot(std::string(folder) + "/" + file + ".png");
}

bool UiTest::ConsoleHas(const std::wstring& text) {
    return program_->WaitFor([&] { return program_->ConsoleText().find(text) != std::wstring::npos; });
}

// Posted messages are handled in order, and the effect of this one can be read back.
bool UiTest::Settle() {
    const DWORD mark = ++settled_ + 1000;
    PostMessageW(program_->List(), LVM_SETHOVERTIME, 0, static_cast<LPARAM>(mark));
    return program_->WaitFor(
        [&] { return static_cast<DWORD>(SendMessageW(program_->List(), LVM_GETHOVERTIME, 0, 0)) == mark; });
}

void UiTest::TraceToLog() {
    char folder[MAX_PATH] = "";
    GetTempPathA(MAX_PATH, folder);
    logPath_ = std::string(folder) + "zarn-ui-test.log";
    DeleteFileA(logPath_.c_str());
    settings_.LOGFILE = logPath_;
    settings_.LOGGING = 1;
}

std::string UiTest::LogText() const {
    HANDLE file = CreateFileA(logPath_.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_EXISTING, 0, nullptr);
    std::string bytes;
    if (file == INVALID_HANDLE_VALUE) return bytes;
    char block[65536];
    DWORD count = 0;
    while (ReadFile(file, block, sizeof(block), &count, nullptr) && count > 0) bytes.append(block, count);
    CloseHandle(file);
    return bytes;
}

bool UiTest::Traced(const std::string& text) {
    return program_->WaitFor([&] { return LogText().find(text) != std::string::npos; }, 3000);
}

bool UiTest::FocusOn(HWND pane) {
    return program_->WaitFor([&] { return program_->Focus() == pane; });
}

bool UiTest::WaitTitle(const std::wstring& title) {
    return program_->WaitFor([&] { return program_->Title() == title; });
}

bool UiTest::WaitListNames(const std::vector<std::wstring>& names) {
    return program_->WaitFor([&] { return program_->ListNames() == names; });
}

void UiTest::SelectEntries(const std::vector<std::wstring>& names) {
    program_->FocusPane(program_->List());
    ASSERT_TRUE(FocusOn(program_->List()));
    program_->UnselectAll();
    for (const std::wstring& name : names) {
        const int item = program_->FindInList(name);
        ASSERT_GE(item, 0);
        program_->SelectInList(item, true);
    }
    ASSERT_EQ(program_->ListSelected(), static_cast<int>(names.size()));
    ASSERT_TRUE(Settle());
}

HWND UiTest::WaitLabelEdit(HWND pane) {
    HWND edit = nullptr;
    program_->WaitFor([&] { return (edit = program_->LabelEdit(pane)) != nullptr; });
    return edit;
}

void UiTest::TypeLabel(HWND pane, const std::wstring& text) {
    HWND edit = WaitLabelEdit(pane);
    ASSERT_NE(edit, nullptr);
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    program_->PressKey(edit, VK_RETURN);
    ASSERT_TRUE(program_->WaitFor([&] { return !IsWindow(edit); }));
    ASSERT_TRUE(Settle());
    ASSERT_TRUE(program_->WaitIdle());
}
