// Maps a source path below a starting folder onto the matching path below the destination folder.
#pragma once

#include <string>

#include "ftp/data/transfer_node.h"

// The first "/" or "\" in the path, or 0.
char GetDelimiter(const char* path);
// Cut a path in place at its last separator.
// Quirk: a separator in first place is never found, so "/x" stays, kept.
void SetUnixPathToParent(std::string& path);
void SetNtPathToParent(std::string& path);
// Sets node.pszDestination and node.iRetCode. False when the location does not lie below the starting folder. On a
// download every component that comes from the server is made a safe local name.
bool Zarn_GetDestination(const char* localStart, const char* remoteStart, TransferNode& node, bool upload);
