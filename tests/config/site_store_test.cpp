#include "config/site_store.h"

#include <gtest/gtest.h>

#include "config/connection_defaults.h"
#include "config/defaults_store.h"
#include "config/initial_dirs.h"
#include "config/store_fixture.h"
#include "platform/system.h"
#include "support/host_registry.h"

namespace {

bool NameTaken(const char* name) {
    return std::string_view(name) == "taken";
}

}  // namespace

class SiteStore : public StoreTest {
  protected:
    static std::optional<std::string> Text(const char* name) { return Open("lab").ReadText(name, 4096); }
    static SitePtr FullSite() {
        SitePtr site = MakeSite("lab");
        site->pszPWD = OwnedText::Copy("ab");
        site->bSavePwd = 1;
        site->pszDir = OwnedText::Copy("/pub");
        site->dwType = 7002;
        site->bUseGateway = 1;
        site->bAnonymous = 1;
        site->pszGateHost = OwnedText::Copy("gate.example");
        site->pszGateUID = OwnedText::Copy("guard");
        site->pszGatePWD = OwnedText::Copy("ab");
        return site;
    }
};

TEST_F(SiteStore, SavedSiteComesBack) {
    SaveSiteInfo(FullSite().get());
    const SitePtr site = Zarn_GetSiteInfo("lab");
    ASSERT_NE(site, nullptr);
    EXPECT_EQ(site->pszSessionName.view(), "lab");
    EXPECT_EQ(site->pszHost.view(), "host.example");
    EXPECT_EQ(site->pszUID.view(), "kim");
    EXPECT_EQ(site->pszPWD.view(), "ab");
    EXPECT_EQ(site->pszDir.view(), "/pub");
    EXPECT_EQ(site->dwType, 7002U);
    EXPECT_EQ(site->dwCurType, 7002U);
    EXPECT_EQ(site->bSavePwd, 1);
    EXPECT_EQ(site->bUseGateway, 1);
    EXPECT_EQ(site->bAnonymous, 1);
    EXPECT_EQ(site->flagsAfterAnonymous, 1U);
    EXPECT_EQ(site->bConnected, 0);
    EXPECT_EQ(site->pszGateHost.view(), "gate.example");
    EXPECT_EQ(site->pszGateUID.view(), "guard");
    ASSERT_NE(site->pSock, nullptr);
    EXPECT_EQ(site->pSock->ctrl_skt, platform::kNoSocket);
}

TEST_F(SiteStore, TypeThatIsNotOfferedIsKeptThroughLoadCopyAndSave) {
    Key("lab").WriteNumber("TYPE", 7015);
    const SitePtr site = Zarn_GetSiteInfo("lab");
    EXPECT_EQ(site->dwType, 7015U);
    const SitePtr copy(Zarn_DupSite(site.get()));
    EXPECT_EQ(copy->dwType, 7015U);
    Key("lab").WriteNumber("TYPE", 1);
    SaveSiteInfo(copy.get());
    EXPECT_EQ(Open("lab").ReadNumber("TYPE"), 7015U);
}

TEST_F(SiteStore, PasswordIsStoredInItsForm) {
    const SitePtr site = FullSite();
    SaveSiteInfo(site.get());
    EXPECT_EQ(Text("PWD"), "6163");
    site->pszUID = OwnedText::Copy("anonymous");
    SaveSiteInfo(site.get());
    EXPECT_EQ(Text("PWD"), "ab");
}

TEST_F(SiteStore, WithoutTheSwitchOrAPasswordTheStoredOneStays) {
    const SitePtr site = FullSite();
    SaveSiteInfo(site.get());
    site->bSavePwd = 0;
    site->pszPWD = OwnedText::Copy("other");
    SaveSiteInfo(site.get());
    EXPECT_EQ(Text("PWD"), "6163");
    site->bSavePwd = 1;
    site->pszPWD = OwnedText::Copy("");
    SaveSiteInfo(site.get());
    EXPECT_EQ(Text("PWD"), "6163");
}

TEST_F(SiteStore, AbsentPasswordFieldDeletesTheStoredOne) {
    const SitePtr site = FullSite();
    SaveSiteInfo(site.get());
    site->pszPWD = OwnedText();
    SaveSiteInfo(site.get());
    EXPECT_FALSE(Text("PWD").has_value());
}

