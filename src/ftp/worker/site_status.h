// What the windows may know of a site's session at any time: connected or not, current directory, the server's kind
// and address.
// The session changes these facts through the functions below only; the windows read the copy that StatusOf makes,
// never the site's own texts, which may be replaced under them. Flags of the whole program are session_state.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "config/site.h"

struct SiteStatus {
    bool connected = false;
    std::string currentDirectory;  // empty while unknown
    std::string peer;              // dotted address of the server; empty before the first connection
    std::uint32_t hostType = 0;    // dwCurType: kind of server, see config/host_types.h
};
// From any thread.
SiteStatus StatusOf(const Site& site);

// By the thread that runs the site's operation, or that has just stopped it.
void SetConnected(Site& site, bool connected);
// `directory` may be the site's own text.
void SetSessionDirectory(Site& site, std::string_view directory);
// The next operation that needs a directory changes to it again.
void ForgetSessionDirectory(Site& site);
// The kind of server that the session has found, or was told.
void SetHostType(Site& site, std::uint32_t hostType);
// Cut to the field. `site` has a connection block.
void SetPeerName(Site& site, std::string_view address);
