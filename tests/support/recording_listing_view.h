// The listing's view for tests: keeps the entries as the list pane would. One recording at a time.
#pragma once

#include <string>
#include <vector>

#include "listing/listing_view.h"

class RecordingListingView {
  public:
    RecordingListingView();
    ~RecordingListingView();  // brings the view back that was there before
    RecordingListingView(const RecordingListingView&) = delete;
    RecordingListingView& operator=(const RecordingListingView&) = delete;

    // The present list; a listing that begins empties it.
    std::vector<LVobjectPtr> entries;
    std::vector<std::size_t> batches;  // entries in each hand-over
    std::vector<bool> begins;          // resetChildren of each listing
    std::vector<int> ends;             // result of each listing
    TVobject* folder = nullptr;
    // Called after each hand-over, as the window that answers meanwhile would.
    void (*afterBatch)() = nullptr;

    std::vector<std::string> Names() const;

  private:
    ListingView before_;
};
