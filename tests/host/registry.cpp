#include "platform/registry.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "../support/host_registry.h"
#include "fault_injection.h"
#include "host_errors.h"
#include "host_handles.h"
#include "platform/system.h"

namespace platform {
namespace {

enum class ValueType { Text, Number, Bytes };

struct Value {
    ValueType type = ValueType::Bytes;
    std::vector<std::uint8_t> data;
};

// Names are kept as given and found without case; the map's order is the order of enumeration.
struct Key {
    std::string name;
    std::map<std::string, std::shared_ptr<Key>> subkeys;
    std::map<std::string, Value> values;
    bool deleted = false;
};
using KeyReference = std::shared_ptr<Key>;

struct Registry {
    std::recursive_mutex guard;
    KeyReference currentUser = std::make_shared<Key>();
    KeyReference classesRoot = std::make_shared<Key>();
    int refusal = 0;
};

Registry& Store() {
    static Registry store;
    return store;
}

const KeyReference& RootKey(RegistryRoot root) {
    return root == RegistryRoot::CurrentUser ? Store().currentUser : Store().classesRoot;
}

std::vector<std::string> SplitPath(const std::string& path) {
    std::vector<std::string> names(1);
    for (const char character : path) {
        if (character != '\\') {
            names.back().push_back(character);
        } else if (!names.back().empty()) {
            names.emplace_back();
        }
    }
    if (names.back().empty()) names.pop_back();
    return names;
}

KeyReference FindKey(const KeyReference& root, std::span<const std::string> names) {
    KeyReference key = root;
    for (const std::string& name : names) {
        const auto found = key->subkeys.find(LocaleLower(name));
        if (found == key->subkeys.end()) return nullptr;
        key = found->second;
    }
    return key;
}

KeyReference MakeKey(const KeyReference& root, std::span<const std::string> names, bool& created) {
    KeyReference key = root;
    created = false;
    for (const std::string& name : names) {
        KeyReference& subkey = key->subkeys[LocaleLower(name)];
        if (subkey == nullptr) {
            subkey = std::make_shared<Key>();
            subkey->name = name;
            created = true;
        }
        // A copy first: assigning through the parent's map would free the parent.
        const KeyReference next = subkey;
        key = next;
    }
    return key;
}

void MarkDeleted(Key& key) {
    key.deleted = true;
    for (const auto& [name, subkey] : key.subkeys) MarkDeleted(*subkey);
}

// The key of an open handle; null, with the last error set, when there is none or it was deleted meanwhile.
Key* KeyOf(RegistryKeyHandle handle) {
    if (handle == kNoKey) {
        host::Fail(host::kErrorInvalidHandle);
        return nullptr;
    }
    Key* const key = host::FromHandle<KeyReference>(handle)->get();
    if (!key->deleted) return key;
    host::Fail(host::kErrorKeyDeleted);
    return nullptr;
}

const Value* FindValue(RegistryKeyHandle handle, const char* name, ValueType type) {
    const Key* const key = KeyOf(handle);
    if (key == nullptr) return nullptr;
    const auto found = key->values.find(LocaleLower(name));
    if (found == key->values.end()) {
        host::Fail(host::kErrorFileNotFound);
        return nullptr;
    }
    return found->second.type == type ? &found->second : nullptr;
}

int WriteValue(RegistryKeyHandle handle, const char* name, ValueType type, const void* data, std::size_t size) {
    Registry& store = Store();
    const std::lock_guard lock(store.guard);
    if (fault_injection::Strikes(fault_injection::Call::RegistryWrite)) return static_cast<int>(LastSystemError());
    if (store.refusal != 0) return store.refusal;
    Key* const key = KeyOf(handle);
    if (key == nullptr) return static_cast<int>(LastSystemError());
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    key->values[LocaleLower(name)] = {type, size == 0 ? std::vector<std::uint8_t>() : std::vector(bytes, bytes + size)};
    return 0;
}

RegistryKeyHandle NewHandle(const KeyReference& key) {
    return host::ToHandle(new KeyReference(key));
}

// Takes the last key of a path out of its parent.
KeyReference Detach(std::span<const std::string> names) {
    const KeyReference parent = FindKey(Store().currentUser, names.first(names.size() - 1));
    if (parent == nullptr) return nullptr;
    const auto found = parent->subkeys.find(LocaleLower(names.back()));
    if (found == parent->subkeys.end()) return nullptr;
    KeyReference key = found->second;
    parent->subkeys.erase(found);
    return key;
}

// True when `names` is below `ancestor`.
bool IsBelow(std::span<const std::string> names, std::span<const std::string> ancestor) {
    return names.size() > ancestor.size() &&
           std::equal(ancestor.begin(), ancestor.end(), names.begin(),
                      [](const std::string& a, const std::string& b) { return LocaleLower(a) == LocaleLower(b); });
}

// Open handles to the old key see it deleted, as after the copy and delete that Windows needs for a move.
KeyReference CopyKey(const Key& source) {
    auto copy = std::make_shared<Key>();
    copy->name = source.name;
    copy->values = source.values;
    for (const auto& [name, subkey] : source.subkeys) copy->subkeys[name] = CopyKey(*subkey);
    return copy;
}

}  // namespace

RegistryKey::RegistryKey(RegistryKey&& other) noexcept
    : handle_(std::exchange(other.handle_, kNoKey)), written_(std::exchange(other.written_, false)) {}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(written_, other.written_);
    return *this;
}

RegistryKey::~RegistryKey() {
    if (handle_ == kNoKey) return;
    if (written_) Flush();
    const std::lock_guard lock(Store().guard);
    delete host::FromHandle<KeyReference>(handle_);
}

