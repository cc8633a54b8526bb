#include "ui/bars/titles.h"

#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/login/local_host.h"
#include "ui/bars/window_title.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"

void Zarn_SetMainWindowText() {
    DbgVsprintf("Zarn_SetMainWindowText", "Entered");
    const std::string title = MainWindowTitle(SelectedNode(), gApp.shortName, gApp.longName, LocalHostName());
    // Setting the same text again would flicker.
    if (title != GetText(gApp.mainWindow)) SetText(gApp.mainWindow, title);
}
