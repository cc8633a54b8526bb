#include "foundation/text_copy.h"

#include "traced_test.h"

namespace {

class TextCopy : public TracedTest {};

TEST_F(TextCopy, DupString_OfAnEmptyText_IsAnEmptyTextAndNotNull) {
    const OwnedText copy = DupString("");
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy.view(), "");
}

TEST_F(TextCopy, DupString_OfNull_IsNull) {
    TraceToConsole();
    EXPECT_FALSE(DupString(nullptr));
    EXPECT_TRUE(view.HasLine("DupString() ERROR. Entered with NULL parameter. Returning NULL"));
}

TEST_F(TextCopy, DupString_ThreeCharactersInThreeBytes_Fail) {
    TraceToConsole();
    EXPECT_FALSE(DupString("abc", 3));
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInsufficientBuffer);
    EXPECT_TRUE(view.HasLine("ERROR. Buffer too small! Len: (3 < 4 by 1 bytes) , In: (0x"));
    EXPECT_TRUE(view.HasLine(":abc)"));
}

TEST_F(TextCopy, DupString_ThreeCharactersInTenBytes_LeaveZeroedRoom) {
    OwnedText copy = DupString("abc", 10);
    ASSERT_TRUE(copy);
    EXPECT_EQ(std::string(copy.data(), 10), std::string("abc\0\0\0\0\0\0\0", 10));
}

TEST_F(TextCopy, DupString_TracesItsReturnInDebugModeOnly) {
    gTrace.verbose = true;
    gTrace.debug = false;
    DupString("abc", 10);
    gTrace.debug = true;
    EXPECT_FALSE(view.HasLine("RETURNING"));
    DupString("abc", 10);
    EXPECT_TRUE(view.HasLine(":abc) Size:10 Len:(3) In Addr:(0x"));
    const std::string line = view.ConsoleLines().back();
    EXPECT_EQ(line.substr(line.size() - 2), ", ");
}

TEST_F(TextCopy, WideString_Exact) {
    const auto wide = Zarn_GetWideString("h\xc3\xa4");
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(std::u16string(wide.get()), u"h\u00e4");
}

TEST_F(TextCopy, WideString_TooSmallAndLargerAreTraced) {
    TraceToConsole();
    EXPECT_EQ(Zarn_GetWideString("abc", 7), nullptr);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInsufficientBuffer);
    EXPECT_TRUE(view.HasLine("( TOO SMALL! Len: (7 < 8 by 1) , In: (0x"));
    const auto wide = Zarn_GetWideString("abc", 12);
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(std::u16string(wide.get(), 6), std::u16string(u"abc\0\0\0", 6));
    EXPECT_TRUE(view.HasLine("BUF LARGER! Len: (12 > 8 by 4) , In: (0x"));
    EXPECT_EQ(Zarn_GetWideString(nullptr), nullptr);
}

}  // namespace
