#include "ui/browse/list_edit.h"

#include <commctrl.h>
#include <shellapi.h>

#include <string>
#include <utility>
#include <vector>

#include "config/file_types.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/control/keep_alive.h"
#include "ftp/control/remote_commands.h"
#include "ftp/errors/server_error.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/site_status.h"
#include "ftp/worker/worker.h"
#include "listing/local_listing.h"
#include "platform/files.h"
#include "platform/system.h"
#include "ui/browse/item_path.h"
#include "ui/browse/list_update.h"
#include "ui/browse/tree_edit.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"

namespace {

constexpr char kFuncName[] = "LV_HandleEndLabelEdit";
constexpr int kLongestLabel = 260;

// The entry of a new folder while the user types its name; there is no such folder yet.
const LVobject* gNewFolder = nullptr;

bool CanBeRenamed(const LVobject& entry) {
    return entry.type != kKindSiteRoot && entry.type != kKindLocalRoot && entry.type != kKindLocalComputer;
}

// How to name an item to the server: by its name alone in the session's current directory, else by its path.
std::string RemoteName(const TVobject* folder, const Site* site, std::string_view name) {
    if (TV_GetPath(folder).view() == StatusOf(*site).currentDirectory) return std::string(name);
    return ItemPath(folder, name);
}

void RemoveEntry(const LVobject* entry) {
    const int index = IndexOfEntry(entry);
    if (index >= 0) LV_DeleteItem(index);
    RefreshWindowState();
}

void SelectAfterDeletion(int index) {
    const int count = EntryCount();
    if (count > 0) SelectOnly(index < count ? index : count - 1);
    RefreshWindowState();
}

// Removes the entry of a folder that was not named or could not be made.
void DropNewFolder(const LVobject* entry) {
    const int index = IndexOfEntry(entry);
    if (index < 0) return;
    LV_DeleteItem(index);
    SelectAfterDeletion(index);
}

// Shows the entry under its new name after a rename, or after the folder was made.
void TakeNewName(LVobject* entry, const std::string& name) {
    const int index = IndexOfEntry(entry);
    if (index < 0) return;
    const std::string old(EntryName(*entry));
    const std::string rest(entry->name.view().substr(old.size()));  // a link's " -> " and target
    entry->name = OwnedText::Copy(name + rest);
    if (!IsFolderKind(entry->type)) entry->fileType = FileTypeOf(name, false);
    if (IsFolderKind(entry->type) && entry->node != nullptr && entry->node != ListedFolder()) {
        entry->node->pszName = OwnedText::Copy(name);
        RefreshNode(entry->node);
    }
    RedrawEntry(index);
    RefreshWindowState();
}

void RenameEntry(LVobject* entry, const std::string& newName) {
    TVobject* folder = ListedFolder();
    Site* site = TV_GetFtpSite(folder);
    const std::string oldName(EntryName(*entry));
    const bool local = IsLocalNode(folder);
    if (site == nullptr || (!local && site->bConnected == 0)) return;
    const std::string from = local ? ItemPath(folder, oldName) : RemoteName(folder, site, oldName);
    const std::string to = local ? ItemPath(folder, newName) : RemoteName(folder, site, newName);
    StartWorker(kFuncName, [=] {
        bool renamed = false;
        if (local) {
            renamed = platform::MoveFilePath(from.c_str(), to.c_str(), false);
            if (!renamed) ShowApiError(platform::LastSystemError());
        } else {
            renamed = ServerReadyForCmd(site, true) && RenameRemoteItem(site, from.c_str(), to.c_str());
        }
        if (!renamed) return;
        RunOnUi([&] { TakeNewName(entry, newName); });
        LV_UpdateObject(entry);
    });
}

void FinishNewFolder(LVobject* entry, TVobject* folder, const std::string& name, bool made) {
    if (!made) {
        DropNewFolder(entry);
        return;
    }
    if (TVobject* node = TV_AddItem(folder, name, entry->type, NameCheck::Unique)) {
        entry->node = node;
        ++folder->folders;
    }
    TakeNewName(entry, name);
}

void MakeNamedFolder(LVobject* entry, const std::string& name) {
    TVobject* folder = ListedFolder();
    Site* site = TV_GetFtpSite(folder);
    const bool local = IsLocalNode(folder);
    const std::string path = local ? ItemPath(folder, name) : RemoteName(folder, site, name);
    const bool started = StartWorker("newfolder_fx", [=] {
        bool made = false;
        if (local) {
            made = platform::CreateFolder(path.c_str());
            if (!made) ShowApiError(platform::LastSystemError());
        } else {
            made = ServerReadyForCmd(site, true) && MakeRemoteDirectory(site, path.c_str());
        }
        RunOnUi([&] { FinishNewFolder(entry, folder, name, made); });
        if (made) LV_UpdateObject(entry);
    });
    if (!started) DropNewFolder(entry);
}

LVobjectPtr NewFolderEntry(TVobject* folder) {
    const std::string name = CatalogueText(MSG_NEW_FOLDER_NAME);
    const Site* site = TV_GetFtpSite(folder);
    LVobjectTemplate filling;
    filling.name = name.c_str();
    filling.mode = "d---------";
    filling.owner = site != nullptr ? site->pszUID.c_str() : "";
    filling.group = "group";
    filling.links = 1;
    filling.stampTime = true;
    LVobjectPtr entry(AllocateLVobject(&filling));
    if (!entry) return nullptr;
    entry->node = folder;
    entry->type = IsLocalNode(folder) ? kKindLocalFolder : kKindFolder;
    entry->fileType = FileTypeOf(name, true);
    return entry;
}

bool IsConfirmed(const LVobject& entry) {
    if (gZarn.PROMPT == 0) return true;
    const OwnedText question = Zarn_ResVsprintf(MSG_BOX_DELETE_ITEM, ShownName(EntryName(entry)));
    return ShowMessageBox(question.c_str(), nullptr, BoxButtons::YesNo, BoxIcon::Question) == BoxAnswer::Yes;
}

// Moves the item to the recycle bin where there is one.
bool DeleteLocally(const std::string& path) {
    std::wstring from = Wide(path);
    from.push_back(L'\0');  // the list of names ends with two
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = from.c_str();
    operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
    const int error = SHFileOperationW(&operation);
    if (error != 0) ShowApiError(static_cast<std::uint32_t>(error));
    return error == 0 && operation.fAnyOperationsAborted == FALSE;
}

bool DeleteRemotely(Site* site, const TVobject* folder, const LVobject& entry) {
    const std::string name = RemoteName(folder, site, EntryName(entry));
    char reply[kReplySize] = "";
    const bool isFolder = entry.type == kKindFolder;
    const int result = isFolder ? DoRMD(site, name.c_str(), reply) : DoDELE(site, name.c_str(), reply);
    if (result == FTP_COMPLETE) return true;
    gSessionView.showServerError(isFolder ? kOperationRemoveDirectory : kOperationRename, reply);
    return false;
}

// Runs on the worker. False ends the deletion of a selection.
bool LV_DeleteFile(TVobject* folder, LVobject* entry) {
    DbgVsprintf("LV_DeleteFile", "Entered");
    if (!IsConfirmed(*entry)) return false;
    const bool local = IsLocalNode(folder);
    const bool deleted = local ? DeleteLocally(ItemPath(folder, EntryName(*entry)))
                               : DeleteRemotely(TV_GetFtpSite(folder), folder, *entry);
    if (!deleted) return false;
    RunOnUi([&] {
        folder->bytes -= entry->size <= folder->bytes ? entry->size : folder->bytes;
        TVobject* node = IsFolderKind(entry->type) && entry->node != folder ? entry->node : nullptr;
        RemoveEntry(entry);
        if (node != nullptr) TV_DeleteNode(node);
    });
    return true;
}

}  // namespace

