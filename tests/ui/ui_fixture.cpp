#include "ui/ui_fixture.h"

#include <cstdlib>

#include "config/defaults_store.h"
#include "config/site_store.h"
#include "foundation/text_helpers.h"
#include "platform/registry.h"
#include "platform/sockets.h"
#include "platform/system.h"

namespace {

constexpr unsigned kConnect = 40021;
constexpr unsigned kReceive = 40054;

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
}

void UiTest::StartProgram() {
    gZarn = settings_;
    SaveDefaults();
    portInfo_.ftpPort = port_ != 0 ? port_ : server_->Port();
    SavePortInfo("", portInfo_);
    ModeInfo mode = settings_.defaultMode;
    mode.mode = 'I';
    SaveModeInfo("", mode);
    SitePtr site(Zarn_CreateDefaultSite("Test"));
    site->pszHost = DupString(host_.c_str());
    site->pszUID = DupString(user_.c_str());
    site->pszPWD = DupString(password_.c_str());
    site->bSavePwd = 1;
    SaveSiteInfo(site.get());
    SetLastSession("Test");
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    ASSERT_TRUE(program_->WaitFor([this] { return program_->FindInTree(nullptr, L"Test") != nullptr; }));
}

void UiTest::Connect() {
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(kConnect); }));
    program_->Command(kConnect);
}

void UiTest::StartConnected() {
    StartProgram();
    if (HasFatalFailure()) return;
    Connect();
    ASSERT_TRUE(program_->WaitFor([this] { return program_->Title().find(L"::/") != std::wstring::npos; }));
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
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(kReceive); }));
    program_->Command(kReceive);
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
    if (folder != nullptr) TakeScreenshot(std::string(folder) + "/" + name + ".png");
}

bool UiTest::ConsoleHas(const std::wstring& text) {
    return program_->WaitFor([&] { return program_->ConsoleText().find(text) != std::wstring::npos; });
}
