#include "foundation/path_ellipsis.h"

#include "traced_test.h"

namespace {

class PathEllipsis : public TracedTest {};

std::string Shortened(std::string_view path, int width) {
    return Zarn_TuncateAndAddEllipses(path, width, [](std::string_view text) { return static_cast<int>(text.size()); });
}

TEST_F(PathEllipsis, APathThatFitsIsLeftAlone) {
    EXPECT_EQ(Shortened("/a/b", 4), "/a/b");
}

TEST_F(PathEllipsis, ComponentsGoFromTheFrontPartOneByOne) {
    const std::string_view path = "/usr/local/share/doc/readme";
    EXPECT_EQ(Shortened(path, 26), "/usr/local/.../readme");
    EXPECT_EQ(Shortened(path, 20), "/usr/.../readme");
    EXPECT_EQ(Shortened(path, 11), "/.../readme");
}

TEST_F(PathEllipsis, TheShortestFormStaysWhenNothingMoreCanGo) {
    EXPECT_EQ(Shortened("/a/bcd/file", 3), "/.../file");
}

TEST_F(PathEllipsis, BackslashesKeepTheDrive) {
    EXPECT_EQ(Shortened("C:\\Windows\\system32\\x", 12), "C:\\...\\x");
}

TEST_F(PathEllipsis, APathWithoutSeparatorYieldsNothing) {
    TraceToConsole();
    EXPECT_EQ(Shortened("longname", 3), "");
    EXPECT_TRUE(view.HasLine("String x:8 will NOT fit in Window x:3"));
    EXPECT_TRUE(view.HasLine("ERROR. String doesn't have a path Separator. Returning NULL"));
}

TEST_F(PathEllipsis, PercentSignsOfAPathAreOnlyText) {
    EXPECT_EQ(Shortened("/%n/%s/%d/%x%x", 10), "/.../%x%x");
}

TEST_F(PathEllipsis, OneSeparatorOnly) {
    EXPECT_EQ(Shortened("/verylongname", 5), "/.../verylongname");
    EXPECT_EQ(Shortened("", -1), "");
}

}  // namespace
