#include "ftp/data/remote_listing.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "ftp/data/dump_file.h"
#include "ftp/errors/server_error.h"
#include "platform/files.h"
#include "support/session_harness.h"

namespace {

using Lines = std::vector<std::string>;
const std::atomic<bool> kNoAbort{false};

struct Connected {
    Connected() : site(h.ConnectedSite()) {}
    std::string Said() const { return h.replyText; }
    std::string Current() const { return site->pszCurrentDir.c_str(); }
    SessionHarness h;
    Site* site;
};

TEST(DoDirList, ReceivesIntoTheListingDumpFile) {
    Connected c;
    c.h.server.SetListing("/", "total 0\r\none line\r\n");
    EXPECT_EQ(DoDirList(c.site, "LIST", c.h.reply), FTP_COMPLETE);
    EXPECT_EQ(SessionHarness::LocalBytes(ListingDumpFile()), "total 0\r\none line\r\n");
    DeleteListingDumpFile();
    platform::FileInfo info;
    EXPECT_FALSE(platform::GetFileInfo(ListingDumpFile(), info));
}

TEST(DoDirList, AFailureIsShown) {
    Connected c;
    c.h.server.On("LIST", {Say("450 busy\r\n")});
    EXPECT_EQ(DoDirList(c.site, "LIST", c.h.reply), 0);
    ASSERT_EQ(c.h.view.ServerErrors().size(), 1u);
    EXPECT_EQ(c.h.view.ServerErrors()[0].operation, kOperationList);
    EXPECT_EQ(c.h.view.ServerErrors()[0].reply, "450 busy");
}

TEST(DoDirList, AListingCutOffInTheMiddleIsNoSuccess) {
    Connected c;
#ifdef _WIN32
    // Under Wine a reset may arrive as an ordinary end, so the server's last word has to tell.
    const char* lastWord = "426 lost\r\n";
#else
    const char* lastWord = "226 ok\r\n";
#endif
    c.h.server.On("LIST", {Say("150 go\r\n"), OpenData(), DataBytes("drwx"), Hold(), ResetData(), Say(lastWord)});
    int result = 0;
    {
        OtherThread listing([&] { result = DoDirList(c.site, "LIST", c.h.reply); });
        ASSERT_TRUE(c.h.server.WaitUntilHeld());
        c.h.server.Release();
    }
    EXPECT_NE(result, FTP_COMPLETE);
    EXPECT_EQ(c.h.view.ServerErrors().size(), 1u);
}

TEST(LIST, ListingCommandsOpenADataConnection) {
    Connected c;
    EXPECT_EQ(LIST(c.site, "LIST"), FTP_COMPLETE);
    EXPECT_EQ(LIST(c.site, "NLST"), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.CountCommands("PORT"), 2);
}

TEST(LIST, OtherCommandsAreSentAsTheyAreAndClassed) {
    Connected c;
    EXPECT_EQ(LIST(c.site, "DELE 100%%"), 5);  // 550 divided by 100
    EXPECT_EQ(c.h.server.Commands().back(), "DELE 100%");
    c.h.server.On("LIST", {Say("502 no\r\n")});
    EXPECT_EQ(LIST(c.site, "list"), 5);  // exact capitals only
    EXPECT_EQ(c.h.server.CountCommands("PORT"), 0);
}

TEST(ListContentsByName, EntersTheDirectoryAndLists) {
    Connected c;
    c.h.server.SetListing("/pub", "a\r\n");
    const std::string dump = c.h.LocalPath("dump");
    EXPECT_EQ(ListContentsByName(c.site, "/pub", dump.c_str(), c.h.reply, kNoAbort), FTP_COMPLETE);
    EXPECT_EQ(c.Current(), "/pub");
    EXPECT_EQ(SessionHarness::LocalBytes(dump), "a\r\n");
    EXPECT_EQ(ListContentsByName(c.site, "/pub", dump.c_str(), c.h.reply, kNoAbort), FTP_COMPLETE);
    EXPECT_EQ(c.h.server.CountCommands("CWD"), 1);  // not entered again
}

TEST(ListContentsByName, ZeroWhenNothingCanBeListed) {
    Connected c;
    const std::string dump = c.h.LocalPath("dump");
    const std::atomic<bool> abort{true};
    EXPECT_EQ(ListContentsByName(c.site, "/", dump.c_str(), c.h.reply, abort), 0);
    EXPECT_EQ(ListContentsByName(c.site, "", dump.c_str(), c.h.reply, kNoAbort), 0);
    EXPECT_EQ(ListContentsByName(c.site, "/", "", c.h.reply, kNoAbort), 0);
    EXPECT_EQ(ListContentsByName(c.site, "/gone", dump.c_str(), c.h.reply, kNoAbort), 0);
    EXPECT_EQ(c.h.server.CountCommands("LIST"), 0);
}

TEST(ListContentsByName, ARefusedListingIsShown) {
    Connected c;
    c.h.server.On("LIST", {Say("550 no\r\n")});
    EXPECT_EQ(ListContentsByName(c.site, "/", c.h.LocalPath("dump").c_str(), c.h.reply, kNoAbort), 0);
    EXPECT_EQ(c.h.view.ServerErrors().size(), 1u);
}

}  // namespace
