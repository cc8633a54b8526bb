#include "ui/browse/command_state.h"

#include "config/host_types.h"
#include "config/settings.h"
#include "listing/item_kind.h"
#include "resources/resource.h"

namespace {

FileMenuState ForTree(const CommandContext& context) {
    FileMenuState state;
    if (context.nodeKind == kKindSite) {
        state.remove = !context.siteConnected;
        state.rename = true;
        state.properties = true;
    } else if (IsRemoteFolderKind(context.nodeKind)) {
        state.transfer = true;
        state.properties = true;
    }
    return state;
}

// Quirk: with several entries selected the menu greys Transfer and Delete, though toolbar and keys act on all, kept.
FileMenuState ForList(const CommandContext& context) {
    FileMenuState state;
    if (context.selected == 0) return state;
    const bool isRemote = context.hostType != HOST_TYPE_LOCAL;
    state.properties = isRemote;
    if (context.selected == 1) {
        state.transfer = isRemote;
        state.remove = true;
        state.rename = true;
        state.view = context.firstKind == kKindFile || context.firstKind == kKindLocalFile;
    } else {
        state.view = context.anyFileSelected;
    }
    return state;
}

bool ViewIsShown(unsigned commandId, std::uint32_t style) {
    switch (commandId) {
        case IDM_VIEW_LARGE_ICONS:
            return style == static_cast<std::uint32_t>(UiStyle::LargeIcons);
        case IDM_VIEW_SMALL_ICONS:
            return style == static_cast<std::uint32_t>(UiStyle::SmallIcons);
        case IDM_VIEW_LIST:
            return style == static_cast<std::uint32_t>(UiStyle::List);
        default:
            return style == static_cast<std::uint32_t>(UiStyle::Details);
    }
}

}  // namespace

FileMenuState FileMenuFor(const CommandContext& context) {
    switch (context.focus) {
        case CommandContext::Focus::Tree:
            return ForTree(context);
        case CommandContext::Focus::List:
            return ForList(context);
        default:
            return {};
    }
}

bool ToolbarButtonEnabled(unsigned commandId, const CommandContext& context, bool busy) {
    if (busy) return false;
    const bool inList = context.focus == CommandContext::Focus::List && context.selected > 0;
    const bool inTree = context.focus == CommandContext::Focus::Tree;
    const bool isRemote = context.hostType != HOST_TYPE_LOCAL;
    switch (commandId) {
        case IDM_LV_CDPARENT:
            return context.nodeKind == kKindFolder || context.nodeKind == kKindLocalFolder;
        case IDM_CONNECT:
            return context.nodeKind == kKindSite && !context.siteConnected;
        case IDM_DISCONNECT:
            return context.siteConnected && (context.nodeKind == kKindSite || IsRemoteFolderKind(context.nodeKind));
        case IDM_VIEW_LARGE_ICONS:
        case IDM_VIEW_SMALL_ICONS:
        case IDM_VIEW_LIST:
        case IDM_DETAILS_WINDOWS:
            return !ViewIsShown(commandId, context.viewStyle);
        case IDM_RECEIVE:
            return context.siteConnected && isRemote && (inList || (inTree && IsRemoteFolderKind(context.nodeKind)));
        case IDM_DELETE:
            return inList || (inTree && context.nodeKind == kKindSite && !context.siteConnected);
        case IDM_PROPERTIES:
            return (inList && isRemote) ||
                   (inTree && (context.nodeKind == kKindSite || IsRemoteFolderKind(context.nodeKind)));
        case IDM_NEWFOLDER:
            return (context.siteConnected && IsRemoteFolderKind(context.nodeKind)) ||
                   IsLocalFolderKind(context.nodeKind);
        case IDM_QUICKVIEW:
        case IDM_PRINT:
            return inList && context.anyFileSelected;
        default:
            return true;
    }
}
