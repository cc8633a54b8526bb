// This computer's name and address. Other hosts' addresses are host_lookup.h.
#pragma once

// Names the local host at start-up and finds its first address (messages 6021, 6022, 7082, 7125). False when the name
// does not resolve: traced and shown; the first control connection then supplies the address.
bool GetLocalInfo(const char* socketLibrary);
// Lower-cased name of this computer, for titles; empty before GetLocalInfo.
const char* LocalHostName();
