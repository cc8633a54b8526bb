#include <algorithm>

#include "config/settings.h"
#include "ftp/login/stop.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "integration/real_server.h"

namespace {

using Names = std::vector<std::string>;

class Receive : public RealServer {
  protected:
    void SetUp() override {
        RealServer::SetUp();
        Connect();
    }

    static bool IsBelow(const DiskEntry& entry, std::string_view folder) {
        return folder == "/" || entry.path.starts_with(std::string(folder) + "/");
    }
    // What a local folder holds after `folder` was received into it: links are skipped, and what nobody may read.
    static Names LocalFormOf(std::string_view folder) {
        const std::size_t start = folder == "/" ? 1 : folder.size() + 1;
        Names names;
        for (const DiskEntry& entry : DiskTree()) {
            if (!IsBelow(entry, folder)) continue;
            if (entry.IsFolder()) names.push_back(entry.path.substr(start) + "/");
            if (entry.IsFile() && entry.IsReadable()) names.push_back(entry.path.substr(start));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    void ExpectLocalBytes(const std::string& localName, const std::string& serverPath) {
        EXPECT_TRUE(local.Read(localName) == DiskBytes(serverPath)) << serverPath << " differs";
    }
    static int CountFiles(const Names& names) {
        return static_cast<int>(std::count_if(names.begin(), names.end(), [](auto& n) { return n.back() != '/'; }));
    }

    // Lists the folder and receives its readable files into a local folder of their own; how many there were.
    int ReceiveFilesOf(const std::string& folder) {
        const LocalFolder fresh;
        EXPECT_EQ(Open(folder), FTP_COMPLETE) << folder;
        Names names, paths;
        for (const DiskEntry* entry : DiskFolder(folder)) {
            if (!entry->IsFile() || !entry->IsReadable()) continue;
            names.push_back(entry->Name());
            paths.push_back(entry->path);
        }
        if (names.empty()) return 0;
        Select(names);
        EXPECT_EQ(ReceiveSelection(), static_cast<int>(names.size())) << folder;
        EXPECT_EQ(fresh.Contents(), names);
        for (std::size_t i = 0; i < names.size(); ++i)
            EXPECT_TRUE(fresh.Read(names[i]) == DiskBytes(paths[i])) << paths[i] << " differs";
        return static_cast<int>(names.size());
    }
};
FOR_EVERY_SERVER(Receive);

TEST_P(Receive, SelectedFilesOfEveryFolderArriveByteForByte) {
    int files = ReceiveFilesOf("/");
    int filesOnDisk = 0;
    for (const DiskEntry& entry : DiskTree()) {
        // The folder of five hundred is received with the whole tree.
        if (entry.path.starts_with("/pub/many")) continue;
        filesOnDisk += entry.IsFile() && entry.IsReadable() ? 1 : 0;
        if (entry.IsFolder()) files += ReceiveFilesOf(entry.path);
    }
    EXPECT_EQ(files, filesOnDisk);
    EXPECT_TRUE(console.Boxes().empty());
    EXPECT_TRUE(transfer.questions.empty());
}

TEST_P(Receive, WholeTreeEqualsTheDisk) {
    ASSERT_EQ(Open("/"), FTP_COMPLETE);
    console.AnswerNext(BoxAnswer::Ignore);  // the file that nobody may read
    const Names expected = LocalFormOf("/");
    EXPECT_EQ(ReceiveFolder("/"), static_cast<int>(expected.size()));
    EXPECT_EQ(local.Contents(), expected);
    for (const std::string& name : expected)
        if (name.back() != '/') ExpectLocalBytes(name, "/" + name);
    EXPECT_EQ(lastJob.counters.files, CountFiles(expected));
    EXPECT_EQ(lastJob.counters.failures, 1);
    EXPECT_EQ(console.Boxes().size(), 1u);
    EXPECT_EQ(transfer.closed, 1);
    EXPECT_STREQ(site->pszCurrentDir.get(), "/");
    EXPECT_TRUE(view.ServerErrors().empty());
}

TEST_P(Receive, FoldersAndFilesOfOneSelection) {
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    Select({"history", "notes.txt", "read-only.txt"});
    const Names folder = LocalFormOf("/docs/history");
    EXPECT_EQ(ReceiveSelection(), static_cast<int>(folder.size()) + 3);
    Names expected = {"history/", "notes.txt", "read-only.txt"};
    for (const std::string& name : folder) expected.push_back("history/" + name);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(local.Contents(), expected);
    for (const std::string& name : expected)
        if (name.back() != '/') ExpectLocalBytes(name, "/docs/" + name);
    EXPECT_STREQ(site->pszCurrentDir.get(), "/docs");
}

TEST_P(Receive, FolderOfTheTreePane) {
    ASSERT_EQ(Open("/pub/deep"), FTP_COMPLETE);
    ASSERT_EQ(Open("/pub"), FTP_COMPLETE);
    const Names deep = LocalFormOf("/pub/deep");
    EXPECT_EQ(ReceiveFolder("/pub/deep"), static_cast<int>(deep.size()) + 1);
    for (const std::string& name : deep) {
        EXPECT_TRUE(local.Exists("deep/" + name)) << name;
        if (name.back() != '/') ExpectLocalBytes("deep/" + name, "/pub/deep/" + name);
    }
    EXPECT_EQ(local.Contents().size(), deep.size() + 1);
    EXPECT_STREQ(site->pszCurrentDir.get(), "/pub");
}

TEST_P(Receive, LinksOfASelectionAreSkipped) {
    ASSERT_EQ(Open("/pub/links"), FTP_COMPLETE);
    Select({});
    EXPECT_EQ(ReceiveSelection(), 0);
    EXPECT_TRUE(local.Contents().empty());
    EXPECT_TRUE(console.Boxes().empty());
}

TEST_P(Receive, FilesBehindALinkedFolder) {
    ASSERT_EQ(Open("/pub/links/to-a-folder"), FTP_COMPLETE);
    Select({"lamp.c", "lamp-1.0.zip"});
    EXPECT_EQ(ReceiveSelection(), 2);
    ExpectLocalBytes("lamp.c", "/pub/source/lamp.c");
    ExpectLocalBytes("lamp-1.0.zip", "/pub/source/lamp-1.0.zip");
}

TEST_P(Receive, TextHasNetworkLineEndsWhereTheServerConvertsElseArrivesAsItIs) {
    gZarn.mode.mode = 'A';
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    const Names texts = {"keeping.html", "notes.txt", "read-only.txt"};
    Select(texts);
    EXPECT_EQ(ReceiveSelection(), static_cast<int>(texts.size()));
    ASSERT_EQ(Open("/pub/big"), FTP_COMPLETE);
    Select({"lines-1MiB.txt"});
    EXPECT_EQ(ReceiveSelection(), 1);
    const auto expected = [](const std::string& path) {
        return GetParam().convertsLineEnds ? NetworkText(DiskBytes(path)) : DiskBytes(path);
    };
    for (const std::string& name : texts) EXPECT_EQ(local.Read(name), expected("/docs/" + name));
    EXPECT_TRUE(local.Read("lines-1MiB.txt") == expected("/pub/big/lines-1MiB.txt"));
}

TEST_P(Receive, FileThatMayNotBeReadIsRefusedAndLeavesNothingBehind) {
    Watch();
    Zarn_IdmDisconnect(site);
    Connect();
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    Select({"members-only.txt", "notes.txt"});
    console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(ReceiveSelection(), 1);
    const std::string replies = wire->Replies();
    EXPECT_TRUE(replies.find("\n550 ") != std::string::npos || replies.find("\n553 ") != std::string::npos) << replies;
    ASSERT_EQ(console.Boxes().size(), 1u);
    EXPECT_EQ(console.Boxes()[0].buttons, BoxButtons::AbortRetryIgnore);
    EXPECT_TRUE(console.HasBox("members-only.txt"));
    EXPECT_EQ(lastJob.counters.failures, 1);
    EXPECT_EQ(local.Contents(), (Names{"notes.txt"}));
    ExpectLocalBytes("notes.txt", "/docs/notes.txt");
}

TEST_P(Receive, AbortAfterARefusalEndsTheSelectionOnly) {
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    Select({"members-only.txt", "notes.txt"});
    console.AnswerNext(BoxAnswer::Abort);
    EXPECT_EQ(ReceiveSelection(), 0);
    EXPECT_TRUE(local.Contents().empty());
    Select({"notes.txt"});
    EXPECT_EQ(ReceiveSelection(), 1);
    ExpectLocalBytes("notes.txt", "/docs/notes.txt");
}

TEST_P(Receive, ExistingFileIsReplacedOrKeptAsTheUserSays) {
    local.Write("notes.txt", "my own notes");
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    Select({"notes.txt"});
    transfer.answers = {ReplaceAnswer::No, ReplaceAnswer::Yes};
    EXPECT_EQ(ReceiveSelection(), 0);
    EXPECT_EQ(local.Read("notes.txt"), "my own notes");
    EXPECT_EQ(ReceiveSelection(), 1);
    ExpectLocalBytes("notes.txt", "/docs/notes.txt");
    ASSERT_EQ(transfer.questions.size(), 2u);
    const DiskEntry* disk = FindOnDisk("/docs/notes.txt");
    EXPECT_EQ(transfer.questions[0].newSize, disk->size);
    EXPECT_EQ(transfer.questions[0].newTime, ListedTime(disk->modified));
    EXPECT_EQ(local.Contents(), (Names{"notes.txt"}));
}

TEST_P(Receive, ProgressOfABigFileGrowsToItsSize) {
    ASSERT_EQ(Open("/pub/big"), FTP_COMPLETE);
    Select({"random-12MiB.bin"});
    ASSERT_EQ(ReceiveSelection(), 1);
    const auto progress = view.Progress();
    const std::uint64_t size = FindOnDisk("/pub/big/random-12MiB.bin")->size;
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.back().done, size);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end(), [](auto a, auto b) { return a.done < b.done; }));
    for (const RecordedProgress& step : progress) EXPECT_EQ(step.total, size);
}

// Small buffers, and the largest that a user can choose.
TEST_P(Receive, EveryBufferSizeGivesTheSameBytes) {
    ASSERT_EQ(Open("/pub/big"), FTP_COMPLETE);
    Select({"lines-1MiB.txt"});
    transfer.answers.assign(3, ReplaceAnswer::Yes);
    for (const std::uint32_t size : {512u, 2048u, 8096u}) {
        gZarn.port.packetSize = size;
        ASSERT_EQ(ReceiveSelection(), 1);
        ExpectLocalBytes("lines-1MiB.txt", "/pub/big/lines-1MiB.txt");
    }
}

}  // namespace
