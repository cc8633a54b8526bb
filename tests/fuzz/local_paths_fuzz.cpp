// Local paths made from remote names: nothing a server sends may lead out of the chosen folder or name a device.
#include <algorithm>
#include <string>

#include "ftp/worker/result_codes.h"
#include "fuzz/harness.h"
#include "platform/files.h"
#include "transfer/destinations.h"
#include "transfer/local_names.h"

namespace {

constexpr std::size_t kLongestName = 255;

// The device rule in this test's own words: the name up to its first dot, without blanks before it, in any case.
bool MeansDevice(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    while (!stem.empty() && stem.back() == ' ') stem.pop_back();
    for (char& c : stem) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    static constexpr std::string_view kPlain[] = {"con", "prn", "aux", "nul", "conin$", "conout$"};
    if (std::find(std::begin(kPlain), std::end(kPlain), stem) != std::end(kPlain)) return true;
    if (!stem.starts_with("com") && !stem.starts_with("lpt")) return false;
    static constexpr std::string_view kNumbers[] = {"1", "2", "3", "4",        "5",        "6",
                                                    "7", "8", "9", "\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};
    return std::find(std::begin(kNumbers), std::end(kNumbers), stem.substr(3)) != std::end(kNumbers);
}

void CheckName(std::string_view name) {
    REQUIRE_THAT(!name.empty() && name != "." && name != "..");
    REQUIRE_THAT(name.find_first_of("/\\:<>\"|?*") == std::string_view::npos);
    REQUIRE_THAT(std::none_of(name.begin(), name.end(),
                              [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }));
    REQUIRE_THAT(name.back() != '.' && name.back() != ' ');
    REQUIRE_THAT(!MeansDevice(name));
    REQUIRE_THAT(IsUtf8(name));
}

// The path is the folder and one name below it.
void CheckPath(const std::string& path, std::string_view folder) {
    REQUIRE_THAT(path.size() <= platform::kLongestPath);
    REQUIRE_THAT(std::string_view(path).starts_with(folder));
    std::string_view rest = std::string_view(path).substr(folder.size());
    if (folder.back() != platform::kPathSeparator) {
        REQUIRE_THAT(rest.starts_with(platform::kPathSeparator));
        rest.remove_prefix(1);
    }
    CheckName(rest);
}

void CheckJoined(std::string_view folder, std::string_view name) {
    const std::string path = BoundedLocalPath(folder, name);
    if (path.empty()) {
        REQUIRE_THAT(folder.size() + 1 + name.size() > platform::kLongestPath);
    } else {
        CheckPath(path, folder);
    }
}

// Every component that a download put below its root.
void CheckDestination(std::string_view destination, std::string_view root) {
    REQUIRE_THAT(destination.starts_with(root));
    FuzzInput rest(destination.substr(root.size()));
    if (rest.AtEnd()) return;
    if (root.back() != platform::kPathSeparator) REQUIRE_THAT(rest.Byte() == platform::kPathSeparator);
    while (!rest.AtEnd()) CheckName(rest.TextUntil(platform::kPathSeparator));
}

std::string WithOneSeparator(std::string_view path, char separator) {
    std::string text(path);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '/' || c == '\\'; }, separator);
    return text;
}

}  // namespace

// One byte for the length that a name is cut to, one for a number, then the name that the server sent.
void FuzzLocalPath(std::string_view input) {
    FuzzInput from(input);
    const std::size_t longest = 12 + from.Byte() % 244u;
    const int number = from.Byte() * 40;
    const std::string_view remote = from.Rest();
    const std::string name = SafeLocalName(remote);
    CheckName(name);
    REQUIRE_THAT(name.size() <= kLongestName);
    REQUIRE_THAT(SafeLocalName(name) == name);
    REQUIRE_THAT(IsDeviceName(remote) == MeansDevice(remote));

    const std::string numbered = NumberedName(name, number);
    CheckName(numbered);
    const std::string fitted = FitName(name, longest);
    CheckName(fitted);
    REQUIRE_THAT(fitted.size() <= longest);
    for (const int caseConversion : {1, 2}) {
        CheckName(SafeLocalName(ConvertCase(remote, caseConversion)));
    }
    const std::string deep = "/" + std::string(longest, 'f');
    for (const std::string_view folder : {std::string_view("/in"), std::string_view("/"), std::string_view(deep)}) {
        CheckJoined(folder, name);
        CheckJoined(folder, numbered);
        CheckJoined(folder, fitted);
    }
}

// One byte for the direction and the local root, the two starting points up to a line feed each, the location.
void FuzzDestination(std::string_view input) {
    FuzzInput from(input);
    const std::uint8_t choice = from.Byte();
    const bool upload = choice % 2 == 1;
    const std::string localStart = choice % 4 < 2 ? "/in" : choice % 8 < 4 ? "/" : "/in/deep/";
    const std::string remoteStart(from.TextUntil('\n'));
    const std::string start = upload ? localStart : std::string(remoteStart.c_str());
    TransferNode node;
    // Half of the inputs are made to lie below the starting point, so that the mapping is tried.
    const std::string location = choice % 16 < 8 ? start + std::string(from.Rest()) : std::string(from.Rest());
    node.pszLocation = OwnedText::Copy(location);
    if (!Zarn_GetDestination(localStart.c_str(), remoteStart.c_str(), node, upload)) {
        REQUIRE_THAT(!node.pszDestination);
        return;
    }
    REQUIRE_THAT(node.iRetCode == FTP_COMPLETE);
    REQUIRE_THAT(node.pszLocation.view().starts_with(start));
    const std::string_view destination = node.pszDestination.view();
    if (!upload) {
        CheckDestination(destination, localStart);
    } else {
        const std::string root = WithOneSeparator(remoteStart.c_str(), '/');
        REQUIRE_THAT(WithOneSeparator(destination, '/').starts_with(root));
    }
}
