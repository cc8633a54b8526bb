#include "listing/tree_node.h"

#include <algorithm>
#include <new>

#include "config/host_types.h"
#include "foundation/error_report.h"
#include "ftp/worker/session_state.h"

namespace {

constexpr char kLocalSeparator = '\\';

// A folder below a root: its name is one component of the path.
bool IsPathComponent(const TVobject* node) {
    return IsFolderKind(node->wObjType) && !IsRootKind(node->wObjType);
}

}  // namespace

TVobject* AllocateTVobject(std::string_view name, std::uint32_t kind) {
    auto* node = new (std::nothrow) TVobject();
    if (node == nullptr) {
        ShowNoMemoryError();
        return nullptr;
    }
    node->pszName = OwnedText::Copy(name);
    node->wObjType = kind;
    if (!node->pszName) {
        delete node;
        ShowNoMemoryError();
        return nullptr;
    }
    return node;
}

void Zarn_FreeTVobject(TVobject* node) {
    if (node == nullptr) return;
    Zarn_FreeSite(node->pSite, true);
    delete node;
}

TVobject* AddChildNode(TVobject* parent, std::string_view name, std::uint32_t kind) {
    if (parent == nullptr) return nullptr;
    TVobject* child = AllocateTVobject(name, kind);
    if (child == nullptr) return nullptr;
    child->pTVparent = parent;
    parent->children.emplace_back(child, Zarn_FreeTVobject);
    ++parent->nChildren;
    return child;
}

TVobject* TV_FindChild(TVobject* parent, std::string_view name) {
    if (parent == nullptr) return nullptr;
    for (const auto& child : parent->children) {
        if (child->pszName.view() == name) return child.get();
    }
    return nullptr;
}

void RemoveChildNode(TVobject* parent, TVobject* child) {
    if (parent == nullptr) return;
    const auto found = std::find_if(parent->children.begin(), parent->children.end(),
                                    [child](const auto& owned) { return owned.get() == child; });
    if (found == parent->children.end()) return;
    parent->children.erase(found);
    if (parent->nChildren > 0) --parent->nChildren;
}

Site* TV_GetFtpSite(const TVobject* node) {
    if (node == nullptr) return gSession.activeSite.load();
    while (node->pTVparent != nullptr) node = node->pTVparent;
    return node->pSite;
}

char NodeSeparator(const TVobject* node) {
    const Site* site = TV_GetFtpSite(node);
    if (site == nullptr || site->dwCurType == HOST_TYPE_LOCAL) return kLocalSeparator;
    return site->chSeparator != 0 ? static_cast<char>(site->chSeparator) : '/';
}

OwnedText TV_GetPath(const TVobject* node) {
    if (node == nullptr) return OwnedText();
    if (IsRootKind(node->wObjType)) return OwnedText::Copy(node->pszName.view());
    const char separator = NodeSeparator(node);
    std::vector<const TVobject*> chain;
    for (; node != nullptr && IsPathComponent(node); node = node->pTVparent) chain.push_back(node);
    // Quirk: the root's own name is not part of the path, kept.
    std::string path;
    for (auto level = chain.rbegin(); level != chain.rend(); ++level) {
        path += separator;
        path += (*level)->pszName.view();
    }
    return OwnedText::Copy(path);
}
