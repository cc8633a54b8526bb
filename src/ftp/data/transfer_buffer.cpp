#include "ftp/data/transfer_buffer.h"

#include <algorithm>
#include <new>

#include "ftp/worker/session_view.h"
#include "platform/clock.h"

namespace {

constexpr std::size_t kMostPieces = 32;
constexpr std::size_t kMostBytes = std::size_t{256} * 1024;
constexpr std::size_t kLargestPiece = std::size_t{16} * 1024 * 1024;
constexpr std::uint32_t kTellEveryMilliseconds = 50;

}  // namespace

TransferBuffer::TransferBuffer(std::uint32_t packetSize) {
    const std::size_t piece = std::clamp<std::size_t>(packetSize, 1, kLargestPiece);
    const std::size_t count = std::clamp<std::size_t>(kMostBytes / piece, 1, kMostPieces);
    memory_.reset(new (std::nothrow) char[piece * count]);
    if (memory_ == nullptr) {
        pieces_.push_back({spare_, sizeof spare_});
        size_ = sizeof spare_;
        return;
    }
    pieces_.reserve(count);
    for (std::size_t number = 0; number < count; ++number) pieces_.push_back({memory_.get() + number * piece, piece});
    size_ = piece * count;
}

void TransferProgressMeter::Moved(std::uint64_t done) {
    if (!shown_) return;
    const std::uint32_t now = platform::TickCount();
    if (told_ && now - toldAt_ < kTellEveryMilliseconds) return;
    told_ = true;
    toldAt_ = now;
    Tell(done);
}

void TransferProgressMeter::Finished(std::uint64_t done) {
    if (shown_) Tell(done);
}

void TransferProgressMeter::Tell(std::uint64_t done) const {
    gSessionView.setTransferProgress(done, total_);
}
