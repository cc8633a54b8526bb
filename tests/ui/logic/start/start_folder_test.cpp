// Which folder the program starts in.
#include "ui/start/start_folder.h"

#include <gtest/gtest.h>

namespace {

constexpr char kProgram[] = "C:\\Program Files\\Zarn";
constexpr char kSystem[] = "C:\\Windows";

TEST(StartFolder, TheOneThatTheProgramWasStartedIn) {
    EXPECT_TRUE(IsFolderToStartIn("C:\\Users\\u\\work", kProgram, kSystem));
    EXPECT_TRUE(IsFolderToStartIn("D:\\", kProgram, kSystem));
    EXPECT_TRUE(IsFolderToStartIn("\\\\server\\share", kProgram, kSystem));
}

TEST(StartFolder, NotTheProgramsOwn) {
    EXPECT_FALSE(IsFolderToStartIn("C:\\Program Files\\Zarn", kProgram, kSystem));
    EXPECT_FALSE(IsFolderToStartIn("c:\\program files\\ZARN\\", kProgram, kSystem));
    EXPECT_TRUE(IsFolderToStartIn("C:\\Program Files\\Zarn\\files", kProgram, kSystem));
    EXPECT_TRUE(IsFolderToStartIn("C:\\Program Files", kProgram, kSystem));
}

TEST(StartFolder, NotTheSystemsNorAFolderOfIt) {
    EXPECT_FALSE(IsFolderToStartIn("C:\\Windows", kProgram, kSystem));
    EXPECT_FALSE(IsFolderToStartIn("c:\\WINDOWS\\system32", kProgram, kSystem));
    EXPECT_TRUE(IsFolderToStartIn("C:\\Windows.old", kProgram, kSystem));
}

TEST(StartFolder, AFolderThatIsNotKnownDoesNotSuit) {
    EXPECT_FALSE(IsFolderToStartIn("", kProgram, kSystem));
}

TEST(StartFolder, ASystemFolderThatIsNotKnownKeepsNobodyOut) {
    EXPECT_TRUE(IsFolderToStartIn("C:\\Users\\u", kProgram, ""));
}

TEST(FolderOfPath, TheDriveKeepsItsSeparator) {
    EXPECT_EQ(FolderOfPath("C:\\tools\\Zarn32.exe"), "C:\\tools");
    EXPECT_EQ(FolderOfPath("C:\\Zarn32.exe"), "C:\\");
    EXPECT_EQ(FolderOfPath("Zarn32.exe"), "");
}

}  // namespace