TEST_F(SiteStore, OnlyTheFirstCharacterOfTheGatewayPasswordIsStored) {
    SaveSiteInfo(FullSite().get());
    EXPECT_EQ(Text("GATEPWD"), "6");
}

TEST_F(SiteStore, AbsentFieldsAreDeleted) {
    const SitePtr site = FullSite();
    SaveSiteInfo(site.get());
    site->pszDir = OwnedText();
    site->pszGateHost = OwnedText();
    site->pszGateUID = OwnedText();
    SaveSiteInfo(site.get());
    EXPECT_FALSE(Text("DIR").has_value());
    EXPECT_FALSE(Text("GATEHOST").has_value());
    EXPECT_FALSE(Text("GATEUID").has_value());
    EXPECT_FALSE(Text("GATEPWD").has_value());
}

TEST_F(SiteStore, HostIsTheNameWhenItIsEmpty) {
    const SitePtr site = MakeSite("lab", "");
    SaveSiteInfo(site.get());
    EXPECT_EQ(Text("HOST"), "lab");
    EXPECT_EQ(site->pszHost.view(), "lab");
}

TEST_F(SiteStore, AbsentUserIsTheOneLoggedOn) {
    const SitePtr site = MakeSite("lab");
    site->pszUID = OwnedText();
    SaveSiteInfo(site.get());
    EXPECT_EQ(Text("UID"), platform::UserName());
    Key("lab").DeleteValue("UID");
    EXPECT_EQ(Zarn_GetSiteInfo("lab")->pszUID.view(), platform::UserName());
}

TEST_F(SiteStore, SiteWithoutANameIsTracedAndNotSaved) {
    RecordTraces();
    const SitePtr site = MakeSite("");
    SaveSiteInfo(site.get());
    SaveSiteInfo(nullptr);
    EXPECT_EQ(view_.CountLines("SaveSiteInfo() ERROR. SessionName is NULL. Returning"), 2);
    EXPECT_TRUE(Subkeys("").empty());
}

TEST_F(SiteStore, SiteOfAnEmptyKeyHasDefaultsAndAbsentTexts) {
    const SitePtr site = Zarn_GetSiteInfo("lab");
    EXPECT_TRUE(Exists("lab")) << "the key is made";
    EXPECT_FALSE(site->pszHost);
    EXPECT_FALSE(site->pszPWD);
    EXPECT_FALSE(site->pszDir);
    EXPECT_EQ(site->dwType, 7000U);
    EXPECT_EQ(site->dwCurType, 7000U);
    EXPECT_EQ(site->bSavePwd, 0);
}

TEST_F(SiteStore, LoadingNoNameIsTracedAndGivesNull) {
    RecordTraces();
    EXPECT_EQ(Zarn_GetSiteInfo(nullptr), nullptr);
    EXPECT_TRUE(view_.HasLine("Zarn_GetSiteInfo() ERROR. Arg: pszSite was NULL. Returning NULL"));
}

TEST_F(SiteStore, GatewayUserAndPasswordAreNotReadWithoutAGatewayHost) {
    SaveSiteInfo(FullSite().get());
    Key("lab").DeleteValue("GATEHOST");
    const SitePtr site = Zarn_GetSiteInfo("lab");
    EXPECT_FALSE(site->pszGateHost);
    EXPECT_FALSE(site->pszGateUID);
    EXPECT_FALSE(site->pszGatePWD);
    Key("lab").WriteText("GATEHOST", "");
    EXPECT_FALSE(Zarn_GetSiteInfo("lab")->pszGateUID);
}

TEST_F(SiteStore, GatewayPasswordIsReadOnlyWithAGatewayUser) {
    SaveSiteInfo(FullSite().get());
    Key("lab").WriteText("GATEPWD", "6163");
    EXPECT_EQ(Zarn_GetSiteInfo("lab")->pszGatePWD.view(), "ab");
    Key("lab").DeleteValue("GATEUID");
    EXPECT_FALSE(Zarn_GetSiteInfo("lab")->pszGatePWD);
}

