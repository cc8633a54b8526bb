// Questions about single ASCII characters, whatever the locale. Whole texts belong to text_compare.h.
#pragma once

constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// Only the 26 letters change; other bytes stay.
constexpr char AsciiLower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}
constexpr char AsciiUpper(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}
