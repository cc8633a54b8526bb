// What the native files do beyond the plain calls: permissions count even for root, whom the tests may run as.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/system.h"

namespace platform_tests {
namespace {

using platform::FileAccess;
using platform::FileDisposition;

class HostFiles : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "zro");
        ASSERT_TRUE(platform::DeleteFilePath(folder_.c_str()));
        ASSERT_TRUE(platform::CreateFolder(folder_.c_str()));
        file_ = folder_ + "/file.txt";
        const auto file = platform::OpenFile(file_.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false});
        ASSERT_NE(file, platform::kNoFile);
        platform::CloseFile(file);
    }
    void TearDown() override {
        ::chmod(folder_.c_str(), 0755);
        ::chmod(file_.c_str(), 0644);
        EXPECT_TRUE(platform::DeleteFilePath(file_.c_str()));
        EXPECT_TRUE(platform::RemoveFolder(folder_.c_str()));
    }
    static void ExpectDenied(bool result) {
        EXPECT_FALSE(result);
        EXPECT_EQ(platform::LastSystemError(), platform::kErrorAccessDenied);
    }
    static bool CanOpen(const std::string& path, FileAccess access, FileDisposition disposition) {
        const auto file = platform::OpenFile(path.c_str(), {access, disposition, false});
        return file != platform::kNoFile && platform::CloseFile(file);
    }

    std::string folder_, file_;
};

TEST_F(HostFiles, ReadOnlyFilesAreReadOnlyForRootToo) {
    ASSERT_EQ(::chmod(file_.c_str(), 0444), 0);
    ExpectDenied(CanOpen(file_, FileAccess::Write, FileDisposition::OpenExisting));
    ExpectDenied(CanOpen(file_, FileAccess::Write, FileDisposition::CreateAlways));
    ExpectDenied(platform::DeleteFilePath(file_.c_str()));
    EXPECT_TRUE(CanOpen(file_, FileAccess::Read, FileDisposition::OpenExisting));
    platform::FileInfo info;
    ASSERT_TRUE(platform::GetFileInfo(file_.c_str(), info));
    EXPECT_TRUE(info.isReadOnly);
    EXPECT_TRUE(platform::MakeWritable(file_.c_str()));
    EXPECT_TRUE(CanOpen(file_, FileAccess::Write, FileDisposition::OpenExisting));
}

TEST_F(HostFiles, ReadOnlyFoldersTakeNothingNew) {
    ASSERT_EQ(::chmod(folder_.c_str(), 0555), 0);
    ExpectDenied(CanOpen(folder_ + "/new.txt", FileAccess::Write, FileDisposition::CreateNew));
    ExpectDenied(platform::CreateFolder((folder_ + "/new").c_str()));
    ExpectDenied(platform::DeleteFilePath(file_.c_str()));
    ExpectDenied(platform::MoveFilePath(file_.c_str(), (folder_ + "/other.txt").c_str(), false));
    EXPECT_EQ(platform::MakeTemporaryFile(folder_.c_str(), "zar"), "");
    EXPECT_TRUE(CanOpen(file_, FileAccess::Write, FileDisposition::OpenExisting));
}

}  // namespace
}  // namespace platform_tests

#endif
