// The transfer's view for tests: keeps the dialog's texts, answers the replace question from a script, has a selection.
// One recording at a time.
#pragma once

#include <string>
#include <vector>

#include "transfer/transfer_view.h"

class RecordingTransferView {
  public:
    RecordingTransferView();
    ~RecordingTransferView();  // brings the view back that was there before
    RecordingTransferView(const RecordingTransferView&) = delete;
    RecordingTransferView& operator=(const RecordingTransferView&) = delete;

    // Answers in order; without one the answer is No.
    std::vector<ReplaceAnswer> answers;
    std::vector<const LVobject*> selection;
    TVobject* node = nullptr;
    std::vector<std::string> dropped;  // full paths
    std::string target;                // of a drop
    std::vector<std::string> named;    // on standard input

    std::vector<ReplaceQuestion> questions;
    std::vector<std::string> items, sources, destinations, bytes, counters;
    std::string modes;
    std::vector<int> bars;
    std::vector<LVobjectPtr> listed;  // entries that joined the list
    int shown = 0;
    int closed = 0;

    // One line of a Unix listing, selected.
    void Select(const std::string& line, TVobject* listedFolder = nullptr);

  private:
    TransferView before_;
    std::vector<LVobjectPtr> owned_;
};
