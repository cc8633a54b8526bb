#include "ui/browse/local_computer.h"

#include <windows.h>

#include <vector>

#include "config/host_types.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/worker.h"
#include "listing/local_listing.h"
#include "platform/files.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/ui_calls.h"

namespace {

std::string ComputerName() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = L"";
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    if (!GetComputerNameW(name, &length) || length == 0) return CatalogueText(MSG_LOCAL_COMPUTER);
    return Narrow(name);
}

}  // namespace

TVobject* AddLocalComputer() {
    SitePtr site(Zarn_CreateDefaultSite(ComputerName().c_str()));
    if (!site) return nullptr;
    site->dwType = site->dwCurType = HOST_TYPE_LOCAL;
    TVobject* node = AddTopNode(std::move(site), kKindLocalComputer, TVI_LAST);
    if (node == nullptr) return nullptr;
    for (const std::string& name : platform::DriveNames()) AddChildNode(node, name, kKindLocalRoot);
    RefreshNode(node);
    return node;
}

void OpenLocalNodeInPlace(TVobject* node) {
    const std::string path = LocalNodePath(node);
    StartWorker("OpenLocalNodeInPlace", [node, path] {
        std::vector<platform::FileInfo> files;
        if (!platform::ListFolder(path.c_str(), files)) return;
        RunOnUi([&] {
            for (const platform::FileInfo& info : files) {
                if (info.isFolder) AddChildNode(node, info.name, kKindLocalFolder);
            }
            SortChildren(node);
            node->listed = node->children.empty();
            RefreshNode(node);
            ExpandNode(node);
        });
    });
}
