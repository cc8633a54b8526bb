// IPv4 addresses as dotted text and back. Names are looked up by sockets.h.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// Dotted text to address (host order); false, and `address` as it was, for anything but four decimal numbers.
bool ParseAddress(const char* text, std::uint32_t& address);
std::string AddressText(std::uint32_t address);

}  // namespace platform
