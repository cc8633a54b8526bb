#include "ui/browse/item_path.h"

#include "foundation/path_join.h"
#include "listing/local_listing.h"

std::string ItemPath(const TVobject* folder, std::string_view name) {
    if (IsLocalNode(folder)) return JoinLocalPath(LocalNodePath(folder), name);
    return JoinRemotePath(TV_GetPath(folder).view(), name, NodeSeparator(folder));
}
