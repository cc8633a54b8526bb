#include "config/store_key.h"

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

std::string& StoreRoot() {
    static std::string root = kRootKey;
    return root;
}

}  // namespace

void SetStoreRoot(const char* root) {
    StoreRoot() = root != nullptr ? root : kRootKey;
}

std::string StoreKeyPath(const std::string& subkey) {
    return subkey.empty() ? StoreRoot() : StoreRoot() + "\\" + subkey;
}

RegistryKey OpenStoreKey(const std::string& subkey, bool* created) {
    const std::string path = StoreKeyPath(subkey);
    RegistryKey key = RegistryKey::Create(RegistryRoot::CurrentUser, path, created);
    if (!key.IsOpen()) {
        const OwnedText text = Zarn_ResVsprintf(MSG_CANNOT_CREATE_KEY, path);
        ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
    }
    return key;
}

void ReportFailedWrite(const char* callerName, std::string_view valueName, int error) {
    if (error == 0) return;
    const std::string call = "RegSetValueEx(" + std::string(valueName) + ")";
    DbgPrintApiError(callerName, call.c_str(), static_cast<std::uint32_t>(error));
}
