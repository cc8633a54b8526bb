// One run of the real program against the benchmark's server: connects, times the stages of listing a folder and the
// commands of the list pane. Reports on stderr what failed.
#pragma once

#include <string>

#include "ui/driver/program.h"
#include "window_watch.h"

// Seconds since the server received LIST.
struct ListingTimes {
    double serverSent = 0;    // the server had sent its final reply
    double firstShown = 0;    // the pane has entries
    double allShown = 0;      // it has them all, is drawn, and the program accepts the next command
    double longestStall = 0;  // longest time in which the window did not answer, from the choice of the folder on
    double stallBegan = 0;    // when that was, from LIST on
};

// Seconds each, drawing included.
struct CommandTimes {
    double sortBySize = 0;
    double sortByName = 0;
    double selectAll = 0;   // status bar included
    double changeView = 0;  // the slowest of the four views, with nothing selected
    double openInTree = 0;  // adding the folder's own folders to the tree
    double leave = 0;       // from the root's LIST until the root is shown instead
    double leaveStall = 0;  // longest time in which the window did not answer meanwhile
};

class ListingSession {
  public:
    // Starts the program, whose store holds the site "Benchmark", and connects.
    bool Open();
    bool List(int entries, ListingTimes& times);
    // In the folder that List showed; ends in the root.
    bool TimeCommands(int entries, CommandTimes& times);
    double PeakMegabytes() const;
    bool Close() { return program_.Close(); }

  private:
    HTREEITEM Root() const;
    bool Settled() const;
    bool WaitShown(int entries, ListingTimes& times);
    // Opens the selected node of the tree.
    void OpenSelected() const;
    double TimedCommand(unsigned id) const;

    Program program_;
    WindowWatch watch_;
    int rootEntries_ = 0;
};
