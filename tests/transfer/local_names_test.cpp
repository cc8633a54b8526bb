#include "transfer/local_names.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/system.h"
#include "platform/utf8.h"

namespace {

struct Row {
    const char* remote;
    const char* local;
};

TEST(SafeLocalName, OrdinaryNamesStay) {
    for (const char* name : {"a.txt", "README", ".bashrc", "two words.tar.gz", " leading",
                             "Gr\xC3\xBC\xC3\x9F"
                             "e.txt",
                             "\xE6\x97\xA5\xE6\x9C\xAC", "a~b", "100%", "%n%s", "-rf", "com", "com10", "console.txt",
                             "lpt", "nulls", "x.con", "...a"}) {
        EXPECT_EQ(name, SafeLocalName(name));
    }
}

TEST(SafeLocalName, NothingLeadsOutOfTheFolder) {
    const Row rows[] = {{"..\\..\\x", "..~..~x"},
                        {"../../etc/passwd", "..~..~etc~passwd"},
                        {"/etc/passwd", "~etc~passwd"},
                        {"\\\\server\\share", "~~server~share"},
                        {"C:x", "C~x"},
                        {"C:\\x", "C~~x"},
                        {"a:b", "a~b"},
                        {"file::$DATA", "file~~$DATA"},
                        {".", "~"},
                        {"..", "~"},
                        {"...", "~"},
                        {". .", "~"},
                        {"", "~"},
                        {" ", "~"},
                        {"/", "~"},
                        {"a/", "a~"},
                        {"..\\", "..~"}};
    for (const Row& row : rows) EXPECT_EQ(row.local, SafeLocalName(row.remote)) << row.remote;
}

TEST(SafeLocalName, CharactersThatNoNameMayHoldAreReplaced) {
    EXPECT_EQ("a~b~c~d~e~f~g", SafeLocalName("a<b>c\"d|e?f*g"));
    EXPECT_EQ("red~[31m~~", SafeLocalName("red\x1B[31m\x7F\x01"));
    EXPECT_EQ("a~b", SafeLocalName("a\tb"));
}

TEST(SafeLocalName, CharactersThatHideWhatANameIsAreReplaced) {
    EXPECT_EQ("photo~gpj.exe", SafeLocalName("photo\xE2\x80\xAEgpj.exe"));
    EXPECT_EQ("a~b", SafeLocalName("a\xC2\x85"
                                   "b"));
    EXPECT_EQ("a~b", SafeLocalName("a\xE2\x80\x8B"
                                   "b"));
}

TEST(SafeLocalName, TrailingDotsAndBlanksGo) {
    EXPECT_EQ("name", SafeLocalName("name. . ."));
    EXPECT_EQ("name.txt", SafeLocalName("name.txt   "));
    EXPECT_EQ("name.", SafeLocalName("name.~").substr(0, 5));
}

TEST(SafeLocalName, DeviceNamesGetATildeInFront) {
    const Row rows[] = {{"con", "~con"},
                        {"CON", "~CON"},
                        {"con.txt", "~con.txt"},
                        {"Nul.tar.gz", "~Nul.tar.gz"},
                        {"aux", "~aux"},
                        {"prn.", "~prn"},
                        {"com1.txt", "~com1.txt"},
                        {"LPT9", "~LPT9"},
                        {"nul .txt", "~nul .txt"},
                        {"conin$", "~conin$"},
                        {"CONOUT$.x", "~CONOUT$.x"},
                        {"com\xC2\xB9.txt", "~com\xC2\xB9.txt"},
                        {"con. ", "~con"}};
    for (const Row& row : rows) EXPECT_EQ(row.local, SafeLocalName(row.remote)) << row.remote;
}

TEST(SafeLocalName, LongNamesKeepTheirExtensionAndNoCharacterIsSplit) {
    const std::string safe = SafeLocalName(std::string(296, 'n') + ".txt");
    EXPECT_LE(safe.size(), 255u);
    EXPECT_GE(safe.size(), 200u);
    EXPECT_EQ(".txt", safe.substr(safe.size() - 4));
    std::string umlauts;
    for (int i = 0; i < 200; ++i) umlauts += "\xC3\xBC";
    const std::string cut = SafeLocalName("x" + umlauts);
    EXPECT_LE(cut.size(), 255u);
    EXPECT_TRUE(platform::IsValidUtf8(cut));
    EXPECT_LE(SafeLocalName("a." + std::string(400, 'e')).size(), 255u);
}

TEST(FitName, CuttingBringsNoDeviceNameToLight) {
    const std::string name = SafeLocalName("con" + std::string(100, ' ') + "x.txt");
    EXPECT_EQ("con" + std::string(100, ' ') + "x.txt", name);
    for (std::size_t longest = 12; longest <= name.size(); ++longest) {
        const std::string fitted = FitName(name, longest);
        EXPECT_FALSE(IsDeviceName(fitted)) << longest;
        EXPECT_LE(fitted.size(), longest);
        EXPECT_EQ(".txt", fitted.substr(fitted.size() - 4));
    }
}

TEST(SafeLocalName, BytesThatAreNotUtf8BecomeText) {
    const std::string safe = SafeLocalName("caf\xE9.txt");
    EXPECT_TRUE(platform::IsValidUtf8(safe));
    EXPECT_EQ(".txt", safe.substr(safe.size() - 4));
    EXPECT_TRUE(platform::IsValidUtf8(SafeLocalName("\xFF\xFE\xC3")));
}

TEST(SafeLocalName, ASafeNameIsItsOwnSafeName) {
    for (const char* name : {"..\\..\\x", "con.txt", "a:b", "name. .", "\xFF\xFE", "", "com1"}) {
        const std::string safe = SafeLocalName(name);
        EXPECT_EQ(safe, SafeLocalName(safe)) << name;
    }
    for (const std::string& name : {"con." + std::string(300, 'x'), "nul" + std::string(300, ' ') + "x.txt"}) {
        const std::string cut = SafeLocalName(name);
        EXPECT_EQ('~', cut.front());
        EXPECT_EQ(cut, SafeLocalName(cut));
        EXPECT_LE(cut.size(), 255u);
    }
}

// Every name of up to two bytes, and every byte in the middle of a name.
TEST(SafeLocalName, NoByteEverYieldsAnUnsafeName) {
    const auto check = [](const std::string& remote) {
        const std::string safe = SafeLocalName(remote);
        ASSERT_FALSE(safe.empty());
        ASSERT_EQ(std::string::npos, safe.find_first_of("/\\:<>\"|?*"));
        ASSERT_NE('.', safe.back());
        ASSERT_NE(' ', safe.back());
        for (const char c : safe) ASSERT_GE(static_cast<unsigned char>(c), 0x20);
    };
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) check({static_cast<char>(a), static_cast<char>(b)});
        check(std::string("con") + static_cast<char>(a));
        check(std::string("x") + static_cast<char>(a) + "y");
    }
}

