#include "platform/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "platform/system.h"
#include "platform/threads.h"

namespace platform_tests {
namespace {

using platform::FileAccess;
using platform::FileDisposition;
using platform::FileInfo;

constexpr std::string_view kForeignName = "Grüße 日本 \xF0\x9F\x98\x80.txt";

// A folder of its own for each test, emptied and removed after it.
class Files : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "zrn");
        ASSERT_FALSE(folder_.empty());
        ASSERT_TRUE(platform::DeleteFilePath(folder_.c_str()));
        ASSERT_TRUE(platform::CreateFolder(folder_.c_str()));
    }
    void TearDown() override {
        std::vector<FileInfo> entries;
        EXPECT_TRUE(platform::ListFolder(folder_.c_str(), entries));
        for (const FileInfo& entry : entries) {
            const std::string path = Path(entry.name);
            EXPECT_TRUE(entry.isFolder ? platform::RemoveFolder(path.c_str()) : platform::DeleteFilePath(path.c_str()))
                << path;
        }
        EXPECT_TRUE(platform::RemoveFolder(folder_.c_str()));
    }

    std::string Path(std::string_view name) const { return folder_ + platform::kPathSeparator + std::string(name); }

    std::string Make(std::string_view name, std::string_view content) const {
        std::string path = Path(name);
        const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateAlways, false});
        EXPECT_NE(file, platform::kNoFile) << path;
        EXPECT_TRUE(platform::WriteFile(file, content));
        EXPECT_TRUE(platform::CloseFile(file));
        return path;
    }

    static std::string Content(const std::string& path) {
        const auto file = platform::OpenFile(path.c_str(), {});
        if (file == platform::kNoFile) return "(cannot be opened)";
        std::string content;
        char buffer[4096];
        int received = 0;
        while ((received = platform::ReadFile(file, buffer)) > 0) {
            content.append(buffer, static_cast<std::size_t>(received));
        }
        platform::CloseFile(file);
        return received == 0 ? content : "(cannot be read)";
    }

    static bool Exists(const std::string& path) {
        FileInfo info;
        return platform::GetFileInfo(path.c_str(), info);
    }

    std::string folder_;
};

TEST_F(Files, WhatIsWrittenIsRead) {
    EXPECT_EQ(Content(Make("a.bin", std::string_view("one\0two\r\n", 9))), std::string_view("one\0two\r\n", 9));
}

TEST_F(Files, LargeWritesArriveWhole) {
    std::string content(20u << 20, 'x');
    for (std::size_t index = 0; index < content.size(); index += 4096) {
        content[index] = static_cast<char>(index >> 12);
    }
    EXPECT_TRUE(Content(Make("large.bin", content)) == content);
}

TEST_F(Files, WriteThroughWritesAsWell) {
    const std::string path = Path("through.txt");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, true});
    ASSERT_NE(file, platform::kNoFile);
    EXPECT_TRUE(platform::WriteFile(file, std::string_view("safe")));
    EXPECT_TRUE(platform::CloseFile(file));
    EXPECT_EQ(Content(path), "safe");
}

TEST_F(Files, CreateNewFailsOnAnExistingFileWith80) {
    const std::string path = Make("a.txt", "old");
    EXPECT_EQ(platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false}),
              platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorFileExists);
    EXPECT_EQ(Content(path), "old");
}

TEST_F(Files, CreateAlwaysEmptiesAnExistingFile) {
    Make("a.txt", "long old content");
    EXPECT_EQ(Content(Make("a.txt", "new")), "new");
}

TEST_F(Files, OpenAlwaysKeepsTheContentAndAppendsAfterSeekToEnd) {
    const std::string path = Make("a.log", "one,");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::OpenAlways, false});
    ASSERT_NE(file, platform::kNoFile);
    EXPECT_TRUE(platform::SeekToEnd(file));
    EXPECT_TRUE(platform::WriteFile(file, std::string_view("two")));
    platform::CloseFile(file);
    EXPECT_EQ(Content(path), "one,two");
}

TEST_F(Files, OpenAlwaysCreatesAMissingFile) {
    const std::string path = Path("new.log");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::ReadWrite, FileDisposition::OpenAlways, false});
    ASSERT_NE(file, platform::kNoFile);
    EXPECT_TRUE(platform::CloseFile(file));
    EXPECT_EQ(Content(path), "");
}

