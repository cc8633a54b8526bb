#include "foundation/catalogue.h"

#include <fstream>
#include <iterator>

#include "debugger_capture.h"
#include "foundation/message_ids.h"
#include "traced_test.h"

namespace {

class Catalogue : public TracedTest {};

constexpr unsigned kPrintfId = 7208;
constexpr unsigned kNumberedId = 6036;
constexpr unsigned kMissingId = 9999;

TEST_F(Catalogue, TextsOfTheStringTable) {
    EXPECT_EQ(Zarn_ResString(MSG_LONG_PRODUCT_NAME).view(), "Zarnish Ftp");
    EXPECT_EQ(CatalogueText(7302), "Zarn");
    EXPECT_EQ(CatalogueText(kMissingId), "");
}

TEST_F(Catalogue, EveryQuotedStyleExpands) {
    EXPECT_EQ(Zarn_ResVsprintf(7025, 1500, 0.5, 2.93).view(),
              "1500 bytes received in 0.50 seconds, (2.93Kbytes/sec), transfer succeeded");
    EXPECT_EQ(Zarn_ResVsprintf(6036, 2, 5).view(), "Connection failed ... Retrying (2 of 5)");
    EXPECT_EQ(Zarn_ResVsprintf(7094, "dir").view(), "Unable to remove directory <dir>.");
    EXPECT_EQ(Zarn_ResVsprintf(7167, 3, 4).view(), "3 Files, 4 Folders");
}

TEST_F(Catalogue, TheTwoPrintfListsDifferIn7197Only) {
    EXPECT_FALSE(IsPrintfMessage(7197));
    EXPECT_TRUE(IsPrintfMessageForPrinting(7197));
    int count = 0;
    for (unsigned id = 0; id < 0x10000; ++id) {
        count += IsPrintfMessage(id) ? 1 : 0;
        if (id != 7197) {
            ASSERT_EQ(IsPrintfMessage(id), IsPrintfMessageForPrinting(id)) << id;
        }
    }
    EXPECT_EQ(count, 44);
    for (const unsigned id : {6042U, 6043U, 7025U, 7071U, 7094U, 7120U, 7160U, 7209U, 7291U, 7329U}) {
        EXPECT_TRUE(IsPrintfMessage(id)) << id;
    }
    for (const unsigned id : {1051U, 6044U, 7054U, 7166U, 7193U, 7201U, 7261U}) EXPECT_FALSE(IsPrintfMessage(id)) << id;
}

TEST_F(Catalogue, ResString_TracesItsRoad) {
    SetText(500, "four");
    TraceToConsole();
    const OwnedText text = Zarn_ResString(500);
    EXPECT_TRUE(view.HasLine("Zarn_ResString() Entered. StringID:500"));
    EXPECT_TRUE(view.HasLine("Zarn_ResString() Done. Returning "));
    EXPECT_TRUE(view.HasLine(", Length 4)"));
}

TEST_F(Catalogue, ResString_LongTextIsCutTo1023) {
    SetText(500, std::string(5000, 'x'));
    EXPECT_EQ(Zarn_ResString(500).view().size(), 1023U);
}

TEST_F(Catalogue, ResString_MissingText_IsNullAndKeepsTheError) {
    TraceToConsole();
    EXPECT_FALSE(Zarn_ResString(kMissingId));
    EXPECT_EQ(platform::LastSystemError(), 1814U);
    EXPECT_TRUE(view.HasLine("Zarn_ResString() ERROR. Returning NULL"));
    EXPECT_FALSE(view.HasLine("Call to LoadString"));
}

TEST_F(Catalogue, Id7197_ResVsprintfTakesNumberedInsertsWithTheWarning) {
    TraceToConsole();
    EXPECT_TRUE(Zarn_ResVsprintf(7197));
    EXPECT_TRUE(view.HasLine("WARNING String:7197 Calling FormatMessage() AND pPercentBang is NULL"));
}

TEST_F(Catalogue, Id7197_DoPrintIdArgsTakesPrintfWithoutAWarning) {
    TraceToConsole();
    DoPrintIdArgs(7197);
    EXPECT_FALSE(view.HasLine("WARNING"));
    EXPECT_TRUE(view.HasLine("DoPrintIdArgs() String:7197 Calling vsprintf()"));
    EXPECT_EQ(view.ConsoleLines().back(), CatalogueText(7197));
}

TEST_F(Catalogue, FirstInsertOfTypeC_IsRefusedByDoPrintIdArgsOnly) {
    SetText(kNumberedId, "drive %1!c!");
    gTrace.verbose = true;
    DebuggerCapture debugger;
    DoPrintIdArgs(kNumberedId, 'C');
    EXPECT_TRUE(view.ConsoleLines().empty());
    EXPECT_NE(debugger.Take().find("ERROR. First Format arg for FormatMessage() is UNKNOWN. (drive %1!c!)\n"),
              std::string::npos);
    EXPECT_EQ(Zarn_ResVsprintf(kNumberedId, 'C').view(), "drive C");
}

TEST_F(Catalogue, LongDecimal_IsKnownToDoPrintIdArgsOnly) {
    SetText(kNumberedId, "%1!ld! bytes");
    TraceToConsole();
    Zarn_ResVsprintf(kNumberedId, 5L);
    EXPECT_FALSE(view.HasLine("Long Decimal"));
    DoPrintIdArgs(kNumberedId, 5L);
    EXPECT_TRUE(view.HasLine("First Format arg for FormatMessage() is Long Decimal. (%1!ld! bytes)"));
    EXPECT_EQ(view.ConsoleLines().back(), "5 bytes");
}

TEST_F(Catalogue, ClassesOfTheFirstInsertAreTraced) {
    const std::pair<const char*, const char*> classes[] = {
        {"%1!d!", "is Decimal."}, {"%1!u!", "is Unsigned Int."}, {"%1!x!", "is Hex."}, {"%1!s!", "is string."}};
    TraceToConsole();
    for (const auto& [text, words] : classes) {
        SetText(kNumberedId, text);
        view.Clear();
        Zarn_ResVsprintf(kNumberedId, 5);
        EXPECT_TRUE(view.HasLine("Zarn_ResVsprintf() First Format arg for FormatMessage() " + std::string(words) +
                                 " (" + text + ")"));
        EXPECT_TRUE(view.HasLine("Zarn_ResVsprintf() String:6036 Calling FormatMessage()"));
    }
}

TEST_F(Catalogue, AbsentId_ResVsprintfTracesTheFailureAndNull) {
    TraceToConsole();
    EXPECT_FALSE(Zarn_ResVsprintf(kMissingId, "x"));
    EXPECT_TRUE(view.HasLine("Zarn_ResVsprintf() Call to LoadString(9999) failed. Err:1814:"));
    EXPECT_TRUE(view.HasLine("Zarn_ResVsprintf() Done. Returning 0 (1 bytes)"));
}

TEST_F(Catalogue, AbsentId_DoPrintIdArgsTracesTheFailure) {
    TraceToConsole();
    DoPrintIdArgs(kMissingId);
    EXPECT_TRUE(view.HasLine("DoPrintIdArgs() Call to LoadString(9999) failed. Err:1814:"));
}

TEST_F(Catalogue, PrintfMessageThatExpandsToNothing_IsAFailure) {
    SetText(kPrintfId, "%s");
    TraceToConsole();
    EXPECT_FALSE(Zarn_ResVsprintf(kPrintfId, ""));
    EXPECT_TRUE(view.HasLine("Zarn_ResVsprintf() Call to vsprintf(buf, %s, vaArgs) failed."));
    view.Clear();
    DoPrintIdArgs(kPrintfId, "");
    EXPECT_EQ(view.ConsoleLines().back(), "DoPrintIdArgs() Call to vsprintf(buf, %s, vaArgs) failed.");
}

TEST_F(Catalogue, PrintfIdWithANumberedText_IsWarnedOfInTwoSpellings) {
    SetText(kPrintfId, "%1!d! %d");
    TraceToConsole();
    Zarn_ResVsprintf(kPrintfId, 1);
    EXPECT_TRUE(view.HasLine("WARNING String:7208 Calling vsprintf() AND pPercentBang is NOT NULL"));
    view.Clear();
    DoPrintIdArgs(kPrintfId, 1);
    EXPECT_TRUE(view.HasLine("WARNING. String:7208 Calling vsprintf() AND pPercentBang is NOT NULL"));
}

TEST_F(Catalogue, DoPrintIdArgs_LooksAtTheFirstPercentSignOnly) {
    SetText(kNumberedId, "100%% of %1!d!");
    TraceToConsole();
    DoPrintIdArgs(kNumberedId, 7);
    EXPECT_TRUE(view.HasLine("WARNING String:6036 Calling FormatMessage() AND bFormatedForFormatMessage is FALSE"));
    EXPECT_EQ(view.ConsoleLines().back(), "100% of 7");
}

TEST_F(Catalogue, LongPrintfExpansion_IsCutTo2047AndReported) {
    SetText(kPrintfId, "%s");
    const std::string text(3000, 'x');
    DebuggerCapture debugger;
    EXPECT_EQ(Zarn_ResVsprintf(kPrintfId, text).view(), std::string(2047, 'x'));
    EXPECT_NE(debugger.Take().find("ERROR. we just outstepped our Bounds by 953 chars for xxx"), std::string::npos);
}

TEST_F(Catalogue, LongNumberedExpansion_IsCutTo518AndReported) {
    SetText(kNumberedId, "%1!s!");
    TraceToConsole();
    EXPECT_EQ(Zarn_ResVsprintf(kNumberedId, std::string(600, 'x')).view(), std::string(518, 'x'));
    EXPECT_TRUE(view.HasLine("ERROR. we just outstepped our Bounds by 82 chars for xxx"));
}

TEST_F(Catalogue, NumberedExpansionThatFails_IsNull) {
    SetText(kNumberedId, "%2!s!");
    EXPECT_FALSE(Zarn_ResVsprintf(kNumberedId, "only one"));
}

TEST_F(Catalogue, NumberedExpansionThatFails_DoPrintIdArgsTellsTheError) {
    SetText(kNumberedId, "%2!s!");
    TraceToConsole();
    DoPrintIdArgs(kNumberedId, "only one");
    EXPECT_TRUE(view.HasLine("DoPrintIdArgs(%2!s!) FormatMessage() Failed for ID:6036. Err:87:"));
}

TEST_F(Catalogue, DoPrintIdArgs_AllSwitchesOff_DoesNothing) {
    DebuggerCapture debugger;
    DoPrintIdArgs(kNumberedId, 1, 2);
    EXPECT_EQ(debugger.Take(), "");
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(Catalogue, DoPrintIdArgs_PrintsToTheConsoleUnstampedAndNotToTheDebugger) {
    gTrace.verbose = true;
    DebuggerCapture debugger;
    DoPrintIdArgs(kNumberedId, 1, 2);
    EXPECT_EQ(view.ConsoleLines(), std::vector<std::string>{"Connection failed ... Retrying (1 of 2)"});
    EXPECT_EQ(debugger.Take().find("\nConnection failed ... Retrying (1 of 2)\n"), std::string::npos);
}

TEST_F(Catalogue, DoPrintIdArgs_PrintsToTheLogWhileLogging) {
    const std::string path = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "LOG");
    SetLogFileName(path.c_str());
    gTrace.logging = true;
    DoPrintIdArgs(kNumberedId, 1, 2);
    gTrace.logging = false;
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    file.close();
    platform::DeleteFilePath(path.c_str());
    EXPECT_NE(content.find("\r\nConnection failed ... Retrying (1 of 2)\r\n"), std::string::npos);
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(Catalogue, DoAddLine_RoutesATextOrAnId) {
    SetText(500, "[from the catalogue]");
    gTrace.verbose = true;
    DoAddLine(500);
    DoAddLine("[given]");
    DoAddLine(static_cast<const char*>(nullptr));
    EXPECT_EQ(view.ConsoleLines(), (std::vector<std::string>{"[from the catalogue]", "[given]"}));
}

TEST_F(Catalogue, DoAddLine_MissingIdIsTraced) {
    TraceToConsole();
    DoAddLine(kMissingId);
    EXPECT_TRUE(view.HasLine("DoAddLine() Call to LoadString(9999) failed. Err:1814:"));
}

TEST_F(Catalogue, DoPrintArgs_RoutesWithoutAStamp) {
    gTrace.verbose = true;
    DoPrintArgs("[%d] %s", 220, "ok");
    EXPECT_EQ(view.ConsoleLines(), std::vector<std::string>{"[220] ok"});
}

TEST_F(Catalogue, DoPrintArgs_EmptyResultIsNamed) {
    TraceToConsole();
    DoPrintArgs("%s", "");
    EXPECT_EQ(view.ConsoleLines().back(), "DoPrintArgs() Call to vsprintf(buf, %s, vaArgs) failed.");
}

TEST_F(Catalogue, DoPrintArgs_AllSwitchesOff_DoesNothing) {
    DebuggerCapture debugger;
    DoPrintArgs("%d", 1);
    EXPECT_EQ(debugger.Take(), "");
}

TEST_F(Catalogue, TextWithPrintfConversionsOfTheOtherStyle_IsFormattedByItsUser) {
    const MessageInsert inserts[] = {MessageInsert("a.txt")};
    EXPECT_EQ(FormatCatalogueText(MSG_REPLACE_FILE, inserts), "This folder already contains a file called 'a.txt'.");
}

TEST_F(Catalogue, TracedMessage_IsExpandedAndStamped) {
    SetText(500, "%2!s! has %1!d!");
    TraceToConsole();
    DbgVsprintfID("Func", 500, 7, "box");
    EXPECT_EQ(view.ConsoleLines().back(), Stamp() + "Func() box has 7");
}

TEST_F(Catalogue, TracedMessageThatIsMissing_NamesTheSystemError) {
    SetText(500, "other");
    TraceToConsole();
    DbgVsprintfID("Func", 501);
    const std::string expected = "DbgVsprintfID(Func) LoadString() Failed for ID:501. Err:1814:";
    EXPECT_EQ(view.ConsoleLines().back().substr(0, expected.size()), expected);
}

TEST_F(Catalogue, TracedMessageThatDoesNotExpand_IsNamed) {
    SetText(500, "wants %2!s!");
    TraceToConsole();
    DbgVsprintfID("Func", 500, 1);
    EXPECT_EQ(view.ConsoleLines().back(), "DbgVsprintfID() Call to FormatMessage(Format:wants %2!s!) failed.");
}

}  // namespace
