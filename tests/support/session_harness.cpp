#include "support/session_harness.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <sstream>

#include "foundation/trace.h"
#include "ftp/login/login.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace {

constexpr std::uint32_t kStopMilliseconds = 10'000;
constexpr std::uint32_t kLongestSliceMilliseconds = 20;

void ResetSession() {
    gSession.busy = gSession.connecting = gSession.aborting = false;
    gSession.transferAbort = gSession.timedOut = gSession.exiting = gSession.parsing = false;
    gSession.activeSite = nullptr;
    gSession.localAddress = 0;
    gSession.currentType = 'A';
    gSession.totalSeconds = 0;
    gSession.totalBytes = 0;
    gSession.totalTransfers = 0;
}

}  // namespace

SessionHarness::SessionHarness() : before_(gZarn) {
    gZarn = ZarnSettings();
    gZarn.port.ftpPort = server.Port();
    gZarn.port.timeout = 10;
    gTrace.verbose = true;
    ResetSession();
    folder_ = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "TST");
    platform::DeleteFilePath(folder_.c_str());
    platform::CreateFolder(folder_.c_str());
}

SessionHarness::~SessionHarness() {
    StopWorker(kStopMilliseconds);
    for (const SitePtr& site : sites_) {
        CloseStoredSocket(site->pSock->data_skt, CloseHow::None);
        CloseStoredSocket(site->pSock->listen_skt, CloseHow::None);
        CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::None);
    }
    ResetSession();
    gTrace.verbose = false;
    gTrace.debug = false;
    gZarn = before_;
    std::vector<platform::FileInfo> files;
    platform::ListFolder(folder_.c_str(), files);
    for (const platform::FileInfo& file : files) platform::DeleteFilePath(LocalPath(file.name).c_str());
    platform::RemoveFolder(folder_.c_str());
}

Site* SessionHarness::MakeSite(const char* host, const char* user, const char* password) {
    SitePtr site(Zarn_CreateDefaultSite("Test site"));
    site->pszHost = OwnedText::Copy(host);
    site->pszUID = OwnedText::Copy(user);
    site->pszPWD = OwnedText::Copy(password);
    gSession.activeSite = site.get();
    sites_.push_back(std::move(site));
    return sites_.back().get();
}

Site* SessionHarness::ConnectedSite() {
    Site* site = MakeSite();
    if (!DoConnect2(site)) return nullptr;
    site->pszCurrentDir = OwnedText::Copy("/");
    site->chSeparator = '/';
    server.ForgetCommands();
    return site;
}

std::string SessionHarness::LocalBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::string SessionHarness::LocalPath(const std::string& name) {
    return folder_ + platform::kPathSeparator + name;
}

struct TimeOutTimer::State {
    platform::EventHandle end = platform::CreateManualEvent();
    platform::ThreadHandle thread = platform::kNoThread;
};

TimeOutTimer::TimeOutTimer() : state_(std::make_unique<State>()) {
    state_->thread = platform::StartThread(
        [](void* argument) {
            auto* state = static_cast<State*>(argument);
            std::uint32_t wait = 0;
            while (!platform::WaitEvent(state->end, std::min(wait, kLongestSliceMilliseconds)))
                wait = HandleTimeOutTimer(gZarn.port.timeout);
        },
        state_.get());
}

TimeOutTimer::~TimeOutTimer() {
    platform::SignalEvent(state_->end);
    platform::WaitThread(state_->thread, kStopMilliseconds);
    platform::CloseThread(state_->thread);
    platform::CloseEvent(state_->end);
}

OtherThread::OtherThread(std::function<void()> function) : function_(std::move(function)) {
    thread_ = platform::StartThread([](void* argument) { static_cast<OtherThread*>(argument)->function_(); }, this);
}

void OtherThread::Join() {
    if (thread_ == platform::kNoThread) return;
    while (!platform::WaitThread(thread_, kStopMilliseconds)) {
    }
    platform::CloseThread(thread_);
    thread_ = platform::kNoThread;
}
