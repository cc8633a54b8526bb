#include "config/password_form.h"

#include <cstdio>

namespace {

constexpr std::string_view kPlainUser = "anonymous";  // compared with case

// Value of a hexadecimal digit, -1 for another character.
int HexValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    return -1;
}

}  // namespace

std::string EncodePassword(std::string_view password, std::string_view user) {
    if (user == kPlainUser) return std::string(password);
    std::string stored;
    int position = 0;
    for (const char character : password) {
        // Quirk: signed, so a byte of 128 or more gives eight digits, kept.
        const int value = static_cast<signed char>(character) + position++;
        char digits[16];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(value));
        stored += digits;
    }
    return stored;
}

std::string DecodePassword(std::string_view stored, std::string_view user) {
    if (user == kPlainUser) return std::string(stored);
    std::string password;
    for (std::size_t at = 0; at + 1 < stored.size(); at += 2) {
        const int high = HexValue(stored[at]);
        const int low = HexValue(stored[at + 1]);
        // A text that is no stored form: what has been read of it would be no password either.
        if (high < 0 || low < 0) return {};
        const unsigned position = static_cast<unsigned>(at / 2);
        password.push_back(static_cast<char>((static_cast<unsigned>(high * 16 + low) - position) & 0xFFU));
    }
    return password;
}
