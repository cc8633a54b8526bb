// The real program with a fresh store, a site of its own on a scripted server, and an empty local folder as its current
// one. Runs under Wine only: on Windows it would replace the user's own settings.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "config/settings.h"
#include "support/local_folder.h"
#include "support/scripted_server.h"
#include "ui/driver/program.h"

class UiTest : public testing::Test {
  public:
    static std::wstring Wide(const std::string& text);

  protected:
    void SetUp() override;
    void TearDown() override;

    // Stores the site "Test" on the scripted server (or another host and port) and starts the program.
    void StartProgram();
    // Writes settings_ and the site to the store, which the program reads when it starts.
    void FillStore();
    void StoreSite(const char* name);
    // Closes the program and starts it again with the present store.
    void Restart();
    // Starts the program, connects and waits until the root is listed.
    void StartConnected();
    void Connect();
    bool WaitListed(const std::wstring& name);
    // Opens the tree down to a folder below the site's root and selects it.
    HTREEITEM EnterFolder(const std::wstring& name);
    void ReceiveSelected();
    // Waits for a dialog whose text holds `text` (null: any), keeps a picture of it, and presses a button of it.
    bool AnswerDialog(const std::wstring& caption, const std::wstring& text, int button);
    std::wstring DialogText(HWND dialog);
    std::wstring ErrorField(HWND dialog, int id) { return Program::TextOf(GetDlgItem(dialog, id)); }
    void Picture(const std::string& name);
    bool ConsoleHas(const std::wstring& text);
    // Waits until every message posted so far has been handled.
    bool Settle();
    // Programs started from now on trace into a log file.
    void TraceToLog();
    std::string LogText() const;
    bool Traced(const std::string& text);
    HTREEITEM SiteItem(const std::wstring& name = L"Test") { return program_->FindInTree(nullptr, name); }
    HTREEITEM RootItem() { return program_->TreeNext(SiteItem(), TVGN_CHILD); }
    bool FocusOn(HWND pane);
    bool WaitTitle(const std::wstring& title);
    bool WaitListNames(const std::vector<std::wstring>& names);
    // Puts the focus on the list with just these entries selected.
    void SelectEntries(const std::vector<std::wstring>& names);
    // The edit field of a label once it is open.
    HWND WaitLabelEdit(HWND pane);
    // Types a name into the label that is being edited.
    void TypeLabel(HWND pane, const std::wstring& text);
    std::string LocalBytes(const std::string& name) { return folder_->Read(name); }
    std::size_t LocalFileCount() { return folder_->Contents().size(); }

    std::string host_ = "127.0.0.1";
    std::uint16_t port_ = 0;  // 0: the scripted server's
    std::string user_ = "user";
    std::string password_ = "secret";
    PortInfo portInfo_;
    ZarnSettings settings_;  // what the store holds when the program starts
    std::unique_ptr<ScriptedServer> server_;
    std::unique_ptr<LocalFolder> folder_;
    std::unique_ptr<Program> program_;
    std::string logPath_;
    DWORD settled_ = 0;
};
