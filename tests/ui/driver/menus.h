// The program's menus as a user sees them: opens them from the menu bar or by a right click, reads them while they are
// open, and chooses items by keyboard.
#pragma once

#include <string>
#include <vector>

#include "ui/driver/menu_probe.h"
#include "ui/driver/program.h"

struct MenuItem {
    unsigned id = 0;
    std::wstring text;
    bool enabled = false;
    bool separator = false;
    bool highlighted = false;
    HMENU subMenu = nullptr;
};
using MenuItems = std::vector<MenuItem>;

// The item of a command or of a text, or null.
const MenuItem* ItemOf(const MenuItems& items, unsigned id);
const MenuItem* ItemOf(const MenuItems& items, const std::wstring& text);

class Menus {
  public:
    // Loads the probe into the program.
    explicit Menus(const Program& program);
    ~Menus();
    Menus(const Menus&) = delete;
    Menus& operator=(const Menus&) = delete;

    bool Ready() const { return describe_ != nullptr; }
    MenuItems Read(HMENU menu) const;
    // Opens a menu of the bar by its letter, then sub-menus by theirs; returns the items of the innermost one.
    MenuItems OpenFromBar(const std::wstring& letters);
    // Right-clicks a point of the screen; returns the menu's items, none if no menu opened.
    MenuItems OpenContext(HWND pane, POINT screen);
    // Presses the menu key for the pane with the focus; returns the menu's items.
    MenuItems OpenByKey(HWND pane);
    bool IsOpen() const { return Shown() != nullptr; }
    // Moves the highlight of the open menu to its first item; true when it arrived there.
    bool HighlightFirst() const;
    // Chooses an item of the open menu with the arrow keys and Enter.
    bool Choose(const MenuItems& items, unsigned id) const;
    bool Close() const;

  private:
    static constexpr DWORD kNoMenuWait = 400;  // milliseconds to wait before concluding that no menu opens
    HWND Shown() const;
    MenuItems ReadShown() const;
    bool InMenuMode() const;
    const Program& program_;
    int downsToFirst_ = 1;   // a menu opened by its letter shows its first item highlighted
    void* block_ = nullptr;  // a MenuQuery in the program's memory
    LPTHREAD_START_ROUTINE describe_ = nullptr;
};
