// The stored form of passwords. It keeps them from being read in passing, nothing more.
#pragma once

#include <string>
#include <string_view>

// The text stored for `password` of `user`: as it stands for exactly "anonymous", else two hexadecimal digits a
// character (eight for a byte of 128 and more, as wanted).
std::string EncodePassword(std::string_view password, std::string_view user);
// Takes two digits a character, so a password with bytes of 128 and more does not survive, as wanted.
std::string DecodePassword(std::string_view stored, std::string_view user);
