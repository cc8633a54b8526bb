#include "ui/bars/status_bar.h"

#include <commctrl.h>

#include <array>
#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/console_pane.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/path_ellipsis.h"
#include "foundation/text_width_window.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/dialogs/local_dir_dialog.h"
#include "ftp/worker/session_state.h"
#include "platform/files.h"
#include "ui/bars/status_layout.h"
#include "ui/browse/command_context.h"
#include "ui/panes/list_pane.h"
#include "ui/screen/app.h"

namespace {

enum Part { kPartMessage, kPartLinks, kPartBell, kPartUnique, kPartType, kPartLocalDir, kPartSelection };
constexpr int kSimplePart = 255;

std::string gStatusText;  // shown in place of the state unless it is empty

void SetPart(int part, const std::string& text) {
    const std::wstring wide = Wide(text);
    // Setting an unchanged part again would make the bar flicker.
    const auto length = LOWORD(SendMessageW(gApp.statusBar, SB_GETTEXTLENGTHW, static_cast<WPARAM>(part), 0));
    std::wstring current(length, L'\0');
    SendMessageW(gApp.statusBar, SB_GETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(current.data()));
    if (current == wide) return;
    SendMessageW(gApp.statusBar, SB_SETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(wide.c_str()));
}

std::string SwitchText(unsigned message, bool on) {
    const std::string state = CatalogueText(on ? MSG_STATUS_ON : MSG_STATUS_OFF);
    return Zarn_ResVsprintf(message, state).c_str();
}

std::string TransferTypeText(char mode) {
    switch (mode) {
        case 'I':
            return CatalogueText(MSG_TYPE_BINARY);
        case 'A':
            return CatalogueText(MSG_TYPE_ASCII);
        case 'L':
            return CatalogueText(MSG_TYPE_L8);
        default:
            return CatalogueText(MSG_TYPE_DEFAULT);
    }
}

// The first part's text while there is no message.
std::string ConnectionText() {
    const Site* site = SelectedSite();
    if (site == nullptr || site->bConnected == 0) return CatalogueText(MSG_STATUS_NOT_CONNECTED);
    return Zarn_ResVsprintf(MSG_STATUS_CONNECTED_TO, site->pszSessionName.c_str()).c_str();
}

std::string SelectionText() {
    const int selected = SelectedCount();
    if (selected == 0) {
        return EntryCount() == 0 ? std::string() : Zarn_ResVsprintf(MSG_STATUS_ENTRIES, EntryCount()).c_str();
    }
    const std::string bytes = GroupDigits(std::to_string(SelectedBytes()));
    return Zarn_ResVsprintf(MSG_SELECTION, selected, bytes).c_str();
}

void TraceBusyFlags() {
    constexpr char kFuncName[] = "ChangeSBText";
    if (!gTrace.Any()) return;
    const std::pair<const char*, bool> flags[] = {{"fConnectInProgress", gSession.connecting},
                                                  {"fParsingFiles", gSession.parsing},
                                                  {"fChangingFolder", gSession.busy},
                                                  {"fExitInProgress", gSession.exiting}};
    for (const auto& [name, set] : flags) {
        if (set) DbgVsprintf(kFuncName, "%s", name);
    }
}

// The order of clicks: ASCII, binary, local byte size 8, ASCII again.
char NextTransferType(char mode) {
    return mode == 'A' ? 'I' : mode == 'I' ? 'L' : 'A';
}

}  // namespace

bool CreateTheStatusWindow(HWND parent) {
    DbgVsprintf("CreateTheStatusWindow", "Entered");
    gApp.statusBar = CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                                     parent, nullptr, gApp.instance, nullptr);
    if (gApp.statusBar == nullptr) return false;
    if (gApp.paneFont != nullptr) SendMessageW(gApp.statusBar, WM_SETFONT, reinterpret_cast<WPARAM>(gApp.paneFont), 0);
    return true;
}

int StatusBarHeight() {
    RECT bar{};
    GetWindowRect(gApp.statusBar, &bar);
    return bar.bottom - bar.top;
}

