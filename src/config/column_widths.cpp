#include "config/column_widths.h"

#include <string>

#include "config/settings.h"
#include "config/store_key.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

struct ColumnLayout {
    std::uint32_t columns;
    const char* key;
};
constexpr ColumnLayout kLayouts[] = {{kColumnsWindows, "View\\Windows"}, {kColumnsUnix, "View\\Unix"}};

// The key of the layout in use, below the root; empty when no layout has that many columns.
std::string LayoutKey() {
    for (const ColumnLayout& layout : kLayouts) {
        if (layout.columns == gZarn.COLUMNS) return std::string(kDefaultsKey) + "\\" + layout.key;
    }
    return {};
}

std::string ColumnValueName(const char* callerName, int index) {
    constexpr std::size_t kNameBuffer = 5;  // four characters and the terminator
    return FormatBounded(callerName, kNameBuffer, "Col%d", index + 1);
}

}  // namespace

bool SaveColumnInfo(const std::int32_t* widths, int count) {
    const std::string layout = LayoutKey();
    if (layout.empty() || widths == nullptr) return false;
    RegistryKey key = OpenStoreKey(layout, nullptr);
    if (!key.IsOpen()) return false;
    for (int index = 0; index < count && index < static_cast<int>(gZarn.COLUMNS); ++index) {
        const std::string name = ColumnValueName("SaveColumnInfo", index);
        ReportFailedWrite("SaveColumnInfo", name,
                          key.WriteNumber(name.c_str(), static_cast<std::uint32_t>(widths[index])));
    }
    return true;
}

bool LoadColumnInfo(int count) {
    const std::string layout = LayoutKey();
    if (layout.empty() || count > kMostColumns) return false;
    const std::string path = StoreKeyPath(layout);
    const RegistryKey key = RegistryKey::Open(RegistryRoot::CurrentUser, path);
    if (!key.IsOpen()) {
        // Quirk: the text is that of a failed creation, although nothing is created here, kept.
        const OwnedText text = Zarn_ResVsprintf(MSG_CANNOT_CREATE_KEY, path);
        ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
        return false;
    }
    for (int index = 0; index < count; ++index) {
        const auto width = key.ReadNumber(ColumnValueName("LoadColumnInfo", index).c_str());
        if (!width) return false;
        gZarn.iColumnLengths[index] = static_cast<std::int32_t>(*width);
    }
    return true;
}
