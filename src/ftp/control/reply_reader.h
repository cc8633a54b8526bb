// Replies of the server as bytes turn into lines and codes (RFC 959, section 4.2). No socket here: bytes in, lines out.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Longest line that is kept in memory; the rest of a longer one is read and thrown away, with a message.
inline constexpr std::size_t kLongestReplyLine = 65536;
inline constexpr std::size_t kFirstPeek = 82;
inline constexpr std::size_t kPeekStep = 260;
// Lines of one reply and bytes of one reply after which the server is taken for broken.
inline constexpr int kMostReplyLines = 10000;
inline constexpr std::size_t kMostReplyBytes = std::size_t{16} * 1024 * 1024;

// How many of the peeked bytes belong to the line, or 0 when the peek filled `limit` without a line feed and must be
// repeated with more.
// Quirk: a line without its line feed is taken as it is, so a line split across packets is read as two, kept.
std::size_t LineLength(std::string_view peeked, std::size_t limit);

// Numeric code of a line and its effect on the multi-line state. 0 when the line carries none.
int ReplyLineCode(std::string_view line, bool& continuing);

// The result of a reply from its first line's code: 550 whole, 0 out of 100..599, else the class.
int ReplyClass(int code);

// Adds a later line to the joined text of a reply that holds at most `size` - 1 characters.
// Quirk: what does not fit overwrites the start, so a long reply may begin with a piece of a later line, kept.
void JoinReplyLine(std::string& joined, std::string_view line, std::size_t size);

// The text between the first two double quotes of a PWD reply line; false without two quotes.
bool QuotedDirectory(std::string_view line, std::string& directory);
