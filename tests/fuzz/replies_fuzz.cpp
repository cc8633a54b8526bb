// Replies: lines out of a stream that comes in pieces, their codes, joined replies of several lines, the PWD path.
#include <algorithm>
#include <string>

#include "ftp/control/reply_reader.h"
#include "fuzz/harness.h"

namespace {

// A server's bytes of which a growing part has arrived.
class Stream {
  public:
    Stream(std::string_view bytes, std::uint32_t seed) : bytes_(bytes), seed_(seed) {}
    bool AtEnd() const { return position_ == bytes_.size(); }
    // What a peek of at most `limit` bytes gives: something always, unless the stream is at its end.
    std::string_view Peek(std::size_t limit) {
        if (arrived_ == position_ || NextChoice(seed_) % 4 == 0) {
            arrived_ = std::min(bytes_.size(), arrived_ + 1 + NextChoice(seed_) % 300);
        }
        return bytes_.substr(position_, std::min(limit, arrived_ - position_));
    }
    void Drop(std::size_t count) { position_ += count; }

  private:
    std::string_view bytes_;
    std::size_t position_ = 0;
    std::size_t arrived_ = 0;
    std::uint32_t seed_;
};

// One line in the manner of the control connection: peek, and peek for more while there is no line feed.
std::string_view TakeLine(Stream& stream) {
    std::size_t limit = kFirstPeek;
    while (true) {
        const std::string_view peeked = stream.Peek(limit);
        std::size_t length = LineLength(peeked, limit);
        REQUIRE_THAT(length <= peeked.size());
        if (length == 0) {
            REQUIRE_THAT(peeked.size() == limit && peeked.find('\n') == std::string_view::npos);
            if (limit < kLongestReplyLine) {
                limit += kPeekStep;
                continue;
            }
            length = peeked.size();
        }
        const std::string_view line = peeked.substr(0, length);
        REQUIRE_THAT(!line.empty() && line.substr(0, length - 1).find('\n') == std::string_view::npos);
        stream.Drop(length);
        return line;
    }
}

void CheckCode(std::string_view line, int code, bool before, bool continuing) {
    REQUIRE_THAT(code >= 0 && code <= 9999);
    const int kind = ReplyClass(code);
    REQUIRE_THAT((kind >= 0 && kind <= 5) || kind == 550);
    if (line.size() < 3) REQUIRE_THAT(code == 0 && continuing == before);
    if (continuing && !before) REQUIRE_THAT(line.size() > 3 && line[3] == '-');
}

}  // namespace

// One byte for how the stream is cut, one for the size of the reply's buffer, then what the server sends.
void FuzzReplyReader(std::string_view input) {
    FuzzInput from(input);
    const std::uint32_t seed = from.Byte();
    const std::size_t size = std::size_t{from.Byte()} * 5;
    Stream stream(from.Rest(), seed);
    std::string read;
    std::string joined;
    bool continuing = false;
    bool first = true;
    while (!stream.AtEnd()) {
        const std::string_view line = TakeLine(stream);
        read += line;
        const bool before = continuing;
        const int code = ReplyLineCode(line, continuing);
        CheckCode(line, code, before, continuing);
        if (first) {
            joined.assign(line.substr(0, size > 0 ? size - 1 : 0));
        } else {
            JoinReplyLine(joined, line, size);
        }
        REQUIRE_THAT(size == 0 ? joined.empty() : joined.size() < size);
        first = !continuing;
    }
    REQUIRE_THAT(read == from.Rest());
}

void FuzzPwdPath(std::string_view input) {
    std::string directory = "before";
    const bool found = QuotedDirectory(input, directory);
    REQUIRE_THAT(found == (std::count(input.begin(), input.end(), '"') >= 2));
    if (!found) return;
    REQUIRE_THAT(directory.find('"') == std::string::npos);
    REQUIRE_THAT(input.find('"' + directory + '"') == input.find('"'));
}
