#include <gtest/gtest.h>

#include "config/host_types.h"
#include "ftp/login/login.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/result_codes.h"
#include "listing/host_detection.h"
#include "listing/listed_site.h"

namespace {

TEST(HelpVerdict, FirstTestThatHoldsChoosesTheType) {
    EXPECT_EQ(7011u, HostTypeOfHelp("214 NCSA Telnet").hostType);
    EXPECT_EQ(7011u, HostTypeOfHelp("214-CUTCP\r\n").hostType);
    EXPECT_EQ(7004u, HostTypeOfHelp("214 Ambrel FTP server here").hostType);
    EXPECT_EQ(7011u, HostTypeOfHelp("214 Ambrel FTP server by NCSA").hostType);
    EXPECT_EQ(7020u, HostTypeOfHelp("211-FTP Software PC/TCP FTP Server for Windows 4").hostType);
    for (const char* known : {"NCSA", "CUTCP", "Ambrel FTP server", "211-FTP Software PC/TCP FTP Server for Windows"})
        EXPECT_FALSE(HostTypeOfHelp(known).askSyst) << known;
}

TEST(HelpVerdict, MentionOfPcTcp310GivesItsTypeWithoutSyst) {
    EXPECT_EQ(7020u, HostTypeOfHelp("214 this is PC/TCP 3.10.").hostType);
    EXPECT_FALSE(HostTypeOfHelp("214 this is PC/TCP 3.10.").askSyst);
}

TEST(HelpVerdict, PcTcpBeginningCountsAtTheBeginningAndInItsOwnCaseOnly) {
    EXPECT_TRUE(HostTypeOfHelp(" 211-FTP Software PC/TCP FTP Server for Windows").askSyst);
    EXPECT_TRUE(HostTypeOfHelp("211-ftp software pc/tcp ftp server for windows").askSyst);
}

TEST(HelpVerdict, AnythingElseIsUnixUntilSystIsAsked) {
    EXPECT_EQ(7001u, HostTypeOfHelp("214 commands are").hostType);
    EXPECT_TRUE(HostTypeOfHelp("214 commands are").askSyst);
    EXPECT_TRUE(HostTypeOfHelp("").askSyst);
    EXPECT_TRUE(HostTypeOfHelp("214 ncsa PC/TCP 3.1").askSyst);
}

TEST(SystReply, FirstSignInOrderChoosesTheType) {
    EXPECT_EQ(7002u, HostTypeOfSyst("215 Windows_NT version 4.0"));
    EXPECT_EQ(7017u, HostTypeOfSyst("215 WINDOWS NT Type: L8"));
    EXPECT_EQ(7001u, HostTypeOfSyst("215 UNIX Type: L8"));
    EXPECT_EQ(7001u, HostTypeOfSyst("215 UNIX emulation of MultiNet VMS"));
    EXPECT_EQ(7015u, HostTypeOfSyst("215 VMS with MultiNet"));
    EXPECT_EQ(7016u, HostTypeOfSyst("215 VMS V5.5"));
    EXPECT_EQ(7018u, HostTypeOfSyst("215 PC Type: L8"));
    EXPECT_EQ(7019u, HostTypeOfSyst("215 OS/MVS is the system"));
}

TEST(SystReply, NoSignKeepsUnix) {
    EXPECT_EQ(7001u, HostTypeOfSyst("215 windows_nt"));
    EXPECT_EQ(7001u, HostTypeOfSyst(""));
}

TEST(HelpReply, SuccessOnTheControlConnectionCounts) {
    EXPECT_TRUE(IsHelpReply("214 here"));
    EXPECT_TRUE(IsHelpReply("211-begin"));
    EXPECT_FALSE(IsHelpReply("502 no help"));
    EXPECT_FALSE(IsHelpReply("421 going down " + std::string(300, '.')));
    EXPECT_FALSE(IsHelpReply("no reply at all"));
    EXPECT_FALSE(IsHelpReply(""));
    // The start of a long reply was overwritten by a later line.
    EXPECT_TRUE(IsHelpReply("ACCT CWD " + std::string(200, 'x')));
}

class HostDetection : public testing::Test, protected ListedSite {
  protected:
    HostDetection() { server.SetListing("/pub", kNtLines); }
    static constexpr char kNtLines[] =
        "01-15-98  09:05PM       <DIR>          Program Files\r\n01-16-98  10:00AM                 1234 read "
        "me.txt\r\n";
    using Names = std::vector<std::string>;
};

TEST_F(HostDetection, ListingWithoutAReadableLineIsReadAnewUnderTheTypeFound) {
    server.On("SYST", {Say("215 Windows_NT version 4.0\r\n")});
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"Program Files", "read me.txt"}), list.Names());
    EXPECT_EQ(7002u, site->dwCurType);
    EXPECT_EQ(7000u, site->dwType);
    EXPECT_EQ(1, server.CountCommands("LIST"));
    EXPECT_EQ(1u, list.ends.size());
    EXPECT_EQ(1u, pub->folders);
    EXPECT_EQ(1u, pub->files);
    EXPECT_FALSE(harness.console.HasLine("could not be read"));
    EXPECT_TRUE(harness.console.HasLine("Host type (7002): Microsoft Windows NT"));
    EXPECT_TRUE(harness.console.HasLine("214 No help here."));
    EXPECT_TRUE(harness.console.HasLine("215 Windows_NT version 4.0"));
}

