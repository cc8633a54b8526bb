// Cuts a listing line into tokens without copying. Only for the parsers of this floor; what the tokens mean is theirs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "foundation/ascii.h"

inline constexpr bool IsBlank(char character) {
    return character == ' ' || character == '\t';
}

inline std::string_view SkipBlanks(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size() && IsBlank(text[position])) ++position;
    return text.substr(position);
}
// Drops an inode or block-count column.
inline std::string_view SkipLeadingNumbers(std::string_view line) {
    std::size_t position = 0;
    while (position < line.size() && (IsDigit(line[position]) || IsBlank(line[position]))) ++position;
    return line.substr(position);
}
// Length of the run of other characters at the front.
inline std::size_t TokenLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && !IsBlank(text[length])) ++length;
    return length;
}

// Decimal value of the leading digits of a short text (at most nine count).
inline int LeadingNumber(std::string_view text) {
    int value = 0;
    for (const char character : text.substr(0, 9)) {
        if (!IsDigit(character)) break;
        value = value * 10 + (character - '0');
    }
    return value;
}

class LineTokens {
  public:
    explicit LineTokens(std::string_view line) : rest_(line) {}
    // The next token's first `longest` characters; scanning continues after its real end. Empty at the end of the line.
    std::string_view Next(std::size_t longest) {
        rest_ = SkipBlanks(rest_);
        const std::size_t length = TokenLength(rest_);
        const std::string_view token = rest_.substr(0, length < longest ? length : longest);
        rest_.remove_prefix(length);
        return token;
    }
    // The text after the last token, including its separator.
    std::string_view Rest() const { return rest_; }

  private:
    std::string_view rest_;
};
