#include "config/site.h"

#include <gtest/gtest.h>

#include <cstring>

#include "config/settings.h"
#include "config/site_validation.h"
#include "config/store_fixture.h"
#include "foundation/trace.h"
#include "platform/system.h"

namespace {

SitePtr Dup(const Site* site) {
    return SitePtr(Zarn_DupSite(site));
}

}  // namespace

TEST(CreateSite, NamedSiteHasAConnectionBlockWithoutSockets) {
    const SitePtr site(Zarn_CreateDefaultSite("lab"));
    EXPECT_EQ(site->pszSessionName.view(), "lab");
    ASSERT_NE(site->pSock, nullptr);
    EXPECT_EQ(site->pSock->ctrl_skt, platform::kNoSocket);
    EXPECT_EQ(site->pSock->data_skt, platform::kNoSocket);
    EXPECT_EQ(site->pSock->listen_skt, platform::kNoSocket);
    EXPECT_TRUE(site->pszHost && site->pszHost.empty());
    EXPECT_TRUE(site->pszPWD && site->pszPWD.empty());
    EXPECT_TRUE(site->pszDir && site->pszDir.empty());
    EXPECT_TRUE(site->pszCurrentDir && site->pszCurrentDir.empty());
    EXPECT_FALSE(site->pszGateHost);
    EXPECT_EQ(site->dwType, 7000U);
    EXPECT_EQ(site->dwCurType, 7000U);
    EXPECT_EQ(site->flagsBeforeSavePwd, 0U);
    EXPECT_EQ(site->flagsAfterAnonymous, 1U);
    EXPECT_EQ(site->bSavePwd, 0);
    EXPECT_EQ(site->bAnonymous, 0);
    EXPECT_EQ(site->bUseGateway, 0);
    EXPECT_EQ(site->bConnected, 0);
}

TEST(CreateSite, EmptyNameIsAnEmptyBufferWithAConnectionBlock) {
    const SitePtr site(Zarn_CreateDefaultSite(""));
    EXPECT_TRUE(site->pszSessionName && site->pszSessionName.empty());
    EXPECT_NE(site->pSock, nullptr);
}

TEST(CreateSite, WithoutANameItIsTheNewSiteFolderWithoutAConnectionBlock) {
    const SitePtr site(Zarn_CreateDefaultSite(nullptr));
    EXPECT_EQ(site->pszSessionName.view(), "Create New Site Folder");
    EXPECT_EQ(site->pSock, nullptr);
}

TEST(CreateSite, UserIsTheOneLoggedOn) {
    const SitePtr site(Zarn_CreateDefaultSite("lab"));
    EXPECT_EQ(site->pszUID.view(), std::string_view(platform::UserName()).substr(0, 80));
}

TEST(DupSite, NullIsTracedAndGivesNull) {
    RecordingView view;
    gTrace.verbose = true;
    gTrace.debug = true;
    EXPECT_EQ(Zarn_DupSite(nullptr), nullptr);
    gTrace.verbose = false;
    gTrace.debug = false;
    EXPECT_TRUE(view.HasLine("Zarn_DupSite() ERROR. NULL Site Passed in. Returning NULL"));
}

TEST(DupSite, EmptyPasswordBecomesAnAbsentOne) {
    const SitePtr site = MakeSite("lab");
    ASSERT_TRUE(site->pszPWD && site->pszPWD.empty());
    EXPECT_FALSE(Dup(site.get())->pszPWD);
}

TEST(DupSite, CopiesTextsDeeplyAndScalars) {
    const SitePtr site = MakeSite("lab");
    site->pszGatePWD = OwnedText::Copy("secret");
    site->dwType = 7015;
    site->dwCurType = 7001;
    site->flagsBeforeSavePwd = 3;
    site->flagsAfterAnonymous = 9;
    site->bSavePwd = 1;
    site->bConnected = 1;
    site->bAnonymous = 1;
    site->bUseGateway = 1;
    std::memcpy(site->InitDirs[4].path, "/last", 6);
    site->InitDirs[4].lastConnect = 77;
    site->pSock->ctrl_skt = 5;
    const SitePtr copy = Dup(site.get());
    EXPECT_EQ(copy->pszHost.view(), "host.example");
    EXPECT_NE(copy->pszHost.get(), site->pszHost.get());
    EXPECT_EQ(copy->pszGatePWD.view(), "secret");
    EXPECT_EQ(copy->dwType, 7015U);
    EXPECT_EQ(copy->dwCurType, 7001U);
    EXPECT_EQ(copy->flagsBeforeSavePwd, 3U);
    EXPECT_EQ(copy->flagsAfterAnonymous, 9U);
    EXPECT_EQ(copy->bSavePwd, 1);
    EXPECT_EQ(copy->bConnected, 1);
    EXPECT_EQ(copy->bAnonymous, 1);
    EXPECT_EQ(copy->bUseGateway, 1);
    EXPECT_STREQ(copy->InitDirs[4].path, "/last");
    EXPECT_EQ(copy->InitDirs[4].lastConnect, 77U);
    EXPECT_EQ(copy->pSock->ctrl_skt, 5);
}

