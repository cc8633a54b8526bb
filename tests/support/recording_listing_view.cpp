#include "support/recording_listing_view.h"

#include <iterator>

namespace {

RecordingListingView* current = nullptr;

}  // namespace

RecordingListingView::RecordingListingView() : before_(gListingView) {
    current = this;
    gListingView.begin = [](TVobject* listed, bool resetChildren) {
        current->folder = listed;
        current->begins.push_back(resetChildren);
        current->entries.clear();
    };
    gListingView.addEntries = [](TVobject* listed, std::vector<LVobjectPtr> batch) {
        current->folder = listed;
        current->batches.push_back(batch.size());
        std::move(batch.begin(), batch.end(), std::back_inserter(current->entries));
        if (current->afterBatch != nullptr) current->afterBatch();
    };
    gListingView.end = [](TVobject*, int result) { current->ends.push_back(result); };
}

RecordingListingView::~RecordingListingView() {
    gListingView = before_;
    current = nullptr;
}

std::vector<std::string> RecordingListingView::Names() const {
    std::vector<std::string> names;
    for (const LVobjectPtr& entry : entries) names.emplace_back(entry->name.c_str());
    return names;
}