TEST_F(Files, SeekToAndSizeWorkOnAnOpenFile) {
    const std::string path = Make("a.txt", "0123456789");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::ReadWrite, FileDisposition::OpenExisting, false});
    ASSERT_NE(file, platform::kNoFile);
    std::uint64_t size = 0;
    EXPECT_TRUE(platform::GetFileSize(file, size));
    EXPECT_EQ(size, 10u);
    EXPECT_TRUE(platform::SeekTo(file, 4));
    EXPECT_TRUE(platform::WriteFile(file, std::string_view("xy")));
    char buffer[16];
    EXPECT_EQ(platform::ReadFile(file, buffer), 4);
    EXPECT_EQ(std::string_view(buffer, 4), "6789");
    EXPECT_EQ(platform::ReadFile(file, buffer), 0);
    platform::CloseFile(file);
    EXPECT_EQ(Content(path), "0123xy6789");
}

TEST_F(Files, SizesBeyondFourGigabytesAreWhole) {
    const std::string path = Path("sparse.bin");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::ReadWrite, FileDisposition::CreateNew, false});
    ASSERT_NE(file, platform::kNoFile);
    constexpr std::uint64_t kOffset = 5ull << 30;
    EXPECT_TRUE(platform::SeekTo(file, kOffset));
    EXPECT_TRUE(platform::WriteFile(file, std::string_view("!")));
    std::uint64_t size = 0;
    EXPECT_TRUE(platform::GetFileSize(file, size));
    EXPECT_EQ(size, kOffset + 1);
    platform::CloseFile(file);
    FileInfo info;
    EXPECT_TRUE(platform::GetFileInfo(path.c_str(), info));
    EXPECT_EQ(info.size, kOffset + 1);
}

TEST_F(Files, ReadersShareAFileThatIsOpenForReading) {
    const std::string path = Make("a.txt", "text");
    const auto first = platform::OpenFile(path.c_str(), {});
    const auto second = platform::OpenFile(path.c_str(), {});
    EXPECT_NE(first, platform::kNoFile);
    EXPECT_NE(second, platform::kNoFile);
    platform::CloseFile(first);
    platform::CloseFile(second);
}

TEST_F(Files, MissingFilesAndFoldersHaveErrorsOfTheirOwn) {
    EXPECT_EQ(platform::OpenFile(Path("none.txt").c_str(), {}), platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), 2u);
    const std::string below = Path("none") + platform::kPathSeparator + "a.txt";
    EXPECT_EQ(platform::OpenFile(below.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false}),
              platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), 3u);
    EXPECT_FALSE(platform::DeleteFilePath(Path("none.txt").c_str()));
    EXPECT_EQ(platform::LastSystemError(), 2u);
}

TEST_F(Files, FoldersAreNotFiles) {
    EXPECT_EQ(platform::OpenFile(folder_.c_str(), {}), platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorAccessDenied);
}

TEST_F(Files, ReadingFromAFileOpenForWritingFails) {
    const std::string path = Path("w.txt");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false});
    char buffer[4];
    EXPECT_EQ(platform::ReadFile(file, buffer), -1);
    platform::CloseFile(file);
}

TEST_F(Files, WritingToAFileOpenForReadingFails) {
    const std::string path = Make("r.txt", "kept");
    const auto file = platform::OpenFile(path.c_str(), {});
    EXPECT_FALSE(platform::WriteFile(file, std::string_view("x")));
    EXPECT_NE(platform::LastSystemError(), 0u);
    platform::CloseFile(file);
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(Files, DeletedFilesAreGone) {
    const std::string path = Make("a.txt", "text");
    EXPECT_TRUE(platform::DeleteFilePath(path.c_str()));
    EXPECT_FALSE(Exists(path));
}

TEST_F(Files, MakeWritableNeedsAFile) {
    EXPECT_TRUE(platform::MakeWritable(Make("a.txt", "text").c_str()));
    EXPECT_FALSE(platform::MakeWritable(Path("none.txt").c_str()));
    EXPECT_EQ(platform::LastSystemError(), 2u);
}

TEST_F(Files, MoveRenamesAFile) {
    const std::string from = Make("a.txt", "text");
    const std::string to = Path("b.txt");
    EXPECT_TRUE(platform::MoveFilePath(from.c_str(), to.c_str(), false));
    EXPECT_FALSE(Exists(from));
    EXPECT_EQ(Content(to), "text");
}

TEST_F(Files, MoveWithoutReplaceFailsOnAnExistingFileWith183) {
    const std::string from = Make("a.txt", "new");
    const std::string to = Make("b.txt", "old");
    EXPECT_FALSE(platform::MoveFilePath(from.c_str(), to.c_str(), false));
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorAlreadyExists);
    EXPECT_EQ(Content(from), "new");
    EXPECT_EQ(Content(to), "old");
}

