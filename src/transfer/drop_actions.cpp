#include "transfer/drop_actions.h"

#include <cstdint>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/session_state.h"

namespace {

unsigned TracedAddress(const Site* site) {
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(site));
}

const char* TracedName(const Site* site) {
    return site != nullptr ? site->pszSessionName.c_str() : "";
}

}  // namespace

bool ReadyForDrop(Site* site) {
    if (site == nullptr || site->bConnected == 0) {
        ShowMessageBox(CatalogueText(MSG_NOT_CONNECTED_FILES_IGNORED).c_str(), nullptr, BoxButtons::Ok,
                       BoxIcon::Exclamation);
        return false;
    }
    if (OperationRunning()) {
        DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
        return false;
    }
    const Site* active = gSession.activeSite;
    if (active != site) {
        DbgVsprintf("drop_files_fx", "(WARNING) Sites Dont match!(Global:%x:%s, Param:%x:%s", TracedAddress(active),
                    TracedName(active), TracedAddress(site), TracedName(site));
        SetActiveSite(site);
    }
    return true;
}
