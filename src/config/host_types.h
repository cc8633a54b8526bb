// Server types. A type's id is the catalogue id of its name; the listing parsers choose by it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

inline constexpr std::uint32_t HOST_TYPE_AUTO = 7000;
inline constexpr std::uint32_t HOST_TYPE_UNIX = 7001;
inline constexpr std::uint32_t HOST_TYPE_WINDOWS_NT = 7002;
inline constexpr std::uint32_t HOST_TYPE_SOLARIS = 7003;
inline constexpr std::uint32_t HOST_TYPE_CLIX = 7004;
inline constexpr std::uint32_t HOST_TYPE_LOCAL = 7005;  // the local computer shown as a site; has no name
inline constexpr std::uint32_t HOST_TYPE_EXOS = 7014;
inline constexpr std::uint32_t HOST_TYPE_VMS_MULTINET = 7015;
inline constexpr std::uint32_t HOST_TYPE_IBM_MVS = 7019;
inline constexpr std::uint32_t kLastHostType = 7021;
// The only ones a user can choose: the selection's index plus 7000.
inline constexpr std::uint32_t kLastOfferedHostType = 7004;

struct OfferedHostType {
    std::uint32_t id;
    std::string name;
};
// The offered types in order; a type without a name is left out.
std::vector<OfferedHostType> OfferedHostTypes();
// Index of `selected` in the offered list, or -1. (Filling the combo box itself is the site page's work.)
int HostTypeIndex(const std::vector<OfferedHostType>& offered, std::uint32_t selected);
// The name of a type, empty when it has none.
std::string HostTypeName(std::uint32_t type);
