#include "foundation/message_expansion.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <vector>

namespace {

template <class... Values>
std::string Printf(std::string_view text, const Values&... values) {
    const std::vector<MessageInsert> inserts = {MessageInsert(values)...};
    return ExpandPrintf(text, inserts);
}

// The expansion, or "(refused)".
template <class... Values>
std::string Numbered(std::string_view text, const Values&... values) {
    const std::vector<MessageInsert> inserts = {MessageInsert(values)...};
    std::string out;
    return ExpandNumbered(text, inserts, out) ? out : "(refused)";
}

TEST(ExpandPrintf, Conversions) {
    EXPECT_EQ(Printf("%d %i %u", -5, 7, 9U), "-5 7 9");
    EXPECT_EQ(Printf("%x %X %#x", 255, 0xABCU, 16), "ff ABC 0x10");
    EXPECT_EQ(Printf("%c%c", 'o', 'k'), "ok");
    EXPECT_EQ(Printf("<%s>", "text"), "<text>");
    EXPECT_EQ(Printf("%.2f %3.2f %f", 1.005, 0.5, 2.0), "1.00 0.50 2.000000");
    EXPECT_EQ(Printf("%g %.3g", 0.5, 1234567.0), "0.5 1.23e+06");
    EXPECT_EQ(Printf("100%%"), "100%");
}

TEST(ExpandPrintf, FlagsWidthAndPrecision) {
    EXPECT_EQ(Printf("[%5d][%-5d][%05d][%+d][% d]", 42, 42, -42, 42, 42), "[   42][42   ][-0042][+42][ 42]");
    EXPECT_EQ(Printf("[%8.3s][%-4s]", "abcdef", "x"), "[     abc][x   ]");
    EXPECT_EQ(Printf("[%.4d][%6.2f][%06.2f]", 7, 3.14159, -1.5), "[0007][  3.14][-01.50]");
    EXPECT_EQ(Printf("[%.0d]", 0), "[]");
}

TEST(ExpandPrintf, LengthLettersAreIgnored) {
    EXPECT_EQ(Printf("%ld %lu %hd %lld %ls", -1L, 2UL, 3, 4LL, "t"), "-1 2 3 4 t");
}

TEST(ExpandPrintf, LargestAndSmallestNumbers) {
    EXPECT_EQ(Printf("%d %d", LLONG_MIN, LLONG_MAX), "-9223372036854775808 9223372036854775807");
    EXPECT_EQ(Printf("%u %d", ULLONG_MAX, UINT_MAX), "18446744073709551615 4294967295");
    EXPECT_EQ(Printf("%x %u", -1, -1), "ffffffff 4294967295");
}

TEST(ExpandPrintf, ConversionWithoutAValueStaysAsWritten) {
    EXPECT_EQ(Printf("%s and %d"), "%s and %d");
    EXPECT_EQ(Printf("%s and %5.1f", "one"), "one and %5.1f");
}

TEST(ExpandPrintf, ConversionOfAnotherTypeStaysAsWrittenAndTakesItsTurn) {
    EXPECT_EQ(Printf("%s %d", 5, 6), "%s 6");
    EXPECT_EQ(Printf("%d %f %s", "a", 1, "b"), "%d %f b");
}

TEST(ExpandPrintf, HostileTexts) {
    EXPECT_EQ(Printf("%n%p%*d%1$s", 1, 2, 3), "%n%p%*d%1$s");
    EXPECT_EQ(Printf("%", 1), "%");
    EXPECT_EQ(Printf("%5", 1), "%5");
    EXPECT_EQ(Printf("%.", 1), "%.");
    EXPECT_EQ(Printf("%lllll", 1), "%lllll");
    EXPECT_EQ(Printf("%c", 0), "");
    EXPECT_EQ(Printf("%s", static_cast<const char*>(nullptr)), "(null)");
}

TEST(ExpandPrintf, HugeWidthsAndPrecisionsAreClamped) {
    EXPECT_EQ(Printf("%999999999999d", 1).size(), 500U);
    EXPECT_EQ(Printf("%.999999999999d", 1).size(), 500U);
    EXPECT_EQ(Printf("%.99999f", 1.0).size(), 502U);
    EXPECT_EQ(Printf("%99999.99999f", 1e308).size(), 309U + 1 + 500);
}

TEST(ExpandNumbered, InsertsByNumberInAnyOrder) {
    EXPECT_EQ(Numbered("%2!s! has %1!d! of %1!d!", 3, "box"), "box has 3 of 3");
    EXPECT_EQ(Numbered("%1 and %2", "a", "b"), "a and b");
    EXPECT_EQ(Numbered("%1!ld! %2!lu! %3!x! %4!u!", -1L, 2UL, 255, 7U), "-1 2 ff 7");
    EXPECT_EQ(Numbered("[%1!-5s!][%2!04d!]", "x", 12), "[x    ][0012]");
    EXPECT_EQ(Numbered("%1!c!", 'q'), "q");
}

TEST(ExpandNumbered, TwoDigitNumbers) {
    EXPECT_EQ(Numbered("%10!s!%1!s!", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j"), "ja");
    // Two digits at most belong to the number.
    EXPECT_EQ(Numbered("%100", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j"), "j0");
}

TEST(ExpandNumbered, Escapes) {
    EXPECT_EQ(Numbered("a%nb"), "a\r\nb");
    EXPECT_EQ(Numbered("100%% %. %! % x"), "100% . !  x");
    EXPECT_EQ(Numbered("a%tb%rc"), "a\tb\rc");
    EXPECT_EQ(Numbered("ends%0 here"), "ends");
    EXPECT_EQ(Numbered("%z"), "z");
}

TEST(ExpandNumbered, InsertThatWasNotGivenIsRefused) {
    EXPECT_EQ(Numbered("%1!s!"), "(refused)");
    EXPECT_EQ(Numbered("%99", "a"), "(refused)");
    EXPECT_EQ(Numbered("%2!s!", "a"), "(refused)");
}

TEST(ExpandNumbered, MalformedTypeIsRefused) {
    for (const char* text : {"%1!", "%1!!", "%1!d", "%1!n!", "%1!*d!", "%1!5", "%1!p!", "%1!%!", "%1!ds!", "%1!l!"}) {
        EXPECT_EQ(Numbered(text, 1), "(refused)") << text;
    }
}

TEST(ExpandNumbered, ValueOfAnotherTypeIsShownAsItIs) {
    EXPECT_EQ(Numbered("%1!s!", 42), "42");
    EXPECT_EQ(Numbered("%1!d!", "text"), "text");
    EXPECT_EQ(Numbered("%1", 7U), "7");
}

TEST(ExpandNumbered, ALonePercentAtTheEndStays) {
    EXPECT_EQ(Numbered("50%"), "50%");
}

TEST(ExpandNumbered, HugeWidthIsClamped) {
    EXPECT_EQ(Numbered("%1!99999999d!", 1).size(), 500U);
}

TEST(ExpandNumbered, PercentSignsOfAnInsertAreNotExpandedAgain) {
    EXPECT_EQ(Numbered("<%1!s!>", "%1!s!%n%%"), "<%1!s!%n%%>");
}

TEST(FirstInsertClass, ByTheLetterBehindTheFirstInsert) {
    EXPECT_EQ(FirstInsertClass("no insert %s"), InsertClass::None);
    EXPECT_EQ(FirstInsertClass("%2!d! %1!d!"), InsertClass::Decimal);
    EXPECT_EQ(FirstInsertClass("%1!ld!"), InsertClass::LongDecimal);
    EXPECT_EQ(FirstInsertClass("%1!u!"), InsertClass::Unsigned);
    EXPECT_EQ(FirstInsertClass("%1!x!"), InsertClass::Hex);
    EXPECT_EQ(FirstInsertClass("%1!s!"), InsertClass::Text);
    EXPECT_EQ(FirstInsertClass("%1!c!"), InsertClass::Unknown);
    EXPECT_EQ(FirstInsertClass("%1!"), InsertClass::Unknown);
}

TEST(ExpandOnceMore, OnlyDoubledPercentsChange) {
    EXPECT_EQ(ExpandOnceMore("CWD a%%b"), "CWD a%b");
    EXPECT_EQ(ExpandOnceMore("%s%n%d%"), "%s%n%d%");
    EXPECT_EQ(ExpandOnceMore("%%%"), "%%");
    EXPECT_EQ(ExpandOnceMore("%%%%"), "%%");
}

TEST(ExpandOnceMore, DoublingFirstGivesAnyNameBack) {
    for (const char* name : {"a", "%", "%%", "100%s%n", "%%%%x%"}) {
        EXPECT_EQ(ExpandOnceMore(DoublePercents(name)), name);
    }
}

// Any bytes at all: no crash, no endless loop, bounded output.
TEST(Expanders, RandomTextsAreHarmless) {
    const std::string_view alphabet = "%%%%!!19 0ndsxufgclh.*-+#\n";
    std::mt19937 random(20240611);
    const MessageInsert inserts[] = {MessageInsert("t"), MessageInsert(-3), MessageInsert(4U), MessageInsert(1.5)};
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 24, ' ');
        for (char& c : text) c = alphabet[random() % alphabet.size()];
        std::string out;
        ExpandNumbered(text, inserts, out);
        ASSERT_LE(out.size(), 24U * 1000);
        ASSERT_LE(ExpandPrintf(text, inserts).size(), 24U * 1000);
        FirstInsertClass(text);
        ASSERT_LE(ExpandOnceMore(text).size(), text.size());
    }
}

}  // namespace
