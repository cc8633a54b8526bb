#include "listing/dump_reader.h"

#include <cstring>
#include <new>

#include "foundation/error_report.h"
#include "foundation/trace.h"
#include "ftp/data/dump_file.h"
#include "listing/line_tokens.h"

namespace {

constexpr std::size_t kBlockSize = 65536;
constexpr std::string_view kTotalLine = "total ";
static_assert(kBlockSize > kLongestListingLine);

// Position of the first CR or LF, or npos.
std::size_t FindLineEnd(std::string_view text) {
    if (text.empty()) return std::string_view::npos;
    const auto* feed = static_cast<const char*>(std::memchr(text.data(), '\n', text.size()));
    const std::size_t limit = feed != nullptr ? static_cast<std::size_t>(feed - text.data()) : text.size();
    const auto* carriage = static_cast<const char*>(std::memchr(text.data(), '\r', limit));
    if (carriage != nullptr) return static_cast<std::size_t>(carriage - text.data());
    return feed != nullptr ? limit : std::string_view::npos;
}

}  // namespace

DumpReader::~DumpReader() {
    Close();
}

void DumpReader::Close() {
    if (file_ != platform::kNoFile) platform::CloseFile(file_);
    file_ = platform::kNoFile;
}

bool DumpReader::Open(const char* traceContext, const char* fileName) {
    file_ = GetDumpFileHandle(traceContext, fileName, platform::FileAccess::Read);
    if (file_ == platform::kNoFile) return false;
    if (block_ == nullptr) block_.reset(new (std::nothrow) char[kBlockSize]);
    if (block_ != nullptr) return true;
    DbgVsprintf(traceContext, "(ERROR) Failed to Allocate Memory for pszFileBuffer. Returning -1");
    ShowNoMemoryError();
    Close();
    return false;
}

// Moves what is left of the block to its front and fills the rest; false when the file gave nothing more.
bool DumpReader::FillBlock() {
    const std::size_t left = blockLength_ - position_;
    if (left > 0 && position_ > 0) std::memmove(block_.get(), block_.get() + position_, left);
    position_ = 0;
    blockLength_ = left;
    if (file_ == platform::kNoFile || left == kBlockSize) return false;
    const int received = platform::ReadFile(file_, std::span<char>(block_.get(), kBlockSize).subspan(left));
    if (received <= 0) return false;
    blockLength_ += static_cast<std::size_t>(received);
    bytesRead_ += static_cast<std::uint64_t>(received);
    return true;
}

// The next line, empty or not, without its end. A line longer than the limit is cut.
bool DumpReader::NextRawLine(std::string_view& line) {
    while (true) {
        std::string_view rest(block_.get() + position_, blockLength_ - position_);
        if (skipLineFeed_ && !rest.empty()) {
            if (rest.front() == '\n') {
                ++position_;
                rest.remove_prefix(1);
            }
            skipLineFeed_ = false;
        }
        const std::size_t end = FindLineEnd(rest);
        if (end != std::string_view::npos) {
            line = rest.substr(0, end);
            position_ += end + 1;
            skipLineFeed_ = rest[end] == '\r';
            return true;
        }
        if (rest.size() > kLongestListingLine) {
            line = rest;
            position_ = blockLength_;
            insideLongLine_ = true;
            return true;
        }
        if (FillBlock()) continue;
        line = std::string_view(block_.get() + position_, blockLength_ - position_);
        position_ = blockLength_;
        return !line.empty();
    }
}

bool DumpReader::NextLine(std::string_view& line) {
    while (true) {
        const bool restOfLongLine = insideLongLine_;
        insideLongLine_ = false;
        if (!NextRawLine(line)) return false;
        const bool first = first_;
        first_ = false;
        if (restOfLongLine) continue;
        if (first && line.substr(0, kTotalLine.size()) == kTotalLine) continue;
        line = SkipBlanks(line).substr(0, kLongestListingLine);
        if (!line.empty()) return true;
    }
}
