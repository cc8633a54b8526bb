// The stored form of passwords: an obfuscation that hides them from a casual look, no encryption.
#pragma once

#include <string>
#include <string_view>

// The text stored for `password` of `user`: unchanged for exactly "anonymous", else two hexadecimal digits a character.
// Quirk: a byte of 128 or more gives eight digits, kept.
std::string EncodePassword(std::string_view password, std::string_view user);
// Reads two digits a character. Quirk: so a password with bytes of 128 or more comes back altered, kept.
std::string DecodePassword(std::string_view stored, std::string_view user);
