#include <algorithm>

#include "config/settings.h"
#include "foundation/text_compare.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_send.h"
#include "ftp/errors/server_error.h"
#include "ftp/worker/session_state.h"
#include "integration/upload_fixture.h"

namespace {

using Names = std::vector<std::string>;

class Upload : public UploadFixture {
  protected:
    // Runs one remote command on the worker; its reply is in `reply` afterwards.
    template <class Command>
    int Do(Command command) {
        int result = 0;
        reply.assign(kReplySize, '\0');
        Run("command", [&] { result = command(ReplyBuffer(reply)); });
        return result;
    }
    int Make(const std::string& name) {
        return Do([&](ReplyBuffer text) { return DoMKD(site, name.c_str(), text); });
    }
    int RemoveFolder(const std::string& name) {
        return Do([&](ReplyBuffer text) { return DoRMD(site, name.c_str(), text); });
    }
    int Delete(const std::string& name) {
        return Do([&](ReplyBuffer text) { return DoDELE(site, name.c_str(), text); });
    }
    int Rename(const std::string& from, const std::string& to) {
        return Do([&](ReplyBuffer text) { return DoRename(site, text, from.c_str(), to.c_str()); });
    }
    // Stores a file of the local folder in the session's current one.
    bool Send(const std::string& name, const std::string& bytes, char type = 'I') {
        local.Write(name, bytes);
        node.pszLocalName = OwnedText::Copy(name);
        node.pszLocation = OwnedText::Copy(local.Path());
        node.pszDestination = OwnedText::Copy(kUploads);
        node.NodeType = kNodeFile;
        bool sent = false;
        Do([&](ReplyBuffer text) {
            sent = DlgSendFile(site, node, text, type, gSession.transferAbort);
            return 0;
        });
        return sent;
    }
    Names NewNames() const {
        Names names;
        const Names now = NamesOnDisk(kUploads);
        std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(names));
        return names;
    }

    TransferNode node;
    std::string reply;
};
FOR_EVERY_SERVER(Upload);

TEST_P(Upload, StoredFilesAreOnTheServersDiskByteForByte) {
    gZarn.SENDUNIQUE = 0;
    const std::vector<std::pair<std::string, std::string>> files = {
        {"empty.bin", ""},
        {"one.bin", "!"},
        {"big.bin", SomeBytes(3 * 1024 * 1024 + 7)},
        {"100%s 50%n done.bin", SomeBytes(2048)},
        {"Grüße 灯台 🗼.bin", SomeBytes(8096)},
        {"blanks  in  it.bin", SomeBytes(2049)},
    };
    for (const auto& [name, bytes] : files) {
        EXPECT_TRUE(Send(name, bytes)) << name << ": " << reply;
        EXPECT_EQ(node.iRetCode, FTP_COMPLETE) << name;
        EXPECT_TRUE(DiskBytes(OnServer(name)) == bytes) << name << " differs";
    }
    EXPECT_EQ(NewNames().size(), files.size());
    for (const auto& [name, bytes] : files) EXPECT_EQ(Delete(name), FTP_COMPLETE) << name;
    EXPECT_TRUE(console.Boxes().empty());
}

