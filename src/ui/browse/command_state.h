// Which commands make sense for the focused pane and its selection: the rules behind menus and toolbar. Pure.
#pragma once

#include <cstdint>

struct CommandContext {
    enum class Focus { None, Tree, List } focus = Focus::None;
    std::uint32_t nodeKind = 0;  // kind of the selected tree node, 0 for none
    bool siteConnected = false;
    std::uint32_t hostType = 7000;
    int listItems = 0;
    int selected = 0;
    std::uint32_t firstKind = 0;  // kind of the first selected entry
    bool anyFileSelected = false;
    std::uint32_t viewStyle = 1;
    std::uint32_t columns = 4;
};

struct FileMenuState {
    bool transfer = false, remove = false, rename = false, properties = false, view = false;
};
FileMenuState FileMenuFor(const CommandContext& context);
// Toolbar: whether the button of a command can be pressed.
bool ToolbarButtonEnabled(unsigned commandId, const CommandContext& context, bool busy);