bool LV_BeginLabelEdit(int index) {
    LVobject* entry = EntryAt(index);
    if (entry == nullptr || OperationRunning() || gSession.exiting || !CanBeRenamed(*entry)) return false;
    HWND edit = ListView_GetEditControl(ListWindow());
    if (edit == nullptr) return true;
    SendMessageW(edit, EM_LIMITTEXT, kLongestLabel, 0);
    if (entry->type == kKindLink) SetText(edit, ShownName(EntryName(*entry)));
    return true;
}

void LV_HandleEndLabelEdit(int index, const wchar_t* newText) {
    LVobject* entry = EntryAt(index);
    if (entry == nullptr) return;
    const bool isNew = entry == gNewFolder;
    gNewFolder = nullptr;
    const std::string oldName = ShownName(EntryName(*entry));
    const std::string newName = newText != nullptr ? Narrow(newText) : oldName;
    if (newName == oldName) {
        if (isNew) {
            DbgVsprintf(kFuncName, " NO CHANGE - Deleting the ListView Object !!!!");
            DropNewFolder(entry);
        }
        return;
    }
    if (newName.empty()) {
        if (isNew) DropNewFolder(entry);
    } else if (isNew) {
        MakeNamedFolder(entry, newName);
    } else {
        RenameEntry(entry, newName);
    }
    RefreshWindowState();
}

void newfolder_fx(TVobject* folder) {
    DbgVsprintf("newfolder_fx", "Entered");
    if (folder == nullptr || OperationRunning()) return;
    if (folder != ListedFolder()) {
        NameNewFolderInTree(folder);
        return;
    }
    LVobjectPtr entry = NewFolderEntry(folder);
    if (!entry) return;
    gNewFolder = entry.get();
    const int index = LV_AddItem(std::move(entry));
    if (index < 0) return;
    SetFocus(ListWindow());
    SelectOnly(index);
    ListView_EditLabel(ListWindow(), index);
}

bool delete_fx() {
    static constexpr char kDeleteFuncName[] = "delete_fx";
    TVobject* folder = ListedFolder();
    std::vector<LVobject*> entries;
    int left = SelectedCount();
    for (int i = -1; left > 0 && (i = ListView_GetNextItem(ListWindow(), i, LVNI_SELECTED)) >= 0; --left) {
        entries.push_back(EntryAt(i));
    }
    if (entries.empty() || folder == nullptr) {
        DbgVsprintf(kDeleteFuncName, "ERROR. Nothing was selected. Returning -1");
        return false;
    }
    return StartWorker(kDeleteFuncName, [folder, entries] {
        Site* site = TV_GetFtpSite(folder);
        if (!IsLocalNode(folder) && (site == nullptr || !ServerReadyForCmd(site, true))) return;
        if (!gSession.exiting) SetTransferAbort(false);
        int last = 0;
        int deleted = 0;
        for (LVobject* entry : entries) {
            last = RunOnUi([entry] { return IndexOfEntry(entry); });
            if (gSession.transferAbort || !LV_DeleteFile(folder, entry)) break;
            ++deleted;
        }
        const int result = deleted == static_cast<int>(entries.size()) ? 0 : -1;
        DbgVsprintf(kDeleteFuncName, "Done. Deleted %d Items. Returning %d", deleted, result);
        RunOnUi([last] { SelectAfterDeletion(last); });
    });
}
