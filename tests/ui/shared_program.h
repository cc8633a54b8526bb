// One started program for all tests of a suite whose tests only look: each begins with the same connected window, and
// a test that fails leaves the next one a fresh program.
#pragma once

#include "ui/ui_fixture.h"

class SharedProgramTest : public UiTest {
  public:
    static void TearDownTestSuite();

  protected:
    void SetUp() override;
    void TearDown() override;
    // What the server holds and what the store is, before the first start.
    virtual void Prepare() {}
    // An entry of the root by which a test knows that it is listed.
    virtual std::wstring RootEntry() const { return L"a.txt"; }
    // Selects the connected site's root and lists it.
    void GoToRoot();
    bool SelectNode(HTREEITEM item, const std::wstring& title);
};
