#include "config/site.h"

#include <cstring>
#include <iterator>
#include <new>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/text_copy.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "platform/system.h"

namespace {

struct TextField {
    OwnedText Site::*text;
    std::size_t size;  // of an empty buffer
};
constexpr TextField kTextFields[] = {
    {&Site::pszSessionName, kSiteNameSize},
    {&Site::pszHost, kSiteNameSize},
    {&Site::pszUID, kUserSize},
    {&Site::pszPWD, kUserSize},
    {&Site::pszDir, kDirectorySize},
    {&Site::pszCurrentDir, kDirectorySize},
    {&Site::pszGateHost, kSiteNameSize},
    {&Site::pszGateUID, kUserSize},
    {&Site::pszGatePWD, kUserSize},
};
constexpr std::size_t kLongestUser = 80;

OwnedText EmptyBuffer(std::size_t size) {
    return OwnedText::Copy({}, size);
}

OwnedText DefaultUser() {
    const std::string user = platform::UserName();
    if (user.empty()) {
        DbgPrintApiError("Zarn_CreateDefaultSite", "GetUserName()", platform::LastSystemError());
        return EmptyBuffer(kUserSize);
    }
    return OwnedText::Copy(std::string_view(user).substr(0, kLongestUser), kUserSize);
}

// Copies the buffer. Quirk: the names and ports of the peers are copied only with a buffer, kept.
bool CopyReadAhead(const SocketRecord& from, SocketRecord& to) {
    if (from.bufferLength == 0 || from.buffer == nullptr) return true;
    to.buffer.reset(new (std::nothrow) char[from.bufferLength]);
    if (to.buffer == nullptr) return false;
    std::memcpy(to.buffer.get(), from.buffer.get(), from.bufferLength);
    to.bufferLength = from.bufferLength;
    to.fillMark = from.fillMark;
    // The bytes are there, but none of them is unread: the original's owner reads them.
    to.readPosition = to.fillMark;
    to.listenPort = from.listenPort;
    to.peerPort = from.peerPort;
    to.localPort = from.localPort;
    to.serverType = from.serverType;
    to.peerAddress = from.peerAddress;
    std::memcpy(to.PeerName, from.PeerName, sizeof to.PeerName);
    std::memcpy(to.LocalName, from.LocalName, sizeof to.LocalName);
    return true;
}

void CopyHandles(const SocketRecord& from, SocketRecord& to) {
    to.ctrl_skt = from.ctrl_skt.load();
    to.data_skt = from.data_skt.load();
    to.listen_skt = from.listen_skt.load();
}

void CopyScalars(const Site& from, Site& to) {
    to.bConnected = from.bConnected.load();
    to.dwType = from.dwType;
    to.dwCurType = from.dwCurType;
    to.bUseGateway = from.bUseGateway.load();
    to.bAnonymous = from.bAnonymous;
    to.flagsAfterAnonymous = from.flagsAfterAnonymous;
    to.bSavePwd = from.bSavePwd;
}

bool CopyConnection(const Site& from, Site& to) {
    if (from.pSock == nullptr) {
        DbgVsprintf("Zarn_DupSite", "WARNING. pSite->pSock is NULL");
        return true;
    }
    CopyHandles(*from.pSock, *to.pSock);
    return CopyReadAhead(*from.pSock, *to.pSock);
}

void CloseHandle(std::atomic<platform::Socket>& handle) {
    const platform::Socket socket = handle.exchange(platform::kNoSocket);
    if (socket != platform::kNoSocket) platform::CloseSocket(socket);
}

}  // namespace

Site* Zarn_CreateDefaultSite(const char* name) {
    SitePtr site(new (std::nothrow) Site);
    if (site == nullptr) return nullptr;
    if (name == nullptr) {
        site->pszSessionName = Zarn_ResString(MSG_CREATE_NEW_SITE);
    } else {
        site->pszSessionName = *name == '\0' ? EmptyBuffer(kSiteNameSize) : DupString(name);
        site->pSock.reset(new (std::nothrow) SocketRecord);
        if (site->pSock == nullptr) return nullptr;
    }
    site->pszHost = EmptyBuffer(kSiteNameSize);
    site->pszUID = DefaultUser();
    site->pszPWD = EmptyBuffer(kUserSize);
    site->pszDir = EmptyBuffer(kDirectorySize);
    site->pszCurrentDir = EmptyBuffer(kDirectorySize);
    return site.release();
}

Site* Zarn_DupSite(const Site* site) {
    if (site == nullptr) {
        DbgVsprintf("Zarn_DupSite", "ERROR. NULL Site Passed in. Returning NULL");
        return nullptr;
    }
    if (site->pszSessionName) {
        DbgVsprintf("Zarn_DupSite", "Entered. Dupping:%x:%s", TraceAddress(site), site->pszSessionName.get());
    } else {
        DbgVsprintf("Zarn_DupSite", "Entered. Dupping:%x:NULL pszSessionName", TraceAddress(site));
    }
    SitePtr copy(new (std::nothrow) Site);
    if (copy == nullptr) {
        DbgVsprintf("Zarn_DupSite", "Call to LocalAlloc(pSiteCopy) Failed. Returning NULL");
        ShowNoMemoryError();
        return nullptr;
    }
    copy->pSock.reset(new (std::nothrow) SocketRecord);
    if (copy->pSock == nullptr) {
        DbgVsprintf("Zarn_DupSite", "Call to LocalAlloc(pSiteCopy->pSock) Failed. Returning NULL");
        return nullptr;
    }
    if (!CopyConnection(*site, *copy)) return nullptr;
    CopyScalars(*site, *copy);
    copy->flagsBeforeSavePwd = site->flagsBeforeSavePwd;
    for (const TextField& field : kTextFields) {
        const OwnedText& source = site->*field.text;
        // Quirk: an empty text becomes an absent one, kept.
        if (source.empty()) continue;
        copy.get()->*field.text = OwnedText::Copy(source.view());
        if (!(copy.get()->*field.text)) return nullptr;
    }
    for (int index = 0; index < kInitDirCount; ++index) copy->InitDirs[index] = site->InitDirs[index];
    return copy.release();
}

void Zarn_FreeSite(Site* site, bool closeSockets) {
    if (site == nullptr) return;
    DbgVsprintf("Zarn_FreeSite", "Entered");
    if (closeSockets && site->pSock != nullptr) {
        CloseHandle(site->pSock->listen_skt);
        CloseHandle(site->pSock->ctrl_skt);
        CloseHandle(site->pSock->data_skt);
    }
    delete site;
}

bool CopySiteStruct(const Site* from, Site* to) {
    if (from == nullptr || to == nullptr) return false;
    if (from == to) return true;
    if (from->pSock != nullptr && to->pSock != nullptr) CopyHandles(*from->pSock, *to->pSock);
    CopyScalars(*from, *to);
    for (const TextField& field : kTextFields) (to->*field.text).reset();
    for (const TextField& field : kTextFields) {
        const OwnedText& source = from->*field.text;
        if (!source) continue;
        to->*field.text = source.empty() ? EmptyBuffer(field.size) : OwnedText::Copy(source.view());
        if (!(to->*field.text)) return false;
    }
    return true;
}
