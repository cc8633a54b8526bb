#include "ftp/control/reply_reader.h"

#include <algorithm>

#include "foundation/ascii.h"

std::size_t LineLength(std::string_view peeked, std::size_t limit) {
    const std::size_t lineFeed = peeked.find('\n');
    if (lineFeed != std::string_view::npos) return lineFeed + 1;
    return peeked.size() < limit ? peeked.size() : 0;
}

int ReplyLineCode(std::string_view line, bool& continuing) {
    if (line.size() < 3 || !IsDigit(line[0]) || !IsDigit(line[1]) || !IsDigit(line[2])) return 0;
    // Quirk: any three digits end a multi-line reply, even if they are not those of its first line, kept.
    continuing = line.size() > 3 && line[3] == '-';
    // The fourth character belongs to the code's text too: a digit there makes a number of four.
    int code = (line[0] - '0') * 100 + (line[1] - '0') * 10 + (line[2] - '0');
    if (line.size() > 3 && IsDigit(line[3])) code = code * 10 + (line[3] - '0');
    return code;
}

int ReplyClass(int code) {
    if (code == 550) return 550;
    if (code < 100 || code > 599) return 0;
    return code / 100;
}

void JoinReplyLine(std::string& joined, std::string_view line, std::size_t size) {
    if (size == 0) return;
    if (joined.size() + line.size() <= size) {
        joined.append(line);
        joined.resize(std::min(joined.size(), size - 1));
        return;
    }
    // Quirk: what does not fit overwrites the start instead of the end, kept.
    if (line.size() >= size || joined.size() + 2 >= size) return;
    const std::size_t count = std::min(size - joined.size() - 2, std::min(line.size(), joined.size()));
    std::copy_n(line.data(), count, joined.begin());
}

bool QuotedDirectory(std::string_view line, std::string& directory) {
    const std::size_t first = line.find('"');
    if (first == std::string_view::npos) return false;
    const std::size_t second = line.find('"', first + 1);
    if (second == std::string_view::npos) return false;
    directory.assign(line.substr(first + 1, second - first - 1));
    return true;
}
