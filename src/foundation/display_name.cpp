#include "foundation/display_name.h"

#include "platform/system.h"
#include "platform/utf8.h"

std::string DisplayName(std::string_view remoteBytes) {
    if (platform::IsValidUtf8(remoteBytes)) return std::string(remoteBytes);
    return platform::SystemPageToUtf8(remoteBytes);
}
