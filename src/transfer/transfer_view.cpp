#include "transfer/transfer_view.h"

TransferView gTransferView;
