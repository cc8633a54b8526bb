// One program for all tests of a suite that only look at it: each test begins with the same connected window, and after
// a failed test the next one gets a fresh program.
#pragma once

#include "ui/ui_fixture.h"

class SharedProgramTest : public UiTest {
  public:
    static void TearDownTestSuite();

  protected:
    void SetUp() override;
    void TearDown() override;
    // Prepares the server's files and the store before the first start.
    virtual void Prepare() {}
    // An entry of the root; when it shows, the root is listed.
    virtual std::wstring RootEntry() const { return L"a.txt"; }
    // Selects the connected site's root and lists it.
    void GoToRoot();
    bool SelectNode(HTREEITEM item, const std::wstring& title);
};
