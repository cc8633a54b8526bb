// Helpers on UTF-8 bytes with the same result on every system, whatever its own converters do with malformed bytes.
// The system's own code page belongs to system.h.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// One code point read from the front of a text.
struct CodePoint {
    char32_t value = 0;      // U+FFFD when the bytes are malformed
    std::size_t length = 0;  // bytes it took, at least 1
    bool valid = false;
};

// The first code point of a text that is not empty. Malformed bytes are taken in maximal parts, as the Unicode
// standard recommends (section 3.9), so that one broken sequence becomes one replacement character.
CodePoint ReadCodePoint(std::string_view text);
void AppendUtf8(std::string& text, char32_t codePoint);

// The beginning of `text`, at most `longest` bytes, without splitting a character.
std::string_view CutUtf8(std::string_view text, std::size_t longest);

bool IsValidUtf8(std::string_view bytes);
// UTF-16 code units, without a terminator; invalid bytes become U+FFFD.
std::u16string Utf8ToWide(std::string_view text);
std::string WideToUtf8(std::u16string_view text);

}  // namespace platform
