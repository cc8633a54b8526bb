// Drives the real program from outside, as a user would: starts it, reads its windows back, chooses commands, presses
// keys, takes pictures. Runs on Windows and under Wine; every wait has a bound.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "resources/resource.h"

class Program {
  public:
    Program() = default;
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Starts Zarn32.exe (beside this program unless `path` is given) and waits for its main window, which is shown
    // unless it is expected to stay `hidden`.
    bool Start(const std::wstring& arguments = L"", const std::wstring& path = L"", bool hidden = false);
    // Asks the program to close; true when it ended in time with exit code 0.
    bool Close(DWORD milliseconds = 10000);
    bool Running() const;
    DWORD ProcessId() const { return process_.dwProcessId; }
    HANDLE Process() const { return process_.hProcess; }

    HWND Main() const { return main_; }
    HWND Child(int id) const;
    HWND Tree() const { return Child(IDC_TREE_PANE); }
    HWND List() const { return Child(IDC_LIST_PANE); }
    HWND Console() const { return Child(IDC_CONSOLE); }
    HWND StatusBar() const;
    HWND Toolbar() const;

    std::wstring Title() const;
    std::wstring StatusPart(int part) const;
    std::wstring ConsoleText() const;
    void Command(unsigned id) const { PostMessageW(main_, WM_COMMAND, id, 0); }
    bool ToolbarEnabled(unsigned id) const { return SendMessageW(Toolbar(), TB_ISBUTTONENABLED, id, 0) != 0; }

    // The list pane. Texts by display column.
    int ListCount() const { return static_cast<int>(SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0)); }
    std::wstring ListText(int item, int column = 0) const;
    std::vector<std::wstring> ListNames() const;
    int FindInList(const std::wstring& name) const;
    int ListSelected() const { return static_cast<int>(SendMessageW(List(), LVM_GETSELECTEDCOUNT, 0, 0)); }
    void SelectInList(int item, bool add = false) const;
    void UnselectAll() const;
    void FocusPane(HWND pane) const;
    void PressKey(HWND window, WORD key) const;
    // Types a key, alone or with Ctrl, into the window in front.
    void TypeKey(WORD key, bool withCtrl = false) const;
    HWND Focus() const;
    // Clicks the left button at a point of a window's client area.
    void Click(HWND window, POINT client, bool twice = false) const;
    POINT ToScreen(HWND window, POINT client) const;
    HWND Header() const { return reinterpret_cast<HWND>(SendMessageW(List(), LVM_GETHEADER, 0, 0)); }
    void ClickHeader(int column) const;
    int ColumnWidth(int column) const {
        return static_cast<int>(SendMessageW(List(), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    }
    std::wstring ColumnTitle(int column) const;
    bool ColumnIsRightAligned(int column) const;
    POINT ListPlace(int item) const;  // the middle of an entry's label, in the list's client area
    // The edit field of a label being edited in a pane, or null.
    HWND LabelEdit(HWND pane) const;

    // Toolbar and status bar.
    POINT ButtonPlace(unsigned id) const;
    void ClickButton(unsigned id) const { Click(Toolbar(), ButtonPlace(id)); }
    void ClickStatusPart(int part) const;

    // The tree pane.
    HTREEITEM TreeNext(HTREEITEM item, UINT relation) const;
    std::wstring TreeText(HTREEITEM item) const;
    HTREEITEM TreeSelected() const { return TreeNext(nullptr, TVGN_CARET); }
    // The item whose label is `text` below `parent` (null: top level), or null.
    HTREEITEM FindInTree(HTREEITEM parent, const std::wstring& text) const;
    void SelectInTree(HTREEITEM item) const;
    void ExpandInTree(HTREEITEM item) const;
    POINT TreePlace(HTREEITEM item) const;  // the middle of a node's label, in the tree's client area; scrolls to it
    UINT TreeState(HTREEITEM item, UINT mask) const {
        return static_cast<UINT>(SendMessageW(Tree(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), mask)) & mask;
    }
    int TreeImage(HTREEITEM item, bool selected) const;

    // A visible dialog of the program (class #32770), with this caption if one is given; or null.
    HWND Dialog(const std::wstring& caption = L"") const;
    static std::wstring TextOf(HWND window);
    static void PressButton(HWND dialog, int id) { PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0); }

    // True when the condition became true in time; the wait ends early if the program does.
    bool WaitFor(const std::function<bool()>& condition, DWORD milliseconds = 10000) const;
    // Waits until the program is not busy: the window answers and its toolbar offers a view.
    bool WaitIdle(DWORD milliseconds = 15000) const;

  private:
    // A block in the program's memory, for messages with structures.
    void* Remote() const { return remote_; }
    bool ReadRemote(std::size_t offset, void* to, std::size_t size) const;
    bool WriteRemote(std::size_t offset, const void* from, std::size_t size) const;
    // The rectangle that a window fills in for a message; `asked` is what it holds before.
    RECT RectFrom(HWND window, UINT message, WPARAM which, const RECT& asked) const;

    PROCESS_INFORMATION process_{};
    HWND main_ = nullptr;
    void* remote_ = nullptr;
};

// Saves a picture of the whole screen as a PNG (unix path); false when there is no tool for it.
bool TakeScreenshot(const std::string& unixPath);
