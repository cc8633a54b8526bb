#include <gtest/gtest.h>

#include <memory>

#include "ftp/worker/session_state.h"
#include "listing/tree_node.h"

namespace {

class TreeNodeTest : public testing::Test {
  protected:
    TreeNodeTest() : siteNode(AllocateTVobject("Test site", kKindSite), Zarn_FreeTVobject) {
        siteNode->pSite = Zarn_CreateDefaultSite("Test site");
        site = siteNode->pSite;
    }
    std::string PathOf(const TVobject* node) { return TV_GetPath(node).c_str(); }

    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode;
    Site* site;
};

TEST_F(TreeNodeTest, FolderBelowTheRootIsASlashAndItsName) {
    TVobject* root = AddChildNode(siteNode.get(), "/", kKindSiteRoot);
    site->chSeparator = '/';
    EXPECT_EQ("/usr", PathOf(AddChildNode(root, "usr", kKindFolder)));
}

TEST_F(TreeNodeTest, NamesAreJoinedFromTheTopWithoutTheRootsOwn) {
    TVobject* root = AddChildNode(siteNode.get(), "/home/u", kKindSiteRoot);
    site->chSeparator = '/';
    TVobject* usr = AddChildNode(root, "usr", kKindFolder);
    EXPECT_EQ("/usr/lib", PathOf(AddChildNode(usr, "lib", kKindFolder)));
    EXPECT_EQ("/home/u", PathOf(root));
}

TEST_F(TreeNodeTest, SeparatorIsTheSitesAndASlashUntilOneIsKnown) {
    TVobject* root = AddChildNode(siteNode.get(), "C:\\", kKindSiteRoot);
    TVobject* folder = AddChildNode(root, "temp", kKindFolder);
    EXPECT_EQ("/temp", PathOf(folder));
    site->chSeparator = '\\';
    EXPECT_EQ("\\temp", PathOf(folder));
}

TEST_F(TreeNodeTest, LocalNodesAndNodesWithoutASiteUseTheBackslash) {
    site->chSeparator = '/';
    site->dwCurType = 7005;
    TVobject* folder = AddChildNode(AddChildNode(siteNode.get(), "C:", kKindLocalRoot), "temp", kKindLocalFolder);
    EXPECT_EQ("\\temp", PathOf(folder));
    const std::unique_ptr<TVobject, void (*)(TVobject*)> computer(AllocateTVobject("Computer", kKindLocalComputer),
                                                                  Zarn_FreeTVobject);
    EXPECT_EQ('\\', NodeSeparator(computer.get()));
}

TEST_F(TreeNodeTest, NoNodeHasNoPath) {
    EXPECT_EQ(nullptr, TV_GetPath(nullptr).get());
}

TEST_F(TreeNodeTest, SiteOfANodeIsItsTopNodesAndTheActiveOneWithoutANode) {
    TVobject* folder = AddChildNode(AddChildNode(siteNode.get(), "/", kKindSiteRoot), "a", kKindFolder);
    EXPECT_EQ(site, TV_GetFtpSite(folder));
    EXPECT_EQ(site, TV_GetFtpSite(siteNode.get()));
    Site* const before = gSession.activeSite.exchange(site);
    EXPECT_EQ(site, TV_GetFtpSite(nullptr));
    gSession.activeSite = before;
}

TEST_F(TreeNodeTest, ChildrenAreCountedFoundAndRemoved) {
    TVobject* a = AddChildNode(siteNode.get(), "a", kKindFolder);
    TVobject* b = AddChildNode(siteNode.get(), "b", kKindFolder);
    EXPECT_EQ(2u, siteNode->nChildren);
    EXPECT_EQ(siteNode.get(), b->pTVparent);
    EXPECT_EQ(b, TV_FindChild(siteNode.get(), "b"));
    EXPECT_EQ(nullptr, TV_FindChild(siteNode.get(), "B"));
    RemoveChildNode(siteNode.get(), a);
    EXPECT_EQ(1u, siteNode->nChildren);
    EXPECT_EQ(nullptr, TV_FindChild(siteNode.get(), "a"));
    RemoveChildNode(siteNode.get(), siteNode.get());
    EXPECT_EQ(1u, siteNode->nChildren);
}

TEST_F(TreeNodeTest, FreeingNothingIsAllowed) {
    Zarn_FreeTVobject(nullptr);
    EXPECT_EQ(nullptr, TV_FindChild(nullptr, "a"));
    EXPECT_EQ(nullptr, AddChildNode(nullptr, "a", kKindFolder));
}

}  // namespace
