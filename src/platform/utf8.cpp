#include "platform/utf8.h"

namespace platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// What may follow a lead byte: how many bytes, and the range of the first of them (RFC 3629, section 4).
struct LeadByte {
    std::size_t following;
    unsigned char low, high;
};

LeadByte DescribeLead(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
    if (lead == 0xE0) return {2, 0xA0, 0xBF};
    if (lead == 0xED) return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
    if (lead == 0xF0) return {3, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
    if (lead == 0xF4) return {3, 0x80, 0x8F};
    return {0, 0, 0};
}

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

CodePoint ReadCodePoint(std::string_view text) {
    const auto byteAt = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80) return {lead, 1, true};
    const LeadByte shape = DescribeLead(lead);
    if (shape.following == 0) return {kReplacement, 1, false};

    char32_t value = lead & (0x3Fu >> shape.following);
    for (std::size_t index = 1; index <= shape.following; ++index) {
        const unsigned char low = index == 1 ? shape.low : 0x80;
        const unsigned char high = index == 1 ? shape.high : 0xBF;
        if (index >= text.size() || byteAt(index) < low || byteAt(index) > high) return {kReplacement, index, false};
        value = (value << 6) | (byteAt(index) & 0x3Fu);
    }
    return {value, shape.following + 1, true};
}

void AppendUtf8(std::string& text, char32_t codePoint) {
    const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (codePoint < 0x80) {
        append(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
    } else if (codePoint < 0x10000) {
        append(0xE0 | (codePoint >> 12));
        append(0x80 | ((codePoint >> 6) & 0x3F));
    } else {
        append(0xF0 | (codePoint >> 18));
        append(0x80 | ((codePoint >> 12) & 0x3F));
        append(0x80 | ((codePoint >> 6) & 0x3F));
    }
    append(0x80 | (codePoint & 0x3F));
}

std::string_view CutUtf8(std::string_view text, std::size_t longest) {
    if (text.size() <= longest) return text;
    while (longest > 0 && (static_cast<unsigned char>(text[longest]) & 0xC0) == 0x80) --longest;
    return text.substr(0, longest);
}

bool IsValidUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const CodePoint next = ReadCodePoint(bytes);
        if (!next.valid) return false;
        bytes.remove_prefix(next.length);
    }
    return true;
}

std::u16string Utf8ToWide(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        const CodePoint next = ReadCodePoint(text);
        text.remove_prefix(next.length);
        if (next.value < 0x10000) {
            wide.push_back(static_cast<char16_t>(next.value));
            continue;
        }
        const char32_t offset = next.value - 0x10000;
        wide.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
        wide.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
    }
    return wide;
}

std::string WideToUtf8(std::u16string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        char32_t value = text[index];
        if (IsHighSurrogate(value) && index + 1 < text.size() && IsLowSurrogate(text[index + 1])) {
            value = 0x10000 + ((value - 0xD800) << 10) + (text[index + 1] - 0xDC00u);
            ++index;
        } else if (IsHighSurrogate(value) || IsLowSurrogate(value)) {
            value = kReplacement;
        }
        AppendUtf8(utf8, value);
    }
    return utf8;
}

}  // namespace platform
