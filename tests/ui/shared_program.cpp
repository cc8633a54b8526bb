#include "ui/shared_program.h"

#include <utility>

#include "resources/resource.h"

namespace {

struct Kept {
    std::unique_ptr<ScriptedServer> server;
    std::unique_ptr<LocalFolder> folder;
    std::unique_ptr<Program> program;
};
Kept gKept;

}  // namespace

void SharedProgramTest::SetUp() {
    if (gKept.program != nullptr && gKept.program->Running()) {
        server_ = std::move(gKept.server);
        folder_ = std::move(gKept.folder);
        program_ = std::move(gKept.program);
    } else {
        gKept = {};
        UiTest::SetUp();
        if (IsSkipped()) return;
        Prepare();
        StartConnected();
    }
    ASSERT_FALSE(HasFatalFailure());
    GoToRoot();
}

void SharedProgramTest::TearDown() {
    if (HasFailure() || program_ == nullptr || !program_->Running() || program_->Dialog() != nullptr) {
        UiTest::TearDown();
        return;
    }
    gKept = {std::move(server_), std::move(folder_), std::move(program_)};
}

void SharedProgramTest::TearDownTestSuite() {
    if (gKept.program != nullptr) {
        EXPECT_TRUE(gKept.program->Close()) << "the program does not end";
    }
    gKept = {};
}

void SharedProgramTest::GoToRoot() {
    if (program_->Title().find(L"::") == std::wstring::npos) {
        ASSERT_TRUE(program_->WaitIdle());
        if (RootItem() == nullptr) {
            program_->SelectInTree(SiteItem());
            Connect();
        }
    }
    ASSERT_TRUE(program_->WaitFor([this] { return RootItem() != nullptr; }));
    ASSERT_TRUE(program_->WaitIdle());
    if (program_->TreeSelected() != RootItem()) {
        program_->SelectInTree(RootItem());
        program_->PressKey(program_->Tree(), VK_RETURN);  // without the keyboard's delay
    }
    program_->Command(IDM_DETAILS_WINDOWS);
    ASSERT_TRUE(WaitTitle(L"Zarn Test::/"));
    ASSERT_TRUE(WaitListed(RootEntry()));
    program_->UnselectAll();
}

bool SharedProgramTest::SelectNode(HTREEITEM item, const std::wstring& title) {
    program_->FocusPane(program_->Tree());
    program_->SelectInTree(item);
    return FocusOn(program_->Tree()) && WaitTitle(title) && program_->WaitIdle() && Settle();
}
