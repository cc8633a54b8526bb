#include "foundation/message_expansion.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "foundation/ascii.h"

namespace {

// A text may ask for any width; more than this is never needed.
constexpr int kWidest = 500;

// One printf conversion without its percent sign.
struct Conversion {
    bool left = false, plus = false, blank = false, alternate = false, zero = false;
    int width = 0;
    int precision = -1;
    char type = '\0';
};

int ReadNumber(std::string_view text, std::size_t& at) {
    int number = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) number = std::min(number * 10 + (text[at] - '0'), kWidest);
    return number;
}

void ReadFlags(std::string_view text, std::size_t& at, Conversion& conversion) {
    for (; at < text.size(); ++at) {
        switch (text[at]) {
            case '-':
                conversion.left = true;
                break;
            case '+':
                conversion.plus = true;
                break;
            case ' ':
                conversion.blank = true;
                break;
            case '#':
                conversion.alternate = true;
                break;
            case '0':
                conversion.zero = true;
                break;
            default:
                return;
        }
    }
}

// Reads a conversion from the start of `text`; its length, or 0 when it is none that is known here. "*", which takes
// its number from the values, is not: a text could use it to shift every later value.
std::size_t ReadConversion(std::string_view text, Conversion& conversion) {
    std::size_t at = 0;
    ReadFlags(text, at, conversion);
    conversion.width = ReadNumber(text, at);
    if (at < text.size() && text[at] == '.') {
        ++at;
        conversion.precision = ReadNumber(text, at);
    }
    while (at < text.size() && (text[at] == 'l' || text[at] == 'h')) ++at;
    if (at >= text.size() || std::string_view("diuxXcsfg%").find(text[at]) == std::string_view::npos) return 0;
    conversion.type = text[at];
    return at + 1;
}

std::string Pad(const Conversion& conversion, const std::string& sign, const std::string& body, bool zeros) {
    const std::size_t width = static_cast<std::size_t>(conversion.width);
    const std::size_t length = sign.size() + body.size();
    const std::size_t missing = width > length ? width - length : 0;
    if (conversion.left) return sign + body + std::string(missing, ' ');
    if (zeros) return sign + std::string(missing, '0') + body;
    return std::string(missing, ' ') + sign + body;
}

std::string SignOf(const Conversion& conversion, bool negative) {
    if (negative) return "-";
    if (conversion.plus) return "+";
    return conversion.blank ? " " : "";
}

// A negative value read as unsigned is the 32-bit one that the catalogue's texts were written for, if it fits.
std::uint64_t AsUnsigned(const MessageInsert& insert) {
    const std::int64_t number = insert.number();
    if (insert.kind() == MessageInsert::Kind::Signed && number < 0 && number >= INT32_MIN) {
        return static_cast<std::uint32_t>(number);
    }
    return static_cast<std::uint64_t>(number);
}

std::string RenderInteger(const Conversion& conversion, const MessageInsert& insert) {
    const bool isDecimal = conversion.type == 'd' || conversion.type == 'i';
    const bool isHex = conversion.type == 'x' || conversion.type == 'X';
    const bool negative = isDecimal && insert.kind() == MessageInsert::Kind::Signed && insert.number() < 0;
    const std::uint64_t value = negative ? 0 - static_cast<std::uint64_t>(insert.number()) : AsUnsigned(insert);

    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value, isHex ? 16 : 10);
    std::string body(digits, end.ptr);
    if (conversion.precision == 0 && value == 0) body.clear();
    if (conversion.precision > static_cast<int>(body.size())) {
        body.insert(0, static_cast<std::size_t>(conversion.precision) - body.size(), '0');
    }
    std::string sign = isDecimal ? SignOf(conversion, negative) : "";
    if (isHex && conversion.alternate && value != 0) sign = "0x";
    std::string text = Pad(conversion, sign, body, conversion.zero && conversion.precision < 0);
    if (conversion.type == 'X') {
        for (char& c : text) c = c >= 'a' && c <= 'x' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return text;
}

std::string RenderReal(const Conversion& conversion, double value) {
    char digits[kWidest + 400];  // the largest double has 309 digits before the point
    const int precision = conversion.precision < 0 ? 6 : conversion.precision;
    if (conversion.type == 'g') {
        std::snprintf(digits, sizeof digits, "%.*g", precision, value);
    } else {
        std::snprintf(digits, sizeof digits, "%.*f", precision, value);
    }
    const bool negative = digits[0] == '-';
    const std::string body = digits + (negative ? 1 : 0);
    return Pad(conversion, SignOf(conversion, negative), body, conversion.zero && IsDigit(body[0]));
}

std::string RenderText(const Conversion& conversion, std::string_view text) {
    if (conversion.precision >= 0) text = text.substr(0, static_cast<std::size_t>(conversion.precision));
    return Pad(conversion, "", std::string(text), false);
}