TEST(DeviceName, OnlyTheSystemsOwn) {
    for (const char* name : {"con", "NUL", "aux.x.y", "com9", "lpt1", "prn .txt"})
        EXPECT_TRUE(IsDeviceName(name)) << name;
    for (const char* name : {"", "co", "cons", "com", "com0", "com12", "xcon", ".con", "lptx"})
        EXPECT_FALSE(IsDeviceName(name)) << name;
}

TEST(CaseConversion, NoneUpperLower) {
    EXPECT_EQ("ReadMe.Txt", ConvertCase("ReadMe.Txt", 0));
    EXPECT_EQ("README.TXT", ConvertCase("ReadMe.Txt", 1));
    EXPECT_EQ("readme.txt", ConvertCase("ReadMe.Txt", 2));
    EXPECT_EQ("Gr\xC3\xBC\xC3\x9F", ConvertCase("Gr\xC3\xBC\xC3\x9F", 3));
}

TEST(LocalPath, FolderAndNameAreJoinedOnce) {
    const std::string separator(1, platform::kPathSeparator);
    EXPECT_EQ("in" + separator + "a", BoundedLocalPath("in", "a"));
    EXPECT_EQ("in/a", BoundedLocalPath("in/", "a"));
    EXPECT_EQ("C:\\a", BoundedLocalPath("C:\\", "a"));
    EXPECT_EQ("", BoundedLocalPath(std::string(200, 'd'), std::string(100, 'n')));
}

TEST(NumberedName, NumberStandsBeforeTheExtension) {
    EXPECT_EQ("name (2).txt", NumberedName("name.txt", 2));
    EXPECT_EQ("name (13)", NumberedName("name", 13));
    EXPECT_EQ(".bashrc (2)", NumberedName(".bashrc", 2));
    EXPECT_EQ("a.tar (2).gz", NumberedName("a.tar.gz", 2));
}

}  // namespace
