#include "config/store_fixture.h"

#include <algorithm>

#include "config/file_types.h"
#include "config/icon_info.h"
#include "config/settings.h"
#include "config/store_key.h"
#include "foundation/trace.h"
#include "platform/threads.h"
#include "support/host_registry.h"

#ifdef _WIN32
#include <windows.h>

#include <shlwapi.h>
#endif

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

void RemoveClassKey(const std::string& key) {
#ifdef _WIN32
    ::SHDeleteKeyA(HKEY_CLASSES_ROOT, key.c_str());
#else
    (void)key;
    host_registry::Clear();
#endif
}

}  // namespace

void StoreTest::SetUp() {
    const std::string root = "Software\\ZarnTest" + std::to_string(platform::CurrentProcessId());
    SetStoreRoot(root.c_str());
    platform::DeleteRegistryTree(root);
    gZarn = ZarnSettings();
    FreeFileTypes();
}

void StoreTest::TearDown() {
    gTrace.verbose = false;
    gTrace.debug = false;
    gTrace.logging = false;
    platform::DeleteRegistryTree(StoreKeyPath(""));
    for (const std::string& key : classKeys_) RemoveClassKey(key);
    SetStoreRoot(nullptr);
    gZarn = ZarnSettings();
    gIconView = {};
    FreeFileTypes();
}

RegistryKey StoreTest::Key(const std::string& subkey) {
    return RegistryKey::Create(RegistryRoot::CurrentUser, StoreKeyPath(subkey), nullptr);
}

RegistryKey StoreTest::Open(const std::string& subkey) {
    return RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(subkey));
}

bool StoreTest::Exists(const std::string& subkey) {
    return platform::RegistryKeyExists(RegistryRoot::CurrentUser, StoreKeyPath(subkey));
}

std::vector<std::string> StoreTest::Subkeys(const std::string& subkey) {
    std::vector<std::string> names;
    const RegistryKey key = Open(subkey);
    if (key.IsOpen()) key.ListSubkeys(names);
    return names;
}

bool StoreTest::HasSubkey(const std::string& subkey, const std::string& exactName) {
    const std::vector<std::string> names = Subkeys(subkey);
    return std::find(names.begin(), names.end(), exactName) != names.end();
}

void StoreTest::RecordTraces() {
    gTrace.verbose = true;
    gTrace.debug = true;
}

bool StoreTest::SetClassText(const std::string& key, const std::string& text) {
    RegistryKey opened = RegistryKey::Create(RegistryRoot::ClassesRoot, key, nullptr);
    if (!opened.IsOpen()) return false;
    classKeys_.push_back(key.substr(0, key.find('\\')));
    return opened.WriteText("", text) == 0;
}

bool StoreTest::GiveClass(const std::string& extension, const std::string& className) {
    return SetClassText(extension, className);
}

SitePtr MakeSite(const char* name, const char* host, const char* user) {
    SitePtr site(Zarn_CreateDefaultSite(name));
    site->pszHost = OwnedText::Copy(host);
    site->pszUID = OwnedText::Copy(user);
    return site;
}
