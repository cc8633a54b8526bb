#include "foundation/size_text.h"

#include <climits>

#include "traced_test.h"

namespace {

class SizeText : public TracedTest {};

std::string Shown(std::int32_t count, bool useMegabytes) {
    char out[64] = "untouched";
    return Zarn_GetSizeText(count, out, useMegabytes, sizeof out) ? out : "(failed)";
}

TEST_F(SizeText, ZeroIsShownInKilobytes) {
    EXPECT_EQ(Shown(0, false), "0.00KB  ( 0 bytes )");
}

TEST_F(SizeText, OneMegabyteExactlyIsStillKilobytes) {
    EXPECT_EQ(Shown(1048576, true), "1024.00KB  ( 1,048,576 bytes )");
}

TEST_F(SizeText, OneByteMoreIsMegabytes) {
    EXPECT_EQ(Shown(1048577, true), "1.00MB  ( 1,048,577 bytes )");
    EXPECT_EQ(Shown(1048577, false), "1024.00KB  ( 1,048,577 bytes )");
}

TEST_F(SizeText, Below1024IsAFractionOfAKilobyte) {
    EXPECT_EQ(Shown(512, false), "0.50KB  ( 512 bytes )");
    EXPECT_EQ(Shown(512, true), "0.50KB  ( 512 bytes )");
}

TEST_F(SizeText, LargestAndNegative) {
    EXPECT_EQ(Shown(INT_MAX, true), "2048.00MB  ( 2,147,483,647 bytes )");
    EXPECT_EQ(Shown(-1024, true), "-1.00KB  ( -1,024 bytes )");
}

TEST_F(SizeText, CapacityEqualToTheLengthFailsAndEmpties) {
    TraceToConsole();
    const std::string text = "0.50KB  ( 512 bytes )";
    std::string out(64, 'x');
    EXPECT_FALSE(Zarn_GetSizeText(512, out.data(), false, text.size()));
    EXPECT_STREQ(out.c_str(), "");
    EXPECT_TRUE(view.HasLine("Zarn_GetSizeText() 21 > 21. Returning FALSE"));
    EXPECT_TRUE(Zarn_GetSizeText(512, out.data(), false, text.size() + 1));
    EXPECT_STREQ(out.c_str(), text.c_str());
    out[0] = 'x';
    EXPECT_FALSE(Zarn_GetSizeText(512, out.data(), false, 0));
    EXPECT_EQ(out[0], 'x');
}

TEST_F(SizeText, WithoutItsMessageFailsAndEmpties) {
    SetText(1, "other");
    TraceToConsole();
    char out[64] = "untouched";
    EXPECT_FALSE(Zarn_GetSizeText(512, out, false, sizeof out));
    EXPECT_STREQ(out, "");
    EXPECT_TRUE(view.HasLine("ERROR. Call to Zarn_ResVsprintf() Failed. Returning FALSE"));
}

}  // namespace
