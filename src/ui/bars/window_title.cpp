#include "ui/bars/window_title.h"

#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "ftp/worker/site_status.h"

namespace {

std::string SiteTitle(const Site& site, const std::string& shortName) {
    return shortName + " " + site.pszSessionName.c_str();
}

}  // namespace

std::string MainWindowTitle(const TVobject* node, const std::string& shortName, const std::string& longName,
                            const std::string& computer) {
    if (node == nullptr) return longName;
    const Site* site = node->wObjType == kKindAddSite ? nullptr : TV_GetFtpSite(node);
    switch (node->wObjType) {
        case kKindAddSite:
        case kKindLocalRoot:
        case kKindLocalFolder:
            return longName;
        case kKindSite: {
            if (node->pSite == nullptr) return longName;
            const SiteStatus status = StatusOf(*node->pSite);
            const std::string title = SiteTitle(*node->pSite, shortName);
            return status.connected && !status.currentDirectory.empty() ? title + "::" + status.currentDirectory
                                                                        : title;
        }
        case kKindSiteRoot:
        case kKindFolder:
            return site == nullptr ? longName : SiteTitle(*site, shortName) + "::" + StatusOf(*site).currentDirectory;
        case kKindLocalComputer:
            return shortName + " : " + computer;
        default:
            DbgVsprintf("Zarn_SetMainWindowText", "ERROR. UNKNOWN OBJ Type:%d for %x:%s",
                        static_cast<int>(node->wObjType), TraceAddress(node), node->pszName.c_str());
            return longName;
    }
}
