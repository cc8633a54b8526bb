#include "support/recording_transfer_view.h"

#include "listing/line_parser.h"

namespace {

RecordingTransferView* current = nullptr;

template <class Values, class Value>
void Append(Values& values, Value& seen, const Value& now) {
    if (now == seen) return;
    values.push_back(now);
    seen = now;
}

}  // namespace

RecordingTransferView::RecordingTransferView() : before_(gTransferView) {
    current = this;
    seen_.bar = -1;  // so that the first position is recorded, whichever it is
    ResetTransferProgress();
    WatchTransferProgress(Record);
    gTransferView.showDialog = [] { ++current->shown; };
    gTransferView.closeDialog = [] { ++current->closed; };
    gTransferView.confirmReplace = [](const ReplaceQuestion& question) {
        current->questions.push_back(question);
        if (current->answers.empty()) return ReplaceAnswer::No;
        const ReplaceAnswer answer = current->answers.front();
        current->answers.erase(current->answers.begin());
        return answer;
    };
    gTransferView.addListedEntry = [](const Site*, const std::string&, LVobjectPtr entry) {
        current->listed.push_back(std::move(entry));
    };
}

RecordingTransferView::~RecordingTransferView() {
    WatchTransferProgress(nullptr);
    gTransferView = before_;
    current = nullptr;
}

void RecordingTransferView::Record(const TransferProgress& progress) {
    TransferProgress& seen = current->seen_;
    Append(current->items, seen.item, progress.item);
    Append(current->sources, seen.source, progress.source);
    Append(current->destinations, seen.destination, progress.destination);
    Append(current->bytes, seen.bytes, progress.bytes);
    Append(current->counters, seen.counters, progress.counters);
    Append(current->modes, seen.mode, progress.mode);
    Append(current->bars, seen.bar, progress.bar);
}

void RecordingTransferView::Select(const std::string& line, TVobject* listedFolder) {
    ListingStyle style;
    ListingCounters counted;
    owned_.push_back(FtpParseLine(1, 7001, line, style, counted));
    if (owned_.back() == nullptr) return;
    owned_.back()->node = listedFolder;
    selection.push_back(owned_.back().get());
}
