#include "ui/bars/window_title.h"

#include <gtest/gtest.h>

#include "ftp/worker/site_status.h"
#include "listing/item_kind.h"

namespace {

// A site's node with the root of its tree below it.
class WindowTitle : public testing::Test {
  protected:
    WindowTitle() : site_(Zarn_CreateDefaultSite("lab")) {
        siteNode_.wObjType = kKindSite;
        siteNode_.pSite = site_.get();
        root_.wObjType = kKindSiteRoot;
        root_.pTVparent = &siteNode_;
    }
    static std::string Title(const TVobject* node) { return MainWindowTitle(node, "Z32", "Zarn 32", "desk"); }
    static std::string TitleOfKind(std::uint32_t kind) {
        TVobject node;
        node.wObjType = kind;
        return Title(&node);
    }
    SitePtr site_;
    TVobject siteNode_;
    TVobject root_;
};

TEST_F(WindowTitle, IsTheProductsNameWithoutASite) {
    EXPECT_EQ(Title(nullptr), "Zarn 32");
    EXPECT_EQ(TitleOfKind(kKindAddSite), "Zarn 32");
    EXPECT_EQ(TitleOfKind(kKindLocalRoot), "Zarn 32");
    EXPECT_EQ(TitleOfKind(kKindLocalFolder), "Zarn 32");
    EXPECT_EQ(TitleOfKind(kKindSite), "Zarn 32");
}

TEST_F(WindowTitle, NamesTheComputer) {
    EXPECT_EQ(TitleOfKind(kKindLocalComputer), "Z32 : desk");
}

TEST_F(WindowTitle, OfASiteShowsTheDirectoryOnlyWhileConnected) {
    EXPECT_EQ(Title(&siteNode_), "Z32 lab");
    SetSessionDirectory(*site_, "/pub");
    EXPECT_EQ(Title(&siteNode_), "Z32 lab");
    SetConnected(*site_, true);
    EXPECT_EQ(Title(&siteNode_), "Z32 lab::/pub");
    ForgetSessionDirectory(*site_);
    EXPECT_EQ(Title(&siteNode_), "Z32 lab");
}

TEST_F(WindowTitle, OfAFolderShowsTheSessionsDirectory) {
    SetSessionDirectory(*site_, "/pub");
    EXPECT_EQ(Title(&root_), "Z32 lab::/pub");
}

}  // namespace
