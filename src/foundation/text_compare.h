// Comparing and trimming texts. The ASCII routines are for protocol words and file extensions; the two with a prefix
// follow the user's locale.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Compare in the locale's word-sort order: below, at or above 0. Quirk: a text longer than `n` is cut to n - 1
// characters first, kept.
int Zarn_strncmpi(const char* a, const char* b, std::size_t n);
int Zarn_strncmp(const char* a, const char* b, std::size_t n);

// Only ASCII letters change or compare equal.
std::string AsciiLower(std::string_view text);
std::string AsciiUpper(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

// Null or empty.
constexpr bool IsMissing(const char* text) {
    return text == nullptr || *text == '\0';
}
constexpr bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}
// Removes trailing characters that are in `set`, while the text is longer than `shortest`.
void StripTrailing(std::string& text, std::string_view set, std::size_t shortest = 0);
