#include <algorithm>

#include "config/file_types.h"
#include "config/mode_map_store.h"
#include "config/settings.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/worker/session_state.h"
#include "integration/upload_fixture.h"
#include "platform/files.h"
#include "transfer/drop_transfer.h"

namespace {

using Names = std::vector<std::string>;

// Drops from the local folder; each test leaves /incoming as it found it.
class UploadTree : public UploadFixture {
  protected:
    void SetUp() override {
        UploadFixture::SetUp();
        gZarn.SENDUNIQUE = 0;
    }
    void TearDown() override {
        RemoveWhatWasSent();
        UploadFixture::TearDown();
    }
    int Drop(const Names& names) {
        Names paths;
        for (const std::string& name : names) paths.push_back(local.PathOf(name));
        return DropPaths(std::move(paths));
    }
    int DropPaths(Names paths) {
        TransferJob fresh;
        fresh.start = TransferStart::DropFiles;
        fresh.localPaths = std::move(paths);
        fresh.targetFolder = target;
        return RunJob("Zarn_TransferDropFiles", std::move(fresh), Zarn_TransferDropFiles);
    }
    // The deepest names come last in the sorted list of a folder's contents.
    void RemoveWhatWasSent() {
        Names names = local.Contents();
        std::reverse(names.begin(), names.end());
        Run("remove", [&] {
            char reply[kReplySize] = "";
            for (std::string name : names) {
                const bool isFolder = name.back() == '/';
                if (isFolder) name.pop_back();
                if (isFolder && IsFolderOnDisk(OnServer(name))) DoRMD(site, OnServer(name).c_str(), reply);
                if (!isFolder && IsFileOnDisk(OnServer(name))) DoDELE(site, OnServer(name).c_str(), reply);
            }
        });
    }
    void ExpectOnServer(const std::string& name, const std::string& bytes) {
        EXPECT_TRUE(IsFileOnDisk(OnServer(name))) << name;
        EXPECT_TRUE(DiskBytes(OnServer(name)) == bytes) << name << " differs";
    }

