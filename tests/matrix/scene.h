// What every run of the matrices stands on: the engine on its worker, a scripted server with a small tree, a local
// folder with a file to send and a file that a download would replace. One scene at a time.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ftp/data/transfer_node.h"
#include "listing/tree_node.h"
#include "support/recording_listing_view.h"
#include "support/recording_transfer_view.h"
#include "support/session_harness.h"
#include "transfer/transfer_job.h"

namespace matrix {

struct Operation;

inline constexpr char kKeptBytes[] = "what stood there before";
inline constexpr std::size_t kDownloadSize = 300'000;
// More than the buffers of two sockets hold, so that a server that does not read stops the sending.
inline constexpr std::size_t kUploadSize = 6'000'000;

class Scene {
  public:
    Scene();
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // The server's tree and manners, the site, settings and local files as every run begins, and a connection where the
    // operation needs one. What was recorded is forgotten. False when the connection cannot be made.
    bool Prepare(const Operation& operation);
    // Runs it on the worker as a command does. False when the worker does not start.
    bool Start(const Operation& operation);
    // True when it has ended within the time.
    bool WaitForEnd(std::uint32_t milliseconds) const;
    int Result() const { return result_; }
    // Ends what is connected, as the window's thread would; true when the server has seen the end of every connection.
    bool Disconnect();

    std::string LocalBytes(const std::string& name) { return SessionHarness::LocalBytes(h.LocalPath(name)); }
    // Files in the local folder that do not belong there, and everything else in the temporary folder.
    std::string StrayFiles();

    SessionHarness h;
    RecordingListingView list;
    RecordingTransferView transfers;
    Site* site;
    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode{nullptr, Zarn_FreeTVobject};
    TVobject* root;
    TVobject* pub;
    TransferJob job;
    TransferNode download;
    TransferNode upload;
    std::atomic<bool> transferAborted{false};
    std::uint32_t folders = 0, files = 0;
    std::uint64_t bytes = 0;

  private:
    void Write(const std::string& name, const std::string& content);
    void ArrangeServer();
    void ArrangeSite();
    bool EnsureConnection(const Operation& operation);

    std::atomic<int> result_{0};
};

// The answer to STAT, which no operation asks for: it can be no other command's.
inline bool IsStatus(std::string_view reply) {
    return reply.starts_with("211-Status");
}

}  // namespace matrix
