#include <gtest/gtest.h>

#include <fstream>

#include "ftp/data/dump_file.h"
#include "ftp/worker/result_codes.h"
#include "listing/entry_properties.h"
#include "listing/listed_site.h"

namespace {

LVobjectPtr Entry(const char* name, std::uint32_t type, TVobject* node) {
    LVobjectTemplate filling;
    filling.name = name;
    filling.mode = "-rw-r--r--";
    filling.owner = "joe";
    filling.group = "staff";
    filling.links = 3;
    filling.size = 5000;
    LVobjectPtr entry(AllocateLVobject(&filling));
    entry->type = type;
    entry->node = node;
    return entry;
}

TEST(EntryToProperties, TextsPassOverAndNumbersAreCopied) {
    const FtpPropPtr prop(AllocateFtpProp());
    prop->name = OwnedText::Copy("a.txt");
    const LVobjectPtr entry = Entry("a.txt", kKindFile, nullptr);
    entry->time = 99;
    ASSERT_TRUE(SetPropFromLVobject(prop.get(), entry.get()));
    EXPECT_STREQ("-rw-r--r--", prop->umask.get());
    EXPECT_STREQ("joe", prop->owner.get());
    EXPECT_STREQ("staff", prop->group.get());
    EXPECT_EQ(nullptr, entry->mode.get());
    EXPECT_EQ(nullptr, entry->owner.get());
    EXPECT_EQ(nullptr, entry->group.get());
    EXPECT_EQ(3u, prop->links);
    EXPECT_EQ(5000u, prop->size);
    EXPECT_EQ(99u, prop->time);
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFile), prop->type);
    EXPECT_STREQ("4KB", prop->sizeText.get());
    EXPECT_STREQ("4KB", entry->sizeText.get());
}

TEST(EntryToProperties, AnotherNameOrNothingIsRefused) {
    const FtpPropPtr prop(AllocateFtpProp());
    prop->name = OwnedText::Copy("A.txt");
    const LVobjectPtr entry = Entry("a.txt", kKindFile, nullptr);
    EXPECT_FALSE(SetPropFromLVobject(prop.get(), entry.get()));
    EXPECT_FALSE(SetPropFromLVobject(nullptr, entry.get()));
    EXPECT_FALSE(SetPropFromLVobject(prop.get(), nullptr));
    EXPECT_STREQ("joe", entry->owner.get());
    Zarn_FreeFtpProp(nullptr);
}

class Properties : public testing::Test, protected ListedSite {
  protected:
    Properties() {
        server.SetListing("/pub",
                          "total 4\r\n-rw-r--r-- 1 a b 1 Jan 2 2001 readme.old\r\n"
                          "-rw-rw-r-- 4 me us 4711 Jan 2 2001 readme\r\n"
                          "drwxr-x--- 5 you we 512 Jan 2 2001 sub\r\n"
                          "lrwxrwxrwx 1 a b 6 Jan 2 2001 now -> readme\r\n");
        server.SetListing("/", "drwxr-xr-x 9 root sys 1024 Jan 2 2001 pub\r\n");
        sub = AddChildNode(pub, "sub", kKindFolder);
    }
    bool Parse(const std::string& bytes) {
        const OwnedText file = Zarn_GetTmpFileName("PRP");
        std::ofstream(file.get(), std::ios::binary) << bytes;
        prop->site = site;
        const bool found = ParsePropFromFile(file.get(), prop.get());
        platform::DeleteFilePath(file.get());
        return found;
    }
    FtpPropPtr prop{AllocateFtpProp()};
    TVobject* sub;
    std::vector<std::string> temporaryBefore = TemporaryFiles("PRP");
};

TEST_F(Properties, OfAFileComeFromItsFoldersListing) {
    const LVobjectPtr entry = Entry("readme", kKindFile, pub);
    prop->files = 7;
    ASSERT_EQ(FTP_COMPLETE, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_STREQ("readme", prop->name.get());
    EXPECT_STREQ("/pub", prop->location.get());
    EXPECT_STREQ("-rw-rw-r--", prop->umask.get());
    EXPECT_STREQ("me", prop->owner.get());
    EXPECT_STREQ("us", prop->group.get());
    EXPECT_EQ(4u, prop->links);
    EXPECT_EQ(4711u, prop->size);
    EXPECT_EQ(0u, prop->files);
    EXPECT_EQ(site, prop->site);
    EXPECT_EQ(temporaryBefore, TemporaryFiles("PRP"));
}

TEST_F(Properties, OfAFolderComeFromTheListingOfItsParent) {
    const LVobjectPtr entry = Entry("sub", kKindFolder, sub);
    ASSERT_EQ(FTP_COMPLETE, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_STREQ("/pub", prop->location.get());
    EXPECT_STREQ("you", prop->owner.get());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), prop->type);
}

