#include "listing/entry_properties.h"

#include <new>
#include <string>

#include "config/file_types.h"
#include "config/host_types.h"
#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/data/remote_listing.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/dump_reader.h"
#include "listing/line_parser.h"
#include "listing/line_tokens.h"
#include "listing/lost_connection.h"
#include "listing/nt_parser.h"
#include "listing/temporary_dump.h"
#include "listing/unix_parser.h"

namespace {

Site* SiteOf(const FtpProp& prop) {
    return prop.site != nullptr ? prop.site : gSession.activeSite.load();
}

bool IsLocal(const char* caller, const Site* site) {
    if (site != nullptr && site->dwCurType != HOST_TYPE_LOCAL) return false;
    // The misspelling is part of the text.
    DbgVsprintf(caller, "WANING. nHostType == HOST_TYPE_LOCAL. Returning FALSE");
    return true;
}

// Path of a node's parent folder; for a root its own name.
OwnedText HoldingPath(const TVobject* node) {
    if (node == nullptr) return {};
    return TV_GetPath(IsRootKind(node->wObjType) ? node : node->pTVparent);
}

// Prepares the record for one entry of the folder `location`.
bool Describe(FtpProp* prop, Site* site, std::string_view name, std::uint32_t type, OwnedText location) {
    prop->site = site;
    prop->name = OwnedText::Copy(name);
    prop->location = std::move(location);
    prop->type = type;
    prop->links = prop->size = 0;
    prop->folders = prop->files = prop->symbolicLinks = 0;
    prop->diskUsage = 0;
    return !prop->name.empty() && !prop->location.empty();
}

bool ParseCandidate(std::string_view line, const FtpProp& prop, ListingStyle& style, LVobject* entry) {
    if (SiteOf(prop)->dwCurType != HOST_TYPE_WINDOWS_NT) return BuildItemFromUnixStr(SkipLeadingNumbers(line), entry);
    // The first candidate decides the style for all lines, as in a listing.
    if (!style.decided && !DecideListingStyle(line, style)) {
        DbgVsprintf("ParsePropFromFile", "(%s) ERROR. BAD Line was read!!!!\n(%s)", prop.name.c_str(),
                    std::string(line.substr(0, kTextBuffer)).c_str());
        return false;
    }
    return style.isUnix ? BuildItemFromUnixStr(line, entry) : BuildItemFromNTStr(line, entry, HOST_TYPE_WINDOWS_NT);
}

// Lists the entry's folder and picks its line.
int FetchProp(const char* caller, FtpProp* prop) {
    if (prop == nullptr || prop->name.empty() || prop->location.empty()) return FTP_ERROR;
    Site* site = SiteOf(*prop);
    const TemporaryDump dump("PRP");
    if (site == nullptr || dump.Name() == nullptr) return FTP_ERROR;
    char reply[kReplySize] = "";
    const int result = ListContentsByName(site, prop->location.get(), dump.Name(), reply, gSession.transferAbort);
    if (result != FTP_COMPLETE) {
        DoPrintIdArgs(MSG_DIR_LIST_RETURNED, static_cast<unsigned>(result));
        EndLostConnection(caller, site, result, reply);
        return result;
    }
    if (prop->type == kKindSiteRoot) {
        // No listing contains a line for the root.
        prop->links = 0;
        prop->fileType = FileTypeOf(prop->name.view(), true);
        return FTP_COMPLETE;
    }
    return ParsePropFromFile(dump.Name(), prop) ? FTP_COMPLETE : FTP_ERROR;
}

}  // namespace

FtpProp* AllocateFtpProp() {
    auto* prop = new (std::nothrow) FtpProp();
    if (prop == nullptr) ShowNoMemoryError();
    return prop;
}

void Zarn_FreeFtpProp(FtpProp* prop) {
    delete prop;
}

bool SetPropFromLVobject(FtpProp* prop, LVobject* obj) {
    if (prop == nullptr || obj == nullptr || prop->name.view() != obj->name.view()) return false;
    prop->umask = std::move(obj->mode);
    prop->owner = std::move(obj->owner);
    prop->group = std::move(obj->group);
    prop->links = obj->links;
    prop->size = obj->size;
    prop->type = obj->type;
    prop->time = obj->time;
    prop->sizeText = obj->sizeText ? OwnedText::Copy(obj->sizeText.view()) : OwnedText();
    return true;
}

bool ParsePropFromFile(const char* file, FtpProp* prop) {
    static constexpr char kFuncName[] = "ParsePropFromFile";
    DumpReader reader;
    if (prop == nullptr || prop->name.empty() || SiteOf(*prop) == nullptr || !reader.Open(kFuncName, file))
        return false;
    ListingStyle style;
    std::string_view line;
    while (reader.NextLine(line)) {
        if (line.find(prop->name.view()) == std::string_view::npos) continue;
        const LVobjectPtr entry(AllocateLVobject(nullptr));
        if (!entry) return false;
        if (ParseCandidate(line, *prop, style, entry.get()) && SetPropFromLVobject(prop, entry.get())) return true;
        DbgVsprintf(kFuncName, "Continueing...");
    }
    return false;
}

int GetFtpDirProp(FtpProp* prop) {
    return FetchProp("GetFtpDirProp", prop);
}

int GetFtpFileProp(FtpProp* prop) {
    return FetchProp("GetFtpFileProp", prop);
}

int Zarn_GetLVProp(FtpProp* prop, const LVobject* entry) {
    if (prop == nullptr || entry == nullptr || entry->node == nullptr) return FTP_ERROR;
    Site* site = TV_GetFtpSite(entry->node);
    if (IsLocal("Zarn_GetLVProp", site)) return FTP_ERROR;
    const bool isFolder = IsFolderKind(entry->type);
    OwnedText location = isFolder ? HoldingPath(entry->node) : TV_GetPath(entry->node);
    if (!Describe(prop, site, entry->name.view(), entry->type, std::move(location))) return FTP_ERROR;
    prop->fileType = entry->fileType;
    return isFolder ? GetFtpDirProp(prop) : GetFtpFileProp(prop);
}

int Zarn_GetTVProp(FtpProp* prop, const TVobject* node) {
    if (prop == nullptr || node == nullptr || !IsFolderKind(node->wObjType)) return FTP_ERROR;
    Site* site = TV_GetFtpSite(node);
    if (IsLocal("Zarn_GetTVProp", site)) return FTP_ERROR;
    if (!Describe(prop, site, node->pszName.view(), node->wObjType, HoldingPath(node))) return FTP_ERROR;
    prop->fileType = FileTypeOf(node->pszName.view(), true);
    return GetFtpDirProp(prop);
}
