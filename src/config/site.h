// A site: one saved connection profile and, while it is in use, its sockets. Making, copying and freeing the record;
// checking it belongs to site_validation.h, storing it to site_store.h, connecting it to the session engine.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "foundation/file_time.h"
#include "foundation/owned_text.h"
#include "platform/sockets.h"

// Sizes of the text fields, terminators included.
inline constexpr std::size_t kSiteNameSize = 65;
inline constexpr std::size_t kUserSize = 81;
inline constexpr std::size_t kDirectorySize = 521;
inline constexpr int kInitDirCount = 5;

inline constexpr std::uint32_t kFirstPort = 21;

// A remembered initial directory; an empty path marks a free entry.
struct InitDir {
    char path[520] = {};
    std::uint32_t reserved = 0;
    FileTime lastConnect = 0;
    std::int32_t inserted = 0;  // work flag of the sort and of the tree
};

// The live connection block of a site. Written by the thread that runs the remote operation; another thread only reads
// a handle to cancel what is blocked on it.
struct SocketRecord {
    std::atomic<platform::Socket> ctrl_skt{platform::kNoSocket};    // control connection
    std::atomic<platform::Socket> data_skt{platform::kNoSocket};    // data connection in use
    std::atomic<platform::Socket> listen_skt{platform::kNoSocket};  // waits for the server's data connection
    std::uint16_t listenPort = 0;
    char PeerName[65] = {};  // dotted address of the server; once set, later connections use it
    char LocalName[65] = {};
    std::uint16_t peerPort = 0;
    std::uint16_t localPort = 0;
    // The last line came without its line feed: its rest may still be on its way.
    std::atomic<bool> lineUnfinished{false};
    char serverType = 'A';           // representation type in force on this connection (RFC 959, section 3.1.1)
    std::uint16_t detectedPort = 0;  // `localPort` of the connection on which host detection ran; once for each
    platform::Endpoint peerAddress;  // of the first connection
    std::unique_ptr<char[]> buffer;  // bytes read ahead, with `bufferLength` 0 when there is none
    std::size_t bufferLength = 0;
    std::size_t fillMark = 0;
    std::size_t readPosition = 0;
};

struct Site {
    std::unique_ptr<SocketRecord> pSock;
    OwnedText pszSessionName;  // label in the tree and key in the store
    OwnedText pszHost;
    OwnedText pszUID;
    OwnedText pszPWD;
    OwnedText pszDir;         // initial directory chosen for the site
    OwnedText pszCurrentDir;  // the session's current remote folder
    std::uint32_t dwType = 7000;
    std::uint32_t dwCurType = 7000;
    std::int32_t chSeparator = 0;  // remote path separator; not copied
    std::int32_t nInitDirSel = -1;
    std::uint32_t flagsBeforeSavePwd = 0;
    std::int32_t bSavePwd = 0;
    std::atomic<std::int32_t> bConnected{0};
    std::atomic<std::int32_t> bUseGateway{0};
    std::int32_t bAnonymous = 0;
    std::uint32_t flagsAfterAnonymous = 1;
    OwnedText pszGateHost;
    OwnedText pszGateUID;
    OwnedText pszGatePWD;
    InitDir InitDirs[kInitDirCount];
    std::uint32_t lastCommandTicks = 0;  // platform::TickCount() when the last command had been sent
    std::uint32_t capabilities = 0;      // found by host detection
};

// A new record with the defaults of a fresh site. With a name (an empty one included) it has a connection block;
// without one it is the record behind "Create New Site Folder". Null when memory is short.
Site* Zarn_CreateDefaultSite(const char* name);
// A deep copy; empty texts become absent ones. Null for a null site or when memory is short.
Site* Zarn_DupSite(const Site* site);
// Null is accepted. With `closeSockets` the open handles are closed first (listener, control, data).
void Zarn_FreeSite(Site* site, bool closeSockets);
struct SiteDeleter {
    void operator()(Site* site) const { Zarn_FreeSite(site, false); }
};
using SitePtr = std::unique_ptr<Site, SiteDeleter>;

// Copies scalars and texts of `from` into `to`, replacing its texts. False when memory ran out (`to` partly filled).
bool CopySiteStruct(const Site* from, Site* to);
