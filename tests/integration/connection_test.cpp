#include "config/settings.h"
#include "ftp/control/keep_alive.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/connect_site.h"
#include "ftp/login/login.h"
#include "ftp/login/stop.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "integration/real_server.h"
#include "platform/clock.h"
#include "support/bounded_wait.h"

namespace {

using Lines = std::vector<std::string>;

class Connection : public RealServer {
  protected:
    void SetUp() override {
        RealServer::SetUp();
        Watch();
    }
    void ReceiveOne(const std::string& name) {
        const LocalFolder fresh;
        Select({name});
        EXPECT_EQ(ReceiveSelection(), 1) << name;
        EXPECT_TRUE(fresh.Read(name) == DiskBytes(std::string(site->pszCurrentDir.view()) + "/" + name)) << name;
    }
    // The TYPE commands sent so far, in order.
    Lines Types() const {
        Lines types;
        for (const std::string& line : wire->Commands())
            if (line.starts_with("TYPE")) types.push_back(line);
        return types;
    }
    void WaitUntilIdle() {
        ASSERT_TRUE(test_support::WaitUntil([&] { return LastCmdTicks(site) > 1000; }));
    }
};
FOR_EVERY_SERVER(Connection);

// A server starts with text (RFC 959, 5.1), and so does the program.
TEST_P(Connection, TwentyTransfersSendTypeOnlyWhenItChanges) {
    Connect();
    ASSERT_EQ(Open("/pub/many"), FTP_COMPLETE);
    EXPECT_EQ(Types(), Lines());
    for (int number = 1; number <= 20; ++number) {
        const std::string digits = std::to_string(number);
        ReceiveOne("entry-" + std::string(4 - digits.size(), '0') + digits + ".txt");
    }
    EXPECT_EQ(Types(), (Lines{"TYPE I"}));
    EXPECT_EQ(wire->CountCommands("RETR"), 20);
    EXPECT_EQ(wire->CountCommands("PORT"), 21);
    EXPECT_EQ(wire->CountCommands("CWD"), 1);
    EXPECT_EQ(wire->Connections(), 1);

    ASSERT_EQ(Open("/pub/source"), FTP_COMPLETE);
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    EXPECT_EQ(Types(), (Lines{"TYPE I", "TYPE A"}));
    gZarn.mode.mode = 'A';
    Select({"members-only.txt"});
    console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(ReceiveSelection(), 0);
    EXPECT_EQ(Types().size(), 2u);
}

// What the servers make of local bytes of eight bits: the file as it is.
TEST_P(Connection, LocalByteSizeOfEightIsBinary) {
    gZarn.mode.mode = 'L';
    Connect();
    ASSERT_EQ(Open("/pub/pictures"), FTP_COMPLETE);
    ReceiveOne("sunset.png");
    EXPECT_EQ(Types(), (Lines{"TYPE L 8"}));
}

TEST_P(Connection, BinaryStaysBinaryOnTheNextConnection) {
    Connect();
    ASSERT_EQ(Open("/pub/pictures"), FTP_COMPLETE);
    ReceiveOne("lamp.png");
    Zarn_IdmDisconnect(site);
    Connect();
    ASSERT_EQ(Open("/pub/pictures"), FTP_COMPLETE);
    ReceiveOne("sunset.png");
    EXPECT_EQ(Types(), (Lines{"TYPE I", "TYPE A", "TYPE I"}));
    EXPECT_EQ(wire->Connections(), 2);
}

TEST_P(Connection, OperationAfterASecondOfSilenceBeginsWithNoop) {
    Connect();
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    wire->ForgetCommands();
    // However slow the machine is, the last command was a moment ago.
    site->lastCommandTicks = platform::TickCount();
    ReceiveOne("notes.txt");
    EXPECT_EQ(wire->CountCommands("NOOP"), 0);
    WaitUntilIdle();
    wire->ForgetCommands();
    ReceiveOne("notes.txt");
    const Lines commands = wire->Commands();
    ASSERT_FALSE(commands.empty());
    EXPECT_EQ(commands[0], "NOOP");
    EXPECT_EQ(wire->CountCommands("NOOP"), 1);
    EXPECT_TRUE(console.Boxes().empty());
}

TEST_P(Connection, DisconnectClosesTheConnectionAndTheSiteConnectsAgain) {
    Connect();
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    Zarn_IdmDisconnect(site);
    EXPECT_TRUE(wire->WaitUntilClientClosed());
    EXPECT_FALSE(site->pszCurrentDir);
    EXPECT_EQ(view.Disconnected(), 1);
    EXPECT_EQ(wire->CountCommands("QUIT"), 0);
    Connect();
    ASSERT_EQ(Open("/docs/history"), FTP_COMPLETE);
    EXPECT_EQ(list.entries.size(), DiskFolder("/docs/history").size());
}

TEST_P(Connection, ReconnectGetsANewConnectionForTheSameSite) {
    Connect();
    bool connected = false;
    Run("Zarn_ReConnect", [&] { connected = Zarn_ReConnect(site); });
    EXPECT_TRUE(connected);
    EXPECT_EQ(wire->Connections(), 2);
    site->pszCurrentDir = OwnedText::Copy("/");
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    ReceiveOne("notes.txt");
}

// A connected site is disconnected first, and that says no QUIT.
TEST_P(Connection, ExitClosesTheConnectionInOrder) {
    Connect();
    Zarn_IdmExit(site, kExitCommand);
    EXPECT_TRUE(wire->WaitUntilClientClosed());
    EXPECT_EQ(wire->CountCommands("QUIT"), 0);
    EXPECT_EQ(view.ClosedPrograms(), 1);
    EXPECT_FALSE(HasControlSocket(site));
}

TEST_P(Connection, ExitBeforeTheLogInSaysQuitAndTheServerAnswersIt) {
    ASSERT_TRUE(Zarn_ConnectSite(site, "ftp", "tcp"));
    ASSERT_TRUE(wire->WaitForReply("\n220 "));
    Zarn_IdmExit(site, kExitCommand);
    EXPECT_TRUE(wire->WaitForCommand("QUIT"));
    EXPECT_TRUE(wire->WaitForReply("\n221"));
    EXPECT_TRUE(wire->WaitUntilClientClosed());
    EXPECT_FALSE(HasControlSocket(site));
}

}  // namespace
