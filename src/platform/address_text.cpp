#include "platform/address_text.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace platform {

// Four decimal numbers and nothing else: the system's own reader also takes "10.1", octal and hexadecimal parts,
// which in a host field are far more likely a mistyped name.
bool ParseAddress(const char* text, std::uint32_t& address) {
    if (text == nullptr) return false;
    const char* position = text;
    const char* const end = text + std::strlen(text);
    std::uint32_t parsed = 0;
    for (int part = 0; part < 4; ++part) {
        if (part > 0 && (position == end || *position++ != '.')) return false;
        unsigned value = 0;
        const auto [next, error] = std::from_chars(position, end, value);
        if (error != std::errc() || value > 255 || next - position > 3) return false;
        parsed = (parsed << 8) | value;
        position = next;
    }
    if (position != end) return false;
    address = parsed;
    return true;
}

std::string AddressText(std::uint32_t address) {
    char text[16];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", static_cast<unsigned>(address >> 24),
                  static_cast<unsigned>((address >> 16) & 255), static_cast<unsigned>((address >> 8) & 255),
                  static_cast<unsigned>(address & 255));
    return text;
}

}  // namespace platform
