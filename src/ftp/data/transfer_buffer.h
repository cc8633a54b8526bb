// Memory and progress of one copy: several buffers of PACKETSIZE side by side, so that one system call can fill them
// all, and a meter that updates the session view at most 20 times a second. Not here: the copies (data_copy.h,
// data_send.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/sockets.h"

class TransferBuffer {
  public:
    // `packetSize` in bytes. When memory is short, a small buffer inside the object is used.
    explicit TransferBuffer(std::uint32_t packetSize);
    TransferBuffer(const TransferBuffer&) = delete;
    TransferBuffer& operator=(const TransferBuffer&) = delete;

    // All pieces as one: `data` is the first byte, `size` their total length in bytes.
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
    // `total` is the expected number of bytes. A meter that is not `shown` never calls the view.
    TransferProgressMeter(bool shown, std::uint64_t total) : shown_(shown), total_(total) {}
    // `done` is the number of bytes so far.
    void Moved(std::uint64_t done);
    // Always updates the view, however recent the last update.
    void Finished(std::uint64_t done);

  private:
    void Tell(std::uint64_t done) const;

    bool shown_;
    std::uint64_t total_;
    bool told_ = false;
    std::uint32_t toldAt_ = 0;
};
