#include "platform/registry.h"

#include <windows.h>

#include <shlwapi.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/windows/wide_text.h"

namespace platform {
namespace {

// Names of keys have at most 255 characters; one more for those that are lenient, one for the terminator.
constexpr DWORD kKeyNameBuffer = 257;

HKEY RootKey(RegistryRoot root) {
    return root == RegistryRoot::CurrentUser ? HKEY_CURRENT_USER : HKEY_CLASSES_ROOT;
}

HKEY AsKey(RegistryKeyHandle handle) {
    return reinterpret_cast<HKEY>(handle);
}

// Without separators at either end and without doubled ones, which the system takes in some calls only.
std::wstring CleanPath(const std::string& path) {
    std::string clean;
    for (const char character : path) {
        if (character == '\\' && (clean.empty() || clean.back() == '\\')) continue;
        clean.push_back(character);
    }
    if (!clean.empty() && clean.back() == '\\') clean.pop_back();
    return ToWide(clean);
}

bool SameName(const std::wstring& a, const std::wstring& b) {
    return ::CompareStringOrdinal(a.c_str(), static_cast<int>(a.size()), b.c_str(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

bool IsBelow(const std::wstring& path, const std::wstring& ancestor) {
    return path.size() > ancestor.size() && path[ancestor.size()] == L'\\' &&
           SameName(path.substr(0, ancestor.size()), ancestor);
}

LONG OpenForReading(RegistryRoot root, const std::wstring& path, HKEY* key) {
    return ::RegOpenKeyExW(RootKey(root), path.c_str(), 0, KEY_READ, key);
}

bool KeyExists(RegistryRoot root, const std::wstring& path) {
    HKEY key = nullptr;
    const LONG error = OpenForReading(root, path, &key);
    if (error == ERROR_SUCCESS) ::RegCloseKey(key);
    ::SetLastError(static_cast<DWORD>(error));
    return error == ERROR_SUCCESS;
}

// A value as it is stored; false when it is absent. The size may change between the two calls, hence the loop.
bool ReadRaw(RegistryKeyHandle handle, const char* name, DWORD& type, std::vector<std::uint8_t>& bytes) {
    const WideArgument wideName(name);
    DWORD size = 0;
    LONG error = ::RegQueryValueExW(AsKey(handle), wideName.Text(), nullptr, &type, nullptr, &size);
    while (error == ERROR_SUCCESS) {
        bytes.resize(size);
        // A null buffer would ask for the size only.
        bytes.reserve(1);
        error = ::RegQueryValueExW(AsKey(handle), wideName.Text(), nullptr, &type, bytes.data(), &size);
        if (error != ERROR_MORE_DATA) break;
        error = ERROR_SUCCESS;
    }
    bytes.resize(error == ERROR_SUCCESS ? size : 0);
    ::SetLastError(static_cast<DWORD>(error));
    return error == ERROR_SUCCESS;
}

int WriteRaw(RegistryKeyHandle handle, const char* name, DWORD type, const void* data, std::size_t size) {
    const WideArgument wideName(name);
    return static_cast<int>(::RegSetValueExW(AsKey(handle), wideName.Text(), 0, type, static_cast<const BYTE*>(data),
                                             static_cast<DWORD>(size)));
}

LONG DeleteTree(const std::wstring& path) {
    // An empty path would name everything the user has.
    if (path.empty()) return ERROR_INVALID_PARAMETER;
    return static_cast<LONG>(::SHDeleteKeyW(HKEY_CURRENT_USER, path.c_str()));
}

LONG CopyTree(const std::wstring& from, const std::wstring& to) {
    HKEY target = nullptr;
    DWORD disposition = 0;
    LONG error =
        ::RegCreateKeyExW(HKEY_CURRENT_USER, to.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target, &disposition);
    if (error != ERROR_SUCCESS) return error;
    error = static_cast<LONG>(::SHCopyKeyW(HKEY_CURRENT_USER, from.c_str(), target, 0));
    ::RegFlushKey(target);
    ::RegCloseKey(target);
    if (error != ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY) DeleteTree(to);
    return error;
}

LONG MoveTree(const std::wstring& from, const std::wstring& to) {
    if (from.empty() || to.empty() || IsBelow(to, from)) return ERROR_INVALID_PARAMETER;
    if (!KeyExists(RegistryRoot::CurrentUser, from)) return ERROR_FILE_NOT_FOUND;
    if (KeyExists(RegistryRoot::CurrentUser, to)) return ERROR_ALREADY_EXISTS;
    const LONG error = CopyTree(from, to);
    return error != ERROR_SUCCESS ? error : DeleteTree(from);
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
    const LastErrorKeeper keeper;
    if (written_) Flush();
    ::RegCloseKey(AsKey(handle_));
}

RegistryKey RegistryKey::Open(RegistryRoot root, const std::string& path) {
    RegistryKey result;
    HKEY key = nullptr;
    const LONG error = OpenForReading(root, CleanPath(path), &key);
    if (error == ERROR_SUCCESS) result.handle_ = reinterpret_cast<RegistryKeyHandle>(key);
    ::SetLastError(static_cast<DWORD>(error));
    return result;
}

RegistryKey RegistryKey::Create(RegistryRoot root, const std::string& path, bool* created) {
    RegistryKey result;
    HKEY key = nullptr;
    DWORD disposition = 0;
    const LONG error = ::RegCreateKeyExW(RootKey(root), CleanPath(path).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                         &key, &disposition);
    if (created != nullptr) *created = error == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY;
    if (error == ERROR_SUCCESS) result.handle_ = reinterpret_cast<RegistryKeyHandle>(key);
    ::SetLastError(static_cast<DWORD>(error));
    return result;
}

std::optional<std::uint32_t> RegistryKey::ReadNumber(const char* name) const {
    DWORD type = 0;
    std::vector<std::uint8_t> bytes;
    std::uint32_t value = 0;
    if (!ReadRaw(handle_, name, type, bytes) || type != REG_DWORD || bytes.size() != sizeof value) return std::nullopt;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

std::optional<std::string> RegistryKey::ReadText(const char* name, std::size_t longest) const {
    DWORD type = 0;
    std::vector<std::uint8_t> bytes;
    if (!ReadRaw(handle_, name, type, bytes) || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
    std::wstring wide(bytes.size() / sizeof(wchar_t), L'\0');
    if (!wide.empty()) std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(wchar_t));
    // Stored with or without a terminator, the text ends at the first one.
    const std::string text = FromWide(wide.c_str());
    if (text.size() + 1 > longest) return std::nullopt;
    return text;
}

std::optional<std::vector<std::uint8_t>> RegistryKey::ReadBytes(const char* name, std::size_t longest) const {
    DWORD type = 0;
    std::vector<std::uint8_t> bytes;
    if (!ReadRaw(handle_, name, type, bytes) || type != REG_BINARY || bytes.size() > longest) return std::nullopt;
    return bytes;
}

int RegistryKey::WriteNumber(const char* name, std::uint32_t value) {
    written_ = true;
    return WriteRaw(handle_, name, REG_DWORD, &value, sizeof value);
}

int RegistryKey::WriteText(const char* name, const std::string& text, std::size_t dataLength) {
    written_ = true;
    // The terminator counts as one of the bytes.
    const std::size_t stored = text.size() + 1;
    const std::size_t length = dataLength == 0 ? stored : std::min(dataLength, stored);
    const std::wstring wide = ToWide(std::string_view(text.c_str(), length));
    return WriteRaw(handle_, name, REG_SZ, wide.data(), wide.size() * sizeof(wchar_t));
}

int RegistryKey::WriteBytes(const char* name, std::span<const std::uint8_t> bytes) {
    written_ = true;
    return WriteRaw(handle_, name, REG_BINARY, bytes.data(), bytes.size());
}

int RegistryKey::DeleteValue(const char* name) {
    written_ = true;
    const WideArgument wideName(name);
    return static_cast<int>(::RegDeleteValueW(AsKey(handle_), wideName.Text()));
}

bool RegistryKey::ListSubkeys(std::vector<std::string>& names) const {
    for (DWORD index = 0;; ++index) {
        wchar_t name[kKeyNameBuffer];
        DWORD length = kKeyNameBuffer;
        const LONG error = ::RegEnumKeyExW(AsKey(handle_), index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (error == ERROR_NO_MORE_ITEMS) return true;
        if (error != ERROR_SUCCESS) {
            ::SetLastError(static_cast<DWORD>(error));
            return false;
        }
        names.push_back(FromWide(std::wstring_view(name, length)));
    }
}

void RegistryKey::Flush() {
    if (handle_ != kNoKey) ::RegFlushKey(AsKey(handle_));
}

bool DeleteRegistryTree(const std::string& path) {
    const LONG error = DeleteTree(CleanPath(path));
    ::SetLastError(static_cast<DWORD>(error));
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool MoveRegistryTree(const std::string& from, const std::string& to) {
    const std::wstring source = CleanPath(from);
    const std::wstring target = CleanPath(to);
    if (source == target && KeyExists(RegistryRoot::CurrentUser, source)) return true;
    const LONG error = MoveTree(source, target);
    ::SetLastError(static_cast<DWORD>(error));
    return error == ERROR_SUCCESS;
}

bool RegistryKeyExists(RegistryRoot root, const std::string& path) {
    return KeyExists(root, CleanPath(path));
}

}  // namespace platform