RegistryKey RegistryKey::Open(RegistryRoot root, const std::string& path) {
    const std::lock_guard lock(Store().guard);
    RegistryKey result;
    const KeyReference key = FindKey(RootKey(root), SplitPath(path));
    if (key != nullptr) result.handle_ = NewHandle(key);
    host::Fail(key != nullptr ? 0 : host::kErrorFileNotFound);
    return result;
}

RegistryKey RegistryKey::Create(RegistryRoot root, const std::string& path, bool* created) {
    const std::lock_guard lock(Store().guard);
    RegistryKey result;
    bool isNew = false;
    result.handle_ = NewHandle(MakeKey(RootKey(root), SplitPath(path), isNew));
    if (created != nullptr) *created = isNew;
    host::Fail(0);
    return result;
}

std::optional<std::uint32_t> RegistryKey::ReadNumber(const char* name) const {
    const std::lock_guard lock(Store().guard);
    const Value* const value = FindValue(handle_, name, ValueType::Number);
    if (value == nullptr) return std::nullopt;
    std::uint32_t number = 0;
    std::memcpy(&number, value->data.data(), sizeof number);
    return number;
}

std::optional<std::string> RegistryKey::ReadText(const char* name, std::size_t longest) const {
    const std::lock_guard lock(Store().guard);
    const Value* const value = FindValue(handle_, name, ValueType::Text);
    if (value == nullptr) return std::nullopt;
    const auto end = std::find(value->data.begin(), value->data.end(), std::uint8_t{0});
    const std::string text(value->data.begin(), end);
    if (text.size() + 1 > longest) return std::nullopt;
    return text;
}

std::optional<std::vector<std::uint8_t>> RegistryKey::ReadBytes(const char* name, std::size_t longest) const {
    const std::lock_guard lock(Store().guard);
    const Value* const value = FindValue(handle_, name, ValueType::Bytes);
    if (value == nullptr || value->data.size() > longest) return std::nullopt;
    return value->data;
}

int RegistryKey::WriteNumber(const char* name, std::uint32_t value) {
    written_ = true;
    return WriteValue(handle_, name, ValueType::Number, &value, sizeof value);
}

int RegistryKey::WriteText(const char* name, const std::string& text, std::size_t dataLength) {
    written_ = true;
    const std::size_t stored = text.size() + 1;
    const std::size_t length = dataLength == 0 ? stored : std::min(dataLength, stored);
    return WriteValue(handle_, name, ValueType::Text, text.c_str(), length);
}

int RegistryKey::WriteBytes(const char* name, std::span<const std::uint8_t> bytes) {
    written_ = true;
    return WriteValue(handle_, name, ValueType::Bytes, bytes.data(), bytes.size());
}

int RegistryKey::DeleteValue(const char* name) {
    const std::lock_guard lock(Store().guard);
    written_ = true;
    Key* const key = KeyOf(handle_);
    if (key == nullptr) return static_cast<int>(LastSystemError());
    return key->values.erase(LocaleLower(name)) > 0 ? 0 : static_cast<int>(host::kErrorFileNotFound);
}

bool RegistryKey::ListSubkeys(std::vector<std::string>& names) const {
    const std::lock_guard lock(Store().guard);
    const Key* const key = KeyOf(handle_);
    if (key == nullptr) return false;
    for (const auto& [lowered, subkey] : key->subkeys) names.push_back(subkey->name);
    return true;
}

void RegistryKey::Flush() {}

bool DeleteRegistryTree(const std::string& path) {
    const std::lock_guard lock(Store().guard);
    const std::vector<std::string> names = SplitPath(path);
    if (names.empty()) return host::Fail(kErrorInvalidParameter);
    if (const KeyReference key = Detach(names)) MarkDeleted(*key);
    return true;
}

bool MoveRegistryTree(const std::string& from, const std::string& to) {
    const std::lock_guard lock(Store().guard);
    const std::vector<std::string> source = SplitPath(from);
    const std::vector<std::string> target = SplitPath(to);
    if (source.empty() || target.empty() || IsBelow(target, source)) return host::Fail(kErrorInvalidParameter);
    const KeyReference key = FindKey(Store().currentUser, source);
    if (key == nullptr) return host::Fail(host::kErrorFileNotFound);
    if (source == target) return true;
    const KeyReference existing = FindKey(Store().currentUser, target);
    if (existing != nullptr) return host::Fail(kErrorAlreadyExists);

    if (fault_injection::Strikes(fault_injection::Call::RegistryWrite)) return false;
    if (Store().refusal != 0) return host::Fail(static_cast<std::uint32_t>(Store().refusal));
    const KeyReference copy = CopyKey(*key);
    copy->name = target.back();
    MarkDeleted(*Detach(source));
    bool created = false;
    const std::span<const std::string> parentNames = std::span(target).first(target.size() - 1);
    MakeKey(Store().currentUser, parentNames, created)->subkeys[LocaleLower(target.back())] = copy;
    return true;
}

bool RegistryKeyExists(RegistryRoot root, const std::string& path) {
    const std::lock_guard lock(Store().guard);
    return FindKey(RootKey(root), SplitPath(path)) != nullptr || host::Fail(host::kErrorFileNotFound);
}

}  // namespace platform

namespace host_registry {

void Clear() {
    platform::Registry& store = platform::Store();
    const std::lock_guard lock(store.guard);
    for (platform::KeyReference* root : {&store.currentUser, &store.classesRoot}) {
        platform::MarkDeleted(**root);
        *root = std::make_shared<platform::Key>();
    }
}

void RefuseWrites(int error) {
    platform::Registry& store = platform::Store();
    const std::lock_guard lock(store.guard);
    store.refusal = error;
}

}  // namespace host_registry