TEST_F(HostDetection, RunsOncePerConnection) {
    server.On("HELP", {Say("502 no\r\n")});
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(harness.console.HasLine("2 lines of the listing could not be read."));
    EXPECT_EQ(7000u, site->dwCurType);
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(1, server.CountCommands("HELP"));
    EXPECT_EQ(0, server.CountCommands("SYST"));
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
    site->bConnected = 0;
    ASSERT_TRUE(DoConnect2(site));
    site->pszCurrentDir = OwnedText::Copy("/");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(2, server.CountCommands("HELP"));
}

TEST_F(HostDetection, OneReadableLineIsEnoughNotToAsk) {
    std::string lines = "-rw-r--r-- 1 a b 1 Jan 2 2001 f\r\n";
    lines.insert(0, kNtLines);
    server.SetListing("/pub", lines);
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(0, server.CountCommands("HELP"));
    EXPECT_EQ((Names{"f"}), list.Names());
}

TEST_F(HostDetection, EmptyFolderSaysNothingAboutTheServer) {
    server.SetListing("/pub", "total 0\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(0, server.CountCommands("HELP"));
}

TEST_F(HostDetection, ServerThatItsWelcomeNamedIsNotAsked) {
    site->dwCurType = HOST_TYPE_UNIX;
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(0, server.CountCommands("HELP"));
}

TEST_F(HostDetection, SiteWithAChosenTypeIsNotAsked) {
    site->dwType = site->dwCurType = HOST_TYPE_CLIX;
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(0, server.CountCommands("HELP"));
}

TEST_F(HostDetection, ServerThatHangsUpIsTold) {
    server.On("HELP", {CloseControl()});
    LV_ChangeDir(pub);
    EXPECT_EQ(1, harness.view.PostedDisconnects());
    EXPECT_TRUE(list.entries.empty());
    EXPECT_EQ(1u, list.ends.size());
}

TEST_F(HostDetection, ServerThatHangsUpAtSystIsToldAndOfNoKnownType) {
    server.On("SYST", {ResetControl()});
    LV_ChangeDir(pub);
    EXPECT_EQ(1, harness.view.PostedDisconnects());
    EXPECT_EQ(7000u, site->dwCurType);
    EXPECT_EQ(1u, list.ends.size());
}

TEST_F(HostDetection, HelpThatComesOnADataConnectionCounts) {
    server.On("HELP", {Say("150 help follows\r\n"), OpenData(), DataBytes("this is PC/TCP 3.10\r\n"), CloseData(),
                       Say("226 done\r\n")});
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(7020u, site->dwCurType);
    EXPECT_EQ(0, server.CountCommands("SYST"));
}

TEST_F(HostDetection, LongHelpOfManyLinesCounts) {
    std::string help = "214-The following commands are recognized\r\n";
    for (int i = 0; i < 12; ++i) help += " USER PASS ACCT CWD CDUP SMNT QUIT REIN PORT PASV TYPE STRU MODE RETR\r\n";
    server.On("HELP", {Say(help + "214 end\r\n")});
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(7001u, site->dwCurType);
    EXPECT_EQ(1, server.CountCommands("SYST"));
}

TEST_F(HostDetection, SystThatIsRefusedKeepsUnix) {
    server.On("SYST", {Say("502 Windows_NT keeps that to itself\r\n")});
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(7001u, site->dwCurType);
}

TEST_F(HostDetection, SolarisIsNotAskedAndHasAllCapabilities) {
    site->dwType = HOST_TYPE_SOLARIS;
    EXPECT_EQ(214, ReadProcessHelp(site));
    EXPECT_EQ(15u, site->capabilities);
    EXPECT_TRUE(server.Commands().empty());
}

TEST_F(HostDetection, ChosenTypeIsKept) {
    site->dwType = site->dwCurType = HOST_TYPE_WINDOWS_NT;
    site->capabilities = 9;
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(7002u, site->dwCurType);
    EXPECT_EQ(0u, site->capabilities);
    EXPECT_EQ(0, server.CountCommands("SYST"));
}

TEST_F(HostDetection, IbmMvsGainsACapabilityUnlessTheSitesOptionSaysNo) {
    server.On("SYST", {Say("215 OS/MVS\r\n")});
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(7019u, site->dwCurType);
    EXPECT_EQ(2u, site->capabilities);
    site->flagsAfterAnonymous |= 2;
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(0u, site->capabilities);
}

TEST_F(HostDetection, TemporaryFileIsDeleted) {
    const std::vector<std::string> before = TemporaryFiles("HLP");
    EXPECT_EQ(FTP_COMPLETE, ReadProcessHelp(site));
    EXPECT_EQ(before, TemporaryFiles("HLP"));
}

}  // namespace
