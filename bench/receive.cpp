// How fast the engine receives a file, beside a bare loop of recv and WriteFile with a buffer of the same size, in
// turns on the same server. Ends with 0 only if the median ratio reaches the figure asked for and every file was whole.
//
//   bench_receive PORT SIZE PACKETSIZE ROUNDS LEAST_RATIO     in the folder that is to hold bare.bin and engine.bin
#include <windows.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "bare_ftp.h"
#include "config/settings.h"
#include "figures.h"
#include "ftp/data/data_connection.h"
#include "ftp/login/login.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "platform/clock.h"
#include "platform/sockets.h"

namespace {

constexpr char kRemoteName[] = "data.bin";
constexpr char kBareFile[] = "bare.bin";
constexpr char kEngineFile[] = "engine.bin";
constexpr double kMiB = 1 << 20;

struct Options {
    unsigned port = 0, packetSize = 0, rounds = 0;
    std::uint64_t size = 0;
    double leastRatio = 0;
};

template <class Number>
bool Read(const char* text, Number& number) {
    const char* end = text + std::strlen(text);
    const auto [stopped, error] = std::from_chars(text, end, number);
    return error == std::errc() && stopped == end;
}

std::uint64_t gProgressCalls = 0;
void CountProgress(std::uint64_t, std::uint64_t) {
    ++gProgressCalls;
}

std::int64_t FileSize(const char* name) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExA(name, GetFileExInfoStandard, &data)) return -1;
    return static_cast<std::int64_t>(std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow);
}

// The road of a user's transfer, one file.
class Engine {
  public:
    bool Connect(const Options& options) {
        gZarn.port.ftpPort = options.port;
        gZarn.port.packetSize = options.packetSize;
        gZarn.mode.mode = 'I';
        gSessionView.setTransferProgress = CountProgress;
        site_.reset(Zarn_CreateDefaultSite("bench"));
        site_->pszHost = OwnedText::Copy("127.0.0.1");
        site_->pszUID = OwnedText::Copy("bench");
        site_->pszPWD = OwnedText::Copy("bench");
        gSession.activeSite = site_.get();
        if (DoConnect(site_.get())) return true;
        std::fprintf(stderr, "engine: cannot log in\n");
        return false;
    }
    bool Retrieve(std::uint64_t size) {
        TransferNode node;
        node.iSize = static_cast<std::uint32_t>(size);
        std::array<char, 512> reply{};
        const std::atomic<bool> abort{false};
        const int result = DlgRetrieveFile(site_.get(), node, reply, "RETR data.bin", kEngineFile, 'I', abort);
        if (result == FTP_COMPLETE) return true;
        std::fprintf(stderr, "engine: result %d, \"%s\"\n", result, reply.data());
        return false;
    }

  private:
    SitePtr site_;
};

template <class Work>
double Seconds(const char* file, const Work& work) {
    DeleteFileA(file);
    const std::uint64_t start = platform::Microseconds();
    const bool done = work();
    const double seconds = static_cast<double>(platform::Microseconds() - start) / 1e6;
    return done ? seconds : 0;
}

bool IsWhole(const char* file, std::uint64_t size) {
    const std::int64_t found = FileSize(file);
    if (found == static_cast<std::int64_t>(size)) return true;
    std::fprintf(stderr, "%s has %lld bytes\n", file, static_cast<long long>(found));
    return false;
}

int Measure(const Options& options) {
    BareFtp bare;
    Engine engine;
    if (!bare.Connect(static_cast<std::uint16_t>(options.port)) || !engine.Connect(options)) return 1;
    const double megabytes = static_cast<double>(options.size) / kMiB;
    std::vector<double> bareSpeeds, engineSpeeds, ratios;
    for (unsigned round = 1; round <= options.rounds; ++round) {
        const double bareTime =
            Seconds(kBareFile, [&] { return bare.Retrieve(kRemoteName, kBareFile, options.packetSize) >= 0; });
        const double engineTime = Seconds(kEngineFile, [&] { return engine.Retrieve(options.size); });
        if (bareTime == 0 || engineTime == 0) return 1;
        if (!IsWhole(kBareFile, options.size) || !IsWhole(kEngineFile, options.size)) return 1;
        bareSpeeds.push_back(megabytes / bareTime);
        engineSpeeds.push_back(megabytes / engineTime);
        ratios.push_back(bareTime / engineTime);
        std::printf("PACKETSIZE %5u round %u: bare loop %6.1f MiB/s, engine %6.1f MiB/s, ratio %5.2f\n",
                    options.packetSize, round, bareSpeeds.back(), engineSpeeds.back(), ratios.back());
        std::fflush(stdout);
    }
    DeleteFileA(kBareFile);
    const double ratio = Median(ratios);
    const bool reached = ratio >= options.leastRatio;
    std::printf("PACKETSIZE %5u median:  bare loop %6.1f MiB/s, engine %6.1f MiB/s, ratio %5.2f  (at least %.1f: %s)\n",
                options.packetSize, Median(bareSpeeds), Median(engineSpeeds), ratio, options.leastRatio,
                reached ? "reached" : "NOT REACHED");
    return reached ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (argc != 6 || !Read(argv[1], options.port) || !Read(argv[2], options.size) ||
        !Read(argv[3], options.packetSize) || !Read(argv[4], options.rounds) || !Read(argv[5], options.leastRatio) ||
        options.rounds == 0) {
        std::fprintf(stderr, "usage: bench_receive PORT SIZE PACKETSIZE ROUNDS LEAST_RATIO\n");
        return 2;
    }
    std::string library;
    if (platform::StartSockets(library) != 0) return 1;
    const int status = Measure(options);
    platform::StopSockets();
    return status;
}
