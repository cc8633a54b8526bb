#include "ftp/login/local_host.h"

#include <atomic>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "ftp/errors/error_texts.h"
#include "ftp/login/host_lookup.h"
#include "ftp/worker/session_state.h"
#include "platform/address_text.h"
#include "platform/system.h"

namespace {

// A look-up takes ten seconds to fail when the name server is dead; start-up does not wait that long.
constexpr std::uint32_t kLocalLookupMilliseconds = 3000;

std::string gLocalHostName;

void ReportUnknownAddress(int error) {
    DbgPrintSocketError("GetLocalInfo", "gethostbyname(localhost)", platform::kNoSocket, error);
    const std::string reason = GetWsaErrorText(error).c_str();
    DoPrintIdArgs(MSG_LOCAL_ADDRESS_UNKNOWN, reason);
    static std::atomic<bool> shown{false};
    if (shown.exchange(true)) return;
    const OwnedText text = Zarn_ResVsprintf(MSG_CANNOT_RESOLVE_LOCAL_HOST, reason);
    if (text) ShowMessageBox(text.get(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

}  // namespace

bool GetLocalInfo(const char* socketLibrary) {
    constexpr char kFuncName[] = "GetLocalInfo";
    const std::string name = platform::ComputerName();
    if (name.empty()) {
        DbgPrintApiError(kFuncName, "GetComputerName()", platform::LastSystemError());
        return false;
    }
    gLocalHostName = platform::LocaleLower(name);
    DoPrintIdArgs(MSG_LOCAL_HOST_NAME, name);
    const LookupResult found = LookUpHost(name, kLocalLookupMilliseconds, LookupFor::StartUp);
    if (found.end == LookupEnd::Found) {
        for (const std::uint32_t address : found.addresses)
            DoPrintIdArgs(MSG_LOCAL_ADDRESS, platform::AddressText(address));
        gSession.localAddress = found.addresses.front();
    }
    DoPrintIdArgs(MSG_SOCKET_LIBRARY, socketLibrary);
    DoPrintIdArgs(MSG_SOCKET_LIBRARY_READY);
    if (found.end == LookupEnd::Found) return true;
    ReportUnknownAddress(found.error);
    return false;
}

const char* LocalHostName() {
    return gLocalHostName.c_str();
}
