// The ground for every test of a drop: a session in the server's folder /up, to which local files are sent.
#pragma once

#include "ftp/control/remote_commands.h"
#include "transfer/drop_transfer.h"
#include "transfer/transfer_fixture.h"

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
        NewJob(TransferStart::DropFiles);
        job.targetFolder = target;
        for (const std::string& name : names) job.localPaths.push_back(local.PathOf(name));
        return Zarn_TransferDropFiles(abort);
    }
    std::string Stored(const std::string& name) { return harness.server.FileBytes("/up/" + name); }
    Names ListedNames() {
        Names names;
        for (const LVobjectPtr& entry : view.listed) names.emplace_back(entry->name.c_str());
        return names;
    }

    std::string target;  // chosen by the drop
};
