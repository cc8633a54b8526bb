// Links: name and target out of a listed text, the target's path, its line in the listing of its folder.
#include <string>

#include "fuzz/harness.h"
#include "fuzz/input_file.h"
#include "listing/symlinks.h"

namespace {

constexpr std::size_t kLongestLinkName = 263;

void CheckEntryName(const LVobject& link) {
    const std::string_view whole = link.name.view();
    const std::string_view name = EntryName(link);
    REQUIRE_THAT(whole.starts_with(name) && (whole.empty() || !name.empty()));
    REQUIRE_THAT(name == whole || whole.substr(name.size()).starts_with(kLinkArrow));
}

void CheckSplitText(std::string_view text, const std::string& name, const std::string& target) {
    REQUIRE_THAT(!name.empty() && name.size() <= kLongestLinkName);
    REQUIRE_THAT(text.starts_with(name) && text.ends_with(target));
    if (name.size() < kLongestLinkName) REQUIRE_THAT(name + std::string(kLinkArrow) + target == text);
}

void CheckPath(std::string_view folder, std::string_view target, const std::string& path) {
    REQUIRE_THAT(path.size() <= folder.size() + 1 + target.size());
    if (target.starts_with("/")) REQUIRE_THAT(path == target);
    if (folder.starts_with("/")) REQUIRE_THAT(path.starts_with("/"));
    std::string parent, name;
    SplitLinkPath(path, parent, name);
    REQUIRE_THAT(name.find('/') == std::string::npos);
    REQUIRE_THAT(path.ends_with(name) && path.starts_with(parent));
    REQUIRE_THAT(parent.empty() == (path.find('/') == std::string::npos));
}

// The target is looked for in a listing; what is found takes the link's name.
void CheckTargetLine(SymLinkItem& item, std::string_view listing, bool isFolder, LVobject& link) {
    static const InputFile dump;
    if (!ParseLinkFromFile(dump.Fill(listing), &item, isFolder)) return;
    REQUIRE_THAT(item.object != nullptr && item.object->name);
    const std::string_view key = isFolder ? item.pszLinkedName.view() : item.pszLinkPath.view();
    REQUIRE_THAT(item.object->name.view().starts_with(key));
    const std::uint32_t type = item.object->type;
    REQUIRE_THAT(ApplyLinkTarget(item, &link));
    REQUIRE_THAT(link.name && link.type == type && link.fileType != nullptr);
}

}  // namespace

// One byte for the kind of target and what the server said, then up to a line feed each the link's folder and its
// text, then a listing.
void FuzzLinkTarget(std::string_view input) {
    FuzzInput from(input);
    const std::uint8_t choice = from.Byte();
    const std::string folder(from.TextUntil('\n'));
    const LVobjectPtr link(AllocateLVobject(nullptr));
    link->type = kKindLink;
    link->name = OwnedText::Copy(from.TextUntil('\n'));
    CheckEntryName(*link);
    LinkTargetOf(choice % 2 == 0 ? 550 : 4, from.Rest());

    const std::string text(link->name.view());
    std::string name, target;
    const bool split = SplitLinkText(text, name, target);
    REQUIRE_THAT(split == (LastLinkArrow(text) != std::string_view::npos));
    if (!split) return;
    CheckSplitText(text, name, target);
    const std::string path = AbsoluteLinkTarget(folder, target);
    CheckPath(folder, target, path);

    SymLinkItemPtr item(new SymLinkItem());
    std::string targetFolder, linkedName;
    SplitLinkPath(path, targetFolder, linkedName);
    item->pszLinkPath = OwnedText::Copy(target);
    item->pszLinkedName = OwnedText::Copy(linkedName);
    item->targetFolder = OwnedText::Copy(targetFolder);
    CheckTargetLine(*item, from.Rest(), choice % 4 < 2, *link);
}
