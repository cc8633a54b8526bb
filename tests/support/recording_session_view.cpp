#include "support/recording_session_view.h"

#include <deque>
#include <mutex>

#include "ftp/login/stop.h"

namespace {

struct Recording {
    std::vector<std::string> statusTexts;
    std::vector<TextQuestion> questions;
    std::deque<std::string> answers;
    std::vector<RecordedServerError> serverErrors;
    std::vector<std::string> firstDirectories;
    std::vector<RecordedProgress> progress;
    std::vector<Site*> posted;
    int postedInAll = 0;
    int refreshes = 0;
    int disconnected = 0;
    int closedPrograms = 0;
    int savedConfigurations = 0;
    bool siteHasNode = true;
};

std::mutex gLock;
Recording gRecording;

template <class Change>
void Record(Change change) {
    const std::lock_guard guard(gLock);
    change(gRecording);
}

template <class Value>
Value Recorded(Value Recording::*member) {
    const std::lock_guard guard(gLock);
    return gRecording.*member;
}

bool AnswerQuestion(const TextQuestion& question, std::string& answer) {
    const std::lock_guard guard(gLock);
    gRecording.questions.push_back(question);
    if (gRecording.answers.empty()) return false;
    answer = gRecording.answers.front();
    gRecording.answers.pop_front();
    return true;
}

SessionView MakeView() {
    SessionView view;
    view.setStatusText = [](const char* text) { Record([&](Recording& r) { r.statusTexts.emplace_back(text); }); };
    view.askText = AnswerQuestion;
    view.showServerError = [](int operation, const char* reply) {
        Record([&](Recording& r) { r.serverErrors.push_back({operation, reply}); });
    };
    view.refreshWindow = [] { Record([](Recording& r) { ++r.refreshes; }); };
    view.siteHasNode = [](const Site*) { return Recorded(&Recording::siteHasNode); };
    view.showFirstDirectory = [](Site*, const char* directory) {
        Record([&](Recording& r) { r.firstDirectories.emplace_back(directory); });
    };
    view.showDisconnected = [](Site*) { Record([](Recording& r) { ++r.disconnected; }); };
    view.postDisconnect = [](Site* site) {
        Record([&](Recording& r) {
            r.posted.push_back(site);
            ++r.postedInAll;
        });
    };
    view.closeProgram = [] { Record([](Recording& r) { ++r.closedPrograms; }); };
    view.saveConfiguration = [] { Record([](Recording& r) { ++r.savedConfigurations; }); };
    view.setTransferProgress = [](std::uint64_t done, std::uint64_t total) {
        Record([&](Recording& r) { r.progress.push_back({done, total}); });
    };
    return view;
}

}  // namespace

RecordingSessionView::RecordingSessionView() : before_(gSessionView) {
    Clear();
    gSessionView = MakeView();
}

RecordingSessionView::~RecordingSessionView() {
    gSessionView = before_;
    Clear();
}

void RecordingSessionView::AnswerNext(std::string answer) {
    Record([&](Recording& r) { r.answers.push_back(std::move(answer)); });
}
void RecordingSessionView::SetSiteHasNode(bool hasNode) {
    Record([&](Recording& r) { r.siteHasNode = hasNode; });
}

std::vector<std::string> RecordingSessionView::StatusTexts() const {
    return Recorded(&Recording::statusTexts);
}
std::vector<TextQuestion> RecordingSessionView::Questions() const {
    return Recorded(&Recording::questions);
}
std::vector<RecordedServerError> RecordingSessionView::ServerErrors() const {
    return Recorded(&Recording::serverErrors);
}
std::vector<std::string> RecordingSessionView::FirstDirectories() const {
    return Recorded(&Recording::firstDirectories);
}
std::vector<RecordedProgress> RecordingSessionView::Progress() const {
    return Recorded(&Recording::progress);
}
int RecordingSessionView::Refreshes() const {
    return Recorded(&Recording::refreshes);
}
int RecordingSessionView::Disconnected() const {
    return Recorded(&Recording::disconnected);
}
int RecordingSessionView::ClosedPrograms() const {
    return Recorded(&Recording::closedPrograms);
}
int RecordingSessionView::SavedConfigurations() const {
    return Recorded(&Recording::savedConfigurations);
}
int RecordingSessionView::PostedDisconnects() const {
    return Recorded(&Recording::postedInAll);
}

int RecordingSessionView::RunPostedDisconnects() {
    std::vector<Site*> posted;
    Record([&](Recording& r) { posted.swap(r.posted); });
    for (Site* site : posted) Zarn_IdmDisconnect(site);
    return static_cast<int>(posted.size());
}

void RecordingSessionView::Clear() {
    Record([](Recording& r) { r = Recording(); });
}
