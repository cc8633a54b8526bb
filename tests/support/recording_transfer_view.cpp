#include "support/recording_transfer_view.h"

#include "listing/line_parser.h"

namespace {

RecordingTransferView* current = nullptr;

}  // namespace

RecordingTransferView::RecordingTransferView() : before_(gTransferView) {
    current = this;
    gTransferView.showDialog = [] { ++current->shown; };
    gTransferView.closeDialog = [] { ++current->closed; };
    gTransferView.setItem = [](const char* text) { current->items.emplace_back(text); };
    gTransferView.setSource = [](const char* text) { current->sources.emplace_back(text); };
    gTransferView.setDestination = [](const char* text) { current->destinations.emplace_back(text); };
    gTransferView.setBytes = [](const char* text) { current->bytes.emplace_back(text); };
    gTransferView.setCounters = [](const char* text) { current->counters.emplace_back(text); };
    gTransferView.setMode = [](char mode) { current->modes += mode; };
    gTransferView.setBar = [](int position) { current->bars.push_back(position); };
    gTransferView.confirmReplace = [](const ReplaceQuestion& question) {
        current->questions.push_back(question);
        if (current->answers.empty()) return ReplaceAnswer::No;
        const ReplaceAnswer answer = current->answers.front();
        current->answers.erase(current->answers.begin());
        return answer;
    };
    gTransferView.selectedEntries = [] { return current->selection; };
    gTransferView.selectedNode = [] { return current->node; };
    gTransferView.droppedFiles = [] { return current->dropped; };
    gTransferView.standardInputFiles = [] { return current->named; };
    gTransferView.dropTarget = [] { return current->target; };
    gTransferView.addListedEntry = [](LVobjectPtr entry) { current->listed.push_back(std::move(entry)); };
}

RecordingTransferView::~RecordingTransferView() {
    gTransferView = before_;
    current = nullptr;
}

void RecordingTransferView::Select(const std::string& line, TVobject* listedFolder) {
    ListingStyle style;
    ListingCounters counted;
    owned_.push_back(FtpParseLine(1, 7001, line, style, counted));
    if (owned_.back() == nullptr) return;
    owned_.back()->node = listedFolder;
    selection.push_back(owned_.back().get());
}
