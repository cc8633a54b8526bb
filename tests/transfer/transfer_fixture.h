// A connected site on the scripted server, a local folder to receive into, the recording views and a job that this
// thread runs: the ground for every test of a whole transfer.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "config/settings.h"
#include "ftp/data/transfer_node.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "platform/files.h"
#include "support/bounded_wait.h"
#include "support/local_folder.h"
#include "support/recording_transfer_view.h"
#include "support/session_harness.h"
#include "transfer/transfer_job.h"

class TransferTest : public testing::Test {
  protected:
    TransferTest() {
        gZarn.mode.mode = 'I';
        site = harness.ConnectedSite();
        NewJob(TransferStart::ListSelection);
    }
    ~TransferTest() override { SetTransferAbort(false); }

    // A transfer that has done nothing yet, with the local folder current.
    void NewJob(TransferStart start) {
        job = TransferJob();
        job.site = site;
        job.start = start;
        job.currentLocalFolder = platform::CurrentFolder();
    }
    TransferNode NodeFor(const char* location, const char* name, std::uint32_t type = kNodeFile) {
        TransferNode node;
        node.pszLocation = OwnedText::Copy(location);
        node.pszRemoteName = OwnedText::Copy(name);
        node.pszDestination = OwnedText::Copy(local.Path());
        node.NodeType = type;
        return node;
    }
    bool Sent(const std::string& commandLine) {
        const std::vector<std::string> commands = harness.server.Commands();
        return std::find(commands.begin(), commands.end(), commandLine) != commands.end();
    }
    // As the dialog's Abort does: ends the call that the transfer waits in, not the ones that follow.
    static void AbortAsTheUserDoes() {
        const std::uint32_t call = BlockingCallNumber();
        SetTransferAbort(true);
        test_support::WaitUntil([call] {
            const bool waits = call != 0 && BlockingCallNumber() == call;
            if (waits) CancelBlockingCall();
            return !waits;
        });
    }
    using Names = std::vector<std::string>;

    SessionHarness harness;
    LocalFolder local;
    RecordingTransferView view;
    Site* site;
    TransferJob job;
    const RunningJobScope running{job};
    // The flag that the program uses.
    const std::atomic<bool>& abort = gSession.transferAbort;
};
