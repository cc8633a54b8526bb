// Finds the server's host type from its replies to HELP and SYST (RFC 959, section 4.1), for servers whose welcome
// does not show it. Not a step of the log-in: the listing driver asks when it cannot read any line of a listing.
#pragma once

#include <cstdint>
#include <string_view>

#include "config/site.h"

// Asks the server and sets the site's effective host type (only when the configured one is 7000) and its capabilities.
// The result of the HELP exchange: FTP_COMPLETE, 214 for a site configured as Solaris, which is not asked, or the
// failure.
int ReadProcessHelp(Site* site);
// Runs ReadProcessHelp once per connection for a site of type 7000 that is still of no known type. True when a type was
// found, so a listing is worth parsing again. The loss of the server is reported to the user.
bool DetectUnreadableHost(Site* site);

// --- The decisions, without a server. ---
struct HelpVerdict {
    std::uint32_t hostType;
    bool askSyst;
};
HelpVerdict HostTypeOfHelp(std::string_view help);
// The type that a SYST reply names; 7001 when it names none that is known.
std::uint32_t HostTypeOfSyst(std::string_view reply);
// True for a reply to HELP that came on the control connection and is no refusal.
bool IsHelpReply(std::string_view reply);
