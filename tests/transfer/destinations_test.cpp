#include "transfer/destinations.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ftp/worker/result_codes.h"
#include "platform/files.h"

namespace {

// A local path with the separator of the system that the test runs on.
std::string Local(std::string path) {
    std::replace(path.begin(), path.end(), '\\', platform::kPathSeparator);
    return path;
}

struct Result {
    bool done;
    int code;
    std::string destination;
    bool operator==(const Result&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Result& result) {
    return out << result.done << " " << result.code << " " << result.destination;
}

Result Map(const char* localStart, const char* remoteStart, const char* location, bool upload) {
    TransferNode node;
    if (location != nullptr) node.pszLocation = OwnedText::Copy(location);
    const bool done = Zarn_GetDestination(localStart, remoteStart, node, upload);
    return {done, node.iRetCode, node.pszDestination.c_str()};
}
Result Download(const char* localStart, const char* remoteStart, const char* location) {
    return Map(localStart, remoteStart, location, false);
}
Result Mapped(const std::string& destination) {
    return {true, FTP_COMPLETE, destination};
}

TEST(Destination, DownloadBelowTheStart) {
    EXPECT_EQ(Mapped(Local("C:\\in\\a\\b")), Download(Local("C:\\in").c_str(), "/pub", "/pub/a/b"));
}

TEST(Destination, UploadBelowTheStart) {
    EXPECT_EQ(Mapped("/home/u/x"), Map("C:\\src", "/home/u", "C:\\src\\x", true));
    EXPECT_EQ(Mapped("/x/y"), Map("C:\\src", "/", "C:\\src\\x\\y", true));
}

TEST(Destination, LocationEqualToTheStartGivesTheRootItself) {
    EXPECT_EQ(Mapped("C:\\in"), Download("C:\\in", "/pub", "/pub"));
    EXPECT_EQ(Mapped("/home/u"), Map("C:\\src", "/home/u", "C:\\src", true));
}

TEST(Destination, RemoteStartWithoutASeparatorFailsAlways) {
    EXPECT_FALSE(Download("C:\\in", "pub", "pub").done);
    EXPECT_FALSE(Download("C:\\in", "pub", "pub/a").done);
    EXPECT_FALSE(Map("C:\\src", "home", "C:\\src\\x", true).done);
}

TEST(Destination, MissingPathsFailWithACode) {
    EXPECT_EQ((Result{false, FTP_ERROR, ""}), Download("", "/pub", "/pub/a"));
    EXPECT_EQ((Result{false, FTP_ERROR, ""}), Download("C:\\in", "", "/pub/a"));
    EXPECT_EQ((Result{false, FTP_ERROR, ""}), Download(nullptr, "/pub", "/pub/a"));
    EXPECT_EQ((Result{false, FTP_ERROR, ""}), Download("C:\\in", "/pub", nullptr));
    EXPECT_EQ((Result{false, FTP_ERROR, ""}), Download("C:\\in", "/pub", ""));
}

TEST(Destination, LocationElsewhereFails) {
    EXPECT_FALSE(Download("C:\\in", "/pub", "/p").done);
    EXPECT_FALSE(Download("C:\\in", "/pub", "/etc/passwd").done);
    EXPECT_FALSE(Download("C:\\in", "/pub", "/Pub/a").done);
    EXPECT_FALSE(Download("C:\\in", "/pub", "/pub/").done);
}

TEST(Destination, RootsWithTheirSeparatorAreNotDoubled) {
    EXPECT_EQ(Mapped(Local("C:\\a")), Download(Local("C:\\").c_str(), "/", "/a"));
    EXPECT_EQ(Mapped(Local("C:\\in\\a")), Download(Local("C:\\in").c_str(), "/", "/a"));
}

TEST(Destination, ServerWithBackslashes) {
    EXPECT_EQ(Mapped(Local("C:\\in\\a\\b")), Download(Local("C:\\in").c_str(), "\\pub", "\\pub\\a\\b"));
    EXPECT_EQ(Mapped("\\home\\x\\y"), Map("C:\\src", "\\home", "C:\\src\\x/y", true));
}

TEST(Destination, ComponentsFromTheServerAreMadeSafe) {
    EXPECT_EQ(Mapped(Local("C:\\in\\~\\~\\x")), Download(Local("C:\\in").c_str(), "/pub", "/pub/../../x"));
    EXPECT_EQ(Mapped(Local("C:\\in\\..~..~x")), Download(Local("C:\\in").c_str(), "/pub", "/pub/..\\..\\x"));
    EXPECT_EQ(Mapped(Local("C:\\in\\C~x\\~nul")), Download(Local("C:\\in").c_str(), "/pub", "/pub/C:x/nul"));
    EXPECT_EQ(Mapped(Local("C:\\in\\~\\x")), Download(Local("C:\\in").c_str(), "\\pub", "\\pub\\..\\x"));
    EXPECT_EQ(Mapped(Local("C:\\in\\~\\x")), Download(Local("C:\\in").c_str(), "\\pub", "\\pub\\../x"));
}

TEST(Destination, DoubledSeparatorsNameNothing) {
    EXPECT_EQ(Mapped(Local("C:\\in\\a\\b")), Download(Local("C:\\in").c_str(), "/pub", "/pub//a//b"));
}

TEST(Delimiter, FirstOfTheTwo) {
    EXPECT_EQ('/', GetDelimiter("/a\\b"));
    EXPECT_EQ('\\', GetDelimiter("C:\\a/b"));
    EXPECT_EQ('\0', GetDelimiter("abc"));
    EXPECT_EQ('\0', GetDelimiter(""));
    EXPECT_EQ('\0', GetDelimiter(nullptr));
}

std::string UnixParent(std::string path) {
    SetUnixPathToParent(path);
    return path;
}
std::string NtParent(std::string path) {
    SetNtPathToParent(path);
    return path;
}

TEST(ParentPath, CutAtTheLastSeparator) {
    EXPECT_EQ("/usr/lib", UnixParent("/usr/lib/x"));
    EXPECT_EQ("/usr/lib", UnixParent("/usr/lib/"));
    EXPECT_EQ("C:\\a", NtParent("C:\\a\\b"));
    EXPECT_EQ("C:", NtParent("C:\\a"));
    EXPECT_EQ("a/b", NtParent("a/b"));
}

TEST(ParentPath, SeparatorInFirstPlaceIsNeverFound) {
    EXPECT_EQ("/x", UnixParent("/x"));
    EXPECT_EQ("/", UnixParent("/"));
    EXPECT_EQ("\\x", NtParent("\\x"));
    EXPECT_EQ("", UnixParent(""));
    EXPECT_EQ("x", UnixParent("x"));
}

}  // namespace
