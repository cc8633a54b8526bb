#include "ui/browse/list_update.h"

#include <windows.h>

#include <string>
#include <utility>

#include "foundation/catalogue.h"
#include "foundation/date_text.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/keep_alive.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "listing/entry_properties.h"
#include "listing/listing_driver.h"
#include "listing/local_listing.h"
#include "listing/lost_connection.h"
#include "listing/symlinks.h"
#include "platform/files.h"
#include "ui/browse/item_path.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"

namespace {

constexpr char kFuncName[] = "LV_ResolveObject";

void CountTarget(TVobject* folder, const LVobject& entry) {
    if (entry.type == kKindLink) return;
    if (folder->links > 0) --folder->links;
    ++(entry.type == kKindFolder ? folder->folders : folder->files);
    folder->bytes += entry.size;
}

// A link to a folder opens like a folder, so it needs a node.
void AddFolderNode(TVobject* folder, LVobject* entry) {
    if (entry->type != kKindFolder) return;
    const std::string_view name = entry->name.view();
    TVobject* node = TV_FindChild(folder, name);
    if (node == nullptr) {
        node = AddChildNode(folder, name, kKindFolder);
        SortChildren(folder);
        RefreshNode(folder);
    }
    if (node != nullptr) entry->node = node;
}

// On the window's thread.
void ShowTarget(TVobject* folder, LVobject* entry, SymLinkItem& item) {
    const int index = IndexOfEntry(entry);
    if (index < 0 || !ApplyLinkTarget(item, entry)) return;
    CountTarget(folder, *entry);
    AddFolderNode(folder, entry);
    RedrawEntry(index);
    SelectOnly(index);
    SetFocus(ListWindow());
    RefreshWindowState();
}

void TellUnresolved(Site* site, const std::string& name, int result) {
    if (StopRequested()) return;
    DoPrintIdArgs(MSG_LINK_NOT_RESOLVED, name);
    const bool broken = result == SOCKET_ERROR || result == FTP_CLOSE || !HasControlSocket(site);
    if (broken && EndLostConnection(kFuncName, site, result, "")) return;
    const OwnedText text = Zarn_ResVsprintf(MSG_LINK_NOT_RESOLVED, name);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

void ResolveOnServer(Site* site, TVobject* folder, LVobject* entry) {
    if (!gSession.exiting) SetTransferAbort(false);
    // Relative targets are resolved from the session's current directory.
    if (!ServerReadyForCmd(site, true) || !TV_PreSelect(folder)) {
        DbgVsprintf(kFuncName, "ERROR. Server NOT Ready. Returning.");
        return;
    }
    const std::string name = ShownName(entry->name.view());
    int result = FTP_ERROR;
    const SymLinkItemPtr item = Zarn_ResolveSymLink(site, TV_GetPath(folder).c_str(), entry, result);
    if (!item || item->object == nullptr) {
        TellUnresolved(site, name, result);
        return;
    }
    RunOnUi([&] { ShowTarget(folder, entry, *item); });
}

// On the window's thread; does nothing when the list no longer has the entry.
void TakeProperties(LVobject* entry, FtpProp& prop) {
    const int index = IndexOfEntry(entry);
    if (index < 0) return;
    entry->mode = std::move(prop.umask);
    entry->owner = std::move(prop.owner);
    entry->group = std::move(prop.group);
    entry->links = prop.links;
    entry->size = prop.size;
    entry->sizeText.reset();
    entry->time = prop.time;
    entry->dateText = Zarn_GetFileTimeString(&entry->time);
    RedrawEntry(index);
    RefreshWindowState();
}

void UpdateLocal(LVobject* entry, const TVobject* folder) {
    platform::FileInfo info;
    if (!platform::GetFileInfo(ItemPath(folder, entry->name.view()).c_str(), info)) return;
    RunOnUi([&] {
        const int index = IndexOfEntry(entry);
        if (index < 0) return;
        entry->time = info.writeTime;
        entry->dateText = Zarn_GetFileTimeString(&entry->time);
        RedrawEntry(index);
    });
}

}  // namespace

void LV_ResolveObject(int index) {
    DbgVsprintf(kFuncName, "Entered");
    LVobject* entry = EntryAt(index);
    TVobject* folder = ListedFolder();
    if (entry == nullptr || entry->type != kKindLink || folder == nullptr || IsLocalNode(folder)) return;
    Site* site = TV_GetFtpSite(folder);
    if (site == nullptr || site->bConnected == 0) return;
    SelectOnly(index);
    StartWorker(kFuncName, [=] { ResolveOnServer(site, folder, entry); });
}

void LV_UpdateObject(LVobject* entry) {
    DbgVsprintf("LV_UpdateObject", "Entered");
    TVobject* folder = RunOnUi([] { return ListedFolder(); });
    if (entry == nullptr || folder == nullptr || StopRequested()) return;
    if (IsLocalNode(folder)) {
        UpdateLocal(entry, folder);
        return;
    }
    const FtpPropPtr prop(AllocateFtpProp());
    if (!prop || Zarn_GetLVProp(prop.get(), entry) != FTP_COMPLETE) return;
    RunOnUi([&] { TakeProperties(entry, *prop); });
}
