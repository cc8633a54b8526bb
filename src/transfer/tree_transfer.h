// Downloads a remote folder and all below it: depth first, in the server's listing order.
#pragma once

#include <atomic>

#include "ftp/data/transfer_node.h"

bool TransferRemoteTree(TransferNode* node, const char* localStart, const char* remoteStart, std::atomic<bool>& abort);