TEST_F(Files, MoveWithReplaceTakesThePlaceOfAnExistingFile) {
    const std::string from = Make("a.txt", "new");
    const std::string to = Make("b.txt", "old");
    EXPECT_TRUE(platform::MoveFilePath(from.c_str(), to.c_str(), true));
    EXPECT_FALSE(Exists(from));
    EXPECT_EQ(Content(to), "new");
}

TEST_F(Files, MoveOfAMissingFileFailsWith2) {
    EXPECT_FALSE(platform::MoveFilePath(Path("none").c_str(), Path("b.txt").c_str(), true));
    EXPECT_EQ(platform::LastSystemError(), 2u);
}

TEST_F(Files, ForeignNamesComeBackAsGiven) {
    const std::string path = Make(kForeignName, "text");
    std::vector<FileInfo> entries;
    ASSERT_TRUE(platform::ListFolder(folder_.c_str(), entries));
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].name, kForeignName);
    FileInfo info;
    EXPECT_TRUE(platform::GetFileInfo(path.c_str(), info));
    EXPECT_EQ(info.name, kForeignName);
    EXPECT_EQ(Content(path), "text");
}

TEST_F(Files, ListNamesEveryEntryButDots) {
    Make("b.txt", "12345");
    Make(".hidden", "");
    ASSERT_TRUE(platform::CreateFolder(Path("Sub").c_str()));
    std::vector<FileInfo> entries;
    ASSERT_TRUE(platform::ListFolder(folder_.c_str(), entries));
    std::set<std::string> names;
    for (const FileInfo& entry : entries) {
        names.insert(entry.name);
        EXPECT_EQ(entry.isFolder, entry.name == "Sub");
        EXPECT_EQ(entry.isHidden, entry.name == ".hidden");
        EXPECT_EQ(entry.size, entry.name == "b.txt" ? 5u : 0u);
    }
    EXPECT_EQ(names, (std::set<std::string>{".hidden", "Sub", "b.txt"}));
    EXPECT_EQ(entries.size(), 3u);
}

TEST_F(Files, ListOfAnEmptyFolderIsEmptyAndHolds) {
    std::vector<FileInfo> entries;
    EXPECT_TRUE(platform::ListFolder(folder_.c_str(), entries));
    EXPECT_TRUE(entries.empty());
}

TEST_F(Files, ListOfAMissingFolderFails) {
    std::vector<FileInfo> entries;
    EXPECT_FALSE(platform::ListFolder(Path("none").c_str(), entries));
    EXPECT_EQ(platform::LastSystemError(), 3u);
    EXPECT_FALSE(platform::ListFolder(Make("a.txt", "").c_str(), entries));
    EXPECT_TRUE(entries.empty());
}

TEST_F(Files, WriteTimesAreKept) {
    const std::string path = Path("a.txt");
    constexpr std::uint64_t kTime = 125'911'584'000'000'000;  // 2000-01-01 00:00:00
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false});
    EXPECT_TRUE(platform::SetFileWriteTime(file, kTime));
    platform::CloseFile(file);
    FileInfo info;
    ASSERT_TRUE(platform::GetFileInfo(path.c_str(), info));
    EXPECT_EQ(info.writeTime, kTime);
    std::vector<FileInfo> entries;
    ASSERT_TRUE(platform::ListFolder(folder_.c_str(), entries));
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].writeTime, kTime);
}

