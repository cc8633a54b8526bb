// A session of the program's engine with one of the real servers: the same calls on the same worker as the windows
// make, with recording views in the windows' place. Tests are repeated for each server.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "integration/control_relay.h"
#include "integration/disk_tree.h"
#include "listing/tree_node.h"
#include "support/local_folder.h"
#include "support/recording_listing_view.h"
#include "support/recording_transfer_view.h"
#include "support/session_harness.h"
#include "transfer/transfer_job.h"

struct ServerCase {
    const char* name;
    const char* portVariable;
    bool checksGuestPassword;
    bool knowsNamedUser;
    bool convertsLineEnds;    // of a file that is sent as text
    bool pausesAfterSession;  // takes no connection for some 0.2 s after one has ended
};
void PrintTo(const ServerCase& server, std::ostream* out);
inline constexpr ServerCase kServers[] = {
    {"vsftpd", "ZARN_VSFTPD_PORT", false, false, false, false},
    {"ProFTPD", "ZARN_PROFTPD_PORT", true, true, true, true},
    {"PureFTPd", "ZARN_PUREFTPD_PORT", true, true, true, false},
};
#define FOR_EVERY_SERVER(suite)                                          \
    INSTANTIATE_TEST_SUITE_P(Server, suite, testing::ValuesIn(kServers), \
                             [](const auto& test) { return std::string(test.param.name); })

class RealServer : public testing::TestWithParam<ServerCase> {
  protected:
    RealServer();
    ~RealServer() override;
    void SetUp() override;
    static void TearDownTestSuite();

    // From here on connections go through a relay that writes the dialogue down.
    void Watch();
    // A site that is logged in with the user that all servers know; its root is in the tree, unlisted.
    void Connect();
    // The site's own connect command; true when the first directory came.
    bool ConnectSite();
    // Runs on the worker, as every remote operation does; false when it did not start or not end.
    bool Run(const char* name, std::function<void()> job);

    // The node of a server's path, made with its parents.
    TVobject* NodeOf(const std::string& path);
    // A change of folder by the user: the result of LV_ChangeDir; folders get their nodes.
    int Open(const std::string& path);
    const LVobject* Listed(std::string_view name) const;
    // Names for the selection; everything that is listed without any.
    void Select(const std::vector<std::string>& names);
    // Runs a new job on the worker, as the dialog does: the items done, or -1.
    int RunJob(const char* name, TransferJob fresh, int (*run)(const std::atomic<bool>& abort));
    // Receive: the items done, or -1.
    int ReceiveSelection();
    int ReceiveFolder(const std::string& path);

    SessionHarness engine;
    RecordingView& console = engine.console;
    RecordingSessionView& view = engine.view;
    TimeOutTimer timer;
    RecordingListingView list;
    RecordingTransferView transfer;
    TransferJob lastJob;
    LocalFolder local;
    std::unique_ptr<ControlRelay> wire;
    Site* site = nullptr;
    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode{nullptr, Zarn_FreeTVobject};
    TVobject* root = nullptr;

  private:
    void AddFolderNodes(TVobject* folder);
    void KeepConnectionOpen();
};