    std::string target;  // chosen by the drop
};
FOR_EVERY_SERVER(UploadTree);

TEST_P(UploadTree, TreeIsOnTheServersDiskByteForByte) {
    const std::vector<std::pair<std::string, std::string>> files = {
        {"tree/empty.bin", ""},
        {"tree/big.bin", SomeBytes(3 * 1024 * 1024)},
        {"tree/one/two/three/deep.bin", SomeBytes(2049)},
        {"tree/Größe 灯台/Grüße 🗼.bin", SomeBytes(8096)},
        {"tree/100% %s/50%n  blanks.bin", SomeBytes(100)},
        {"tree/z.bin", "last"},
    };
    for (const auto& [name, bytes] : files) local.Write(name, bytes);
    local.MakeFolder("tree/nothing in it");
    EXPECT_EQ(Drop({"tree"}), static_cast<int>(local.Contents().size()));
    for (const auto& [name, bytes] : files) ExpectOnServer(name, bytes);
    EXPECT_TRUE(IsFolderOnDisk(OnServer("tree/nothing in it")));
    EXPECT_EQ(lastJob.counters.files, static_cast<int>(files.size()));
    EXPECT_EQ(lastJob.counters.failures, 0);
    EXPECT_TRUE(console.Boxes().empty());
    EXPECT_TRUE(view.ServerErrors().empty());
    EXPECT_STREQ(site->pszCurrentDir.get(), kUploads);
    EXPECT_EQ(transfer.closed, 1);
    ASSERT_EQ(transfer.listed.size(), 1u);
    EXPECT_STREQ(transfer.listed[0]->name.get(), "tree");
}

TEST_P(UploadTree, TextGoesInAsciiModeAndTheRestAsItIs) {
    gZarn.mode.useModeMapping = 1;
    FTobject type;
    type.pszType = OwnedText::Copy(".zztext");
    type.TransferMode[0] = 'A';
    ASSERT_TRUE(RegSaveFileType({&type, kModeChanged}));
    RememberExtension(".zztext");
    gZarn.mode.mode = 'I';
    const std::string text = "first line\r\nsecond line\r\n\r\nlast line\r\n";
    local.Write("mixed/notes.zztext", text);
    local.Write("mixed/lamp.exe", text);
    EXPECT_EQ(Drop({"mixed"}), 3);
    std::string converted = text;
    std::erase(converted, '\r');
    ExpectOnServer("mixed/notes.zztext", GetParam().convertsLineEnds ? converted : text);
    ExpectOnServer("mixed/lamp.exe", text);
    EXPECT_EQ(transfer.modes, "IA");
}

TEST_P(UploadTree, TargetOfADropReceivesAndTheSessionIsBackWhereItWas) {
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    target = kUploads;
    local.Write("a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(Drop({"a.txt", "dir"}), 3);
    ExpectOnServer("a.txt", "aaa");
    ExpectOnServer("dir/b.txt", "bbb");
    EXPECT_STREQ(site->pszCurrentDir.get(), "/docs");
    EXPECT_TRUE(transfer.listed.empty());
    EXPECT_EQ(Open("/docs"), FTP_COMPLETE);
}

TEST_P(UploadTree, SecondDropFillsTheFolderThatIsThere) {
    local.Write("dir/a.txt", "aaa");
    EXPECT_EQ(Drop({"dir"}), 2);
    local.Write("dir/a.txt", "changed");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(Drop({"dir"}), 3);
    ExpectOnServer("dir/a.txt", "changed");
    ExpectOnServer("dir/b.txt", "bbb");
    EXPECT_TRUE(console.Boxes().empty());
}

TEST_P(UploadTree, FolderThatMayNotBeWrittenIsToldOnceAndTheSessionGoesOn) {
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    local.Write("dir/a.txt", "aaa");
    Drop({"dir"});
    EXPECT_FALSE(IsFolderOnDisk("/docs/dir"));
    EXPECT_EQ(console.Boxes().size() + view.ServerErrors().size(), 1u);
    EXPECT_EQ(lastJob.counters.failures, 1);
    EXPECT_EQ(lastJob.counters.files, 0);
    EXPECT_STREQ(site->pszCurrentDir.get(), "/docs");
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
    EXPECT_EQ(Drop({"dir"}), 2);
    ExpectOnServer("dir/a.txt", "aaa");
}

TEST_P(UploadTree, WhatWasSentComesBackTheSame) {
    const std::string bytes = SomeBytes(200'000);
    local.Write("back/deeper/data.bin", bytes);
    local.Write("back/empty.bin", "");
    EXPECT_EQ(Drop({"back"}), 4);
    ASSERT_EQ(Open(OnServer("back")), FTP_COMPLETE);
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
    const LocalFolder fresh;
    Select({"back"});
    EXPECT_EQ(ReceiveSelection(), 4);
    EXPECT_TRUE(fresh.Read("back/deeper/data.bin") == bytes);
    EXPECT_EQ(fresh.Read("back/empty.bin"), "");
}

// The servers' own folder of links serves as a local one. Under Wine a link without a target is a file that cannot be
// opened; natively it is nothing.
TEST_P(UploadTree, LinkedFilesAreSentAndLinkedFoldersPassedOver) {
    gTrace.verbose = true;  // passed over: a line on the console
    for (int i = 0; i < 10; ++i) console.AnswerNext(BoxAnswer::Ignore);
    DropPaths({DiskPath("/pub/links")});
    int files = 0;
    int folders = 0;
    for (const DiskEntry* entry : DiskFolder("/pub/links")) {
        const std::string sent = OnServer("links/" + entry->Name());
        EXPECT_FALSE(IsFolderOnDisk(sent)) << sent;
        if (IsFolderOnDisk(entry->path)) ++folders;
        if (!IsFileOnDisk(entry->path)) continue;
        ++files;
        EXPECT_TRUE(DiskBytes(sent) == DiskBytes(entry->path)) << sent << " differs";
    }
    EXPECT_GT(files, 0);
    EXPECT_GT(folders, 0);
    EXPECT_EQ(console.CountLines("is a link to another folder and was skipped."), folders);
    Run("remove", [&] {
        char reply[kReplySize] = "";
        for (const std::string& name : NamesOnDisk(OnServer("links"))) {
            DoDELE(site, OnServer("links/" + name).c_str(), reply);
        }
        DoRMD(site, OnServer("links").c_str(), reply);
    });
}

TEST_P(UploadTree, ListShowsTheNamesThatTheServerChose) {
    gZarn.SENDUNIQUE = 1;
    local.Write("unique.txt", "one");
    EXPECT_EQ(Drop({"unique.txt"}), 1);
    EXPECT_EQ(Drop({"unique.txt"}), 1);
    Names listed;
    for (const LVobjectPtr& entry : transfer.listed) listed.emplace_back(entry->name.c_str());
    std::sort(listed.begin(), listed.end());
    Names fresh;
    const Names now = NamesOnDisk(kUploads);
    std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(fresh));
    EXPECT_EQ(listed, fresh);
    EXPECT_EQ(fresh.size(), 2u);
    Run("remove", [&] {
        char reply[kReplySize] = "";
        for (const std::string& name : fresh) DoDELE(site, OnServer(name).c_str(), reply);
    });
}

TEST_P(UploadTree, ReceivedFileBearsTheListedTime) {
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    ASSERT_NE(Listed("notes.txt"), nullptr);
    const FileTime listed = Listed("notes.txt")->time;
    Select({"notes.txt"});
    const LocalFolder fresh;
    ASSERT_EQ(ReceiveSelection(), 1);
    platform::FileInfo info;
    ASSERT_TRUE(platform::GetFileInfo(fresh.PathOf("notes.txt").c_str(), info));
    EXPECT_EQ(info.writeTime, listed);
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
}

}  // namespace
