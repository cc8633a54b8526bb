#include "transfer/receive_target.h"

#include <gtest/gtest.h>

#include "config/settings.h"
#include "foundation/trace.h"
#include "platform/files.h"
#include "platform/system.h"
#include "support/local_folder.h"
#include "support/recording_transfer_view.h"
#include "support/recording_view.h"
#ifdef _WIN32
#include <windows.h>
#else
#include <sys/stat.h>

#include "host/fault_injection.h"
#endif

namespace {

void MakeReadOnly(const std::string& path) {
#ifdef _WIN32
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
#else
    ::chmod(path.c_str(), 0444);
#endif
}

class ReceiveTargetTest : public testing::Test {
  protected:
    ReceiveTargetTest() : before(gZarn) {
        gZarn = ZarnSettings();
        gTrace.verbose = true;
    }
    ~ReceiveTargetTest() override {
        gZarn = before;
        gTrace.verbose = false;
    }

    TargetResult Open(const std::string& name, std::uint64_t size = 0, FileTime time = 0) {
        return OpenIn(folder.Path(), name, size, time);
    }
    TargetResult OpenIn(const std::string& path, const std::string& name, std::uint64_t size = 0, FileTime time = 0) {
        const OpenedTarget opened = OpenReceiveTarget(job, {path, name, size, time});
        target = opened.target;
        error = opened.error;
        return opened.result;
    }
    // What a transfer does: fills the temporary file and gives it its name.
    bool Receive(const std::string& bytes) {
        const platform::FileHandle file = platform::OpenFile(
            target.temporaryPath.c_str(), {platform::FileAccess::Write, platform::FileDisposition::OpenExisting});
        platform::WriteFile(file, bytes);
        platform::CloseFile(file);
        error = CommitReceiveTarget(job, target);
        return error == 0;
    }
    using Names = std::vector<std::string>;

