// Follows a symbolic link of a Unix listing on the server, hop by hop, to what it leads to. Runs on the worker between
// two lines of a listing; which links are followed, and what a failure costs, is the listing driver's matter.
#pragma once

#include <string>
#include <string_view>

#include "config/site.h"
#include "listing/directory_entry.h"

// Quirk: a longer chain is shown as a link, without a message, kept.
inline constexpr std::uint32_t kMostLinkHops = 4;

// Follows `entry` (of kind link, its name with the arrow), which was listed in `folder`. Null on failure. The session's
// current remote folder is what it was, or unknown when the server would not go back. `lastResult` gets the result of
// the last exchange with the server.
SymLinkItemPtr Zarn_ResolveSymLink(Site* site, const char* folder, const LVobject* entry, int& lastResult);
// Finds out whether the target is a folder or a file and lists it into item->object. Needs the target's path, its last
// component and its folder.
bool GetFtpLinkInfo(Site* site, SymLinkItem* item, int& lastResult);
// Picks the target's line from a listing of its folder (`isFolder`) or of itself.
bool ParseLinkFromFile(const char* file, SymLinkItem* item, bool isFolder);
// Gives the listed link the target's kind and attributes under the link's own name. Texts are taken out of `item`.
// False, and nothing changed, when memory is short.
bool ApplyLinkTarget(SymLinkItem& item, LVobject* entry);

// --- The decisions, without a server. ---
// The name before the last arrow, at most 263 characters, and the target behind it. False for a text without one.
bool SplitLinkText(std::string_view text, std::string& name, std::string& target);
// The target's path seen from the link's folder.
std::string AbsoluteLinkTarget(std::string_view folder, std::string_view target);
// Cuts an absolute path into its last component and the folder before it ("/" right below the root).
void SplitLinkPath(std::string_view path, std::string& folder, std::string& name);

enum class LinkTarget { Folder, File, Unknown };
// What the answer to a change into the target says of it.
LinkTarget LinkTargetOf(int result, std::string_view reply);
