#include "platform/registry.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/system.h"
#include "platform/threads.h"

namespace platform_tests {
namespace {

using platform::RegistryKey;
using platform::RegistryRoot;

// A branch of its own for each process, deleted before and after each test.
class Registry : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(platform::DeleteRegistryTree(branch_)); }
    void TearDown() override { EXPECT_TRUE(platform::DeleteRegistryTree(branch_)); }

    std::string Path(const std::string& name) const { return branch_ + "\\" + name; }
    RegistryKey Create(const std::string& name) const {
        return RegistryKey::Create(RegistryRoot::CurrentUser, Path(name), nullptr);
    }
    RegistryKey Open(const std::string& name) const { return RegistryKey::Open(RegistryRoot::CurrentUser, Path(name)); }
    bool Exists(const std::string& name) const {
        return platform::RegistryKeyExists(RegistryRoot::CurrentUser, Path(name));
    }
    std::vector<std::string> Subkeys(const std::string& name) const {
        std::vector<std::string> names;
        EXPECT_TRUE(Open(name).ListSubkeys(names));
        return names;
    }

    const std::string branch_ = "Software\\ZarnPlatformTest" + std::to_string(platform::CurrentProcessId());
};

using Names = std::vector<std::string>;

TEST_F(Registry, AbsentKeysAreNotOpen) {
    const RegistryKey key = Open("none");
    EXPECT_FALSE(key.IsOpen());
    EXPECT_EQ(platform::LastSystemError(), 2u);
    EXPECT_FALSE(Exists("none"));
    EXPECT_EQ(key.ReadNumber("x"), std::nullopt);
    EXPECT_EQ(key.ReadText("x", 100), std::nullopt);
    Names names;
    EXPECT_FALSE(key.ListSubkeys(names));
}

TEST_F(Registry, CreateTellsWhetherTheKeyIsNew) {
    bool created = false;
    EXPECT_TRUE(RegistryKey::Create(RegistryRoot::CurrentUser, Path("Site"), &created).IsOpen());
    EXPECT_TRUE(created);
    EXPECT_TRUE(RegistryKey::Create(RegistryRoot::CurrentUser, Path("sITE"), &created).IsOpen());
    EXPECT_FALSE(created);
    EXPECT_TRUE(Exists("Site"));
}

TEST_F(Registry, ValuesComeBackAsWritten) {
    const std::vector<std::uint8_t> bytes = {0, 1, 254, 255};
    {
        RegistryKey key = Create("Site");
        EXPECT_EQ(key.WriteNumber("Number", 0xFFFFFFFF), 0);
        EXPECT_EQ(key.WriteText("Text", "Grüße 日本"), 0);
        EXPECT_EQ(key.WriteText("Empty", ""), 0);
        EXPECT_EQ(key.WriteText("", "default"), 0);
        EXPECT_EQ(key.WriteBytes("Bytes", bytes), 0);
        EXPECT_EQ(key.WriteBytes("None", {}), 0);
    }
    const RegistryKey key = Open("Site");
    EXPECT_EQ(key.ReadNumber("number"), 0xFFFFFFFFu);
    EXPECT_EQ(key.ReadText("TEXT", 100), "Grüße 日本");
    EXPECT_EQ(key.ReadText("Empty", 100), "");
    EXPECT_EQ(key.ReadText("", 100), "default");
    EXPECT_EQ(key.ReadBytes("Bytes", 4), bytes);
    EXPECT_EQ(key.ReadBytes("None", 4), std::vector<std::uint8_t>());
}

TEST_F(Registry, ValuesOfAnotherTypeGiveNothing) {
    RegistryKey key = Create("Site");
    key.WriteNumber("Number", 1);
    key.WriteText("Text", "abc");
    key.WriteBytes("Bytes", std::vector<std::uint8_t>{1, 2, 3, 4});
    EXPECT_EQ(key.ReadNumber("Text"), std::nullopt);
    EXPECT_EQ(key.ReadNumber("Bytes"), std::nullopt);
    EXPECT_EQ(key.ReadText("Number", 100), std::nullopt);
    EXPECT_EQ(key.ReadText("Bytes", 100), std::nullopt);
    EXPECT_EQ(key.ReadBytes("Text", 100), std::nullopt);
    EXPECT_EQ(key.ReadBytes("Number", 100), std::nullopt);
    EXPECT_EQ(key.ReadNumber("absent"), std::nullopt);
}

TEST_F(Registry, TextsLongerThanAllowedGiveNothing) {
    RegistryKey key = Create("Site");
    key.WriteText("Text", "12345");
    EXPECT_EQ(key.ReadText("Text", 6), "12345");
    EXPECT_EQ(key.ReadText("Text", 5), std::nullopt);
    key.WriteText("Wide", "ü");
    EXPECT_EQ(key.ReadText("Wide", 3), "ü");
    EXPECT_EQ(key.ReadText("Wide", 2), std::nullopt);
}

TEST_F(Registry, BytesLongerThanAllowedGiveNothing) {
    RegistryKey key = Create("Site");
    key.WriteBytes("Bytes", std::vector<std::uint8_t>(10));
    EXPECT_EQ(key.ReadBytes("Bytes", 9), std::nullopt);
    EXPECT_TRUE(key.ReadBytes("Bytes", 10).has_value());
}

TEST_F(Registry, TextsCanBeWrittenInPart) {
    RegistryKey key = Create("Site");
    EXPECT_EQ(key.WriteText("Part", "abcdef", 3), 0);
    EXPECT_EQ(key.ReadText("Part", 100), "abc");
    EXPECT_EQ(key.WriteText("Whole", "abcdef", 7), 0);
    EXPECT_EQ(key.ReadText("Whole", 100), "abcdef");
    EXPECT_EQ(key.WriteText("More", "abcdef", 500), 0);
    EXPECT_EQ(key.ReadText("More", 100), "abcdef");
}

