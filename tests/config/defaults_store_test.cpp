#include "config/defaults_store.h"

#include <gtest/gtest.h>

#include "config/column_widths.h"
#include "config/connection_defaults.h"
#include "config/settings.h"
#include "config/settings_table.h"
#include "config/store_fixture.h"
#include "config/store_key.h"
#include "foundation/trace.h"
#include "support/host_registry.h"

namespace {

constexpr std::uint32_t kPlacement = 0x80000000U;

}  // namespace

class DefaultsStore : public StoreTest {
  protected:
    static std::uint32_t Number(const char* name) { return Open("Defaults").ReadNumber(name).value_or(999999); }
    static void Write(const char* name, std::uint32_t value) { Key("Defaults").WriteNumber(name, value); }
};

TEST(StoreRoot, IsTheProductsBranchOfTheUser) {
    SetStoreRoot(nullptr);
    EXPECT_EQ(StoreKeyPath("Defaults"), "Software\\Ambrel\\Corvane\\CurrentVersion\\Zarn32\\Defaults");
}

TEST_F(DefaultsStore, FreshStoreGetsTheFirstRunValuesWritten) {
    LoadConfiguration();
    EXPECT_EQ(Number("SAVEONEXIT"), 1U);
    EXPECT_EQ(Number("SENDUNIQUE"), 1U);
    EXPECT_EQ(Number("VERBOSE"), 0U);
    EXPECT_EQ(Number("nSplit"), 180U);
    EXPECT_EQ(Number("xPos"), kPlacement);
    EXPECT_EQ(Number("yPos"), kPlacement);
    EXPECT_EQ(Number("nWidth"), kPlacement);
    EXPECT_EQ(Number("nHeight"), kPlacement);
    EXPECT_EQ(Number("COLUMNS"), 4U);
    EXPECT_EQ(Number("ICONS"), 0U);
    EXPECT_EQ(Number("TIMEOUT"), 65U);
    EXPECT_EQ(Number("RETRIES"), 0U);
    EXPECT_EQ(Number("FTPPORT"), 21U);
    EXPECT_EQ(Number("PACKETSIZE"), 2048U);
    EXPECT_EQ(Number("CASE"), 0U);
    EXPECT_EQ(Number("USEMODEMAPPING"), 0U);
    EXPECT_EQ(Open("Defaults").ReadBytes("MODE", 1), std::vector<std::uint8_t>{'A'});
    EXPECT_EQ(Open("Defaults").ReadText("MAILADDR", 129), "");
    EXPECT_EQ(Open("Defaults").ReadText("LOGFILE", 127), "");
    EXPECT_FALSE(Open("Defaults").ReadText("SESSION", 64).has_value());
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(DefaultsStore, FreshStoreGivesTheSameSettingsInMemoryAndOnTheNextStart) {
    LoadConfiguration();
    const auto check = [] {
        EXPECT_EQ(gZarn.SENDUNIQUE, 1U);
        EXPECT_EQ(gZarn.VERBOSE, 0U);
        EXPECT_EQ(gZarn.ICONS, 0U);
        EXPECT_EQ(gZarn.COLUMNS, 4U);
        EXPECT_EQ(gZarn.xPos, kDefaultPlacement);
        EXPECT_EQ(gZarn.port, (PortInfo{65, 0, 21, 2048}));
        EXPECT_EQ(gZarn.mode, (ModeInfo{0, 'A', 0}));
        EXPECT_EQ(gZarn.SESSION, "");
    };
    check();
    gZarn = ZarnSettings();
    gZarn.SENDUNIQUE = 7;
    LoadConfiguration();
    check();
}

TEST_F(DefaultsStore, SessionReadFirstResetsToTheSecondSet) {
    EXPECT_EQ(GetLastSession(), "");
    EXPECT_EQ(Number("VERBOSE"), 1U);
    EXPECT_EQ(Number("SENDUNIQUE"), 0U);
    EXPECT_EQ(Number("ICONS"), 1U);
    EXPECT_EQ(Number("SAVEONEXIT"), 1U);
    EXPECT_EQ(Number("PACKETSIZE"), 2048U);
    EXPECT_EQ(Number("CASE"), 0U);
    EXPECT_EQ(gZarn.VERBOSE, 1U);
}

TEST_F(DefaultsStore, MissingValuesOfAnOldKeyReadAsTheAbsentColumn) {
    Key("Defaults");
    gZarn.MAILADDR = "left@over";
    gZarn.LOGGING = 1;
    LoadDefaults();
    EXPECT_EQ(gZarn.SAVEONEXIT, 1U);
    EXPECT_EQ(gZarn.SENDUNIQUE, 1U);
    EXPECT_EQ(gZarn.COLUMNS, 0U) << "no layout matches";
    EXPECT_EQ(gZarn.ICONS, 1U);
    EXPECT_EQ(gZarn.nSplit, 180);
    EXPECT_EQ(gZarn.xPos, kDefaultPlacement);
    EXPECT_EQ(gZarn.MAILADDR, "");
    EXPECT_EQ(gZarn.LOGGING, 0U);
    EXPECT_FALSE(Open("Defaults").ReadNumber("COLUMNS").has_value()) << "reading writes nothing into an old key";
}

TEST_F(DefaultsStore, LoggingIsOffWithoutALogFileValue) {
    Write("LOGGING", 1);
    LoadDefaults();
    EXPECT_EQ(gZarn.LOGGING, 0U);
    Key("Defaults").WriteText("LOGFILE", "c:\\zarn.log");
    LoadDefaults();
    EXPECT_EQ(gZarn.LOGGING, 1U);
    EXPECT_EQ(gZarn.LOGFILE, "c:\\zarn.log");
}

TEST_F(DefaultsStore, LogSwitchReachesTheTraceOnlyWithAFile) {
    gZarn.LOGGING = 1;
    gZarn.LOGFILE = "";
    ApplyLogSettings();
    EXPECT_FALSE(gTrace.logging);
    gZarn.LOGFILE = "zarn_never_written.log";
    ApplyLogSettings();
    EXPECT_TRUE(gTrace.logging);
    gZarn.LOGGING = 0;
    ApplyLogSettings();
    EXPECT_FALSE(gTrace.logging);
}

TEST_F(DefaultsStore, DamagedValuesReadAsAbsentOnes) {
    platform::RegistryKey key = Key("Defaults");
    key.WriteText("SAVEONEXIT", "yes");
    const std::uint8_t two[] = {1, 2};
    key.WriteBytes("nSplit", two);
    key.WriteNumber("MAILADDR", 5);
    key.WriteText("LOGFILE", std::string(127, 'x'));
    key.WriteNumber("LOGGING", 1);
    key.WriteText("SESSION", std::string(64, 's'));
    LoadConfiguration();
    EXPECT_EQ(gZarn.SAVEONEXIT, 1U);
    EXPECT_EQ(gZarn.nSplit, 180);
    EXPECT_EQ(gZarn.MAILADDR, "");
    EXPECT_EQ(gZarn.LOGFILE, "");
    EXPECT_EQ(gZarn.LOGGING, 0U);
    EXPECT_EQ(gZarn.SESSION, "");
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(DefaultsStore, TextsOfTheLongestLengthAreRead) {
    Key("Defaults").WriteText("MAILADDR", std::string(128, 'm'));
    Key("Defaults").WriteText("LOGFILE", std::string(126, 'l'));
    Key("Defaults").WriteText("SESSION", std::string(63, 's'));
    LoadConfiguration();
    EXPECT_EQ(gZarn.MAILADDR.size(), 128U);
    EXPECT_EQ(gZarn.LOGFILE.size(), 126U);
    EXPECT_EQ(gZarn.SESSION.size(), 63U);
}

TEST_F(DefaultsStore, EveryProgramValueComesBack) {
    std::uint32_t value = 11;
    for (const ProgramSetting& row : ProgramSettings()) {
        if (row.IsText()) {
            gZarn.*row.textField = std::string("text of ") + row.name;
        } else {
            SetNumber(gZarn, row, value++);
        }
    }
    const ZarnSettings saved = gZarn;
    SaveDefaults();
    gZarn = ZarnSettings();
    LoadDefaults();
    for (const ProgramSetting& row : ProgramSettings()) {
        if (row.IsText()) {
            EXPECT_EQ(gZarn.*row.textField, saved.*row.textField) << row.name;
        } else {
            EXPECT_EQ(GetNumber(gZarn, row), GetNumber(saved, row)) << row.name;
        }
    }
}

TEST(ProgramSettingsTable, StandsInTheOrderOfWriting) {
    const char* const names[] = {"AUTOSTART",  "SAVEONEXIT", "AUTOSIZE", "BELL",       "RESOLVELINKS", "SENDUNIQUE",
                                 "RECVUNIQUE", "VERBOSE",    "PROMPT",   "bMaximized", "bMinimized",   "MAILADDR",
                                 "COLUMNS",    "ICONS",      "xPos",     "yPos",       "nWidth",       "nHeight",
                                 "nSplit",     "LOGFILE",    "LOGGING"};
    ASSERT_EQ(ProgramSettings().size(), std::size(names));
    std::size_t index = 0;
    for (const ProgramSetting& row : ProgramSettings()) EXPECT_STREQ(row.name, names[index++]);
}

TEST_F(DefaultsStore, LastSessionIsWrittenAndKeptInTheSettings) {
    LoadConfiguration();
    SetLastSession("lab");
    EXPECT_EQ(gZarn.SESSION, "lab");
    EXPECT_EQ(GetLastSession(), "lab");
}

TEST_F(DefaultsStore, EmptySessionNameWritesNothing) {
    LoadConfiguration();
    SetLastSession("lab");
    SetLastSession("");
    SetLastSession(nullptr);
    EXPECT_EQ(GetLastSession(), "lab");
    EXPECT_EQ(gZarn.SESSION, "lab");
}

TEST_F(DefaultsStore, SavingDefaultsKeepsTheSession) {
    LoadConfiguration();
    SetLastSession("lab");
    SaveDefaults();
    EXPECT_EQ(GetLastSession(), "lab");
}

#ifndef _WIN32
TEST_F(DefaultsStore, RefusedWritesAreTracedAndTheRestGoesOn) {
    LoadConfiguration();
    RecordTraces();
    host_registry::RefuseWrites(5);
    SaveDefaults();
    host_registry::RefuseWrites(0);
    EXPECT_TRUE(view_.HasLine("RegSetValueEx(AUTOSTART)"));
    EXPECT_TRUE(view_.HasLine("RegSetValueEx(LOGGING)"));
}
#else
TEST_F(DefaultsStore, KeyThatCannotBeCreatedIs7096AndLoadsDefaults) {
    const std::string name(300, 'k');
    EXPECT_EQ(LoadPortInfo(name.c_str()), PortInfo());
    ASSERT_EQ(view_.Boxes().size(), 1U);
    EXPECT_EQ(view_.Boxes().front().text, "ERROR: Unable to create key in registry,\n" + StoreKeyPath(name));
}
#endif

class PortStore : public StoreTest {
  protected:
    static void WriteSite(const char* name, std::uint32_t value) { Key("lab").WriteNumber(name, value); }
};

TEST_F(PortStore, OutOfRangeValuesOfASiteTakeTheirReplacements) {
    WriteSite("TIMEOUT", 501);
    WriteSite("RETRIES", 11);
    WriteSite("FTPPORT", 5000);
    WriteSite("PACKETSIZE", 100);
    EXPECT_EQ(LoadPortInfo("lab"), (PortInfo{65, 0, 0, 1024})) << "quirk: 0 and 1024, not the defaults";
    WriteSite("TIMEOUT", 0xFFFFFFFFU);
    WriteSite("RETRIES", 0xFFFFFFFFU);
    WriteSite("FTPPORT", 0);
    WriteSite("PACKETSIZE", 8097);
    EXPECT_EQ(LoadPortInfo("lab"), (PortInfo{65, 0, 0, 1024}));
    WriteSite("FTPPORT", 3001);
    EXPECT_EQ(LoadPortInfo("lab").ftpPort, 0U);
}

TEST_F(PortStore, BoundsOfTheRangesAreAccepted) {
    WriteSite("TIMEOUT", 500);
    WriteSite("RETRIES", 10);
    WriteSite("FTPPORT", 3000);
    WriteSite("PACKETSIZE", 8096);
    EXPECT_EQ(LoadPortInfo("lab"), (PortInfo{500, 10, 3000, 8096}));
    WriteSite("TIMEOUT", 0);
    WriteSite("RETRIES", 0);
    WriteSite("FTPPORT", 1);
    WriteSite("PACKETSIZE", 256);
    EXPECT_EQ(LoadPortInfo("lab"), (PortInfo{0, 0, 1, 256}));
}

TEST_F(PortStore, MissingAndDamagedValuesOfASiteTakeTheDefaults) {
    SavePortInfo("", {30, 3, 2121, 4096});
    Key("lab").WriteText("FTPPORT", "21");
    EXPECT_EQ(LoadPortInfo("lab"), PortInfo()) << "an old key does not ask \"Defaults\"";
}

TEST_F(PortStore, NewSiteKeyIsFilledFromDefaults) {
    SavePortInfo("", {30, 3, 2121, 4096});
    EXPECT_EQ(LoadPortInfo("fresh"), (PortInfo{30, 3, 2121, 4096}));
    EXPECT_EQ(Open("fresh").ReadNumber("FTPPORT"), 2121U);
    EXPECT_EQ(Open("fresh").ReadNumber("PACKETSIZE"), 4096U);
}

TEST_F(PortStore, ValuesOfDefaultsAreNotRangeChecked) {
    SavePortInfo("", {9999, 99, 50000, 9});
    EXPECT_EQ(LoadPortInfo(""), (PortInfo{9999, 99, 50000, 9}));
}

TEST_F(PortStore, NewDefaultsKeyIsWritten) {
    EXPECT_EQ(LoadDefaultPortInfo(), PortInfo());
    EXPECT_EQ(Open("Defaults").ReadNumber("TIMEOUT"), 65U);
    EXPECT_EQ(Open("Defaults").ReadNumber("PACKETSIZE"), 2048U);
}

TEST_F(PortStore, SiteWithoutValuesOfItsOwnConnectsWithTheDefaults) {
    gZarn.defaultPort = {30, 3, 2121, 4096};
    gZarn.defaultMode = {1, 'I', 1};
    Key("lab");
    ApplySiteConnectionSettings("lab");
    EXPECT_EQ(gZarn.port, gZarn.defaultPort);
    EXPECT_EQ(gZarn.mode, gZarn.defaultMode);
    ApplySiteConnectionSettings("absent");
    EXPECT_EQ(gZarn.port, gZarn.defaultPort);
    EXPECT_FALSE(Exists("absent"));
}

TEST_F(PortStore, SitesOwnValuesAreInForceAndAnUnusablePortIsNot) {
    gZarn.defaultPort = {30, 3, 2121, 4096};
    WriteSite("PACKETSIZE", 512);
    SaveModeInfo("lab", {2, 'L', 0});
    WriteSite("FTPPORT", 5000);
    ApplySiteConnectionSettings("lab");
    EXPECT_EQ(gZarn.port, (PortInfo{65, 0, 2121, 512}));
    EXPECT_EQ(gZarn.mode, (ModeInfo{2, 'L', 0}));
}

class ModeStore : public StoreTest {
  protected:
    static void WriteMode(std::vector<std::uint8_t> bytes) { Key("lab").WriteBytes("MODE", bytes); }
};

TEST_F(ModeStore, UnknownZeroLongAndMissingModeReadAsAscii) {
    for (const std::vector<std::uint8_t>& bytes :
         {std::vector<std::uint8_t>{'X'}, {0}, {'I', 'I'}, std::vector<std::uint8_t>()}) {
        WriteMode(bytes);
        EXPECT_EQ(LoadModeInfo("lab").mode, 'A');
    }
    Key("lab").WriteText("MODE", "I");
    EXPECT_EQ(LoadModeInfo("lab").mode, 'A');
    Key("lab").DeleteValue("MODE");
    EXPECT_EQ(LoadModeInfo("lab").mode, 'A');
}

TEST_F(ModeStore, BinaryAndLocalModeAreRead) {
    for (const char mode : {'A', 'I', 'L'}) {
        WriteMode({static_cast<std::uint8_t>(mode)});
        EXPECT_EQ(LoadModeInfo("lab").mode, mode);
    }
}

TEST_F(ModeStore, NegativeCaseReadsAsZero) {
    Key("lab").WriteNumber("CASE", 0xFFFFFFFFU);
    EXPECT_EQ(LoadModeInfo("lab").caseConversion, 0);
}

TEST_F(ModeStore, ModeIsStoredAsOneByte) {
    SaveModeInfo("lab", {2, 'L', 1});
    EXPECT_EQ(Open("lab").ReadBytes("MODE", 1), std::vector<std::uint8_t>{'L'});
    EXPECT_EQ(LoadModeInfo("lab"), (ModeInfo{2, 'L', 1}));
}

TEST_F(ModeStore, NewSiteKeyIsFilledFromDefaults) {
    SaveModeInfo("", {1, 'I', 1});
    EXPECT_EQ(LoadModeInfo("fresh"), (ModeInfo{1, 'I', 1}));
    EXPECT_EQ(Open("fresh").ReadNumber("USEMODEMAPPING"), 1U);
}

class ColumnStore : public StoreTest {
  protected:
    static constexpr std::int32_t kWidths[] = {10, 20, 30, 40, 50, 60, 70, 80};
};

TEST_F(ColumnStore, DefaultsWithoutColumnsMakeSavingDoNothing) {
    Key("Defaults");
    LoadDefaults();
    EXPECT_FALSE(SaveColumnInfo(kWidths, 8));
    EXPECT_FALSE(LoadColumnInfo(8));
    EXPECT_FALSE(Exists("Defaults\\View"));
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(ColumnStore, EachLayoutHasAKeyOfItsOwn) {
    gZarn.COLUMNS = 4;
    EXPECT_TRUE(SaveColumnInfo(kWidths, 8));
    EXPECT_EQ(Open("Defaults\\View\\Windows").ReadNumber("Col1"), 10U);
    EXPECT_EQ(Open("Defaults\\View\\Windows").ReadNumber("Col4"), 40U);
    EXPECT_FALSE(Open("Defaults\\View\\Windows").ReadNumber("Col5").has_value());
    gZarn.COLUMNS = 8;
    EXPECT_TRUE(SaveColumnInfo(kWidths, 8));
    EXPECT_EQ(Open("Defaults\\View\\Unix").ReadNumber("Col8"), 80U);
    EXPECT_TRUE(LoadColumnInfo(8));
    for (int index = 0; index < 8; ++index) EXPECT_EQ(gZarn.iColumnLengths[index], kWidths[index]);
}

TEST_F(ColumnStore, LoadingStopsAtTheFirstMissingWidth) {
    gZarn.COLUMNS = 8;
    SaveColumnInfo(kWidths, 8);
    Key("Defaults\\View\\Unix").DeleteValue("Col3");
    gZarn.iColumnLengths[2] = -1;
    gZarn.iColumnLengths[3] = -1;
    EXPECT_FALSE(LoadColumnInfo(8));
    EXPECT_EQ(gZarn.iColumnLengths[1], 20);
    EXPECT_EQ(gZarn.iColumnLengths[2], -1);
    EXPECT_EQ(gZarn.iColumnLengths[3], -1);
}

TEST_F(ColumnStore, LoadingFromAMissingKeyShows7096AndCreatesNothing) {
    gZarn.COLUMNS = 4;
    EXPECT_FALSE(LoadColumnInfo(4));
    ASSERT_EQ(view_.Boxes().size(), 1U);
    EXPECT_EQ(view_.Boxes().front().text,
              "ERROR: Unable to create key in registry,\n" + StoreKeyPath("Defaults\\View\\Windows"));
    EXPECT_FALSE(Exists("Defaults\\View\\Windows"));
}

TEST_F(ColumnStore, FirstStartHasKeysToLookInto) {
    LoadConfiguration();
    EXPECT_FALSE(LoadColumnInfo(4)) << "nothing measured yet";
    EXPECT_TRUE(view_.Boxes().empty());
}

TEST_F(ColumnStore, MoreColumnsThanTheTableHoldsAreRefused) {
    gZarn.COLUMNS = 8;
    SaveColumnInfo(kWidths, 8);
    EXPECT_FALSE(LoadColumnInfo(9));
}
