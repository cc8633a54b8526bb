#include "transfer/drop_transfer.h"

#include "ftp/remote_commands.h"
#include "ftp/result_codes.h"
#include "platform/files.h"
#include "transfer/local_tree_transfer.h"
#include "transfer/transfer_fixture.h"

namespace {

class DropTransfer : public TransferTest {
  protected:
    DropTransfer() {
        gZarn.SENDUNIQUE = 0;
        harness.server.AddFolder("/up");
        char reply[kReplySize] = "";
        DoCWD(site, "/up", reply, true);
        harness.server.ForgetCommands();
    }
    int Drop(const Names& names) {
        view.dropped.clear();
        for (const std::string& name : names) view.dropped.push_back(local.PathOf(name));
        return Zarn_TransferDropFiles(abort);
    }
    std::string Stored(const std::string& name) { return harness.server.FileBytes("/up/" + name); }
    Names ListedNames() {
        Names names;
        for (const LVobjectPtr& entry : view.listed) names.emplace_back(entry->name.c_str());
        return names;
    }
};

TEST_F(DropTransfer, FileAndFolderOfOneFolderLandInTheCurrentRemoteFolder) {
    local.Write("a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(3, Drop({"a.txt", "dir"}));
    EXPECT_EQ("aaa", Stored("a.txt"));
    EXPECT_EQ("bbb", Stored("dir/b.txt"));
    EXPECT_EQ("2 Files Transfered,  1 Folders Created", view.counters.back());
    EXPECT_EQ((Names{"a.txt", "dir"}), ListedNames());
    EXPECT_EQ(1, view.shown);
    EXPECT_EQ(1, view.closed);
    EXPECT_FALSE(abort);
    EXPECT_TRUE(harness.console.Boxes().empty());
}

}  // namespace
