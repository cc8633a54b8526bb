#include "support/recording_view.h"

#include <deque>
#include <mutex>

#include "foundation/trace_sinks.h"

namespace {

// As the program does at its start, before any test.
[[maybe_unused]] const bool gSinksConnected = (ConnectTraceSinks(), true);

std::mutex gLock;
std::vector<std::string> gLines;
std::vector<RecordedBox> gBoxes;
std::deque<BoxAnswer> gAnswers;

void RecordLine(const char* text) {
    const std::lock_guard lock(gLock);
    gLines.emplace_back(text != nullptr ? text : "(null)");
}

BoxAnswer DefaultAnswer(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::YesNo:
            return BoxAnswer::Yes;
        case BoxButtons::AbortRetryIgnore:
            return BoxAnswer::Abort;
        default:
            return BoxAnswer::Ok;
    }
}

BoxAnswer RecordBox(const char* text, const char* caption, BoxButtons buttons, BoxIcon icon) {
    const std::lock_guard lock(gLock);
    gBoxes.push_back({text != nullptr ? text : "(null)", caption != nullptr ? caption : "(null)", buttons, icon});
    if (gAnswers.empty()) return DefaultAnswer(buttons);
    const BoxAnswer answer = gAnswers.front();
    gAnswers.pop_front();
    return answer;
}

}  // namespace

RecordingView::RecordingView() : before_(gFoundationView) {
    Clear();
    gFoundationView.printToConsole = RecordLine;
    gFoundationView.showMessageBox = RecordBox;
}

RecordingView::~RecordingView() {
    gFoundationView = before_;
    Clear();
}

void RecordingView::AnswerNext(BoxAnswer answer) {
    const std::lock_guard lock(gLock);
    gAnswers.push_back(answer);
}

std::vector<std::string> RecordingView::ConsoleLines() const {
    const std::lock_guard lock(gLock);
    return gLines;
}

std::vector<RecordedBox> RecordingView::Boxes() const {
    const std::lock_guard lock(gLock);
    return gBoxes;
}

int RecordingView::CountLines(std::string_view part) const {
    int count = 0;
    for (const std::string& line : ConsoleLines()) count += line.find(part) != std::string::npos ? 1 : 0;
    return count;
}

bool RecordingView::HasBox(std::string_view part) const {
    for (const RecordedBox& box : Boxes()) {
        if (box.text.find(part) != std::string::npos) return true;
    }
    return false;
}

void RecordingView::Clear() {
    const std::lock_guard lock(gLock);
    gLines.clear();
    gBoxes.clear();
    gAnswers.clear();
}
