#include "config/host_types.h"

#include "foundation/catalogue.h"

namespace {

constexpr std::size_t kLongestName = 259;

}  // namespace

std::string HostTypeName(std::uint32_t type) {
    if (type < HOST_TYPE_AUTO || type > kLastHostType) return {};
    std::string name = CatalogueText(type);
    if (name.size() > kLongestName) name.resize(kLongestName);
    return name;
}

std::vector<OfferedHostType> OfferedHostTypes() {
    std::vector<OfferedHostType> offered;
    for (std::uint32_t id = HOST_TYPE_AUTO; id <= kLastOfferedHostType; ++id) {
        std::string name = HostTypeName(id);
        if (!name.empty()) offered.push_back({id, std::move(name)});
    }
    return offered;
}

int HostTypeIndex(const std::vector<OfferedHostType>& offered, std::uint32_t selected) {
    for (std::size_t index = 0; index < offered.size(); ++index) {
        if (offered[index].id == selected) return static_cast<int>(index);
    }
    return -1;
}
