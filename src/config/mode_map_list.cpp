#include "config/mode_map_list.h"

#include <string>
#include <unordered_set>

#include "config/file_types.h"
#include "config/shell_classes.h"
#include "foundation/text_compare.h"

namespace {

int AddExtensions(const std::vector<std::string>& extensions, std::vector<ModeMapItem>& list) {
    std::unordered_set<std::string> listed;
    for (const ModeMapItem& item : list)
        if (item.type != nullptr) listed.insert(AsciiUpper(item.type->pszType.view()));
    int added = 0;
    for (const std::string& extension : extensions) {
        if (!listed.insert(AsciiUpper(extension)).second) continue;
        const FTobject* type = AddFileType(extension);
        if (type == nullptr) type = GetDefaultType(extension);
        if (type == nullptr) continue;
        list.push_back({type, 0});
        ++added;
    }
    return added;
}

}  // namespace

int RegQueryZarnDefaults(std::vector<ModeMapItem>& list) {
    return AddExtensions(ModeMapExtensions(), list);
}

int RegQueryRootClasses(std::vector<ModeMapItem>& list) {
    return AddExtensions(ShellExtensions(), list);
}
