#include "config/file_types.h"

#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "config/mode_map_store.h"
#include "config/settings.h"
#include "config/shell_classes.h"
#include "foundation/catalogue.h"
#include "foundation/display_name.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"
#include "platform/utf8.h"

namespace {

struct TypeList {
    std::mutex lock;
    FTobject* head = nullptr;
    FTobject* folder = nullptr;  // one of the list
    int count = 0;
    int unknownCount = 0;  // types made of extensions that are not registered
    std::unordered_map<std::string, FTobject*> index;
    bool extensionsListed = false;
    std::unordered_set<std::string> registered;  // upper-cased
};
TypeList gTypes;

constexpr std::size_t kLongestDescription = 259;
constexpr std::string_view kCompressed = ".Z";
constexpr std::string_view kPacked = ".z";
// The key of names without an extension; no extension is empty.
constexpr std::string_view kGenericKey = "";

struct BuiltInType {
    std::string_view extension;
    bool withCase;
    unsigned text;
};
// Quirk: .Z and .z alone differ by case, kept.
constexpr BuiltInType kBuiltInTypes[] = {
    {".ico", false, MSG_TYPE_NAME_ICON},   {".cur", false, MSG_TYPE_NAME_CURSOR},
    {".sh", false, MSG_TYPE_NAME_SHELL},   {kCompressed, true, MSG_TYPE_NAME_COMPRESSED},
    {kPacked, true, MSG_TYPE_NAME_PACKED}, {".cpio", false, MSG_TYPE_NAME_CPIO},
};

using TypePtr = std::unique_ptr<FTobject>;

// Types are found without regard to case, but .Z and .z are two.
std::string KeyOf(std::string_view extension) {
    return extension == kPacked ? std::string(extension) : AsciiUpper(extension);
}

// These three need the lock.
FTobject* Find(const std::string& key) {
    const auto found = gTypes.index.find(key);
    return found != gTypes.index.end() ? found->second : nullptr;
}

FTobject* Link(const std::string& key, TypePtr type) {
    FTobject* const linked = type.release();
    linked->pNext = gTypes.head;
    if (gTypes.head != nullptr) gTypes.head->pPrev = linked;
    gTypes.head = linked;
    gTypes.index.emplace(key, linked);
    ++gTypes.count;
    return linked;
}

FTobject* FindAnyCase(std::string_view extension) {
    if (FTobject* const exact = Find(KeyOf(extension))) return exact;
    if (EqualsIgnoringCase(extension, kPacked)) return Find(std::string(extension == kPacked ? kCompressed : kPacked));
    return nullptr;
}

FTobject* FindLocked(const std::string& key) {
    const std::scoped_lock guard(gTypes.lock);
    return Find(key);
}

// Puts a finished type into the list, unless another thread was faster.
FTobject* Publish(const std::string& key, TypePtr type) {
    if (type == nullptr || !type->pszType || !type->pszDescription) return nullptr;
    const std::scoped_lock guard(gTypes.lock);
    if (FTobject* const existing = Find(key)) return existing;
    return Link(key, std::move(type));
}

TypePtr NewType(std::string_view name, std::string_view description) {
    TypePtr type(new (std::nothrow) FTobject);
    if (type == nullptr) return nullptr;
    type->pszType = OwnedText::Copy(name);
    type->pszDescription = OwnedText::Copy(description);
    return type;
}

TypePtr NewExtensionType(std::string_view extension, std::string_view description) {
    TypePtr type = NewType(AsciiUpper(extension), description);
    if (type != nullptr) type->TransferMode[0] = GetTransferMode(std::string(extension).c_str());
    return type;
}

// Text for "%s File": the extension without its dot, fit to be shown.
std::string NamedDescription(std::string_view extension) {
    std::string shown = DisplayName(extension.substr(1));
    for (char& character : shown) {
        if (static_cast<unsigned char>(character) < ' ') character = '?';
    }
    const MessageInsert inserts[] = {shown};
    return FormatCatalogueText(MSG_TYPED_FILE, inserts);
}

std::string BuiltInDescription(std::string_view extension) {
    for (const BuiltInType& type : kBuiltInTypes) {
        const bool same = type.withCase ? extension == type.extension : EqualsIgnoringCase(extension, type.extension);
        if (same) return CatalogueText(type.text);
    }
    const bool digit = extension[1] >= '0' && extension[1] <= '9';
    const std::string description = digit ? CatalogueText(MSG_GENERIC_FILE) : NamedDescription(extension);
    return std::string(platform::CutUtf8(description, kLongestDescription));
}

// What the mode map or the shell says; nothing when neither describes the extension.
TypePtr BuildRegisteredType(std::string_view extension) {
    std::string className;
    std::optional<std::string> description = GetZarnMapDescription(extension);
    bool fromModeMap = description.has_value();
    if (!description) {
        className = ShellClassOf(extension).value_or(std::string());
        if (!className.empty()) description = ShellDescription(className);
    }
    if (!description || description->empty()) return nullptr;
    std::optional<std::string> icon = GetZarnIconInfo(extension);
    if (icon) {
        fromModeMap = true;
    } else {
        icon = GetRootIconInfo(extension, className);
    }
    TypePtr type = NewExtensionType(extension, *description);
    if (type == nullptr) return nullptr;
    if (!icon->empty()) type->pszIconInfo = OwnedText::Copy(*icon);
    type->bFromModeMap = fromModeMap;
    return type;
}

// The type of names without an extension.
FTobject* GenericType() {
    const std::string key(kGenericKey);
    if (FTobject* const existing = FindLocked(key)) return existing;
    TypePtr type = NewType(kGenericKey, CatalogueText(MSG_GENERIC_FILE));
    if (type != nullptr) type->TransferMode[0] = gZarn.mode.mode;
    return Publish(key, std::move(type));
}

bool IsRegistered(std::string_view extension) {
    {
        const std::scoped_lock guard(gTypes.lock);
        if (gTypes.extensionsListed) return gTypes.registered.contains(AsciiUpper(extension));
    }
    // Listed without the lock: it takes the system a while.
    std::unordered_set<std::string> registered;
    for (const std::string& name : ShellExtensions()) registered.insert(AsciiUpper(name));
    for (const std::string& name : ModeMapExtensions()) registered.insert(AsciiUpper(name));
    const std::scoped_lock guard(gTypes.lock);
    gTypes.registered.merge(registered);
    gTypes.extensionsListed = true;
    return gTypes.registered.contains(AsciiUpper(extension));
}

// A type for an extension that is new and, unless the mode map has a mode for it, unknown.
FTobject* UnknownType(std::string_view extension, bool registered) {
    if (registered) return GetDefaultType(extension);
    {
        const std::scoped_lock guard(gTypes.lock);
        if (gTypes.unknownCount >= kMostUnknownTypes) return nullptr;
        ++gTypes.unknownCount;
    }
    TypePtr type = NewType(AsciiUpper(extension), BuiltInDescription(extension));
    if (type != nullptr) type->TransferMode[0] = gZarn.mode.mode;
    return Publish(KeyOf(extension), std::move(type));
}

FTobject* TypeOfExtension(std::string_view extension) {
    if (FTobject* const known = FindLocked(KeyOf(extension))) return known;
    const bool registered = IsRegistered(extension);
    FTobject* const described = registered ? AddFileType(extension) : nullptr;
    return described != nullptr ? described : UnknownType(extension, registered);
}

}  // namespace

