
#include <sstream>

#include "config/host_types.h"
#include "config/settings.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/stop.h"
#include "ftp/worker/session_state.h"
#include "integration/real_server.h"

namespace {

using Lines = std::vector<std::string>;

class LogIn : public RealServer {
  protected:
    void Use(const char* userVariable, const char* passwordVariable) {
        site->pszUID = OwnedText::Copy(Environment(userVariable));
        site->pszPWD = OwnedText::Copy(Environment(passwordVariable));
    }
    void ExpectDisconnected() {
        EXPECT_EQ(site->bConnected, 0);
        EXPECT_FALSE(HasControlSocket(site));
        EXPECT_FALSE(OperationRunning());
    }
};
FOR_EVERY_SERVER(LogIn);

TEST_P(LogIn, AnonymousSiteSendsTheMailAddressAndStandsAtTheTop) {
    Watch();
    Use("", "");
    site->bAnonymous = 1;
    gZarn.MAILADDR = Environment("ZARN_FTP_PASSWORD");
    ASSERT_TRUE(ConnectSite());
    EXPECT_EQ(wire->Commands(), (Lines{"USER anonymous", "PASS " + gZarn.MAILADDR, "PWD"}));
    EXPECT_NE(site->bConnected, 0);
    EXPECT_EQ(view.FirstDirectories(), (Lines{"/"}));
    EXPECT_STREQ(site->pszCurrentDir.get(), "/");
    EXPECT_EQ(site->chSeparator, '/');
    EXPECT_TRUE(console.Boxes().empty());
    EXPECT_TRUE(view.Questions().empty());
    EXPECT_EQ(view.StatusTexts().back(), "");
}

TEST_P(LogIn, NamedUserGetsInWhereTheServerKnowsHim) {
    Watch();
    Use("ZARN_FTP_NAMED_USER", "ZARN_FTP_NAMED_PASSWORD");
    ASSERT_EQ(ConnectSite(), GetParam().knowsNamedUser);
    if (!GetParam().knowsNamedUser) {
        EXPECT_NE(wire->Replies().find("\n530 "), std::string::npos);
        return ExpectDisconnected();
    }
    EXPECT_EQ(wire->CountCommands("USER"), 1);
    EXPECT_STREQ(site->pszCurrentDir.get(), "/");
    EXPECT_EQ(Open("/"), FTP_COMPLETE);
    EXPECT_EQ(list.entries.size(), DiskFolder("/").size());
}

TEST_P(LogIn, WrongPasswordIs530AndTheSiteCanBeUsedAgain) {
    Watch();
    Use(GetParam().checksGuestPassword ? "ZARN_FTP_USER" : "ZARN_FTP_NAMED_USER", "");
    site->pszPWD = OwnedText::Copy("wrong");
    EXPECT_FALSE(ConnectSite());
    ExpectDisconnected();
    ASSERT_EQ(console.Boxes().size(), 1u);
    const std::size_t refusal = wire->Replies().find("\n530 ");
    ASSERT_NE(refusal, std::string::npos);
    const std::string line = wire->Replies().substr(refusal + 1);
    EXPECT_TRUE(console.HasBox(line.substr(0, line.find('\r')))) << console.Boxes()[0].text;
    EXPECT_TRUE(wire->WaitUntilClientClosed());

    console.Clear();
    Use("ZARN_FTP_USER", "ZARN_FTP_PASSWORD");
    Connect();
    EXPECT_EQ(wire->Connections(), 2);
    EXPECT_EQ(Open("/docs"), FTP_COMPLETE);
    EXPECT_EQ(list.entries.size(), DiskFolder("/docs").size());
    EXPECT_TRUE(console.Boxes().empty());
}

TEST_P(LogIn, MissingPasswordIsAskedForAndKeptForTheSession) {
    Watch();
    Use("ZARN_FTP_USER", "");
    view.AnswerNext(Environment("ZARN_FTP_PASSWORD"));
    ASSERT_TRUE(ConnectSite());
    ASSERT_EQ(view.Questions().size(), 1u);
    EXPECT_TRUE(view.Questions()[0].isSecret);
    EXPECT_EQ(site->pszPWD.view(), Environment("ZARN_FTP_PASSWORD"));
    Zarn_IdmDisconnect(site);
    Connect();
    EXPECT_EQ(view.Questions().size(), 1u);
}

TEST_P(LogIn, CancelledPasswordSendsNoneAndDisconnects) {
    Watch();
    Use("ZARN_FTP_USER", "");
    EXPECT_FALSE(ConnectSite());
    ExpectDisconnected();
    EXPECT_EQ(wire->CountCommands("PASS"), 0);
    EXPECT_TRUE(wire->WaitUntilClientClosed());
}

// The two servers that show the test's own banner say UNIX in it; the third says nothing of its system.
TEST_P(LogIn, HostTypeComesFromTheWelcome) {
    Watch();
    Connect();
    const std::string welcome = wire->Replies().substr(0, wire->Replies().find("\n331"));
    const bool saysUnix = welcome.find("UNIX") != std::string::npos || welcome.find("Unix") != std::string::npos ||
                          welcome.find("unix") != std::string::npos;
    EXPECT_EQ(site->dwCurType, saysUnix ? HOST_TYPE_UNIX : HOST_TYPE_AUTO);
    EXPECT_EQ(site->dwType, HOST_TYPE_AUTO);
    EXPECT_EQ(saysUnix, std::string_view(GetParam().name) != "PureFTPd");
}

TEST_P(LogIn, ChosenDirectoryIsTheFirstOne) {
    site->pszDir = OwnedText::Copy("/pub/names/Fotos aus Österreich");
    Connect();
    EXPECT_EQ(view.FirstDirectories(), (Lines{"/pub/names/Fotos aus Österreich"}));
    EXPECT_EQ(site->pszCurrentDir.view(), "/pub/names/Fotos aus Österreich");
    ASSERT_EQ(Open(""), FTP_COMPLETE);
    EXPECT_EQ(list.Names(), (Lines{"Großglockner.txt"}));
}

TEST_P(LogIn, ChosenDirectoryThatIsMissingGivesWayToTheServersOwn) {
    site->pszDir = OwnedText::Copy("/no/such/folder");
    Connect();
    EXPECT_EQ(view.FirstDirectories(), (Lines{"/"}));
    EXPECT_STREQ(site->pszCurrentDir.get(), "/");
}

TEST_P(LogIn, CurrentDirectoryIsTheOneThatWasChangedTo) {
    Connect();
    for (const DiskEntry& entry : DiskTree()) {
        if (!entry.IsFolder()) continue;
        int result = 0;
        std::string said;
        Run("DoCWD", [&] {
            char reply[kReplySize] = "";
            result = DoCWD(site, entry.path.c_str(), reply, true);
            said = GetRemoteDirectory(site).c_str();
        });
        EXPECT_EQ(result, FTP_COMPLETE) << entry.path;
        EXPECT_EQ(said, entry.path);
        EXPECT_EQ(site->pszCurrentDir.view(), entry.path);
    }
}

// The inner lines of a greeting and of a folder's message, too. The answer to PWD is a path, not a message.
TEST_P(LogIn, EveryLineOfTheServersMessagesIsOnTheConsole) {
    gTrace.verbose = true;
    Watch();
    Connect();
    ASSERT_EQ(Open("/pub"), FTP_COMPLETE);
    std::istringstream replies(wire->Replies());
    int lines = 0;
    for (std::string line; std::getline(replies, line); ++lines) {
        StripTrailing(line, "\r ");
        EXPECT_EQ(console.HasLine(line), !line.starts_with("257 ")) << line;
    }
    EXPECT_GT(lines, 8);
}

TEST_P(LogIn, ThreeConnectionsInARowLeaveNothingBehind) {
    Watch();
    for (int number = 1; number <= 3; ++number) {
        Connect();
        EXPECT_EQ(wire->Connections(), number);
        Zarn_IdmDisconnect(site);
        ExpectDisconnected();
    }
    EXPECT_TRUE(wire->WaitUntilClientClosed());
    EXPECT_TRUE(console.Boxes().empty());
}

}  // namespace
