// Listing commands into a local file (RFC 959, section 4.1.3). Reading the file back is listing/listing_driver.h.
#pragma once

#include <atomic>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"

// Runs a listing command into the listing dump file, beeps off; failures are shown.
int DoDirList(Site* site, const char* listCommand, ReplyBuffer reply);
// DoDirList for LIST and NLST, an ordinary command otherwise; results of 100 and more divided by 100.
int LIST(Site* site, const char* listCommand);
// Lists one remote directory into a named local file; 0 when nothing was listed.
int ListContentsByName(Site* site, const char* directory, const char* dumpFile, ReplyBuffer reply,
                       const std::atomic<bool>& abort);