std::string RenderCharacter(const Conversion& conversion, const MessageInsert& insert) {
    const char character = static_cast<char>(insert.number());
    return Pad(conversion, "", character != '\0' ? std::string(1, character) : std::string(), false);
}

bool IsInteger(const MessageInsert& insert) {
    return insert.kind() == MessageInsert::Kind::Signed || insert.kind() == MessageInsert::Kind::Unsigned;
}

// False when the value is not of the conversion's type.
bool Render(const Conversion& conversion, const MessageInsert& insert, std::string& out) {
    switch (conversion.type) {
        case 's':
            if (insert.kind() != MessageInsert::Kind::Text) return false;
            out += RenderText(conversion, insert.text());
            return true;
        case 'c':
            if (!IsInteger(insert)) return false;
            out += RenderCharacter(conversion, insert);
            return true;
        case 'f':
        case 'g':
            if (insert.kind() != MessageInsert::Kind::Real) return false;
            out += RenderReal(conversion, insert.real());
            return true;
        default:
            if (!IsInteger(insert)) return false;
            out += RenderInteger(conversion, insert);
            return true;
    }
}

// A value in its own natural form, for numbered inserts that name no type or another one.
void RenderAsItIs(Conversion conversion, const MessageInsert& insert, std::string& out) {
    if (insert.kind() == MessageInsert::Kind::Text) {
        conversion.type = 's';
    } else {
        conversion.type = insert.kind() == MessageInsert::Kind::Real ? 'f' : 'd';
        conversion.precision = -1;
    }
    Render(conversion, insert, out);
}

// The part of a numbered insert behind its percent sign: "1", "12", "1!s!". Moves `at` behind it.
bool ExpandInsert(std::string_view text, std::size_t& at, std::span<const MessageInsert> inserts, std::string& out) {
    std::size_t number = static_cast<std::size_t>(text[at++] - '0');
    if (at < text.size() && IsDigit(text[at])) number = number * 10 + static_cast<std::size_t>(text[at++] - '0');

    Conversion conversion;
    conversion.type = 's';
    if (at < text.size() && text[at] == '!') {
        const std::string_view rest = text.substr(at + 1);
        conversion = {};
        const std::size_t length = ReadConversion(rest, conversion);
        if (length == 0 || conversion.type == '%' || length >= rest.size() || rest[length] != '!') return false;
        at += length + 2;
    }
    if (number > inserts.size() || inserts[number - 1].kind() == MessageInsert::Kind::None) return false;
    const MessageInsert& insert = inserts[number - 1];
    if (!Render(conversion, insert, out)) RenderAsItIs(conversion, insert, out);
    return true;
}

// Handles the character after a percent sign that begins no insert.
void AppendEscape(char escape, std::string& out) {
    switch (escape) {
        case 'n':
            out += "\r\n";
            break;
        case 'r':
            out += '\r';
            break;
        case 't':
            out += '\t';
            break;
        default:
            out += escape;
            break;
    }
}

}  // namespace

std::string ExpandPrintf(std::string_view text, std::span<const MessageInsert> inserts) {
    std::string out;
    std::size_t next = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '%') {
            out += text[at++];
            continue;
        }
        Conversion conversion;
        const std::size_t length = ReadConversion(text.substr(at + 1), conversion);
        if (length == 0) {
            out += text[at++];
            continue;
        }
        const std::string_view asWritten = text.substr(at, length + 1);
        at += length + 1;
        if (conversion.type == '%') {
            out += '%';
        } else if (next >= inserts.size() || !Render(conversion, inserts[next++], out)) {
            out += asWritten;
        }
    }
    return out;
}

bool ExpandNumbered(std::string_view text, std::span<const MessageInsert> inserts, std::string& out) {
    out.clear();
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '%' || at + 1 == text.size()) {
            out += text[at++];
            continue;
        }
        ++at;
        if (text[at] == '0') return true;
        if (!IsDigit(text[at])) {
            AppendEscape(text[at++], out);
        } else if (!ExpandInsert(text, at, inserts, out)) {
            return false;
        }
    }
    return true;
}

InsertClass FirstInsertClass(std::string_view text) {
    const std::size_t found = text.find("%1!");
    if (found == std::string_view::npos) return InsertClass::None;
    const std::string_view type = text.substr(found + 3);
    if (type.starts_with("d")) return InsertClass::Decimal;
    if (type.starts_with("ld")) return InsertClass::LongDecimal;
    if (type.starts_with("u")) return InsertClass::Unsigned;
    if (type.starts_with("x")) return InsertClass::Hex;
    if (type.starts_with("s")) return InsertClass::Text;
    return InsertClass::Unknown;
}

std::string ExpandOnceMore(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        out += text[at];
        if (text.substr(at, 2) == "%%") ++at;
    }
    return out;
}

std::string DoublePercents(std::string_view text) {
    std::string out;
    for (const char c : text) out.append(c == '%' ? 2 : 1, c);
    return out;
}
