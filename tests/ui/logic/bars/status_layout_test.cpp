// Widths of the status bar's parts.
#include "ui/bars/status_layout.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "platform/utf8.h"

namespace {

TEST(StatusLayout, TheMessageTakesWhatTheOthersLeave) {
    const auto edges = StatusPartEdges(1000, 96);
    const std::array<int, kStatusParts> expected = {262, 352, 408, 510, 572, 782, -1};
    EXPECT_EQ(edges, expected);
}

TEST(StatusLayout, InANarrowWindowTheFolderGivesWayFirst) {
    const auto edges = StatusPartEdges(800, 96);
    EXPECT_EQ(edges[0], 160);
    EXPECT_EQ(edges[5] - edges[4], 112);
    EXPECT_EQ(800 - edges[5], 218);
}

TEST(StatusLayout, ThenTheSelectionThenTheMessage) {
    auto edges = StatusPartEdges(700, 96);
    EXPECT_EQ(edges[5] - edges[4], 80);
    EXPECT_EQ(700 - edges[5], 150);
    EXPECT_EQ(edges[0], 160);
    edges = StatusPartEdges(620, 96);
    EXPECT_EQ(edges[0], 100);
    EXPECT_EQ(620 - edges[5], 130);
}

TEST(StatusLayout, NoPartBecomesSmallerThanItsLeast) {
    const auto edges = StatusPartEdges(300, 96);
    EXPECT_EQ(edges[0], 100);
    for (std::size_t part = 1; part + 1 < edges.size(); ++part) EXPECT_GT(edges[part], edges[part - 1]);
}

TEST(StatusLayout, WidthsFollowTheResolution) {
    const auto edges = StatusPartEdges(2000, 192);
    const std::array<int, kStatusParts> expected = {524, 704, 816, 1020, 1144, 1564, -1};
    EXPECT_EQ(edges, expected);
}

#ifdef _WIN32
// Pixels of a text in the panes' font at 96 dpi.
int TextWidth(const std::string& text) {
    const HDC screen = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontW(13, 6, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET, OUT_DEFAULT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"MS Shell Dlg");
    const HGDIOBJ before = SelectObject(screen, font);
    const std::u16string wide = platform::Utf8ToWide(text);
    SIZE size{};
    GetTextExtentPoint32W(screen, reinterpret_cast<const wchar_t*>(wide.data()), static_cast<int>(wide.size()), &size);
    SelectObject(screen, before);
    DeleteObject(font);
    DeleteDC(screen);
    return size.cx;
}

TEST(StatusLayout, EachSwitchFitsItsPartInEitherState) {
    constexpr int kBorders = 10;  // the control's edges and some space on either side of a text
    const auto edges = StatusPartEdges(300, 96);
    const unsigned switches[] = {MSG_STATUS_LINKS_IS, MSG_STATUS_BELL_IS, MSG_STATUS_UNIQUE_IS};
    for (std::size_t part = 1; part <= 3; ++part) {
        for (const unsigned state : {MSG_STATUS_ON, MSG_STATUS_OFF}) {
            const std::string text = Zarn_ResVsprintf(switches[part - 1], CatalogueText(state)).c_str();
            ASSERT_GT(TextWidth(text), 20) << text;
            EXPECT_LE(TextWidth(text) + kBorders, edges[part] - edges[part - 1]) << text;
        }
    }
}
#endif

}  // namespace