    ZarnSettings before;
    LocalFolder folder;
    RecordingView console;
    RecordingTransferView view;
    ReceiveTarget target;
    TransferJob job;
    std::uint32_t error = 0;
};

TEST_F(ReceiveTargetTest, NewFileHasATemporaryNameUntilItIsCommitted) {
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    EXPECT_EQ(folder.PathOf("a.txt"), target.finalPath);
    EXPECT_FALSE(target.replaceExisting);
    EXPECT_FALSE(folder.Exists("a.txt"));
    EXPECT_EQ(1u, folder.Contents().size());
    ASSERT_TRUE(Receive("new"));
    EXPECT_EQ((Names{"a.txt"}), folder.Contents());
    EXPECT_EQ("new", folder.Read("a.txt"));
    EXPECT_TRUE(view.questions.empty());
}

TEST_F(ReceiveTargetTest, DiscardedFileLeavesNothing) {
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    DiscardReceiveTarget(target);
    EXPECT_TRUE(folder.Contents().empty());
}

TEST_F(ReceiveTargetTest, ExistingFileIsAskedForWithWhatIsKnownOfBoth) {
    folder.Write("a.txt", "old file");
    view.answers = {ReplaceAnswer::Yes};
    ASSERT_EQ(TargetResult::Ready, Open("a.txt", 77, 12345));
    ASSERT_EQ(1u, view.questions.size());
    EXPECT_EQ("a.txt", view.questions[0].name);
    EXPECT_EQ(folder.PathOf("a.txt"), view.questions[0].path);
    EXPECT_EQ(ExistingFile::Ordinary, view.questions[0].kind);
    EXPECT_EQ(8u, view.questions[0].oldSize);
    EXPECT_NE(0u, view.questions[0].oldTime);
    EXPECT_EQ(77u, view.questions[0].newSize);
    EXPECT_EQ(12345u, view.questions[0].newTime);
    EXPECT_EQ("old file", folder.Read("a.txt"));
    ASSERT_TRUE(Receive("new"));
    EXPECT_EQ("new", folder.Read("a.txt"));
    EXPECT_EQ((Names{"a.txt"}), folder.Contents());
}

TEST_F(ReceiveTargetTest, OldFileSurvivesATransferThatFails) {
    folder.Write("a.txt", "old");
    view.answers = {ReplaceAnswer::Yes};
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    DiscardReceiveTarget(target);
    EXPECT_EQ("old", folder.Read("a.txt"));
    EXPECT_EQ((Names{"a.txt"}), folder.Contents());
}

TEST_F(ReceiveTargetTest, NoKeepsTheFileAndCancelEndsTheTransfer) {
    folder.Write("a.txt", "old");
    view.answers = {ReplaceAnswer::No, ReplaceAnswer::Cancel};
    EXPECT_EQ(TargetResult::Skipped, Open("a.txt"));
    EXPECT_EQ(TargetResult::Cancelled, Open("a.txt"));
    EXPECT_EQ((Names{"a.txt"}), folder.Contents());
    EXPECT_FALSE(job.replaceAll);
}

TEST_F(ReceiveTargetTest, YesToAllAsksOnlyOnce) {
    folder.Write("a.txt", "old");
    folder.Write("b.txt", "old");
    view.answers = {ReplaceAnswer::YesToAll};
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    EXPECT_TRUE(job.replaceAll);
    ASSERT_TRUE(Receive("new a"));
    ASSERT_EQ(TargetResult::Ready, Open("b.txt"));
    ASSERT_TRUE(Receive("new b"));
    EXPECT_EQ(1u, view.questions.size());
    EXPECT_EQ("new b", folder.Read("b.txt"));
}

TEST_F(ReceiveTargetTest, WithoutAnybodyToAskTheFileStays) {
    folder.Write("a.txt", "old");
    gTransferView = TransferView();
    EXPECT_EQ(TargetResult::Skipped, Open("a.txt"));
    EXPECT_EQ("old", folder.Read("a.txt"));
}

TEST_F(ReceiveTargetTest, ReceiveUniqueTakesTheNextFreeNumberAndSaysSo) {
    gZarn.RECVUNIQUE = 1;
    folder.Write("a.txt", "old");
    folder.Write("a (2).txt", "older");
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    ASSERT_TRUE(Receive("new"));
    EXPECT_EQ((Names{"a (2).txt", "a (3).txt", "a.txt"}), folder.Contents());
    EXPECT_EQ("new", folder.Read("a (3).txt"));
    EXPECT_TRUE(view.questions.empty());
    EXPECT_TRUE(console.HasLine("'a.txt' already exists; saved as 'a (3).txt'."));
}

TEST_F(ReceiveTargetTest, ReceiveUniqueLeavesAFreeNameAlone) {
    gZarn.RECVUNIQUE = 1;
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    EXPECT_EQ(folder.PathOf("a.txt"), target.finalPath);
    DiscardReceiveTarget(target);
}

TEST_F(ReceiveTargetTest, SecondFileOfTheSameNameInOneTransferGetsAFreeNameEvenWithYesToAll) {
    job.replaceAll = true;
    ASSERT_EQ(TargetResult::Ready, Open("a~b"));
    ASSERT_TRUE(Receive("first"));
    ASSERT_EQ(TargetResult::Ready, Open("a~b"));
    ASSERT_TRUE(Receive("second"));
    ASSERT_EQ(TargetResult::Ready, Open("a~b"));
    ASSERT_TRUE(Receive("third"));
    EXPECT_EQ("first", folder.Read("a~b"));
    EXPECT_EQ("second", folder.Read("a~b (2)"));
    EXPECT_EQ("third", folder.Read("a~b (3)"));
    EXPECT_TRUE(console.HasLine("saved as 'a~b (2)'"));
    job.receivedFiles.clear();
    ASSERT_EQ(TargetResult::Ready, Open("a~b"));
    EXPECT_TRUE(target.replaceExisting);
    DiscardReceiveTarget(target);
}

TEST_F(ReceiveTargetTest, FolderOfThatNameIsNeverReplaced) {
    platform::CreateFolder(folder.PathOf("a.txt").c_str());
    job.replaceAll = true;
    EXPECT_EQ(TargetResult::Failed, Open("a.txt"));
    EXPECT_NE(0u, error);
    EXPECT_EQ((Names{"a.txt/"}), folder.Contents());
}

TEST_F(ReceiveTargetTest, MissingFolderFailsWithTheReason) {
    EXPECT_EQ(TargetResult::Failed, OpenIn(folder.PathOf("missing"), "a.txt"));
    EXPECT_NE(0u, error);
}

TEST_F(ReceiveTargetTest, NameIsCutToFitALongFolder) {
    const std::string name = std::string(240, 'n') + ".txt";
    ASSERT_EQ(TargetResult::Ready, Open(name));
    EXPECT_LE(target.finalPath.size(), platform::kLongestPath);
    EXPECT_EQ(".txt", target.finalPath.substr(target.finalPath.size() - 4));
    ASSERT_TRUE(Receive("new"));
    EXPECT_EQ(1u, folder.Contents().size());
}

TEST_F(ReceiveTargetTest, FileThatAppearedMeanwhileIsNotOverwritten) {
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    folder.Write("a.txt", "another program's");
    EXPECT_FALSE(Receive("new"));
    EXPECT_NE(0u, error);
    EXPECT_EQ("another program's", folder.Read("a.txt"));
    EXPECT_EQ((Names{"a.txt"}), folder.Contents());
}

TEST_F(ReceiveTargetTest, ReadOnlyFileIsAskedForAsSuchAndEvenAfterYesToAll) {
    folder.Write("a.txt", "old");
    MakeReadOnly(folder.PathOf("a.txt"));
    job.replaceAll = true;
    view.answers = {ReplaceAnswer::Yes};
    ASSERT_EQ(TargetResult::Ready, Open("a.txt"));
    ASSERT_EQ(1u, view.questions.size());
    EXPECT_EQ(ExistingFile::ReadOnly, view.questions[0].kind);
    ASSERT_TRUE(Receive("new"));
    EXPECT_EQ("new", folder.Read("a.txt"));
}

#ifndef _WIN32
// Every move and every opening made to fail once: the old file stays, nothing else is left.
TEST_F(ReceiveTargetTest, EveryFailureLeavesTheOldFileAndNothingElse) {
    using fault_injection::Call;
    for (const Call call : {Call::OpenFile, Call::MoveFile}) {
        for (int n = 1;; ++n) {
            folder.Write("a.txt", "old");
            job.replaceAll = true;
            job.receivedFiles.clear();
            const fault_injection::Scope scope(call, n, platform::kErrorAccessDenied);
            if (Open("a.txt") == TargetResult::Ready) {
                error = CommitReceiveTarget(job, target);
                EXPECT_TRUE(error == 0 || error == platform::kErrorAccessDenied);
            }
            if (!scope.Fired()) break;
            ASSERT_LT(n, 10);
            EXPECT_EQ((Names{"a.txt"}), folder.Contents());
        }
    }
}
#endif

}  // namespace
