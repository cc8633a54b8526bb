// What menus and toolbar enable for each focus and selection.
#include "ui/browse/command_state.h"

#include <gtest/gtest.h>

#include "listing/directory_entry.h"
#include "resources/resource.h"

namespace {

using Focus = CommandContext::Focus;

CommandContext OnNode(std::uint32_t kind, bool connected) {
    CommandContext context;
    context.focus = Focus::Tree;
    context.nodeKind = kind;
    context.siteConnected = connected;
    return context;
}

CommandContext InList(int selected, std::uint32_t firstKind) {
    CommandContext context;
    context.focus = Focus::List;
    context.nodeKind = kKindSiteRoot;
    context.siteConnected = true;
    context.listItems = 10;
    context.selected = selected;
    context.firstKind = firstKind;
    context.anyFileSelected = firstKind == kKindFile || firstKind == kKindLocalFile;
    return context;
}

// Transfer, delete, rename, properties, quick view and print, as letters of those that are enabled.
std::string Offered(const CommandContext& context) {
    const FileMenuState state = FileMenuFor(context);
    std::string letters;
    if (state.transfer) letters += 'T';
    if (state.remove) letters += 'D';
    if (state.rename) letters += 'R';
    if (state.properties) letters += 'P';
    if (state.view) letters += 'V';
    return letters;
}

TEST(FileMenu, ASiteNodeCanBeDeletedOnlyWhileItIsNotConnected) {
    EXPECT_EQ(Offered(OnNode(kKindSite, false)), "DRP");
    EXPECT_EQ(Offered(OnNode(kKindSite, true)), "RP");
}

TEST(FileMenu, ARemoteFolderNodeOffersTransferAndProperties) {
    EXPECT_EQ(Offered(OnNode(kKindSiteRoot, true)), "TP");
    EXPECT_EQ(Offered(OnNode(kKindFolder, true)), "TP");
}

TEST(FileMenu, AnyOtherNodeOffersNothing) {
    for (std::uint32_t kind : {kKindAddSite, kKindLocalComputer, kKindLocalRoot, kKindLocalFolder, kKindUnclassified}) {
        EXPECT_EQ(Offered(OnNode(kind, false)), "") << kind;
    }
}

TEST(FileMenu, TheListWithNothingSelectedOffersNothing) {
    EXPECT_EQ(Offered(InList(0, 0)), "");
}

TEST(FileMenu, OneSelectedFileOffersAll) {
    EXPECT_EQ(Offered(InList(1, kKindFile)), "TDRPV");
}

TEST(FileMenu, OneSelectedFolderOffersAllButQuickViewAndPrint) {
    EXPECT_EQ(Offered(InList(1, kKindFolder)), "TDRP");
}

TEST(FileMenu, ALocalFileOffersNeitherTransferNorProperties) {
    CommandContext context = InList(1, kKindLocalFile);
    context.hostType = 7005;
    EXPECT_EQ(Offered(context), "DRV");
}

TEST(FileMenu, SeveralSelectedGreyTransferAndDelete) {
    EXPECT_EQ(Offered(InList(3, kKindFile)), "PV");
    EXPECT_EQ(Offered(InList(3, kKindFolder)), "P");
}

TEST(FileMenu, NoFocusedPaneOffersNothing) {
    CommandContext context = InList(1, kKindFile);
    context.focus = Focus::None;
    EXPECT_EQ(Offered(context), "");
}

TEST(Toolbar, NothingCanBePressedWhileAnOperationRuns) {
    for (unsigned id : {IDM_CONNECT, IDM_DISCONNECT, IDM_RECEIVE, IDM_DELETE, IDM_VIEW_LIST, IDM_LV_CDPARENT}) {
        EXPECT_FALSE(ToolbarButtonEnabled(id, InList(1, kKindFile), true)) << id;
    }
}

TEST(Toolbar, ConnectIsForASiteThatIsNotConnectedAndDisconnectForOneThatIs) {
    EXPECT_TRUE(ToolbarButtonEnabled(IDM_CONNECT, OnNode(kKindSite, false), false));
    EXPECT_FALSE(ToolbarButtonEnabled(IDM_CONNECT, OnNode(kKindSite, true), false));
    EXPECT_FALSE(ToolbarButtonEnabled(IDM_CONNECT, OnNode(kKindAddSite, false), false));
    EXPECT_TRUE(ToolbarButtonEnabled(IDM_DISCONNECT, OnNode(kKindFolder, true), false));
    EXPECT_FALSE(ToolbarButtonEnabled(IDM_DISCONNECT, OnNode(kKindSite, false), false));
}

TEST(Toolbar, SeveralSelectedEntriesCanBeReceivedAndDeleted) {
    EXPECT_TRUE(ToolbarButtonEnabled(IDM_RECEIVE, InList(3, kKindFile), false));
    EXPECT_TRUE(ToolbarButtonEnabled(IDM_DELETE, InList(3, kKindFile), false));
}

TEST(Toolbar, TheButtonOfTheViewShownIsDisabled) {
    CommandContext context = InList(0, 0);
    context.viewStyle = 1;
    EXPECT_FALSE(ToolbarButtonEnabled(IDM_DETAILS_WINDOWS, context, false));
    EXPECT_TRUE(ToolbarButtonEnabled(IDM_VIEW_LIST, context, false));
    context.viewStyle = 3;
    EXPECT_FALSE(ToolbarButtonEnabled(IDM_VIEW_LIST, context, false));
}

}  // namespace
