#include "transfer/local_names.h"

#include <algorithm>
#include <cstdio>

#include "foundation/display_name.h"
#include "foundation/path_join.h"
#include "foundation/text_compare.h"
#include "platform/files.h"
#include "platform/utf8.h"

namespace {

// Longest name that every file system accepts, in bytes.
constexpr std::size_t kLongestName = 255;
// An extension longer than this is not kept when a name is cut.
constexpr std::size_t kLongestKeptExtension = 32;
constexpr char kReplacement = '~';

bool IsForbidden(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F || std::string_view("/\\:<>\"|?*").find(character) != std::string_view::npos;
}

// Multi-byte characters that are invisible or reverse the writing direction ("txt.exe" is shown as "exe.txt").
struct HiddenRange {
    std::string_view first, last;
};
constexpr HiddenRange kHidden[] = {
    {"\xC2\x80", "\xC2\x9F"},          // control characters
    {"\xE2\x80\x8B", "\xE2\x80\x8F"},  // zero width, direction marks
    {"\xE2\x80\xA8", "\xE2\x80\xAE"},  // line separators, direction overrides
    {"\xE2\x81\xA6", "\xE2\x81\xA9"},  // direction isolates
};

// Length in bytes of the hidden character at the start of `text`, or 0.
std::size_t HiddenLength(std::string_view text) {
    for (const HiddenRange& range : kHidden) {
        const std::string_view front = text.substr(0, range.first.size());
        if (front.size() == range.first.size() && front >= range.first && front <= range.last) return front.size();
    }
    return 0;
}

std::string ReplaceForbidden(std::string_view name) {
    std::string result;
    result.reserve(name.size());
    while (!name.empty()) {
        const std::size_t hidden = HiddenLength(name);
        result += hidden > 0 || IsForbidden(name.front()) ? kReplacement : name.front();
        name.remove_prefix(std::max<std::size_t>(hidden, 1));
    }
    return result;
}

// Position of the extension's dot; the length of the name when there is no extension.
std::size_t ExtensionStart(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name.size() : dot;
}

void StripDotsAndBlanks(std::string& name) {
    StripTrailing(name, ". ");
    if (name.empty()) name = kReplacement;
}

std::string CutKeepingExtension(std::string_view name, std::size_t longest) {
    if (name.size() <= longest) return std::string(name);
    std::string_view extension = name.substr(ExtensionStart(name));
    if (extension.size() > kLongestKeptExtension || extension.size() >= longest) extension = {};
    std::string fitted(platform::CutUtf8(name.substr(0, name.size() - extension.size()), longest - extension.size()));
    fitted += extension;
    StripDotsAndBlanks(fitted);
    return fitted;
}

// The part of a name that can mean a device: up to the first dot, without the blanks before it.
std::string DeviceStem(std::string_view name) {
    std::string stem = AsciiLower(name.substr(0, name.find('.')));
    StripTrailing(stem, " ");
    return stem;
}

// "1" to "9"; Windows also accepts superscript one to three.
bool IsPortNumber(std::string_view text) {
    if (text.size() == 1) return text[0] >= '1' && text[0] <= '9';
    return text == "\xC2\xB9" || text == "\xC2\xB2" || text == "\xC2\xB3";
}

}  // namespace

bool IsDeviceName(std::string_view name) {
    const std::string stem = DeviceStem(name);
    for (const std::string_view device : {"con", "prn", "aux", "nul", "conin$", "conout$"}) {
        if (stem == device) return true;
    }
    const std::string_view port = std::string_view(stem).substr(0, 3);
    return (port == "com" || port == "lpt") && IsPortNumber(std::string_view(stem).substr(3));
}

std::string SafeLocalName(std::string_view remoteName) {
    std::string name = ReplaceForbidden(DisplayName(remoteName));
    StripDotsAndBlanks(name);
    // Cut first: the shorter name may be a device's.
    name = FitName(name, kLongestName);
    if (!IsDeviceName(name)) return name;
    name.insert(name.begin(), kReplacement);
    return FitName(name, kLongestName);
}

std::string FitName(std::string_view name, std::size_t longest) {
    if (name.size() <= longest) return std::string(name);
    std::string fitted = CutKeepingExtension(name, longest);
    if (!IsDeviceName(fitted)) return fitted;
    // The cut can leave a device's name: "con", many blanks, "x.txt".
    return CutKeepingExtension(kReplacement + fitted, longest);
}

std::string ConvertCase(std::string_view name, int caseConversion) {
    if (caseConversion == 1) return AsciiUpper(name);
    if (caseConversion == 2) return AsciiLower(name);
    return std::string(name);
}

std::string BoundedLocalPath(std::string_view folder, std::string_view safeName) {
    std::string path = JoinLocalPath(folder, safeName);
    return path.size() <= platform::kLongestPath ? path : std::string();
}

std::string NumberedName(std::string_view name, int number) {
    char mark[24];
    std::snprintf(mark, sizeof mark, " (%d)", number);
    const std::size_t extension = ExtensionStart(name);
    return std::string(name.substr(0, extension)) + mark + std::string(name.substr(extension));
}