TEST_F(SiteStore, DamagedValuesReadAsAbsentOnes) {
    platform::RegistryKey key = Key("lab");
    key.WriteNumber("HOST", 7);
    key.WriteText("TYPE", "7002");
    key.WriteText("UID", std::string(80, 'u'));
    key.WriteText("PWD", "not a stored form");
    key.WriteText("DIR", std::string(520, 'd'));
    const std::uint8_t bytes[] = {1, 0, 0, 0};
    key.WriteBytes("SAVEPWD", bytes);
    key.WriteText("ANONYMOUS", "1");
    const SitePtr site = Zarn_GetSiteInfo("lab");
    EXPECT_FALSE(site->pszHost);
    EXPECT_EQ(site->dwType, 7000U);
    EXPECT_EQ(site->pszUID.view(), platform::UserName());
    EXPECT_TRUE(site->pszPWD.empty());
    EXPECT_FALSE(site->pszDir);
    EXPECT_EQ(site->bSavePwd, 0);
    EXPECT_EQ(site->bAnonymous, 0);
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(SiteStore, TextsOfTheLongestLengthAreRead) {
    Key("lab").WriteText("HOST", std::string(63, 'h'));
    Key("lab").WriteText("UID", std::string(79, 'u'));
    Key("lab").WriteText("DIR", std::string(519, 'd'));
    const SitePtr site = Zarn_GetSiteInfo("lab");
    EXPECT_EQ(site->pszHost.view().size(), 63U);
    EXPECT_EQ(site->pszUID.view().size(), 79U);
    EXPECT_EQ(site->pszDir.view().size(), 519U);
}

#ifndef _WIN32
TEST_F(SiteStore, RefusedWritesAreTracedByNameAndTheRestGoesOn) {
    RecordTraces();
    host_registry::RefuseWrites(5);
    SaveSiteInfo(FullSite().get());
    host_registry::RefuseWrites(0);
    for (const char* name : {"HOST", "TYPE", "UID", "SAVEPWD", "PWD", "DIR", "USEGATEWAY", "ANONYMOUS", "GATEHOST",
                             "GATEUID", "GATEPWD"}) {
        EXPECT_TRUE(view_.HasLine(std::string("RegSetValueEx(") + name + ")")) << name;
    }
}
#endif

TEST_F(SiteStore, LoadSitesLeavesDefaultsOut) {
    LoadConfiguration();
    SaveSiteInfo(MakeSite("alpha").get());
    SaveSiteInfo(MakeSite("with/slash and blank").get());
    SaveSiteInfo(MakeSite("\xC3\xA9t\xC3\xA9").get());
    const std::vector<SitePtr> sites = LoadSites();
    ASSERT_EQ(sites.size(), 3U);
    std::vector<std::string> names;
    for (const SitePtr& site : sites) names.emplace_back(site->pszSessionName.view());
    EXPECT_NE(std::find(names.begin(), names.end(), "alpha"), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), "with/slash and blank"), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), "\xC3\xA9t\xC3\xA9"), names.end());
}