char GetTransferMode(const char* fileName) {
    const char fallback = gZarn.mode.mode;
    if (fileName == nullptr) {
        DbgVsprintf("GetTransferMode", "Entered with NULL Parameter. Returning (%c)", fallback);
        return fallback;
    }
    const char* const extension = std::strchr(fileName, '.');
    if (extension == nullptr) {
        DbgVsprintf("GetTransferMode", "Done. Failed to find a '.', Returning (%c)", fallback);
        return fallback;
    }
    const platform::RegistryKey key = GetModeMapSubKey(extension);
    if (!key.IsOpen()) {
        DbgVsprintf("GetTransferMode", "Done. Key NOT Opened for (%s). Returning %c)", extension, fallback);
        return fallback;
    }
    char mode = fallback;
    if (!GetZarnMapMode(key, mode)) {
        DbgVsprintf("GetTransferMode", "Done. Failed to Query key:%x for Value(TransferMode). Returning %c)", 0,
                    fallback);
    }
    return mode;
}

FTobject* LookupFileType(std::string_view extension) {
    const std::scoped_lock guard(gTypes.lock);
    return FindAnyCase(extension);
}

FTobject* InsertFileType(OwnedText extension) {
    if (!extension) return nullptr;
    const std::string key = KeyOf(extension.view());
    const std::scoped_lock guard(gTypes.lock);
    if (FTobject* const existing = FindAnyCase(extension.view())) return existing;
    TypePtr type(new (std::nothrow) FTobject);
    if (type == nullptr) return nullptr;
    const std::string upper = AsciiUpper(extension.view());
    std::memcpy(extension.data(), upper.data(), upper.size());
    type->pszType = std::move(extension);
    return Link(key, std::move(type));
}

