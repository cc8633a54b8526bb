#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/drop_transfer.h"
#include "transfer/transfer_fixture.h"
#include "transfer/transfer_progress.h"
#ifndef _WIN32
#include "host/fault_injection.h"
#endif

namespace {

// A tree of two folders and three files is sent while something fails at one step: it ends, is shown, counts, both
// sides are back where they were, the dialog closes, and what comes next gets its own replies.
class UploadFaults : public testing::Test {
  protected:
    UploadFaults() {
        local.Write("dir/a.txt", "aaa");
        local.Write("dir/sub/b.bin", std::string(300'000, 'b'));
        local.Write("dir/z.txt", "zzz");
    }
    // A fresh session each time.
    struct Session {
        Session() {
            gZarn.SENDUNIQUE = 0;
            gZarn.mode.mode = 'I';
            harness.server.AddFolder("/up");
            site = harness.ConnectedSite();
            char reply[kReplySize] = "";
            DoCWD(site, "/up", reply, true);
            harness.server.ForgetCommands();
            SetTransferAbort(false);
        }
        ~Session() { SetTransferAbort(false); }
        SessionHarness harness;
        Site* site = nullptr;
    };
    int Drop(const Session& session) {
        job = TransferJob();
        job.site = session.site;
        job.start = TransferStart::DropFiles;
        job.localPaths = {local.PathOf("dir")};
        view.closed = 0;
        return Zarn_TransferDropFiles(gSession.transferAbort);
    }
    void ExpectInOrder(Session& session, const std::string& what, bool folderIsBack = true) {
        EXPECT_EQ(1, view.closed) << what;
        EXPECT_FALSE(TransferRunning()) << what;
        EXPECT_EQ(local.Path(), platform::CurrentFolder()) << what;
        EXPECT_EQ(platform::kNoSocket, session.site->pSock->data_skt) << what;
        EXPECT_EQ(platform::kNoSocket, session.site->pSock->listen_skt) << what;
        EXPECT_LE(session.harness.server.CountCommands("STOR"), 4) << what;
        EXPECT_LE(session.harness.console.Boxes().size() + session.harness.view.ServerErrors().size(), 2u) << what;
        // Lost, shown, and the disconnect on its way.
        if (!HasControlSocket(session.site) || session.harness.view.PostedDisconnects() > 0) return;
        if (folderIsBack) {
            EXPECT_STREQ("/up", session.site->pszCurrentDir.get()) << what;
        }
        char reply[kReplySize] = "";
        const int result = DoPWD(session.site, reply);
        if (result == FTP_COMPLETE) {
            EXPECT_EQ(0, std::string(reply).find("257 \"/up\"")) << what << ": " << reply;
        }
    }
    static bool SaysThatItFailed(Session& session) {
        return !session.harness.console.Boxes().empty() || !session.harness.view.ServerErrors().empty() ||
               session.harness.view.PostedDisconnects() > 0;
    }

    LocalFolder local;
    RecordingTransferView view;
    TransferJob job;
    const RunningJobScope running{job};
};

struct Way {
    const char* name;
    ServerScript script;
};
const Way kWays[] = {
    {"closes", {CloseControl()}},
    {"resets", {ResetControl()}},
    {"says goodbye", {Say("421 Service not available\r\n"), CloseControl()}},
    {"refuses for now", {Say("450 Busy\r\n")}},
    {"refuses", {Say("553 Not here\r\n")}},
    {"finds nothing", {Say("550 No such file or directory\r\n")}},
    {"is not permitted", {Say("550 Permission denied\r\n")}},
    {"talks nonsense", {Say("what?\r\n"), CloseControl()}},
    {"refuses at length", {Say("553-Not\r\n here\r\n553 and not now\r\n")}},
};

TEST_F(UploadFaults, EveryWayOfTheServerAtEveryStepEndsInOrder) {
    for (const char* verb : {"CWD", "MKD", "TYPE", "PORT", "STOR"}) {
        for (const Way& way : kWays) {
            for (const int before : {0, 1}) {
                Session session;
                const std::string what = std::string(verb) + " " + way.name + " after " + std::to_string(before);
                for (int i = 0; i < before; ++i) session.harness.server.Once(verb, {Answer()});
                session.harness.server.Once(verb, way.script);
                Drop(session);
                ExpectInOrder(session, what);
                const bool failed = job.counters.failures > 0;
                EXPECT_EQ(failed, SaysThatItFailed(session)) << what;
                EXPECT_LE(job.counters.failures, 1) << what;
                if (failed) continue;
                EXPECT_EQ("zzz", session.harness.server.FileBytes("/up/dir/z.txt")) << what;
            }
        }
    }
}

TEST_F(UploadFaults, EveryEndOfTheDataConnectionEndsInOrder) {
    const Way ways[] = {
        {"full", {Say("150 ok\r\n"), OpenData(), ReadData(), CloseData(), Say("552 Disk full\r\n")}},
        {"full at once", {Say("150 ok\r\n"), OpenData(), ResetData(), Say("552 Disk full\r\n")}},
        {"cut", {Say("150 ok\r\n"), OpenData(), ReadData(), ResetControl()}},
        {"no data", {Say("150 ok\r\n"), Say("425 Cannot connect\r\n")}},
        {"too early", {Say("150 ok\r\n"), Say("226 done\r\n")}},
        {"hangs up", {Say("150 ok\r\n"), CloseControl()}},
    };
    for (const Way& way : ways) {
        for (const int before : {0, 1, 2}) {
            Session session;
            const std::string what = std::string(way.name) + " after " + std::to_string(before);
            for (int i = 0; i < before; ++i) session.harness.server.Once("STOR", {Answer()});
            session.harness.server.Once("STOR", way.script);
            Drop(session);
            ExpectInOrder(session, what);
            EXPECT_EQ(1, job.counters.failures) << what;
            EXPECT_TRUE(SaysThatItFailed(session)) << what;
            EXPECT_EQ(before + 1, session.harness.server.CountCommands("STOR")) << what;
        }
    }
}

TEST_F(UploadFaults, IgnoredFailuresAreCountedEachAndEverythingElseIsSent) {
    Session session;
    session.harness.server.Once("STOR", {Say("553 Not here\r\n")});
    session.harness.server.Once("STOR", {Say("150 ok\r\n"), OpenData(), ReadData(), CloseData(), Say("552 full\r\n")});
    for (int i = 0; i < 2; ++i) session.harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(5, Drop(session));
    EXPECT_EQ(2, job.counters.failures);
    EXPECT_EQ("zzz", session.harness.server.FileBytes("/up/dir/z.txt"));
    EXPECT_TRUE(session.harness.console.HasLine("2 of 5 items could not be transferred."));
    ExpectInOrder(session, "ignored");
}

#ifndef _WIN32
// Every call of the system made to fail once. Whatever it costs, the next drop on a fresh session sends all.
TEST_F(UploadFaults, EveryFailureOfTheSystemEndsInOrder) {
    using fault_injection::Call;
    for (const Call call : {Call::OpenFile, Call::ReadFile, Call::ListFolder, Call::CreateSocket, Call::Bind,
                            Call::Listen, Call::WaitReadable}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 60);
            Session session;
            const std::string what = "call " + std::to_string(static_cast<int>(call)) + " number " + std::to_string(n);
            bool fired = false;
            {
                const fault_injection::Scope scope(call, n, platform::kErrorAccessDenied);
                Drop(session);
                fired = scope.Fired();
            }
            // The server in this process uses the sockets too: who was struck is open, that it ends in order is not.
            ExpectInOrder(session, what, call != Call::WaitReadable);
            if (!fired) break;
        }
    }
    Session session;
    EXPECT_EQ(5, Drop(session));
    EXPECT_EQ(0, job.counters.failures);
}
#endif

}  // namespace