TEST_F(Properties, OfALinkAreFoundByItsWholeName) {
    const LVobjectPtr entry = Entry("now -> readme", kKindLink, pub);
    ASSERT_EQ(FTP_COMPLETE, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_EQ(6u, prop->size);
    EXPECT_EQ(static_cast<std::uint32_t>(kKindLink), prop->type);
}

TEST_F(Properties, OfATreeNodeComeFromTheListingOfItsParent) {
    ASSERT_EQ(FTP_COMPLETE, Zarn_GetTVProp(prop.get(), pub));
    EXPECT_STREQ("/", prop->location.get());
    EXPECT_STREQ("root", prop->owner.get());
    EXPECT_EQ(9u, prop->links);
    ASSERT_NE(nullptr, prop->fileType);
    EXPECT_TRUE(prop->fileType->isFolder);
}

TEST_F(Properties, OfTheRootNeedNoLine) {
    ASSERT_EQ(FTP_COMPLETE, Zarn_GetTVProp(prop.get(), root));
    EXPECT_STREQ("/", prop->location.get());
    EXPECT_STREQ("/", prop->name.get());
    EXPECT_EQ(0u, prop->links);
    ASSERT_NE(nullptr, prop->fileType);
    EXPECT_TRUE(prop->fileType->isFolder);
    EXPECT_EQ(nullptr, prop->owner.get());
    EXPECT_EQ(1, server.CountCommands("LIST"));
}

TEST_F(Properties, OfAnEntryThatIsGoneAreAnError) {
    const LVobjectPtr entry = Entry("gone", kKindFile, pub);
    EXPECT_EQ(FTP_ERROR, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_EQ(temporaryBefore, TemporaryFiles("PRP"));
}

TEST_F(Properties, OfTheLocalComputerAreRefused) {
    site->dwCurType = 7005;
    const LVobjectPtr entry = Entry("readme", kKindFile, pub);
    EXPECT_EQ(FTP_ERROR, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_EQ(FTP_ERROR, Zarn_GetTVProp(prop.get(), pub));
    EXPECT_TRUE(server.Commands().empty());
}

TEST_F(Properties, OfNothingAreRefused) {
    const LVobjectPtr entry = Entry("readme", kKindFile, nullptr);
    EXPECT_EQ(FTP_ERROR, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_EQ(FTP_ERROR, Zarn_GetLVProp(prop.get(), nullptr));
    EXPECT_EQ(FTP_ERROR, Zarn_GetLVProp(nullptr, entry.get()));
    EXPECT_EQ(FTP_ERROR, Zarn_GetTVProp(prop.get(), siteNode.get()));
    EXPECT_EQ(FTP_ERROR, Zarn_GetTVProp(prop.get(), nullptr));
    EXPECT_EQ(FTP_ERROR, GetFtpFileProp(prop.get()));
    EXPECT_EQ(FTP_ERROR, GetFtpDirProp(nullptr));
    EXPECT_TRUE(server.Commands().empty());
}

TEST_F(Properties, RefusedListingIsTold) {
    server.On("LIST", {Say("550 no\r\n")});
    const LVobjectPtr entry = Entry("readme", kKindFile, pub);
    EXPECT_EQ(0, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_TRUE(harness.console.HasLine("DoDirList returned 0"));
    EXPECT_EQ(1u, harness.view.ServerErrors().size());
    EXPECT_EQ(temporaryBefore, TemporaryFiles("PRP"));
}

TEST_F(Properties, ServerThatIsLostIsTold) {
    server.On("LIST", {CloseControl()});
    const LVobjectPtr entry = Entry("readme", kKindFile, pub);
    EXPECT_NE(FTP_COMPLETE, Zarn_GetLVProp(prop.get(), entry.get()));
    EXPECT_EQ(1, harness.view.PostedDisconnects());
}

TEST_F(Properties, FirstLineOfExactlyThatNameCounts) {
    prop->name = OwnedText::Copy("f");
    ASSERT_TRUE(
        Parse("rubbish f\r\n-rw-r--r-- 1 f f 1 Jan 2 2001 ff\r\n 12 -rw-r--r-- 1 a b 2 Jan 2 2001 f\r\n"
              "-rw-r--r-- 1 a b 3 Jan 2 2001 f\r\n"));
    EXPECT_EQ(2u, prop->size);
    EXPECT_FALSE(Parse("-rw-r--r-- 1 f f 1 Jan 2 2001 F\r\n"));
    EXPECT_FALSE(Parse(""));
}

TEST_F(Properties, FirstLineWithTheNameDecidesTheStyleOfAWindowsNtServer) {
    site->dwCurType = 7002;
    prop->name = OwnedText::Copy("f");
    EXPECT_TRUE(Parse("01-16-98  10:00AM                 1234 f\r\n"));
    EXPECT_EQ(1234u, prop->size);
    EXPECT_TRUE(Parse("01-16-98  10:00AM  77 other\r\n-rw-r--r-- 1 a b 5 Jan 2 2001 f\r\n"));
    EXPECT_EQ(5u, prop->size);
    EXPECT_FALSE(Parse("-rw-r--r-- 1 a b 5 Jan 2 2001 ff\r\n01-16-98  10:00AM                 1234 f\r\n"));
    EXPECT_TRUE(Parse("f?\r\n01-16-98  10:00AM                 1234 f\r\n"));
}

}  // namespace