TEST_F(SiteStore, LoadSitesOfNoStoreIsEmptyAndMakesTheRoot) {
    EXPECT_TRUE(LoadSites().empty());
    EXPECT_TRUE(Exists(""));
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(SiteStore, DeletingTakesTheSubkeysToo) {
    SaveSiteInfo(MakeSite("lab").get());
    Key("lab\\InitDirectories\\/pub");
    RegDeleteSiteInfo("lab");
    EXPECT_FALSE(Exists("lab"));
}

TEST_F(SiteStore, DeletingNoNameOrAnotherPartOfTheStoreDoesNothing) {
    LoadConfiguration();
    SaveSiteInfo(MakeSite("lab").get());
    RegDeleteSiteInfo("");
    RegDeleteSiteInfo(nullptr);
    RegDeleteSiteInfo("\\");
    RegDeleteSiteInfo("defaults");
    RegDeleteSiteInfo("lab\\");
    EXPECT_TRUE(Exists("lab"));
    EXPECT_TRUE(Exists("Defaults"));
}

TEST_F(SiteStore, SiteNamedDefaultsIsRefusedWith7251AndHarmsNothing) {
    LoadConfiguration();
    SaveSiteInfo(MakeSite("DEFAULTS").get());
    EXPECT_TRUE(view_.HasBox("A Site Folder named DEFAULTS already exists."));
    EXPECT_FALSE(Open("Defaults").ReadText("HOST", 64).has_value());
    EXPECT_EQ(Zarn_GetSiteInfo("Defaults"), nullptr);
}

TEST_F(SiteStore, RenamingMovesValuesAndSubkeysAndMayMakeItTheLastSession) {
    LoadConfiguration();
    SaveSiteInfo(FullSite().get());
    SavePortInfo("lab", {1, 2, 3, 444});
    Key("lab\\InitDirectories\\/pub").WriteNumber("x", 1);
    EXPECT_TRUE(RenameSiteInfo("lab", "works", true, NameTaken));
    EXPECT_FALSE(Exists("lab"));
    EXPECT_EQ(Zarn_GetSiteInfo("works")->pszDir.view(), "/pub");
    EXPECT_EQ(LoadPortInfo("works"), (PortInfo{1, 2, 3, 444}));
    EXPECT_TRUE(Exists("works\\InitDirectories\\/pub"));
    EXPECT_EQ(GetLastSession(), "works");
}

TEST_F(SiteStore, RenamingWithoutTheFlagKeepsTheLastSession) {
    LoadConfiguration();
    SaveSiteInfo(FullSite().get());
    SetLastSession("elsewhere");
    EXPECT_TRUE(RenameSiteInfo("lab", "works", false, NameTaken));
    EXPECT_EQ(GetLastSession(), "elsewhere");
}

TEST_F(SiteStore, RenamingToAnotherCaseEndsWithOneKeyUnderTheNewSpelling) {
    LoadConfiguration();
    SaveSiteInfo(FullSite().get());
    EXPECT_TRUE(RenameSiteInfo("lab", "LAB", true, NameTaken));
    EXPECT_EQ(Subkeys("").size(), 2U) << "the site and \"Defaults\"";
    EXPECT_TRUE(HasSubkey("", "LAB"));
    EXPECT_EQ(Zarn_GetSiteInfo("LAB")->pszDir.view(), "/pub");
}

TEST_F(SiteStore, RenamingToAnotherCaseLeavesASiteWithThePassingNameAlone) {
    SaveSiteInfo(FullSite().get());
    SaveSiteInfo(MakeSite("lab_Tmp", "other.example").get());
    EXPECT_TRUE(RenameSiteInfo("lab", "Lab", false, nullptr));
    EXPECT_TRUE(HasSubkey("", "Lab"));
    EXPECT_EQ(Zarn_GetSiteInfo("lab_Tmp")->pszHost.view(), "other.example");
    EXPECT_EQ(Subkeys("").size(), 2U);
}

TEST_F(SiteStore, RenamingToTheSameNameIsTracedAndRefused) {
    SaveSiteInfo(FullSite().get());
    RecordTraces();
    EXPECT_FALSE(RenameSiteInfo("lab", "lab", false, NameTaken));
    EXPECT_TRUE(view_.HasLine("ERROR. Strings are EQUAL : lab : lab. Returning FALSE"));
    EXPECT_TRUE(Exists("lab"));
}

TEST_F(SiteStore, RenamingToATakenNameIs7251) {
    SaveSiteInfo(FullSite().get());
    RecordTraces();
    EXPECT_FALSE(RenameSiteInfo("lab", "taken", false, NameTaken));
    ASSERT_EQ(view_.Boxes().size(), 1U);
    EXPECT_EQ(view_.Boxes().front().text,
              "A Site Folder named taken already exists.\n Please enter a different Site Folder name.");
    EXPECT_TRUE(view_.HasLine("ERROR. taken already exist in tree."));
    EXPECT_TRUE(Exists("lab"));
}

TEST_F(SiteStore, RenamingFromOrToNothingIsRefused) {
    SaveSiteInfo(FullSite().get());
    EXPECT_FALSE(RenameSiteInfo("", "works", false, nullptr));
    EXPECT_FALSE(RenameSiteInfo("lab", "", false, nullptr));
    EXPECT_FALSE(RenameSiteInfo(nullptr, "works", false, nullptr));
    EXPECT_FALSE(RenameSiteInfo("Defaults", "works", false, nullptr));
    EXPECT_FALSE(RenameSiteInfo("lab", "defaults", false, nullptr));
    EXPECT_FALSE(RenameSiteInfo("absent", "works", true, nullptr));
    EXPECT_TRUE(Exists("lab"));
    EXPECT_FALSE(Exists("works"));
}
