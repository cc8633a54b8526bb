// The lowest floor's view for tests: keeps every console line and message box, and answers the boxes from a script.
// One recording at a time; while it lives it is the current view. Usable from several threads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/foundation_view.h"

struct RecordedBox {
    std::string text;
    std::string caption;
    BoxButtons buttons;
    BoxIcon icon;
};

class RecordingView {
  public:
    RecordingView();
    ~RecordingView();  // brings the view back that was there before
    RecordingView(const RecordingView&) = delete;
    RecordingView& operator=(const RecordingView&) = delete;

    // The next box that has no answer yet gets this one. Without a script: Ok, Yes or Abort, by the box's buttons.
    void AnswerNext(BoxAnswer answer);

    std::vector<std::string> ConsoleLines() const;
    std::vector<RecordedBox> Boxes() const;
    // How many console lines contain `part`.
    int CountLines(std::string_view part) const;
    bool HasLine(std::string_view part) const { return CountLines(part) > 0; }
    bool HasBox(std::string_view part) const;
    // Forgets what was recorded and the answers.
    void Clear();

  private:
    FoundationView before_;
};
