// The per-user settings tree (HKEY_CURRENT_USER) and, read only, the shell's classes (HKEY_CLASSES_ROOT): keys,
// values, moves. Key names are separated by "\" and compared without case. Knows nothing of what is stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace platform {

enum class RegistryRoot { CurrentUser, ClassesRoot };
using RegistryKeyHandle = std::intptr_t;
inline constexpr RegistryKeyHandle kNoKey = 0;

// An open key; closes itself. Writing flushes before it closes.
class RegistryKey {
  public:
    RegistryKey() = default;
    RegistryKey(RegistryKey&& other) noexcept;
    RegistryKey& operator=(RegistryKey&& other) noexcept;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey();

    // Opens for reading; an absent key gives a key for which IsOpen() is false.
    static RegistryKey Open(RegistryRoot root, const std::string& path);
    // Opens or creates with full access. `created` (may be null) receives whether the key is new.
    static RegistryKey Create(RegistryRoot root, const std::string& path, bool* created);

    bool IsOpen() const { return handle_ != kNoKey; }
    // The default value is named by an empty name. A value of another type, or absent, gives nothing.
    std::optional<std::uint32_t> ReadNumber(const char* name) const;
    // At most `longest` bytes including the terminator; a longer stored text gives nothing. Names of environment
    // variables stay unexpanded in a text that is marked for it (the shell's icon locations are).
    std::optional<std::string> ReadText(const char* name, std::size_t longest) const;
    std::optional<std::vector<std::uint8_t>> ReadBytes(const char* name, std::size_t longest) const;
    // Results: 0 or the system's error number.
    int WriteNumber(const char* name, std::uint32_t value);
    // `dataLength` 0 writes the whole text with its NUL, another number exactly so many bytes of it.
    int WriteText(const char* name, const std::string& text, std::size_t dataLength = 0);
    int WriteBytes(const char* name, std::span<const std::uint8_t> bytes);
    int DeleteValue(const char* name);
    // Names of the subkeys in the store's order; false when the enumeration failed before its end.
    bool ListSubkeys(std::vector<std::string>& names) const;
    void Flush();

  private:
    RegistryKeyHandle handle_ = kNoKey;
    bool written_ = false;
};

// Deletes a key of the current user with all its subkeys; true also when it does not exist.
bool DeleteRegistryTree(const std::string& path);
// Copies values and subkeys to a new key, then deletes the source. False, with nothing lost, when the copy failed or
// the new key exists; names that differ in case only are the same key.
bool MoveRegistryTree(const std::string& from, const std::string& to);
bool RegistryKeyExists(RegistryRoot root, const std::string& path);

}  // namespace platform
