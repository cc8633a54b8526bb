#include "listing/symlinks.h"

#include <new>

#include "config/file_types.h"
#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_expansion.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/text_marker.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_connection.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/site_status.h"
#include "listing/dump_reader.h"
#include "listing/line_tokens.h"
#include "listing/temporary_dump.h"
#include "listing/unix_parser.h"

namespace {

constexpr std::size_t kLinkNameBuffer = 264;
constexpr std::string_view kChainSeparator = " : ";

bool ServerIsGone(const Site* site, int result) {
    return result == SOCKET_ERROR || result == FTP_CLOSE || !HasControlSocket(site);
}

// When the way back fails, the server's folder is unknown: the current folder is forgotten, so the next operation
// changes to its own. After a stop nothing is sent, because nobody would read the reply.
void ReturnToCurrentFolder(Site* site) {
    static constexpr char kFuncName[] = "GetFtpLinkInfo";
    char reply[kReplySize] = "";
    if (!StopRequested() && DoCWD(site, site->pszCurrentDir.get(), reply, false) == FTP_COMPLETE) return;
    DbgVsprintf(kFuncName, "ERROR. Can't go back to %s", site->pszCurrentDir.c_str());
    ForgetSessionDirectory(*site);
}

bool ListInto(Site* site, const std::string& listCommand, const char* dumpFile, int& lastResult) {
    const QuietBeeps quiet;
    char reply[kReplySize] = "";
    lastResult = RetrieveFile(site, reply, listCommand.c_str(), dumpFile, 'A', gSession.transferAbort);
    if (lastResult == FTP_COMPLETE) return true;
    DoPrintIdArgs(MSG_DIR_LIST_RETURNED, static_cast<unsigned>(lastResult));
    return false;
}

bool ListTargetsFolder(Site* site, const SymLinkItem& item, const char* dumpFile, int& lastResult) {
    char reply[kReplySize] = "";
    lastResult = DoCWD(site, item.targetFolder.c_str(), reply, false);
    const bool listed = lastResult == FTP_COMPLETE && ListInto(site, "LIST", dumpFile, lastResult);
    ReturnToCurrentFolder(site);
    return listed;
}

bool Replace(OwnedText& field, std::string_view text) {
    field = OwnedText::Copy(text);
    return static_cast<bool>(field);
}

// Names the next target in the item: `link` lies in item.linkFolder.
bool NameTarget(SymLinkItem& item, std::string_view link) {
    std::string name, target;
    if (!SplitLinkText(link, name, target)) return false;
    const std::string chain = item.chain
                                  ? std::string(item.chain.view()) + std::string(kChainSeparator) + std::string(link)
                                  : std::string(link);
    std::string targetFolder, linkedName;
    SplitLinkPath(AbsoluteLinkTarget(item.linkFolder.view(), target), targetFolder, linkedName);
    if (Replace(item.chain, chain) && Replace(item.pszLinkPath, target) && Replace(item.pszLinkedName, linkedName) &&
        Replace(item.targetFolder, targetFolder)) {
        return true;
    }
    ShowNoMemoryError();
    return false;
}

// One step along the chain.
bool FollowHop(Site* site, SymLinkItem& item, std::string_view link, int& lastResult) {
    const std::string text(link);  // a copy: `link` may belong to the target that is freed below
    if (!NameTarget(item, text)) return false;
    Zarn_FreeLVobject(item.object);
    item.object = nullptr;
    if (!GetFtpLinkInfo(site, &item, lastResult)) return false;
    ++item.hops;
    return true;
}

void TakeIfThere(OwnedText& from, OwnedText& to) {
    if (from) to = std::move(from);
}

bool StartsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

enum class LineSays { Nothing, Found, Failure };

LineSays ParseTargetLine(std::string_view line, std::string_view key, LVobject* object) {
    if (!BuildItemFromUnixStr(SkipLeadingNumbers(line), object)) return LineSays::Failure;
    const std::string_view name = object->name.view();
    if (!StartsWith(name, key)) return LineSays::Nothing;
    if (name == key) return LineSays::Found;
    // Quirk: a link whose name only begins like the target is taken for it, kept.
    return object->type == kKindLink && Contains(name, kLinkArrow) ? LineSays::Found : LineSays::Nothing;
}

}  // namespace

bool SplitLinkText(std::string_view text, std::string& name, std::string& target) {
    static constexpr char kFuncName[] = "Zarn_ResolveSymLink";
    const std::size_t arrow = LastLinkArrow(text);
    if (arrow == std::string_view::npos) return false;
    target = text.substr(arrow + kLinkArrow.size());
    name = FormatBounded(kFuncName, kLinkNameBuffer, "%s", std::string(text.substr(0, arrow)).c_str());
    return true;
}

std::string AbsoluteLinkTarget(std::string_view folder, std::string_view target) {
    if (StartsWith(target, "/")) return std::string(target);
    if (StartsWith(target, "./")) return std::string(folder) + std::string(target.substr(1));
    if (StartsWith(target, "../")) {
        // Quirk: "../x" is "//x" in the root and "/x" in every other folder, however deep, kept.
        const std::string rest(target.substr(2));
        return folder == "/" ? std::string(folder) + rest : rest;
    }
    return std::string(folder) + "/" + std::string(target);
}

