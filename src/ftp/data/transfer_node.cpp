#include "ftp/data/transfer_node.h"

void Zarn_FreeTransferNode(TransferNode* node) {
    delete node;
}
