// The frame around a transfer of several items: where both sides stand before it, that the dialog shows, that both
// sides stand there again and the dialog closes when it is over. Not here: what is transferred.
#pragma once

#include <atomic>
#include <string>

#include "config/site.h"

// What an entry point returns when it could not begin.
inline constexpr int kNothingDone = -1;

enum class TransferDirection { Download, Upload };

class TransferRun {
  public:
    explicit TransferRun(TransferDirection direction);
    ~TransferRun();
    TransferRun(const TransferRun&) = delete;
    TransferRun& operator=(const TransferRun&) = delete;

    // Makes the drop's target the current folder of the receiving side. False (told) when that or the server fails.
    bool Start(const char* caller, std::atomic<bool>& abort);
    const std::string& LocalStart() const { return localStart_; }
    const std::string& RemoteStart() const { return remoteStart_; }
    // Folders and files done; tells of failures unless the user ended the transfer.
    int Done(const std::atomic<bool>& abort) const;

  private:
    bool EnterTarget(const std::string& target, std::atomic<bool>& abort);
    void GoBack();

    TransferDirection direction_;
    Site* site_;
    std::string localBefore_;
    std::string remoteBefore_;
    std::string localStart_;
    std::string remoteStart_;
};
