// Local temporary files that listings and replies are received into before they are read back.
#pragma once

#include <string>

#include "foundation/owned_text.h"
#include "platform/files.h"

// Path of a new file in the temporary folder, named from `prefix` (null: "TMP"); null on failure.
// Prefixes in use: "DCON", "PRP", "HLP", "XFER".
OwnedText Zarn_GetTmpFileName(const char* prefix);
// Opens a dump file; kNoFile with error 87 for a missing name. A writer replaces what an older listing left.
platform::FileHandle GetDumpFileHandle(const char* traceContext, const char* fileName, platform::FileAccess access);
// The file that listings of the current folder are received into; made at first use, the same for the whole run.
const char* ListingDumpFile();
// Deletes it (after reading, and at shut-down).
void DeleteListingDumpFile();
