// The string table of the native build: the text of the same resource file that the Windows build compiles, read once.
#include "platform/strings.h"

#include <charconv>
#include <fstream>
#include <map>
#include <optional>
#include <string_view>

#include "fault_injection.h"
#include "host_errors.h"
#include "platform/utf8.h"

namespace platform {
namespace {

using TextTable = std::map<unsigned, std::string>;

// Absolute, because tests change the current folder before the first text is read.
constexpr char kMessagesPath[] = ZARN_SOURCE_DIR "/src/resources/messages.rc";

// Reads digits of a \ooo or \xhh escape.
char ReadNumber(std::string_view& source, int base, std::size_t most) {
    unsigned value = 0;
    const char* end = source.data() + std::min(most, source.size());
    const auto [next, error] = std::from_chars(source.data(), end, value, base);
    if (error == std::errc()) source.remove_prefix(static_cast<std::size_t>(next - source.data()));
    return static_cast<char>(value);
}

char ReadEscape(std::string_view& source) {
    const char letter = source.front();
    if (letter >= '0' && letter <= '7') return ReadNumber(source, 8, 3);
    source.remove_prefix(1);
    switch (letter) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'a':
            return '\a';
        case 'x':
            return ReadNumber(source, 16, 2);
        default:
            return letter;
    }
}

// The text of a literal, `source` begins after its opening quote; nothing when the quote is never closed.
std::optional<std::string> ReadLiteral(std::string_view source) {
    std::string text;
    while (!source.empty()) {
        const char character = source.front();
        source.remove_prefix(1);
        if (character == '"') {
            if (source.empty() || source.front() != '"') return text;
            source.remove_prefix(1);
        } else if (character == '\\' && !source.empty()) {
            text.push_back(ReadEscape(source));
            continue;
        }
        text.push_back(character);
    }
    return std::nullopt;
}

// Takes a line of the form: id, "text".
void ReadLine(std::string_view line, TextTable& table) {
    const std::size_t start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos) return;
    line.remove_prefix(start);
    unsigned id = 0;
    const auto [next, error] = std::from_chars(line.data(), line.data() + line.size(), id);
    if (error != std::errc()) return;
    line.remove_prefix(static_cast<std::size_t>(next - line.data()));
    const std::size_t quote = line.find('"');
    if (quote == std::string_view::npos || line.substr(0, quote).find_first_not_of(" \t,L") != std::string_view::npos) {
        return;
    }
    if (const auto text = ReadLiteral(line.substr(quote + 1))) table[id] = *text;
}

TextTable ReadTable() {
    TextTable table;
    std::ifstream file(kMessagesPath);
    for (std::string line; std::getline(file, line);) ReadLine(line, table);
    return table;
}

}  // namespace

bool LoadText(unsigned id, std::size_t longest, std::string& text) {
    static const TextTable table = ReadTable();
    text.clear();
    if (fault_injection::Strikes(fault_injection::Call::LoadText)) return false;
    const auto found = table.find(id);
    if (found == table.end() || found->second.empty()) return host::Fail(host::kErrorTextNotFound);
    text = found->second;
    text.resize(CutUtf8(text, longest).size());
    return true;
}

}  // namespace platform
