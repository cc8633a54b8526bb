// Reads a received listing back, block by block, and hands out its lines.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/files.h"

// Lines longer than this are handed out cut, so that one line without end cannot take the memory.
inline constexpr std::size_t kLongestListingLine = 16384;

class DumpReader {
  public:
    DumpReader() = default;
    DumpReader(const DumpReader&) = delete;
    DumpReader& operator=(const DumpReader&) = delete;
    ~DumpReader();
    // False when the file cannot be opened or memory is short (reported).
    bool Open(const char* traceContext, const char* fileName);
    // The next line without its line end and leading blanks; "total " is skipped as the first line only, empty lines
    // always. False at the end. The view lives until the next call.
    bool NextLine(std::string_view& line);
    std::uint64_t BytesRead() const { return bytesRead_; }
    // kNoFile while nothing is open.
    platform::FileHandle Handle() const { return file_; }
    // Closes the file early, so that it can be deleted.
    void Close();

  private:
    bool FillBlock();
    bool NextRawLine(std::string_view& line);

    platform::FileHandle file_ = platform::kNoFile;
    std::uint64_t bytesRead_ = 0;
    std::unique_ptr<char[]> block_;
    std::size_t blockLength_ = 0;
    std::size_t position_ = 0;     // of the next line in the block
    bool skipLineFeed_ = false;    // the last line ended with CR: a line feed behind it belongs to it
    bool insideLongLine_ = false;  // a line was handed out cut, its rest is still to come
    bool first_ = true;
};