TEST_F(Files, TimesWithTheHighBitAreRefused) {
    const std::string path = Path("a.txt");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false});
    EXPECT_FALSE(platform::SetFileWriteTime(file, 1ull << 63));
    platform::CloseFile(file);
}

TEST_F(Files, FolderCanBeCreatedOnceAndRemovedWhenEmpty) {
    const std::string sub = Path("sub");
    EXPECT_TRUE(platform::CreateFolder(sub.c_str()));
    EXPECT_FALSE(platform::CreateFolder(sub.c_str()));
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorAlreadyExists);
    const std::string inside = sub + platform::kPathSeparator + "a.txt";
    platform::CloseFile(platform::OpenFile(inside.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false}));
    EXPECT_FALSE(platform::RemoveFolder(sub.c_str()));
    EXPECT_EQ(platform::LastSystemError(), 145u);
    EXPECT_TRUE(platform::DeleteFilePath(inside.c_str()));
    EXPECT_TRUE(platform::RemoveFolder(sub.c_str()));
}

TEST_F(Files, CurrentFolderFollowsAndRelativeNamesBelongToIt) {
    const std::string before = platform::CurrentFolder();
    ASSERT_FALSE(before.empty());
    Make("here.txt", "found");
    ASSERT_TRUE(platform::SetCurrentFolder(folder_.c_str()));
    EXPECT_EQ(Content("here.txt"), "found");
    EXPECT_NE(platform::CurrentFolder(), before);
    EXPECT_FALSE(platform::SetCurrentFolder(Path("none").c_str()));
    EXPECT_TRUE(platform::SetCurrentFolder(before.c_str()));
    EXPECT_EQ(platform::CurrentFolder(), before);
}

TEST_F(Files, TemporaryFolderEndsWithASeparator) {
    const std::string folder = platform::TemporaryFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.back(), platform::kPathSeparator);
    EXPECT_TRUE(Exists(folder.substr(0, folder.size() - 1)));
}

TEST_F(Files, TemporaryFilesAreUniqueAndKeepThreeLetters) {
    std::set<std::string> paths;
    for (int time = 0; time < 20; ++time) {
        const std::string path = platform::MakeTemporaryFile(folder_.c_str(), "zarn");
        ASSERT_FALSE(path.empty());
        EXPECT_TRUE(paths.insert(path).second) << path;
        const std::string name = path.substr(path.rfind(platform::kPathSeparator) + 1);
        EXPECT_EQ(name.substr(0, 3), "zar");
        EXPECT_NE(name.substr(0, 4), "zarn");
        EXPECT_EQ(Content(path), "");
    }
}

TEST_F(Files, TemporaryFileInAMissingFolderFailsWith267) {
    EXPECT_EQ(platform::MakeTemporaryFile(Path("none").c_str(), "zar"), "");
    EXPECT_EQ(platform::LastSystemError(), 267u);
}

TEST_F(Files, DiskSpaceHangsTogether) {
    platform::DiskSpace space;
    ASSERT_TRUE(platform::GetDiskSpace(folder_.c_str(), space));
    EXPECT_GT(space.freeBytes, 0u);
    EXPECT_GE(space.bytesPerSector, 512u);
    EXPECT_GE(space.sectorsPerCluster, 1u);
    EXPECT_GT(space.freeClusters, 0u);
    platform::DiskSpace sameDrive;
    EXPECT_TRUE(platform::GetDiskSpace(Path("not there yet").c_str(), sameDrive));
    EXPECT_EQ(sameDrive.bytesPerSector, space.bytesPerSector);
}

#ifdef _WIN32
TEST_F(Files, DiskSpaceOfAMissingDriveFails) {
    platform::DiskSpace space;
    EXPECT_FALSE(platform::GetDiskSpace("Q:\\folder", space));
    EXPECT_NE(platform::LastSystemError(), 0u);
}

TEST_F(Files, ASecondWriterIsRefusedWith32) {
    const std::string path = Path("w.txt");
    const auto file = platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false});
    EXPECT_EQ(platform::OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::OpenExisting, false}),
              platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), 32u);
    platform::CloseFile(file);
}
#endif

}  // namespace
}  // namespace platform_tests
