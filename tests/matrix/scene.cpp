#include "matrix/scene.h"

#include <algorithm>
#include <fstream>

#include "config/host_types.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/login.h"
#include "ftp/login/stop.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "matrix/operations.h"
#include "platform/files.h"
#include "support/bounded_wait.h"

namespace matrix {
namespace {

constexpr char kSent[] = "up";
constexpr char kReceived[] = "down";

std::string Names(const std::string& folder, const std::vector<std::string>& expected) {
    std::vector<platform::FileInfo> files;
    platform::ListFolder(folder.c_str(), files);
    std::string names;
    for (const platform::FileInfo& file : files)
        if (std::find(expected.begin(), expected.end(), file.name) == expected.end()) names += file.name + " ";
    return names;
}

}  // namespace

Scene::Scene() : site(h.MakeSite()) {
    gTrace.verbose = true;
    gZarn.mode.mode = 'I';
    gZarn.MAILADDR = "user@example.org";
    siteNode.reset(AllocateTVobject("Test site", kKindSite));
    siteNode->pSite = site;
    root = AddChildNode(siteNode.get(), "/", kKindSiteRoot);
    pub = AddChildNode(root, "pub", kKindFolder);
    std::string folder = h.LocalPath("");
    folder.pop_back();
    download.pszLocation = OwnedText::Copy("/");
    download.pszRemoteName = OwnedText::Copy(kReceived);
    download.pszDestination = OwnedText::Copy(folder);
    download.NodeType = kNodeFile;
    upload.pszLocalName = OwnedText::Copy(kSent);
    upload.pszLocation = OwnedText::Copy(folder);
    upload.pszDestination = OwnedText::Copy("/");
    Write(kSent, std::string(kUploadSize, 'u'));
    h.server.AddFile("/down", std::string(kDownloadSize, 'd'));
}

Scene::~Scene() {
    siteNode->pSite = nullptr;  // the harness owns it
}

void Scene::Write(const std::string& name, const std::string& content) {
    std::ofstream(h.LocalPath(name), std::ios::binary) << content;
}

void Scene::ArrangeServer() {
    for (const char* verb : {kWelcome, "USER", "PASS", "ACCT", "SITE", "CWD",  "PWD",  "TYPE", "PORT", "LIST", "RETR",
                             "STOR",   "STOU", "MKD",  "RMD",  "DELE", "RNFR", "RNTO", "HELP", "SYST", "NOOP"})
        h.server.Forget(verb);
    for (const char* path : {"/up", "/new", "/renamed", "/gone"}) h.server.Remove(path);
    h.server.AskAccount(false);
    h.server.AddFile("/gone", "x");
    h.server.AddFolder("/empty");
    h.server.AddFile("/pub/a.txt", "four");
    h.server.AddFile("/pub/deep/b.txt", "four");
    h.server.ForgetCommands();
}

void Scene::ArrangeSite() {
    site->bAnonymous = 0;
    site->bUseGateway = 0;
    site->pszPWD = OwnedText::Copy("secret");
    site->pszDir.reset();
    site->dwType = site->dwCurType = HOST_TYPE_AUTO;
    site->pSock->detectedPort = 0;
    gSession.activeSite = site;
    gSession.currentType = 'A';
    gSession.exiting = false;
    SetTransferAbort(false);
}

bool Scene::Prepare(const Operation& operation) {
    ArrangeServer();
    ArrangeSite();
    if (LocalBytes(kReceived) != kKeptBytes) Write(kReceived, kKeptBytes);
    gZarn.SENDUNIQUE = 1;
    job = TransferJob();
    job.site = site;
    job.currentLocalFolder = platform::CurrentFolder();
    transferAborted = false;
    if (!EnsureConnection(operation)) return false;
    h.view.Clear();
    h.console.Clear();
    h.server.ForgetCommands();
    transfers.answers = {ReplaceAnswer::Yes};
    transfers.questions.clear();
    list.entries.clear();
    list.ends.clear();
    operation.arrange(*this);
    return true;
}

bool Scene::EnsureConnection(const Operation& operation) {
    if (operation.connects) return Disconnect();
    if (!HasControlSocket(site)) {
        site->bConnected = 0;
        if (!DoConnect2(site)) return false;
        site->chSeparator = '/';
    }
    return DoCWD(site, "/", h.reply, true) == FTP_COMPLETE;
}

bool Scene::Start(const Operation& operation) {
    result_ = 0;
    return StartWorker(operation.name, [this, &operation] { result_ = operation.run(*this); });
}

bool Scene::WaitForEnd(std::uint32_t milliseconds) const {
    return test_support::WaitUntil([] { return !OperationRunning() && !WorkerRunning(); }, milliseconds);
}

bool Scene::Disconnect() {
    h.view.RunPostedDisconnects();
    if (site->bConnected != 0 || HasControlSocket(site)) Zarn_IdmDisconnect(site);
    return h.server.WaitForConnections(0);
}

std::string Scene::StrayFiles() {
    const std::string folder = h.LocalPath("");
    const std::string temporary = platform::TemporaryFolder();
    const std::string own = folder.substr(temporary.size(), folder.size() - temporary.size() - 1);
    return Names(folder, {kSent, kReceived}) + Names(temporary, {own});
}

}  // namespace matrix