TEST_P(Upload, WhatWasSentIsListedAndComesBackTheSame) {
    gZarn.SENDUNIQUE = 0;
    const std::string bytes = SomeBytes(100'000);
    ASSERT_TRUE(Send("round %% trip 100%.bin", bytes));
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
    ASSERT_NE(Listed("round %% trip 100%.bin"), nullptr);
    EXPECT_EQ(Listed("round %% trip 100%.bin")->size, bytes.size());
    Select({"round %% trip 100%.bin"});
    const LocalFolder fresh;
    EXPECT_EQ(ReceiveSelection(), 1);
    EXPECT_TRUE(fresh.Read("round %% trip 100%.bin") == bytes);
    EXPECT_EQ(Delete("round %% trip 100%.bin"), FTP_COMPLETE);
}

TEST_P(Upload, SecondStoreReplacesTheFirst) {
    gZarn.SENDUNIQUE = 0;
    ASSERT_TRUE(Send("twice.txt", "the first and longer one"));
    ASSERT_TRUE(Send("twice.txt", "the second"));
    EXPECT_EQ(DiskBytes(OnServer("twice.txt")), "the second");
    EXPECT_EQ(NewNames(), (Names{"twice.txt"}));
    EXPECT_EQ(Delete("twice.txt"), FTP_COMPLETE);
}

TEST_P(Upload, UniqueStoreNeverReplaces) {
    gZarn.SENDUNIQUE = 1;
    ASSERT_TRUE(Send("unique.txt", "first")) << reply;
    ASSERT_TRUE(Send("unique.txt", "second")) << reply;
    const Names names = NewNames();
    ASSERT_EQ(names.size(), 2u);
    Names contents = {DiskBytes(OnServer(names[0])), DiskBytes(OnServer(names[1]))};
    std::sort(contents.begin(), contents.end());
    EXPECT_EQ(contents, (Names{"first", "second"}));
    for (const std::string& name : names) EXPECT_EQ(Delete(name), FTP_COMPLETE);
}

TEST_P(Upload, FolderThatMayNotBeWrittenIsRefusedAndTheSessionGoesOn) {
    gZarn.SENDUNIQUE = 0;
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    EXPECT_FALSE(Send("intruder.txt", "text"));
    EXPECT_TRUE(reply.starts_with("55")) << reply;
    EXPECT_NE(node.iRetCode, FTP_COMPLETE);
    EXPECT_FALSE(IsFileOnDisk("/docs/intruder.txt"));
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
    EXPECT_TRUE(Send("welcome.txt", "text"));
    EXPECT_EQ(Delete("welcome.txt"), FTP_COMPLETE);
}

TEST_P(Upload, FoldersAreMadeAndRemoved) {
    for (const std::string name : {"plain", "with blanks", "100% %s", "Größe 灯台"}) {
        EXPECT_EQ(Make(name), FTP_COMPLETE) << reply;
        EXPECT_TRUE(IsFolderOnDisk(OnServer(name))) << name;
        EXPECT_EQ(Make(name), kFileUnavailable) << reply;
        EXPECT_EQ(RemoveFolder(name), FTP_COMPLETE) << reply;
        EXPECT_FALSE(IsFolderOnDisk(OnServer(name))) << name;
        EXPECT_EQ(RemoveFolder(name), kFileUnavailable) << reply;
    }
}

TEST_P(Upload, FolderThatIsNotEmptyStays) {
    gZarn.SENDUNIQUE = 0;
    ASSERT_EQ(Make("full"), FTP_COMPLETE);
    ASSERT_EQ(Open(OnServer("full")), FTP_COMPLETE);
    ASSERT_TRUE(Send("inside.txt", "text"));
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
    EXPECT_EQ(RemoveFolder("full"), kFileUnavailable) << reply;
    EXPECT_EQ(DiskBytes(OnServer("full/inside.txt")), "text");
    EXPECT_EQ(Delete("full/inside.txt"), FTP_COMPLETE);
    EXPECT_EQ(RemoveFolder("full"), FTP_COMPLETE);
}

TEST_P(Upload, DeletingWhatIsMissingOrProtectedIsClassFive) {
    EXPECT_EQ(Delete("no-such-file.txt"), FTP_ERROR) << reply;
    EXPECT_EQ(Delete("/docs/notes.txt"), FTP_ERROR) << reply;
    EXPECT_TRUE(IsFileOnDisk("/docs/notes.txt"));
}

TEST_P(Upload, FilesAndFoldersAreRenamed) {
    gZarn.SENDUNIQUE = 0;
    ASSERT_TRUE(Send("old.txt", "text"));
    EXPECT_EQ(Rename("old.txt", "neu & größer 100%.txt"), FTP_COMPLETE) << reply;
    EXPECT_FALSE(IsFileOnDisk(OnServer("old.txt")));
    EXPECT_EQ(DiskBytes(OnServer("neu & größer 100%.txt")), "text");
    ASSERT_EQ(Make("folder"), FTP_COMPLETE);
    EXPECT_EQ(Rename("neu & größer 100%.txt", "folder/moved.txt"), FTP_COMPLETE) << reply;
    EXPECT_EQ(Rename("folder", "other folder"), FTP_COMPLETE) << reply;
    EXPECT_EQ(DiskBytes(OnServer("other folder/moved.txt")), "text");
    EXPECT_EQ(Delete("other folder/moved.txt"), FTP_COMPLETE);
    EXPECT_EQ(RemoveFolder("other folder"), FTP_COMPLETE);
}

TEST_P(Upload, RenamingWhatIsMissingIsTold) {
    EXPECT_EQ(Rename("no-such-file.txt", "new.txt"), kFileUnavailable) << reply;
    bool renamed = true;
    Run("RenameRemoteItem", [&] { renamed = RenameRemoteItem(site, "no-such-file.txt", "new.txt"); });
    EXPECT_FALSE(renamed);
    ASSERT_EQ(view.ServerErrors().size(), 1u);
    EXPECT_EQ(view.ServerErrors()[0].operation, kOperationRenameFile);
    EXPECT_TRUE(view.ServerErrors()[0].reply.starts_with("550"));
}

TEST_P(Upload, RefusedFolderIsTold) {
    bool made = true;
    Run("MakeRemoteDirectory", [&] { made = MakeRemoteDirectory(site, "/docs/new"); });
    EXPECT_FALSE(made);
    EXPECT_FALSE(IsFolderOnDisk("/docs/new"));
    ASSERT_EQ(view.ServerErrors().size(), 1u);
    EXPECT_EQ(view.ServerErrors()[0].operation, kOperationMakeDirectory);
    EXPECT_TRUE(view.ServerErrors()[0].reply.starts_with("550"));
}

// A folder is made only when the server says in so many words that it does not exist.
TEST_P(Upload, MissingFolderIsMadeWhereTheServerSaysSo) {
    EXPECT_EQ(Do([&](ReplyBuffer text) { return DoCWD(site, OnServer("fresh").c_str(), text, false); }),
              kFileUnavailable);
    const bool saysMissing = AsciiLower(reply.c_str()).find("no such file or directory") != std::string::npos;
    const int expected = saysMissing ? FTP_COMPLETE : kFileUnavailable;
    EXPECT_EQ(Do([&](ReplyBuffer) { return ChkForRdir(site, "fresh", true, kUploads); }), expected) << reply;
    EXPECT_EQ(IsFolderOnDisk(OnServer("fresh")), saysMissing);
    EXPECT_EQ(site->pszCurrentDir.view(), saysMissing ? OnServer("fresh") : kUploads);
    // vsftpd alone has other words.
    EXPECT_EQ(saysMissing, GetParam().knowsNamedUser);
    ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
    EXPECT_EQ(RemoveFolder("fresh"), saysMissing ? FTP_COMPLETE : kFileUnavailable);
}

TEST_P(Upload, FolderThatIsThereIsEnteredNotMade) {
    EXPECT_EQ(Do([&](ReplyBuffer) { return ChkForRdir(site, "history", true, "/docs"); }), FTP_COMPLETE);
    EXPECT_STREQ(site->pszCurrentDir.get(), "/docs/history");
}

}  // namespace
