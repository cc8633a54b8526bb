#include "integration/real_server.h"

#include <algorithm>
#include <ostream>

#include "config/settings.h"
#include "foundation/number_text.h"
#include "foundation/trace.h"
#include "ftp/control/keep_alive.h"
#include "ftp/login/connect_command.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "listing/listing_driver.h"
#include "support/bounded_wait.h"
#include "transfer/selection_transfer.h"

namespace {

constexpr std::uint32_t kLongestOperation = 60'000;  // milliseconds
constexpr std::uint32_t kTimeoutSeconds = 20;

// Connections that outlive their tests, because ending them would hold up the next one.
std::vector<platform::Socket> gOpenConnections;
std::vector<std::unique_ptr<ControlRelay>> gOpenRelays;

}  // namespace

void PrintTo(const ServerCase& server, std::ostream* out) {
    *out << server.name;
}

RealServer::RealServer() {
    // As a user's program runs: the replies that a test wants to read come from the relay.
    gTrace.verbose = false;
    gZarn.port.timeout = kTimeoutSeconds;
    gZarn.mode.mode = 'I';
    gZarn.SAVEONEXIT = 0;
    site = engine.MakeSite("127.0.0.1", Environment("ZARN_FTP_USER").c_str(), Environment("ZARN_FTP_PASSWORD").c_str());
    siteNode.reset(AllocateTVobject("Test site", kKindSite));
    siteNode->pSite = site;
}

RealServer::~RealServer() {
    StopWorker(kLongestOperation);
    siteNode->pSite = nullptr;  // the harness owns it
    if (GetParam().pausesAfterSession) KeepConnectionOpen();
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
}

void RealServer::KeepConnectionOpen() {
    const platform::Socket control = site->pSock->ctrl_skt.exchange(platform::kNoSocket);
    if (control == platform::kNoSocket) return;
    gOpenConnections.push_back(control);
    if (wire) gOpenRelays.push_back(std::move(wire));
}

void RealServer::TearDownTestSuite() {
    for (const platform::Socket control : gOpenConnections) platform::CloseSocket(control);
    gOpenConnections.clear();
    gOpenRelays.clear();
}

void RealServer::SetUp() {
    gZarn.port.ftpPort = ParseUnsigned(Environment(GetParam().portVariable));
    ASSERT_NE(gZarn.port.ftpPort, 0u) << "run this through tests/integration/servers/servers.py";
    ASSERT_FALSE(DiskTree().empty());
}

void RealServer::Watch() {
    wire = std::make_unique<ControlRelay>(static_cast<std::uint16_t>(gZarn.port.ftpPort));
    gZarn.port.ftpPort = wire->Port();
}

bool RealServer::Run(const char* name, std::function<void()> job) {
    if (!StartWorker(name, std::move(job))) {
        ADD_FAILURE() << name << " did not start";
        return false;
    }
    if (test_support::WaitUntil([] { return !WorkerRunning() && !OperationRunning(); }, kLongestOperation)) return true;
    ADD_FAILURE() << name << " did not end";
    StopWorker(kLongestOperation);
    return false;
}

bool RealServer::ConnectSite() {
    const std::size_t before = view.FirstDirectories().size();
    Run("Zarn_IdmConnect", [&] { Zarn_IdmConnect(site); });
    if (view.FirstDirectories().size() == before) return false;
    siteNode->children.clear();
    siteNode->nChildren = 0;
    root = AddChildNode(siteNode.get(), view.FirstDirectories().back(), kKindSiteRoot);
    return true;
}

void RealServer::Connect() {
    ASSERT_TRUE(ConnectSite()) << (console.Boxes().empty() ? "" : console.Boxes().back().text);
}

TVobject* RealServer::NodeOf(const std::string& path) {
    TVobject* node = root;
    for (std::size_t start = 1; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string name = path.substr(start, end - start);
        TVobject* child = TV_FindChild(node, name);
        node = child != nullptr ? child : AddChildNode(node, name, kKindFolder);
        start = end + 1;
    }
    return node;
}

void RealServer::AddFolderNodes(TVobject* folder) {
    for (const LVobjectPtr& entry : list.entries) {
        if (entry->type != kKindFolder) continue;
        TVobject* child = TV_FindChild(folder, entry->name.view());
        entry->node = child != nullptr ? child : AddChildNode(folder, entry->name.view(), kKindFolder);
    }
}

int RealServer::Open(const std::string& path) {
    TVobject* node = NodeOf(path);
    int result = 0;
    Run("LV_ChangeDir", [&] {
        if (ServerReadyForCmd(site, true) && TV_PreSelect(node)) result = LV_ChangeDir(node);
    });
    if (result == FTP_COMPLETE) AddFolderNodes(node);
    return result;
}

const LVobject* RealServer::Listed(std::string_view name) const {
    for (const LVobjectPtr& entry : list.entries)
        if (EntryName(*entry) == name) return entry.get();
    return nullptr;
}

void RealServer::Select(const std::vector<std::string>& names) {
    transfer.selection.clear();
    if (names.empty()) {
        for (const LVobjectPtr& entry : list.entries) transfer.selection.push_back(entry.get());
        return;
    }
    for (const std::string& name : names) {
        const LVobject* entry = Listed(name);
        ASSERT_NE(entry, nullptr) << name << " is not listed";
        transfer.selection.push_back(entry);
    }
}

int RealServer::RunJob(const char* name, TransferJob fresh, int (*run)(const std::atomic<bool>& abort)) {
    lastJob = std::move(fresh);
    lastJob.site = site;
    int done = -1;
    Run(name, [&] {
        const RunningJobScope running(lastJob);
        done = run(gSession.transferAbort);
    });
    return done;
}

int RealServer::ReceiveSelection() {
    TransferJob fresh;
    fresh.start = TransferStart::ListSelection;
    fresh.remoteItems = ItemsOf(transfer.selection);
    return RunJob("Zarn_TransferLVitems", std::move(fresh), Zarn_TransferLVitems);
}

int RealServer::ReceiveFolder(const std::string& path) {
    TransferJob fresh;
    fresh.start = TransferStart::TreeSelection;
    fresh.remoteItems = ItemsOf(NodeOf(path));
    return RunJob("Zarn_TransferTVitem", std::move(fresh), Zarn_TransferTVitem);
}
