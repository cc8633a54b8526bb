// Memory and progress of one copy: several buffers of PACKETSIZE side by side, so that one system call fills or sends
// them all, and a meter that tells the session view at most 20 times a second.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/sockets.h"

class TransferBuffer {
  public:
    // One small buffer of its own serves when memory is short.
    explicit TransferBuffer(std::uint32_t packetSize);
    TransferBuffer(const TransferBuffer&) = delete;
    TransferBuffer& operator=(const TransferBuffer&) = delete;

    char* data() { return pieces_.front().data; }
    std::size_t size() const { return size_; }
    std::span<const platform::IoBuffer> pieces() const { return pieces_; }

  private:
    std::unique_ptr<char[]> memory_;
    std::vector<platform::IoBuffer> pieces_;
    std::size_t size_ = 0;
    char spare_[260];
};

class TransferProgressMeter {
  public:
    TransferProgressMeter(bool shown, std::uint64_t total) : shown_(shown), total_(total) {}
    void Moved(std::uint64_t done);
    // The last state, whatever the time.
    void Finished(std::uint64_t done);

  private:
    void Tell(std::uint64_t done) const;

    bool shown_;
    std::uint64_t total_;
    bool told_ = false;
    std::uint32_t toldAt_ = 0;
};
