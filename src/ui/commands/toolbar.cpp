#include "ui/commands/toolbar.h"

#include <commctrl.h>

#include <array>

#include "foundation/error_text.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "resources/resource.h"
#include "ui/browse/command_context.h"
#include "ui/commands/command_table.h"
#include "ui/commands/toolbar_images.h"
#include "ui/screen/app.h"

namespace {

constexpr int kSeparator = 0;

// What a button depends on: the tree's selected node, or the list's view and the focused pane's selection.
enum class Decides { Nothing, Tree, List };

// A slot: its command and its image within the standard or the view set.
struct Slot {
    int command;
    bool fromViewSet;
    int image;
    Decides decides;
};

constexpr std::array<Slot, 16> kSlots = {{
    {IDM_LV_CDPARENT, true, VIEW_PARENTFOLDER, Decides::Tree},
    {kSeparator, false, 0, Decides::Nothing},
    {IDM_CONNECT, true, VIEW_NETCONNECT, Decides::Tree},
    {IDM_DISCONNECT, true, VIEW_NETDISCONNECT, Decides::Tree},
    {kSeparator, false, 0, Decides::Nothing},
    {IDM_VIEW_LARGE_ICONS, true, VIEW_LARGEICONS, Decides::List},
    {IDM_VIEW_SMALL_ICONS, true, VIEW_SMALLICONS, Decides::List},
    {IDM_VIEW_LIST, true, VIEW_LIST, Decides::List},
    {IDM_DETAILS_WINDOWS, true, VIEW_DETAILS, Decides::List},
    {kSeparator, false, 0, Decides::Nothing},
    {IDM_RECEIVE, false, STD_COPY, Decides::List},
    {IDM_DELETE, false, STD_DELETE, Decides::List},
    {IDM_PROPERTIES, false, STD_PROPERTIES, Decides::List},
    {IDM_NEWFOLDER, true, VIEW_NEWFOLDER, Decides::Tree},
    {IDM_QUICKVIEW, false, STD_PRINTPRE, Decides::List},
    {IDM_PRINT, false, STD_PRINT, Decides::List},
}};

constexpr char kFuncName[] = "SetToolbarButtonState";

void EnableButton(int id, bool enable) {
    const auto command = static_cast<unsigned>(id);
    const bool isEnabled = SendMessageW(gApp.toolbar, TB_ISBUTTONENABLED, command, 0) != 0;
    if (enable == isEnabled) return;
    if (SendMessageW(gApp.toolbar, TB_ENABLEBUTTON, command, MAKELPARAM(enable, 0)) != 0) return;
    const DWORD error = GetLastError();
    DbgVsprintf(kFuncName, "Unable to Enable:%d Button:%d for hWnd:%x. Err:%d:%s", enable, id,
                TraceAddress(gApp.toolbar), static_cast<int>(error), GetErrorText(error).c_str());
}

void EnableButtons(Decides decides, const CommandContext& context) {
    const bool busy = CommandsRefused();
    for (const Slot& slot : kSlots) {
        if (slot.decides != decides) continue;
        const auto command = static_cast<unsigned>(slot.command);
        EnableButton(slot.command, CommandIsAvailable(command) && ToolbarButtonEnabled(command, context, busy));
    }
}

void LV_SetBtnState(const CommandContext& context) {
    EnableButtons(Decides::List, context);
}

void TV_SetBtnState(const CommandContext& context) {
    EnableButtons(Decides::Tree, context);
}

}  // namespace

bool CreateTheToolbar(HWND parent) {
    DbgVsprintf("CreateTheToolbar", "Entered");
    gApp.toolbar = CreateWindowExW(0, TOOLBARCLASSNAMEW, nullptr,
                                   WS_CHILD | WS_VISIBLE | TBSTYLE_TOOLTIPS | TBSTYLE_FLAT | CCS_TOP, 0, 0, 0, 0,
                                   parent, nullptr, gApp.instance, nullptr);
    if (gApp.toolbar == nullptr) return false;
    SendMessageW(gApp.toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    const ToolbarImages images = AddToolbarImages(gApp.toolbar, gApp.dpi);
    std::array<TBBUTTON, kSlots.size()> buttons{};
    for (std::size_t i = 0; i < kSlots.size(); ++i) {
        const Slot& slot = kSlots[i];
        buttons[i].idCommand = slot.command;
        buttons[i].fsState = TBSTATE_ENABLED;
        buttons[i].fsStyle = slot.command == kSeparator ? BTNS_SEP : BTNS_BUTTON;
        if (slot.command != kSeparator)
            buttons[i].iBitmap = slot.image + (slot.fromViewSet ? images.view : images.standard);
    }
    SendMessageW(gApp.toolbar, TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
    SendMessageW(gApp.toolbar, TB_AUTOSIZE, 0, 0);
    return true;
}

bool RecreateTheToolbar(HWND parent) {
    DestroyWindow(gApp.toolbar);
    DestroyToolbarImages();
    if (!CreateTheToolbar(parent)) return false;
    SetToolbarButtonState();
    return true;
}

int ToolbarHeight() {
    RECT bar{};
    GetWindowRect(gApp.toolbar, &bar);
    return bar.bottom - bar.top;
}

void SetToolbarButtonState() {
    if (gApp.toolbar == nullptr) return;
    const CommandContext context = CurrentCommandContext();
    WaitForSingleObject(gApp.buttonMutex, INFINITE);
    LV_SetBtnState(context);
    TV_SetBtnState(context);
    ReleaseMutex(gApp.buttonMutex);
}
