#include "ui/commands/help.h"

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/wide_text_window.h"
#include "platform/files.h"
#include "ui/screen/app.h"

std::string HelpFileFor(const std::string& programPath) {
    const std::size_t extension = AsciiLower(programPath).rfind(".exe");
    if (extension == std::string::npos) return {};
    return programPath.substr(0, extension) + ".hlp" + programPath.substr(extension + 4);
}

void ShowHelpContents(HWND window) {
    platform::FileInfo info;
    if (!platform::GetFileInfo(gApp.helpFile.c_str(), info)) {
        ShowMessageBox(Zarn_ResVsprintf(MSG_BOX_NO_HELP_FILE, gApp.helpFile).c_str(), nullptr, BoxButtons::Ok,
                       BoxIcon::Information);
        return;
    }
    WinHelpW(window, Wide(gApp.helpFile).c_str(), HELP_CONTENTS, 0);
}

void CloseHelp(HWND window) {
    WinHelpW(window, Wide(gApp.helpFile).c_str(), HELP_QUIT, 0);
}