FTobject* AddFileType(std::string_view extension) {
    const std::string key = KeyOf(extension);
    if (FTobject* const existing = FindLocked(key)) return existing;
    TypePtr type = BuildRegisteredType(extension);
    return type != nullptr ? Publish(key, std::move(type)) : nullptr;
}

FTobject* GetDefaultType(std::string_view extension) {
    if (extension.size() < 2) {
        DbgVsprintf("GetDefaultType", "%s doesn't have a Suffix. Returning NULL", std::string(extension).c_str());
        return nullptr;
    }
    const std::string key = KeyOf(extension);
    if (FTobject* const existing = FindLocked(key)) return existing;
    return Publish(key, NewExtensionType(extension, BuiltInDescription(extension)));
}

FTobject* AddFolderType() {
    {
        const std::scoped_lock guard(gTypes.lock);
        if (gTypes.folder != nullptr) return gTypes.folder;
    }
    const std::string name = CatalogueText(MSG_FILE_FOLDER);
    TypePtr type = NewType(name, name);
    if (type != nullptr) type->isFolder = true;
    FTobject* const folder = Publish(KeyOf(name), std::move(type));
    const std::scoped_lock guard(gTypes.lock);
    gTypes.folder = folder;
    return folder;
}

FTobject* FileTypeOf(std::string_view name, bool isFolder) {
    if (isFolder) return AddFolderType();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot + 1 == name.size()) return GenericType();
    FTobject* const type = TypeOfExtension(name.substr(dot));
    return type != nullptr ? type : GenericType();
}

void RememberExtension(std::string_view extension) {
    const std::scoped_lock guard(gTypes.lock);
    gTypes.registered.insert(AsciiUpper(extension));
}

int GetFileTypeCount() {
    const std::scoped_lock guard(gTypes.lock);
    return gTypes.count;
}

void Zarn_FreeFileType(FTobject* type) {
    delete type;
}

void FreeFileTypes() {
    const std::scoped_lock guard(gTypes.lock);
    while (gTypes.head != nullptr) {
        FTobject* const next = gTypes.head->pNext;
        Zarn_FreeFileType(gTypes.head);
        gTypes.head = next;
    }
    gTypes.index.clear();
    gTypes.registered.clear();
    gTypes.extensionsListed = false;
    gTypes.folder = nullptr;
    gTypes.count = 0;
    gTypes.unknownCount = 0;
}
