#include "ftp/data/dump_file.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/system.h"
#include "support/session_harness.h"

namespace {

TEST(DumpFile, TemporaryNamesCarryTheirPrefix) {
    const OwnedText name = Zarn_GetTmpFileName("DCON");
    ASSERT_TRUE(name);
    platform::FileInfo info;
    EXPECT_TRUE(platform::GetFileInfo(name.get(), info));
    EXPECT_EQ(info.name.substr(0, 3), "DCO");
    platform::DeleteFilePath(name.get());
}

TEST(DumpFile, AMissingNameIsAnInvalidParameter) {
    EXPECT_EQ(GetDumpFileHandle("test", nullptr, platform::FileAccess::Read), platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInvalidParameter);
    EXPECT_EQ(GetDumpFileHandle("test", "", platform::FileAccess::ReadWrite), platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInvalidParameter);
}

TEST(DumpFile, AReaderNeedsAnExistingFile) {
    SessionHarness h;
    EXPECT_EQ(GetDumpFileHandle("test", h.LocalPath("none").c_str(), platform::FileAccess::Read), platform::kNoFile);
}

}  // namespace
