// The transfer's view for tests: keeps what the transfer published, answers the replace question from a script. One
// recording at a time; read it while no transfer runs.
#pragma once

#include <string>
#include <vector>

#include "listing/tree_node.h"
#include "transfer/transfer_progress.h"
#include "transfer/transfer_view.h"

class RecordingTransferView {
  public:
    RecordingTransferView();
    ~RecordingTransferView();  // brings the view back that was there before
    RecordingTransferView(const RecordingTransferView&) = delete;
    RecordingTransferView& operator=(const RecordingTransferView&) = delete;

    // Answers in order; without one the answer is No.
    std::vector<ReplaceAnswer> answers;

    std::vector<ReplaceQuestion> questions;
    // What each field of the published record changed to, in order.
    std::vector<std::string> items, sources, destinations, bytes, counters;
    std::string modes;
    std::vector<int> bars;
    std::vector<LVobjectPtr> listed;  // entries that joined the list
    int shown = 0;
    int closed = 0;

    // Parses one line of a Unix listing and selects the entry.
    void Select(const std::string& line, TVobject* listedFolder = nullptr);
    // The selection, for the windows' part of a start.
    std::vector<const LVobject*> selection;

  private:
    static void Record(const TransferProgress& progress);

    TransferView before_;
    TransferProgress seen_;
    std::vector<LVobjectPtr> owned_;
};
