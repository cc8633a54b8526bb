// The session engine's view for tests: keeps what it is given, answers questions from a script. One recording at a
// time; while it lives it is the current view. Usable from several threads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ftp/worker/session_view.h"

struct RecordedServerError {
    int operation;
    std::string reply;
};
struct RecordedProgress {
    std::uint64_t done;
    std::uint64_t total;
};

class RecordingSessionView {
  public:
    RecordingSessionView();
    ~RecordingSessionView();  // brings the view back that was there before
    RecordingSessionView(const RecordingSessionView&) = delete;
    RecordingSessionView& operator=(const RecordingSessionView&) = delete;

    // The next question is answered so; without answers every question is cancelled.
    void AnswerNext(std::string answer);
    // What siteHasNode() says; true until then.
    void SetSiteHasNode(bool hasNode);

    std::vector<std::string> StatusTexts() const;
    std::vector<TextQuestion> Questions() const;
    std::vector<RecordedServerError> ServerErrors() const;
    std::vector<std::string> FirstDirectories() const;
    std::vector<RecordedProgress> Progress() const;
    int Refreshes() const;
    int Disconnected() const;  // calls of showDisconnected
    int ClosedPrograms() const;
    int SavedConfigurations() const;
    int PostedDisconnects() const;
    // Runs the disconnect commands posted since the last call, as the window's thread would; how many there were.
    int RunPostedDisconnects();
    void Clear();

  private:
    SessionView before_;
};
