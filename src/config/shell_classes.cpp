#include "config/shell_classes.h"

#include "config/mode_map_store.h"
#include "foundation/foundation_view.h"
#include "foundation/message_expansion.h"
#include "foundation/trace.h"
#include "platform/registry.h"

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

constexpr std::size_t kClassBytes = 260;
constexpr std::size_t kRootIconBytes = 519;
constexpr std::size_t kCommandBytes = 520;

std::optional<std::string> ReadDefault(const std::string& path, std::size_t longest) {
    const RegistryKey key = RegistryKey::Open(RegistryRoot::ClassesRoot, path);
    if (!key.IsOpen()) return std::nullopt;
    auto text = key.ReadText("", longest);
    if (text && text->empty()) return std::nullopt;
    return text;
}

void ShowPathTooLong(std::size_t size) {
    const MessageInsert inserts[] = {static_cast<int>(kPathBuffer), static_cast<int>(size)};
    const std::string text = ExpandPrintf(
        "The Path for Icon Key is TOO large! (Want fit in arg passed to GetRootIconInfo()\n"
        "    Arg size: (%d), RegQuery Size: (%d)",
        inserts);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

}  // namespace

std::vector<std::string> ShellExtensions() {
    std::vector<std::string> names;
    const RegistryKey key = RegistryKey::Open(RegistryRoot::ClassesRoot, "");
    if (key.IsOpen()) key.ListSubkeys(names);
    std::erase_if(names, [](const std::string& name) { return !IsExtensionKey(name); });
    return names;
}

std::optional<std::string> ShellClassOf(std::string_view extension) {
    if (!IsExtensionKey(extension)) return std::nullopt;
    return ReadDefault(std::string(extension), kClassBytes);
}

std::optional<std::string> ShellDescription(const std::string& className) {
    return ReadDefault(className, kDescriptionBytes);
}

std::string GetRootIconInfo(std::string_view extension, std::string className) {
    if (className.empty()) className = ShellClassOf(extension).value_or(std::string());
    if (className.empty()) return {};
    const std::string path = className + "\\DefaultIcon";
    if (path.size() + 1 > kPathBuffer) {
        ShowPathTooLong(path.size() + 1);
        return {};
    }
    return ReadDefault(path, kRootIconBytes).value_or(std::string());
}

OwnedText Zarn_GetActionCommand(const FTobject* type, bool print) {
    if (type == nullptr) return {};
    const auto className = ShellClassOf(type->pszType.view());
    if (!className) return {};
    // Quirk: the command for opening is read from the key "open" below "print", kept.
    const char* const action = print ? "\\shell\\print\\command" : "\\shell\\print\\open";
    const auto command = ReadDefault(*className + action, kCommandBytes);
    return command ? OwnedText::Copy(*command) : OwnedText();
}
