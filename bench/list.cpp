// Times the real program from LIST to a shown folder of 10,000 and of 100,000 entries: the whole, the longest time in
// which its window does not answer, its memory, and its commands in such a folder. Prints medians over several runs of
// the program. Exits with 0 only if the given limits are kept.
//
//   bench_list ROUNDS MOST_SECONDS MOST_STALL_SECONDS MOST_GROWTH     in the folder that holds the server's log
#include <charconv>
#include <cstdio>
#include <cstring>
#include <vector>

#include "figures.h"
#include "listing_session.h"

namespace {

constexpr int kFew = 10000;
constexpr int kMany = 100000;

struct Options {
    unsigned rounds = 0;
    double mostSeconds = 0, mostStall = 0, mostGrowth = 0;
};

template <class Number>
bool Read(const char* text, Number& number) {
    const char* end = text + std::strlen(text);
    const auto [stopped, error] = std::from_chars(text, end, number);
    return error == std::errc() && stopped == end;
}

// The measurements for one size of folder, a value per round.
struct Figures {
    std::vector<ListingTimes> listings;
    std::vector<CommandTimes> commands;
    std::vector<double> peaks;
};

template <class Record>
std::vector<double> Column(const std::vector<Record>& records, double Record::*field) {
    std::vector<double> values;
    for (const Record& record : records) values.push_back(record.*field);
    return values;
}

double MedianOf(const Figures& figures, double ListingTimes::*field) {
    return Median(Column(figures.listings, field));
}
double MedianOf(const Figures& figures, double CommandTimes::*field) {
    return Median(Column(figures.commands, field));
}

bool MeasureFolder(ListingSession& session, int entries, unsigned round, Figures& figures) {
    ListingTimes listing;
    CommandTimes commands;
    if (!session.List(entries, listing)) return false;
    const double peak = session.PeakMegabytes();
    if (!session.TimeCommands(entries, commands)) return false;
    figures.listings.push_back(listing);
    figures.commands.push_back(commands);
    figures.peaks.push_back(peak);
    std::printf(
        "%6d entries, run %u: sent %.3f s, first shown %.3f s, all shown %.3f s; "
        "no answer for %.0f ms at %+.3f s; peak memory %.1f MiB\n",
        entries, round, listing.serverSent, listing.firstShown, listing.allShown, listing.longestStall * 1000,
        listing.stallBegan, peak);
    std::fflush(stdout);
    return true;
}

bool MeasureRound(unsigned round, Figures& few, Figures& many) {
    ListingSession session;
    if (!session.Open()) return false;
    if (!MeasureFolder(session, kFew, round, few) || !MeasureFolder(session, kMany, round, many)) return false;
    if (session.Close()) return true;
    std::fprintf(stderr, "failed: close the program\n");
    return false;
}

void PrintMedians(int entries, const Figures& figures) {
    const std::vector<double> stalls = Column(figures.listings, &ListingTimes::longestStall);
    std::printf("\n%d entries, medians\n", entries);
    std::printf("  LIST until the server had sent all    %7.3f s\n", MedianOf(figures, &ListingTimes::serverSent));
    std::printf("  LIST until the first entries show     %7.3f s\n", MedianOf(figures, &ListingTimes::firstShown));
    std::printf("  LIST until all are shown              %7.3f s\n", MedianOf(figures, &ListingTimes::allShown));
    std::printf("  longest time without an answer        %7.0f ms  (worst run %.0f ms)\n", Median(stalls) * 1000,
                Largest(stalls) * 1000);
    std::printf("  peak memory                           %7.1f MiB\n", Median(figures.peaks));
    const auto milliseconds = [&](double CommandTimes::*field) { return MedianOf(figures, field) * 1000; };
    std::printf("  sort by size %.0f ms, sort by name %.0f ms, select all %.0f ms, open in the tree %.0f ms\n",
                milliseconds(&CommandTimes::sortBySize), milliseconds(&CommandTimes::sortByName),
                milliseconds(&CommandTimes::selectAll), milliseconds(&CommandTimes::openInTree));
    std::printf("  slowest change of the view %.0f ms\n", milliseconds(&CommandTimes::changeView));
    std::printf("  leave for a small folder %.0f ms, no answer for %.0f ms\n", milliseconds(&CommandTimes::leave),
                milliseconds(&CommandTimes::leaveStall));
}

bool Verdict(const char* what, double value, double most, const char* unit) {
    const bool reached = value <= most;
    std::printf("%-44s %7.3f %-2s (at most %g: %s)\n", what, value, unit, most, reached ? "reached" : "NOT REACHED");
    return reached;
}

// Commands in a folder of 100,000 entries, medians.
struct Wanted {
    const char* what;
    double CommandTimes::*field;
    double mostSeconds;
};
constexpr Wanted kWanted[] = {
    {"sort by size", &CommandTimes::sortBySize, 0.5},
    {"sort by name", &CommandTimes::sortByName, 0.5},
    {"slowest change of the view", &CommandTimes::changeView, 0.5},
    {"select all", &CommandTimes::selectAll, 0.3},
    {"open 5,000 folders in the tree", &CommandTimes::openInTree, 0.3},
    {"leave the folder", &CommandTimes::leave, 0.1},
};

bool CommandsAreFast(const Figures& many) {
    bool reached = true;
    for (const Wanted& wanted : kWanted) {
        reached = Verdict(wanted.what, MedianOf(many, wanted.field), wanted.mostSeconds, "s") && reached;
    }
    return reached;
}

int Measure(const Options& options) {
    Figures few, many;
    for (unsigned round = 1; round <= options.rounds; ++round) {
        if (!MeasureRound(round, few, many)) return 1;
    }
    PrintMedians(kFew, few);
    PrintMedians(kMany, many);
    const double seconds = MedianOf(many, &ListingTimes::allShown);
    std::printf("\n");
    bool reached = Verdict("LIST to shown, 100,000 entries", seconds, options.mostSeconds, "s");
    // The worst, not the median: the window must answer in every run.
    const double stall = Largest(Column(many.listings, &ListingTimes::longestStall));
    reached = Verdict("longest time without an answer in any run", stall, options.mostStall, "s") && reached;
    reached = Verdict("ten times the entries take as many times", seconds / MedianOf(few, &ListingTimes::allShown),
                      options.mostGrowth, "") &&
              reached;
    reached = CommandsAreFast(many) && reached;
    return reached ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (argc != 5 || !Read(argv[1], options.rounds) || !Read(argv[2], options.mostSeconds) ||
        !Read(argv[3], options.mostStall) || !Read(argv[4], options.mostGrowth) || options.rounds == 0) {
        std::fprintf(stderr, "usage: bench_list ROUNDS MOST_SECONDS MOST_STALL_SECONDS MOST_GROWTH\n");
        return 2;
    }
    return Measure(options);
}