TEST(DupSite, SeparatorAndSelectionAreNotCopied) {
    const SitePtr site = MakeSite("lab");
    site->chSeparator = '/';
    site->nInitDirSel = 2;
    const SitePtr copy = Dup(site.get());
    EXPECT_EQ(copy->chSeparator, 0);
    EXPECT_EQ(copy->nInitDirSel, -1);
}

TEST(DupSite, SiteWithoutAConnectionBlockGivesACopyWithAFreshOne) {
    const SitePtr site(Zarn_CreateDefaultSite(nullptr));
    const SitePtr copy = Dup(site.get());
    ASSERT_NE(copy->pSock, nullptr);
    EXPECT_EQ(copy->pSock->ctrl_skt, platform::kNoSocket);
}

TEST(DupSite, PeerNamesAreCopiedOnlyWithABuffer) {
    const SitePtr site = MakeSite("lab");
    std::memcpy(site->pSock->PeerName, "10.0.0.1", 9);
    site->pSock->peerPort = 21;
    EXPECT_STREQ(Dup(site.get())->pSock->PeerName, "");
    EXPECT_EQ(Dup(site.get())->pSock->peerPort, 0);

    site->pSock->buffer.reset(new char[4]{'2', '2', '0', ' '});
    site->pSock->bufferLength = 4;
    site->pSock->fillMark = 4;
    const SitePtr copy = Dup(site.get());
    EXPECT_STREQ(copy->pSock->PeerName, "10.0.0.1");
    EXPECT_EQ(copy->pSock->peerPort, 21);
    ASSERT_EQ(copy->pSock->bufferLength, 4U);
    EXPECT_NE(copy->pSock->buffer.get(), site->pSock->buffer.get());
    EXPECT_EQ(std::memcmp(copy->pSock->buffer.get(), "220 ", 4), 0);
    EXPECT_EQ(copy->pSock->readPosition, copy->pSock->fillMark);
}

TEST(FreeSite, NullIsAcceptedAndClosesNothing) {
    std::string description;
    ASSERT_EQ(platform::StartSockets(description), 0);
    const platform::Socket open = platform::CreateSocket(platform::SocketKind::Stream);
    Zarn_FreeSite(nullptr, true);
    EXPECT_TRUE(platform::CloseSocket(open));
    platform::StopSockets();
}

TEST(FreeSite, ClosesTheOpenSocketsWhenAsked) {
    std::string description;
    ASSERT_EQ(platform::StartSockets(description), 0);
    Site* const site = MakeSite("lab").release();
    const platform::Socket control = platform::CreateSocket(platform::SocketKind::Stream);
    const platform::Socket listener = platform::CreateSocket(platform::SocketKind::Stream);
    site->pSock->ctrl_skt = control;
    site->pSock->listen_skt = listener;
    Zarn_FreeSite(site, true);
    EXPECT_FALSE(platform::CloseSocket(control));
    EXPECT_FALSE(platform::CloseSocket(listener));
    platform::StopSockets();
}

TEST(FreeSite, LeavesSocketsOpenOtherwise) {
    std::string description;
    ASSERT_EQ(platform::StartSockets(description), 0);
    Site* const site = MakeSite("lab").release();
    const platform::Socket control = platform::CreateSocket(platform::SocketKind::Stream);
    site->pSock->ctrl_skt = control;
    Zarn_FreeSite(site, false);
    EXPECT_TRUE(platform::CloseSocket(control));
    platform::StopSockets();
}

TEST(CopySiteStruct, ReplacesTextsAndKeepsEmptyOnesAsEmptyBuffers) {
    const SitePtr from = MakeSite("lab");
    from->pszDir = OwnedText();
    from->dwType = 7002;
    from->flagsBeforeSavePwd = 4;
    from->bSavePwd = 1;
    const SitePtr to = MakeSite("old", "old.example", "old");
    to->pszGateUID = OwnedText::Copy("gate");
    ASSERT_TRUE(CopySiteStruct(from.get(), to.get()));
    EXPECT_EQ(to->pszSessionName.view(), "lab");
    EXPECT_EQ(to->pszHost.view(), "host.example");
    EXPECT_TRUE(to->pszPWD && to->pszPWD.empty());
    EXPECT_FALSE(to->pszDir);
    EXPECT_FALSE(to->pszGateUID);
    EXPECT_EQ(to->dwType, 7002U);
    EXPECT_EQ(to->bSavePwd, 1);
    EXPECT_EQ(to->flagsBeforeSavePwd, 0U) << "that word is no part of this copy";
}

TEST(CopySiteStruct, OntoItselfChangesNothing) {
    const SitePtr site = MakeSite("lab");
    ASSERT_TRUE(CopySiteStruct(site.get(), site.get()));
    EXPECT_EQ(site->pszSessionName.view(), "lab");
}