TEST_F(Registry, DeletedValuesAreGone) {
    RegistryKey key = Create("Site");
    key.WriteNumber("Number", 1);
    EXPECT_EQ(key.DeleteValue("NUMBER"), 0);
    EXPECT_EQ(key.ReadNumber("Number"), std::nullopt);
    EXPECT_EQ(key.DeleteValue("Number"), 2);
}

TEST_F(Registry, SubkeysAreListedInAlphabeticalOrderWithoutCase) {
    for (const char* name : {"b", "C", "a", "Z", "with/slash", "with blank", "Ünder"}) Create(name);
    EXPECT_EQ(Subkeys(""), (Names{"a", "b", "C", "with blank", "with/slash", "Z", "Ünder"}));
}

TEST_F(Registry, PathsToleratedWithSuperfluousSeparators) {
    Create("Site\\Sub");
    EXPECT_TRUE(Exists("\\Site\\\\Sub\\"));
    EXPECT_TRUE(RegistryKey::Open(RegistryRoot::CurrentUser, "\\" + Path("Site")).IsOpen());
}

TEST_F(Registry, DeleteTakesTheSubkeysAlong) {
    Create("Site\\Sub\\Deep").WriteNumber("n", 1);
    EXPECT_TRUE(platform::DeleteRegistryTree(Path("site")));
    EXPECT_FALSE(Exists("Site\\Sub"));
    EXPECT_FALSE(Exists("Site"));
    EXPECT_TRUE(platform::DeleteRegistryTree(Path("Site"))) << "an absent key counts as deleted";
}

TEST_F(Registry, DeleteOfNothingDeletesNothing) {
    Create("Site");
    EXPECT_FALSE(platform::DeleteRegistryTree(""));
    EXPECT_FALSE(platform::DeleteRegistryTree("\\"));
    EXPECT_TRUE(Exists("Site"));
}

TEST_F(Registry, KeysDeletedWhileOpenRefuseWrites) {
    RegistryKey key = Create("Site");
    key.WriteNumber("n", 1);
    ASSERT_TRUE(platform::DeleteRegistryTree(Path("Site")));
    EXPECT_EQ(key.WriteNumber("n", 2), 1018);
    EXPECT_EQ(key.ReadNumber("n"), std::nullopt);
    Names names;
    EXPECT_FALSE(key.ListSubkeys(names));
}

TEST_F(Registry, MoveCarriesValuesAndSubkeys) {
    Create("Old").WriteText("Host", "ftp.example");
    Create("Old\\Sub").WriteNumber("n", 7);
    EXPECT_TRUE(platform::MoveRegistryTree(Path("Old"), Path("New")));
    EXPECT_FALSE(Exists("Old"));
    EXPECT_EQ(Open("New").ReadText("Host", 100), "ftp.example");
    EXPECT_EQ(Open("New\\Sub").ReadNumber("n"), 7u);
}

TEST_F(Registry, MoveThatChangesTheCaseOnlyFailsAndLosesNothing) {
    Create("site").WriteNumber("n", 7);
    EXPECT_FALSE(platform::MoveRegistryTree(Path("site"), Path("SITE")));
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorAlreadyExists);
    EXPECT_EQ(Subkeys(""), Names{"site"});
    EXPECT_EQ(Open("site").ReadNumber("n"), 7u);
}

TEST_F(Registry, MoveToTheSameNameChangesNothing) {
    Create("site").WriteNumber("n", 7);
    EXPECT_TRUE(platform::MoveRegistryTree(Path("site"), Path("site")));
    EXPECT_EQ(Open("site").ReadNumber("n"), 7u);
}

TEST_F(Registry, MoveOntoAnExistingKeyFailsAndLosesNothing) {
    Create("Old").WriteNumber("n", 1);
    Create("New").WriteNumber("n", 2);
    EXPECT_FALSE(platform::MoveRegistryTree(Path("Old"), Path("New")));
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorAlreadyExists);
    EXPECT_EQ(Open("Old").ReadNumber("n"), 1u);
    EXPECT_EQ(Open("New").ReadNumber("n"), 2u);
}

TEST_F(Registry, MoveBelowItselfFailsAndLosesNothing) {
    Create("Old").WriteNumber("n", 1);
    EXPECT_FALSE(platform::MoveRegistryTree(Path("Old"), Path("OLD\\Sub")));
    EXPECT_EQ(Open("Old").ReadNumber("n"), 1u);
    EXPECT_EQ(Subkeys("Old"), Names{});
}

TEST_F(Registry, MoveOfAnAbsentKeyFailsAndCreatesNothing) {
    EXPECT_FALSE(platform::MoveRegistryTree(Path("none"), Path("New")));
    EXPECT_EQ(platform::LastSystemError(), 2u);
    EXPECT_FALSE(Exists("New"));
}

TEST_F(Registry, ClassesAreASeparateRoot) {
    Create("Site");
    EXPECT_FALSE(platform::RegistryKeyExists(RegistryRoot::ClassesRoot, Path("Site")));
}

TEST_F(Registry, KeysMoveBetweenVariables) {
    RegistryKey first = Create("Site");
    RegistryKey second = std::move(first);
    EXPECT_TRUE(second.IsOpen());
    EXPECT_EQ(second.WriteNumber("n", 3), 0);
    RegistryKey third;
    third = std::move(second);
    EXPECT_EQ(third.ReadNumber("n"), 3u);
    third.Flush();
}

}  // namespace
}  // namespace platform_tests
