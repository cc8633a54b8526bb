// Opening a site's control connection and logging in (RFC 959, sections 5.4 and 6): directly, anonymously or through a
// gateway, with retries. Runs on the worker; texts go to the console, questions through the session view.
#pragma once

#include <atomic>

#include "config/site.h"
#include "platform/sockets.h"

// Resolves, creates the control socket and connects it. `service` is a name or a decimal port.
bool Zarn_ConnectSite(Site* site, const char* service, const char* protocol);
// One attempt with the whole log-in.
bool DoConnect2(Site* site);
// At most gZarn.port.retries + 1 attempts.
bool DoConnect(Site* site);
// Closes what is open and connects again.
bool Zarn_ReConnect(Site* site);
// Connects a site that is not connected and settles its current remote directory and path separator.
bool Zarn_HandleConnect(Site* site);
// The connect command: status texts, connecting flag, first directory into the tree.
void Zarn_IdmConnect(Site* site);

enum class CloseHow { Receive = 0, Send = 1, Both = 2, None = 3 };
// Closes a socket and returns kNoSocket for the caller to store.
platform::Socket DoClose(platform::Socket socket, CloseHow how);
// The same for a stored socket: takes it out first, so that two threads cannot close it twice. True when it was open.
bool CloseStoredSocket(std::atomic<platform::Socket>& stored, CloseHow how);
// Closes without order: the peer sees a reset, and nothing waits for bytes that are still to be sent.
void AbandonStoredSocket(std::atomic<platform::Socket>& stored);

// The host type that a welcome text names; `configured` unless that is 7000.
std::uint32_t DetectHostType(std::uint32_t configured, const char* welcome);
// "\" when the first directory is written with backslashes only, else "/".
char RemoteSeparator(const char* firstDirectory);
// Names the local host at start-up and finds its first address (messages 6021, 6022, 7082, 7125). False when the name
// does not resolve: traced and shown; the first control connection then supplies the address.
bool GetLocalInfo(const char* socketLibrary);
// Lower-cased name of this computer, for titles; empty before GetLocalInfo.
const char* LocalHostName();