TEST(NameChar, EachFieldRejectsItsOwn) {
    for (int value = 0; value < 256; ++value) {
        const char character = static_cast<char>(value);
        const bool special = std::strchr("\"*,;<>?|", value) != nullptr && value != 0;
        const bool separator = value == '/' || value == ':' || value == '\\';
        const bool low = value < 32;
        EXPECT_EQ(IsValidNameChar(character, NameField::SiteName), !low && value != '\\') << value;
        EXPECT_EQ(IsValidNameChar(character, NameField::Host), !low && !separator && !special) << value;
        EXPECT_EQ(IsValidNameChar(character, NameField::User), !low && !separator && !special) << value;
        EXPECT_EQ(IsValidNameChar(character, NameField::Directory), !low && !special) << value;
    }
}

TEST(SafeLocalName, WhatNoDirectoryMayHoldBecomesATilde) {
    EXPECT_EQ(MakeSafeLocalName("a*b?c\"d<e>f|g,h;i\tj"), "a~b~c~d~e~f~g~h~i~j");
    EXPECT_EQ(MakeSafeLocalName("d:/a\\b \xC3\xA9~}"), "d:/a\\b \xC3\xA9~}");
}

class SiteValidation : public StoreTest {
  protected:
    void ExpectRefused(Site* site, const char* text) {
        EXPECT_FALSE(IsSiteValid(site));
        ASSERT_EQ(view_.Boxes().size(), 1U);
        EXPECT_EQ(view_.Boxes().front().text, text);
        view_.Clear();
    }
    SitePtr site_ = MakeSite("lab");
};

TEST_F(SiteValidation, GoodSitePassesInSilence) {
    EXPECT_TRUE(IsSiteValid(site_.get()));
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(SiteValidation, BoxIsCaptionedWithTheTitle) {
    site_->pszHost = OwnedText();
    EXPECT_FALSE(IsSiteValid(site_.get()));
    ASSERT_EQ(view_.Boxes().size(), 1U);
    EXPECT_FALSE(view_.Boxes().front().caption.empty());
}

TEST_F(SiteValidation, EmptyNameValidatesAndTakesTheHostName) {
    site_->pszSessionName = OwnedText::Copy("");
    EXPECT_TRUE(IsSiteValid(site_.get()));
    EXPECT_EQ(site_->pszSessionName.view(), "host.example");
}

TEST_F(SiteValidation, EmptyOrAbsentHostIs7266) {
    site_->pszHost = OwnedText::Copy("");
    ExpectRefused(site_.get(), "The Host name is null.");
    site_->pszHost = OwnedText();
    ExpectRefused(site_.get(), "The Host name is null.");
}

TEST_F(SiteValidation, HostWithAColonOrASlashIs7265) {
    for (const char* host : {"host:21", "host/dir"}) {
        site_->pszHost = OwnedText::Copy(host);
        ExpectRefused(site_.get(), "The Host name has an invalid character.");
    }
}

TEST_F(SiteValidation, DirectoryWithAColonAndSlashesPasses) {
    site_->pszDir = OwnedText::Copy("disk:/pub/a");
    EXPECT_TRUE(IsSiteValid(site_.get()));
}

TEST_F(SiteValidation, DirectoryWithAnAsteriskIs7268) {
    site_->pszDir = OwnedText::Copy("/pub/*");
    ExpectRefused(site_.get(), "The directory name has an invalid character.");
}

TEST_F(SiteValidation, SiteNameWithASlashPasses) {
    site_->pszSessionName = OwnedText::Copy("lab/one");
    EXPECT_TRUE(IsSiteValid(site_.get()));
}

TEST_F(SiteValidation, SiteNameWithABackslashIs7267) {
    site_->pszSessionName = OwnedText::Copy("lab\\one");
    ExpectRefused(site_.get(), "The Site name has an invalid character.");
}

TEST_F(SiteValidation, BadUserIsRefusedWithTheSiteNamesText) {
    site_->pszUID = OwnedText::Copy("a|b");
    ExpectRefused(site_.get(), "The Site name has an invalid character.");
}

TEST_F(SiteValidation, MissingUserIs7261WithReasonNull) {
    site_->pszUID = OwnedText();
    const std::string text = "\"" + platform::UserName() + "\" is not a valid username\n\n  Reason  ( NULL ).";
    ExpectRefused(site_.get(), text.c_str());
}

TEST_F(SiteValidation, AnonymousNeedsAMailAddress) {
    site_->bAnonymous = 1;
    ExpectRefused(site_.get(),
                  "Anonymous logins are dependent upon your email address.\n"
                  "  The \"Session\" property sheet will allow you to add or change\n  your email address.");
    gZarn.MAILADDR = "kim@example.org";
    EXPECT_TRUE(IsSiteValid(site_.get()));
}

TEST_F(SiteValidation, HostIsCheckedBeforeTheSiteName) {
    site_->pszHost = OwnedText::Copy("a:b");
    site_->pszSessionName = OwnedText::Copy("a\\b");
    ExpectRefused(site_.get(), "The Host name has an invalid character.");
}
