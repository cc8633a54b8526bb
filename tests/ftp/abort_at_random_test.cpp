// Abort, Exit and Disconnect at random moments of every kind of operation: each ends in time, nothing stays open, and
// the control connection is in step or closed. ZARN_ABORTS sets the number of rounds of each pair, ZARN_SEED the seed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>

#include "foundation/trace.h"
#include "ftp/data_connection.h"
#include "ftp/login.h"
#include "ftp/remote_commands.h"
#include "ftp/session_state.h"
#include "ftp/worker.h"
#include "platform/clock.h"
#include "support/bounded_wait.h"
#include "support/session_harness.h"

namespace {

constexpr std::uint64_t kLongestStop = 5'000'000;  // microseconds
constexpr std::uint32_t kLongestDelay = 12'000;    // microseconds, about as long as an operation takes

int Rounds() {
    const char* rounds = std::getenv("ZARN_ABORTS");
    return rounds != nullptr ? std::max(std::atoi(rounds), 1) : 4;
}

unsigned Seed() {
    const char* given = std::getenv("ZARN_SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                                           : static_cast<unsigned>(platform::Microseconds());
    std::printf("ZARN_SEED=%u\n", seed);
    return seed;
}

struct Scene {
    Scene() {
        h.server.AddFolder("/pub");
        h.server.AddFile("/big", std::string(3'000'000, 'b'));
        h.server.AddFile("/gone", "x");
        std::ofstream(h.LocalPath("up"), std::ios::binary) << std::string(2'000'000, 'u');
        std::string folder = h.LocalPath("");
        folder.pop_back();
        upload.pszLocalName = OwnedText::Copy("up");
        upload.pszLocation = OwnedText::Copy(folder);
        upload.pszDestination = OwnedText::Copy("/");
        gTrace.verbose = false;
        file = h.LocalPath("down");
        site = h.MakeSite();
        Connect();
    }
    void Connect() {
        SetTransferAbort(false);
        gSession.exiting = false;
        if (!HasControlSocket(site)) {
            site->bConnected = 0;
            ASSERT_TRUE(DoConnect2(site));
        }
        site->pszCurrentDir = OwnedText::Copy("/");
    }
    SessionHarness h;
    Site* site = nullptr;
    TransferNode upload;
    std::string file;
};

struct Named {
    const char* name;
    void (*run)(Scene& scene);
    bool needsConnection = true;
};

const Named kOperations[] = {
    {"connect", [](Scene& s) { Zarn_IdmConnect(s.site); }, false},
    {"cwd", [](Scene& s) { ChangeRemoteDirectory(s.site, "/pub", s.h.reply, nullptr, true); }},
    {"pwd", [](Scene& s) { GetRemoteDirectory(s.site); }},
    {"list", [](Scene& s) { DoDirList(s.site, "LIST", s.h.reply); }},
    {"retr",
     [](Scene& s) { RetrieveFile(s.site, s.h.reply, "RETR big", s.file.c_str(), 'I', gSession.transferAbort); }},
    {"stor", [](Scene& s) { DlgSendFile(s.site, s.upload, s.h.reply, 'I', gSession.transferAbort); }},
    {"mkd", [](Scene& s) { MakeRemoteDirectory(s.site, "new"); }},
    {"rename", [](Scene& s) { RenameRemoteItem(s.site, "gone", "gone"); }},
};

const Named kStops[] = {
    {"abort", [](Scene&) { Zarn_Abort(); }},
    {"disconnect", [](Scene& s) { Zarn_IdmDisconnect(s.site); }},
    {"exit", [](Scene& s) { Zarn_IdmExit(s.site, kExitCommand); }},
};

void Wait(std::uint32_t microseconds) {
    const std::uint64_t until = platform::Microseconds() + microseconds;
    while (platform::Microseconds() < until) {
    }
}

void RunRound(Scene& scene, const Named& operation, const Named& stop, std::uint32_t delay) {
    SCOPED_TRACE(std::string(operation.name) + " / " + stop.name + " after " + std::to_string(delay) + " us");
    if (operation.needsConnection)
        scene.Connect();
    else if (HasControlSocket(scene.site))
        Zarn_IdmDisconnect(scene.site);
    SetTransferAbort(false);
    gSession.exiting = false;
    ASSERT_TRUE(StartWorker(operation.name, [&] { operation.run(scene); }));
    Wait(delay);
    const std::uint64_t startedAt = platform::Microseconds();
    stop.run(scene);
    EXPECT_LT(platform::Microseconds() - startedAt, kLongestStop);
    ASSERT_TRUE(test_support::WaitUntil([] { return !OperationRunning() && !WorkerRunning(); }));
    EXPECT_EQ(scene.site->pSock->data_skt, platform::kNoSocket);
    EXPECT_EQ(scene.site->pSock->listen_skt, platform::kNoSocket);
    scene.h.view.RunPostedDisconnects();
    gSession.exiting = false;
    SetTransferAbort(false);
    if (!HasControlSocket(scene.site)) {
        EXPECT_EQ(scene.site->bConnected, 0);
        return;
    }
    EXPECT_EQ(command(scene.site, scene.h.reply, "NOOP"), FTP_COMPLETE);
    EXPECT_STREQ(scene.h.replyText, "200 OK.");
}

TEST(AbortAtRandom, EveryOperationEndsInOrder) {
    std::mt19937 random(Seed());
    Scene scene;
    const int rounds = Rounds();
    for (const Named& operation : kOperations)
        for (const Named& stop : kStops)
            for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round)
                RunRound(scene, operation, stop, random() % kLongestDelay);
    std::printf("all rounds done\n");
    std::fflush(stdout);
    EXPECT_TRUE(scene.h.server.WaitForConnections(HasControlSocket(scene.site) ? 1 : 0))
        << scene.h.server.OpenConnections() << " open at port " << scene.h.server.Port() << ", the client has "
        << HasControlSocket(scene.site);
}

}  // namespace
