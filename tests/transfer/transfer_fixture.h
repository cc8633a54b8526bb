// A connected site on the scripted server, a local folder to receive into and the recording views: what every test of
// a whole transfer stands on.
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
#include "support/bounded_wait.h"
#include "support/local_folder.h"
#include "support/recording_transfer_view.h"
#include "support/session_harness.h"
#include "transfer/receive_target.h"
#include "transfer/transfer_progress.h"

class TransferTest : public testing::Test {
  protected:
    TransferTest() {
        gZarn.mode.mode = 'I';
        site = harness.ConnectedSite();
        ResetTransfer();
        ForgetReceivedFiles();
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
    // As the dialog's Abort does: ends the wait that the transfer is in, not the ones that follow.
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
    std::atomic<bool> abort{false};
};
