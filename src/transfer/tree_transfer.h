// Downloads a remote folder and all below it: depth first, in the server's listing order.
#pragma once

#include <atomic>

#include "ftp/transfer_node.h"

bool TransferRemoteTree(TransferNode* node, const char* localStart, const char* remoteStart, std::atomic<bool>& abort);
