#include "foundation/path_join.h"

#include <gtest/gtest.h>

#include "platform/files.h"

TEST(JoinRemotePath, AddsOneSeparator) {
    EXPECT_EQ(JoinRemotePath("/pub", "file", '/'), "/pub/file");
    EXPECT_EQ(JoinRemotePath("/pub/", "file", '/'), "/pub/file");
    EXPECT_EQ(JoinRemotePath("/", "file", '/'), "/file");
    EXPECT_EQ(JoinRemotePath("C:\\pub", "file", '\\'), "C:\\pub\\file");
    EXPECT_EQ(JoinRemotePath("\\", "file", '\\'), "\\file");
}

TEST(JoinRemotePath, AnotherSystemsSeparatorIsPartOfTheName) {
    EXPECT_EQ(JoinRemotePath("/pub\\", "file", '/'), "/pub\\/file");
}

TEST(JoinRemotePath, AnEmptyFolderAddsNothing) {
    EXPECT_EQ(JoinRemotePath("", "file", '/'), "file");
}

TEST(JoinLocalPath, AddsTheSystemsSeparatorUnlessASlashEndsTheFolder) {
    EXPECT_EQ(JoinLocalPath("folder", "file"), std::string("folder") + platform::kPathSeparator + "file");
    EXPECT_EQ(JoinLocalPath("C:\\", "file"), "C:\\file");
    EXPECT_EQ(JoinLocalPath("/tmp/", "file"), "/tmp/file");
    EXPECT_EQ(JoinLocalPath("", "file"), "file");
}
