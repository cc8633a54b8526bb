#include "ftp/worker/site_status.h"

#include <mutex>
#include <utility>

namespace {

// One for all sites: it is held for the time of a short copy.
std::mutex gStatusLock;

void ReplaceSessionDirectory(Site& site, OwnedText directory) {
    // The old text is freed after the lock is released.
    const std::lock_guard guard(gStatusLock);
    std::swap(site.pszCurrentDir, directory);
}

}  // namespace

SiteStatus StatusOf(const Site& site) {
    const std::lock_guard guard(gStatusLock);
    SiteStatus status;
    status.connected = site.bConnected != 0;
    status.currentDirectory = site.pszCurrentDir.view();
    status.hostType = site.dwCurType;
    if (site.pSock != nullptr) status.peer = site.pSock->PeerName;
    return status;
}

void SetConnected(Site& site, bool connected) {
    site.bConnected = connected ? 1 : 0;
}

void SetSessionDirectory(Site& site, std::string_view directory) {
    ReplaceSessionDirectory(site, OwnedText::Copy(directory));
}

void ForgetSessionDirectory(Site& site) {
    ReplaceSessionDirectory(site, OwnedText());
}

void SetHostType(Site& site, std::uint32_t hostType) {
    const std::lock_guard guard(gStatusLock);
    site.dwCurType = hostType;
}

void SetPeerName(Site& site, std::string_view address) {
    const std::lock_guard guard(gStatusLock);
    char(&field)[65] = site.pSock->PeerName;
    field[address.copy(field, sizeof field - 1)] = '\0';
}