void SplitLinkPath(std::string_view path, std::string& folder, std::string& name) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        folder.clear();
        name = path;
        return;
    }
    name = path.substr(slash + 1);
    folder = slash == 0 ? "/" : path.substr(0, slash);
}

LinkTarget LinkTargetOf(int result, std::string_view reply) {
    static constexpr TextMarker<LinkTarget> kMarkers[] = {
        {"not a directory", LinkTarget::File},
        {"no such file", LinkTarget::File},
        // A folder that may not be entered is still a folder.
        {"permission denied", LinkTarget::Folder},
        {"permission", LinkTarget::Folder},
        {"access", LinkTarget::Folder},
        {"denied", LinkTarget::Folder},
        {"cannot print", LinkTarget::Unknown},
    };
    if (result >= 100 && result <= 599) result /= 100;
    if (result == FTP_COMPLETE) return LinkTarget::Folder;
    return MeaningOf(AsciiLower(reply), kMarkers, LinkTarget::File);
}

bool ParseLinkFromFile(const char* file, SymLinkItem* item, bool isFolder) {
    DumpReader reader;
    if (item == nullptr || !reader.Open("ParseLinkFromFile", file)) return false;
    if (item->object == nullptr) item->object = AllocateLVobject(nullptr);
    if (item->object == nullptr) return false;
    const std::string_view key = isFolder ? item->pszLinkedName.view() : item->pszLinkPath.view();
    std::string_view line;
    while (reader.NextLine(line)) {
        if (!Contains(line, item->pszLinkedName.view())) continue;
        const LineSays says = ParseTargetLine(line, key, item->object);
        if (says != LineSays::Nothing) return says == LineSays::Found;
        if (gSession.transferAbort) break;
    }
    return false;
}

bool GetFtpLinkInfo(Site* site, SymLinkItem* item, int& lastResult) {
    static constexpr char kFuncName[] = "GetFtpLinkInfo";
    lastResult = FTP_ERROR;
    if (site == nullptr || item == nullptr || item->pszLinkedName.empty() || item->targetFolder.empty() ||
        item->pszLinkPath.empty() || StopRequested()) {
        return false;
    }
    const TemporaryDump dump(nullptr);
    if (dump.Name() == nullptr) return false;

    char reply[kReplySize] = "";
    lastResult = DoCWD(site, item->pszLinkPath.c_str(), reply, false);
    if (ServerIsGone(site, lastResult)) return false;
    const LinkTarget target = LinkTargetOf(lastResult, reply);
    DbgVsprintf(kFuncName, "(%s) %s", item->pszLinkPath.c_str(), target == LinkTarget::Folder ? "Folder" : "File");
    switch (target) {
        case LinkTarget::Folder:
            return ListTargetsFolder(site, *item, dump.Name(), lastResult) &&
                   ParseLinkFromFile(dump.Name(), item, true);
        case LinkTarget::File: {
            const std::string list = "LIST " + DoublePercents(item->pszLinkPath.view());
            return ListInto(site, list, dump.Name(), lastResult) && ParseLinkFromFile(dump.Name(), item, false);
        }
        case LinkTarget::Unknown:
            break;
    }
    return false;
}

SymLinkItemPtr Zarn_ResolveSymLink(Site* site, const char* folder, const LVobject* entry, int& lastResult) {
    static constexpr char kFuncName[] = "Zarn_ResolveSymLink";
    lastResult = FTP_ERROR;
    if (site == nullptr || folder == nullptr || entry == nullptr || entry->type != kKindLink ||
        LastLinkArrow(entry->name.view()) == std::string_view::npos) {
        return nullptr;
    }
    SymLinkItemPtr item(new (std::nothrow) SymLinkItem());
    if (!item || !Replace(item->linkFolder, folder)) {
        ShowNoMemoryError();
        return nullptr;
    }
    const LVobject* link = entry;
    while (item->hops < kMostLinkHops) {
        if (!FollowHop(site, *item, link->name.view(), lastResult)) {
            DbgVsprintf(kFuncName, "ERROR. Returning NULL");
            return nullptr;
        }
        link = item->object;
        if (link->type != kKindLink) break;
        if (!Replace(item->linkFolder, item->targetFolder.view())) return nullptr;
    }
    DbgVsprintf(kFuncName, "Returning %x. (%s: Link Count:%d)", TraceAddress(item.get()), item->chain.c_str(),
                static_cast<int>(item->hops));
    return item;
}

bool ApplyLinkTarget(SymLinkItem& item, LVobject* entry) {
    std::string name, target;
    if (item.object == nullptr || entry == nullptr || !SplitLinkText(entry->name.view(), name, target)) return false;
    if (!Replace(entry->name, name)) {
        ShowNoMemoryError();
        return false;
    }
    LVobject& found = *item.object;
    TakeIfThere(found.mode, entry->mode);
    TakeIfThere(found.owner, entry->owner);
    TakeIfThere(found.group, entry->group);
    TakeIfThere(found.dateText, entry->dateText);
    entry->links = found.links;
    entry->size = found.size;
    entry->sizeText.reset();
    entry->time = found.time;
    entry->type = found.type;
    entry->fileType = FileTypeOf(name, IsFolderKind(entry->type));
    return true;
}