void LayoutStatusParts(int width) {
    const std::array<int, kStatusParts> right = StatusPartEdges(width, static_cast<int>(gApp.dpi));
    SendMessageW(gApp.statusBar, SB_SETPARTS, right.size(), reinterpret_cast<LPARAM>(right.data()));
    ChangeSBText();
}

void ChangeSBText() {
    if (gApp.statusBar == nullptr) return;
    TraceBusyFlags();
    SetPart(kPartMessage, gStatusText.empty() ? ConnectionText() : gStatusText);
    SetPart(kPartLinks, SwitchText(MSG_STATUS_LINKS_IS, gZarn.RESOLVELINKS != 0));
    SetPart(kPartBell, SwitchText(MSG_STATUS_BELL_IS, gZarn.BELL != 0));
    SetPart(kPartUnique, SwitchText(MSG_STATUS_UNIQUE_IS, gZarn.SENDUNIQUE != 0));
    SetPart(kPartType, TransferTypeText(gZarn.mode.mode));
    SetLocalDirSBText();
    SetPart(kPartSelection, SelectionText());
}

void ShowStatusText(const char* text) {
    gStatusText = text == nullptr ? "" : text;
    for (char& c : gStatusText) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    if (gApp.statusBar != nullptr) SetPart(kPartMessage, gStatusText.empty() ? ConnectionText() : gStatusText);
}

void SetPartOneSBText(unsigned messageId, const char* text) {
    const std::string message = CatalogueText(messageId);
    if (text == nullptr || *text == '\0') {
        ShowStatusText(message.c_str());
        return;
    }
    ShowStatusText(FormatBounded("SetPartOneSBText", kTextBuffer, "%s: %s", message.c_str(), text).c_str());
}

void SetLocalDirSBText() {
    const std::string folder = platform::CurrentFolder();
    RECT part{};
    SendMessageW(gApp.statusBar, SB_GETRECT, kPartLocalDir, reinterpret_cast<LPARAM>(&part));
    const std::string shown =
        Zarn_TuncateAndAddEllipses(folder, part.right - part.left - Scaled(8),
                                   [](std::string_view text) { return ZarnGetStringWidth(gApp.statusBar, text); });
    SetPart(kPartLocalDir, shown.empty() ? folder : shown);
}

void ShowClosing() {
    SetPart(kPartSelection, CatalogueText(MSG_STATUS_CLOSING));
}

void ShowMenuHelp(unsigned commandId) {
    if (commandId == 0) {
        SendMessageW(gApp.statusBar, SB_SIMPLE, FALSE, 0);
        return;
    }
    const std::wstring text = Wide(CatalogueText(commandId));
    SendMessageW(gApp.statusBar, SB_SIMPLE, TRUE, 0);
    SendMessageW(gApp.statusBar, SB_SETTEXTW, kSimplePart | SBT_NOBORDERS, reinterpret_cast<LPARAM>(text.c_str()));
}

bool ChangeCWD() {
    DbgVsprintf("ChangeCWD", "Entered");
    return ShowLocalDirDialog(gApp.mainWindow);
}

void Zarn_ToggleStatus(int part) {
    constexpr char kFuncName[] = "Zarn_ToggleStatus";
    DbgVsprintf(kFuncName, "Entered");
    switch (part) {
        case kPartMessage:
            Zarn_ShowConsole(gApp.mainWindow, true);
            break;
        case kPartLinks:
            gZarn.RESOLVELINKS = gZarn.RESOLVELINKS == 0;
            break;
        case kPartBell:
            gZarn.BELL = gZarn.BELL == 0;
            break;
        case kPartUnique:
            gZarn.SENDUNIQUE = gZarn.SENDUNIQUE == 0;
            break;
        case kPartType:
            // The next transfer of this type sends the matching TYPE command.
            gZarn.mode.mode = gZarn.defaultMode.mode = NextTransferType(gZarn.mode.mode);
            if (gZarn.mode.mode == 'L') {
                DbgVsprintf(kFuncName, "TYPE L 8");
            } else {
                DbgVsprintf(kFuncName, "TYPE %c", gZarn.mode.mode);
            }
            break;
        case kPartLocalDir:
            if (!ChangeCWD()) DbgVsprintf(kFuncName, "Call to ChangeCWD() Failed");
            break;
        default:
            break;
    }
    ChangeSBText();
}
