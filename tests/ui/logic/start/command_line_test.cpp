// The switch and the files on the command line.
#include "ui/start/command_line.h"

#include <gtest/gtest.h>

#include "support/local_folder.h"

namespace {

TEST(CommandLine, TheSwitchIsFoundAnywhereAndTakenOutWithTheBlanksBehindIt) {
    EXPECT_TRUE(WantsDebugTrace("-d a.txt"));
    EXPECT_FALSE(WantsDebugTrace("a.txt"));
    EXPECT_EQ(WithoutDebugSwitch("-d   a.txt b.txt"), "a.txt b.txt");
    EXPECT_EQ(WithoutDebugSwitch("-d"), "");
    EXPECT_EQ(WithoutDebugSwitch("a.txt"), "a.txt");
}

TEST(CommandLine, TwoExistingFilesAreListedEachWithABar) {
    LocalFolder folder;
    folder.Write("one.txt", "1");
    folder.Write("two.txt", "2");
    const CommandLineFiles files = FilesInArgv("one.txt  two.txt");
    EXPECT_EQ(files.count, 2);
    EXPECT_EQ(files.names, "one.txt|two.txt|");
}

TEST(CommandLine, AWordThatNamesNoFileMeansThatThereAreNone) {
    LocalFolder folder;
    folder.Write("one.txt", "1");
    EXPECT_EQ(FilesInArgv("one.txt missing.txt").count, 0);
    EXPECT_EQ(FilesInArgv("one.txt missing.txt").names, "");
    EXPECT_EQ(FilesInArgv("").count, 0);
}

TEST(CommandLine, ATextWithoutBlanksIsOneName) {
    LocalFolder folder;
    folder.Write("only", "x");
    EXPECT_EQ(FilesInArgv("only").count, 1);
}

}  // namespace
