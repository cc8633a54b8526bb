#include "ui/browse/command_context.h"

#include "config/host_types.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/site_status.h"
#include "listing/local_listing.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"

Site* SelectedSite() {
    const TVobject* node = SelectedNode();
    if (node == nullptr || node->wObjType == kKindAddSite || node->wObjType == kKindLocalComputer) return nullptr;
    Site* site = TV_GetFtpSite(node);
    // The local computer uses a Site record but is not a site.
    return site == nullptr || StatusOf(*site).hostType == HOST_TYPE_LOCAL ? nullptr : site;
}

bool CommandsRefused() {
    return OperationRunning() || gSession.exiting;
}

CommandContext CurrentCommandContext() {
    CommandContext context;
    context.focus = gApp.focus == Pane::Tree   ? CommandContext::Focus::Tree
                    : gApp.focus == Pane::List ? CommandContext::Focus::List
                                               : CommandContext::Focus::None;
    const TVobject* node = SelectedNode();
    if (node != nullptr) context.nodeKind = node->wObjType;
    const Site* site = SelectedSite();
    context.siteConnected = site != nullptr && site->bConnected != 0;
    context.hostType = IsLocalNode(ListedFolder()) ? HOST_TYPE_LOCAL
                       : site != nullptr           ? StatusOf(*site).hostType
                                                   : HOST_TYPE_AUTO;
    context.listItems = EntryCount();
    context.selected = SelectedCount();
    if (context.selected > 0 && context.focus == CommandContext::Focus::List) {
        const LVobject* first = EntryAt(FirstSelected());
        if (first != nullptr) context.firstKind = first->type;
        context.anyFileSelected = AnyFileSelected();
    }
    context.viewStyle = static_cast<std::uint32_t>(gZarn.uiStyle);
    context.columns = gZarn.COLUMNS;
    return context;
}
