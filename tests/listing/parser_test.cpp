#include <gtest/gtest.h>

#include "foundation/file_time.h"
#include "listing/line_parser.h"
#include "listing/nt_parser.h"
#include "listing/unix_parser.h"

namespace {

LVobjectPtr Unix(std::string_view line) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    return BuildItemFromUnixStr(line, entry.get()) ? std::move(entry) : nullptr;
}

LVobjectPtr Nt(std::string_view line, std::uint32_t hostType = 7002) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    return BuildItemFromNTStr(line, entry.get(), hostType) ? std::move(entry) : nullptr;
}

CalendarTime TimeOf(const LVobjectPtr& entry) {
    CalendarTime calendar;
    FileTimeToCalendar(entry->time, calendar);
    return calendar;
}

TEST(UnixParser, FolderOfThisYearOrTheLast) {
    const LVobjectPtr entry = Unix("drwxr-xr-x 2 ftp ftp 512 Mar 3 14:05 pub");
    ASSERT_NE(nullptr, entry);
    EXPECT_STREQ("pub", entry->name.get());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), entry->type);
    EXPECT_EQ(2u, entry->links);
    EXPECT_EQ(512u, entry->size);
    const CalendarTime now = platform::LocalTimeNow();
    const CalendarTime expected{3 > now.month ? now.year - 1 : now.year, 3, 3, 14, 5, 0, 0};
    EXPECT_EQ(expected, TimeOf(entry));
    EXPECT_STREQ("Mar 3  2:05PM", entry->dateText.get());
}

TEST(UnixParser, LaterDayOfThePresentMonthStaysInThePresentYear) {
    const CalendarTime now = platform::LocalTimeNow();
    const std::string line = std::string("-rw-r--r-- 1 a b 1 ") + MonthName(now.month) + " 28 23:59 late";
    const LVobjectPtr entry = Unix(line);
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(now.year, TimeOf(entry).year);
}

TEST(UnixParser, YearInPlaceOfATimeGivesADateOnlyText) {
    const LVobjectPtr entry = Unix("-rw-r--r-- 1 ftp ftp 1024 Dec 31 1999 old.txt");
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ((CalendarTime{1999, 12, 31, 0, 0, 0, 0}), TimeOf(entry));
    EXPECT_STREQ("Dec 31  1999", entry->dateText.get());
}

TEST(UnixParser, DeviceLineWithTwoNumbersIsRejected) {
    EXPECT_EQ(nullptr, Unix("crw-rw-rw- 1 root sys 4, 0 Jan 1 12:00 tty0"));
}

TEST(UnixParser, LinkKeepsItsWholeText) {
    const LVobjectPtr entry = Unix("lrwxrwxrwx 1 root root 7 Jan 1 2000 bin -> usr/bin");
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(6u, entry->type);
    EXPECT_STREQ("bin -> usr/bin", entry->name.get());
}

TEST(UnixParser, MonthInAnyCaseAndOnlyThreeLettersOfIt) {
    for (const char* month : {"JAN", "jan", "January", "jAnuarius"}) {
        const LVobjectPtr entry = Unix(std::string("-rw-r--r-- 1 a b 1 ") + month + " 2 2001 x");
        ASSERT_NE(nullptr, entry) << month;
        EXPECT_EQ(1, TimeOf(entry).month) << month;
    }
}

TEST(UnixParser, OwnerAndGroupAreCutTo29Characters) {
    const std::string name30(30, 'o');
    const LVobjectPtr entry = Unix("-rw-r--r-- 1 " + name30 + " " + name30 + "ooo 1 Jan 2 2001 x");
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(std::string(29, 'o'), entry->owner.get());
    EXPECT_EQ(std::string(29, 'o'), entry->group.get());
    EXPECT_STREQ("x", entry->name.get());
}

TEST(UnixParser, TrailingLineEndsAreNotPartOfTheName) {
    EXPECT_STREQ("x", Unix("-rw-r--r-- 1 a b 1 Jan 2 2001 x\r\n")->name.get());
}

TEST(UnixParser, ImpossibleDateBecomesThePresentTime) {
    const LVobjectPtr entry = Unix("-rw-r--r-- 1 a b 1 Feb 31 2001 x");
    ASSERT_NE(nullptr, entry);
    EXPECT_GE(TimeOf(entry).year, 2024);
}

TEST(UnixParser, RecordIsClearedBeforeItIsParsedAgain) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    ASSERT_TRUE(BuildItemFromUnixStr("-rw-r--r-- 9 a b 99 Jan 2 2001 x", entry.get()));
    EXPECT_FALSE(BuildItemFromUnixStr("rubbish", entry.get()));
    EXPECT_EQ(nullptr, entry->name.get());
    EXPECT_EQ(0u, entry->links);
    EXPECT_EQ(0u, entry->size);
}

TEST(NtParser, FolderInTheEvening) {
    const LVobjectPtr entry = Nt("01-15-98  09:05PM       <DIR>          Program Files");
    ASSERT_NE(nullptr, entry);
    EXPECT_STREQ("Program Files", entry->name.get());
    EXPECT_EQ(4u, entry->type);
    EXPECT_STREQ("d---------", entry->mode.get());
    EXPECT_STREQ("Owner", entry->owner.get());
    EXPECT_STREQ("Group", entry->group.get());
    EXPECT_EQ(1u, entry->links);
    EXPECT_EQ((CalendarTime{1998, 1, 15, 21, 5, 0, 0}), TimeOf(entry));
    EXPECT_STREQ("Jan 15  9:05PM", entry->dateText.get());
}

TEST(NtParser, HalfPastMidnight) {
    const LVobjectPtr entry = Nt("12-01-03  12:30AM                 4096 a b.txt");
    ASSERT_NE(nullptr, entry);
    EXPECT_STREQ("a b.txt", entry->name.get());
    EXPECT_EQ(4096u, entry->size);
    EXPECT_EQ(5u, entry->type);
    EXPECT_STREQ("----------", entry->mode.get());
    EXPECT_EQ((CalendarTime{2003, 12, 1, 0, 30, 0, 0}), TimeOf(entry));
}

TEST(NtParser, Year69Is2069AndYear70Is1970) {
    EXPECT_EQ(2069, TimeOf(Nt("01-15-69  09:05PM       1 a")).year);
    EXPECT_EQ(1970, TimeOf(Nt("01-15-70  09:05PM       1 a")).year);
}

TEST(NtParser, FourDigitYearIsReadByItsFirstTwo) {
    EXPECT_EQ(2020, TimeOf(Nt("01-15-2003  09:05PM       1 a")).year);
}

TEST(NtParser, DateWithoutLeadingZerosGetsThePresentTimeAndIsAccepted) {
    const LVobjectPtr entry = Nt("1-5-98  09:05PM       123 a.txt");
    ASSERT_NE(nullptr, entry);
    EXPECT_STREQ("a.txt", entry->name.get());
    EXPECT_GE(TimeOf(entry).year, 2024);
}

TEST(NtParser, SizeWithASeparatorLeavesTheEntryUntyped) {
    const LVobjectPtr entry = Nt("01-15-98  09:05PM       1,024 a.txt");
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(0u, entry->type);
    EXPECT_EQ(0u, entry->size);
    EXPECT_EQ(nullptr, entry->mode.get());
    EXPECT_STREQ("a.txt", entry->name.get());
}

TEST(NtParser, FileWhoseNameHoldsTheFolderMarkIsTakenForAFolder) {
    const LVobjectPtr entry = Nt("01-15-98  09:05PM       12 my<DIR>file rest");
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(4u, entry->type);
    EXPECT_STREQ("rest", entry->name.get());
}

TEST(NtParser, LowerCaseHalfDayIsNotRecognised) {
    EXPECT_EQ(9, TimeOf(Nt("01-15-98  09:05pm       1 a")).hour);
}

TEST(NtParser, LocalComputerHasKindsOfItsOwn) {
    EXPECT_EQ(11u, Nt("01-15-98  09:05PM       <DIR>          d", 7005)->type);
    EXPECT_EQ(12u, Nt("01-15-98  09:05PM       1 f", 7005)->type);
}

TEST(NtParser, LineThatBeginsWithoutADigitIsRejected) {
    EXPECT_EQ(nullptr, Nt("total 12"));
    EXPECT_EQ(nullptr, Nt(""));
    EXPECT_NE(nullptr, Nt(" \t01-15-98  09:05PM       1 a"));
}

TEST(DosDate, EmptyTextFails) {
    const LVobjectPtr entry(AllocateLVobject(nullptr));
    EXPECT_FALSE(DosDateStringToFileTime("", entry.get()));
    EXPECT_TRUE(DosDateStringToFileTime("rubbish", entry.get()));
    EXPECT_NE(0u, entry->time);
}

struct Listing {
    std::uint32_t hostType;
    ListingStyle style;
    ListingCounters counters;
    std::uint32_t lineNumber = 0;
    LVobjectPtr Parse(std::string_view line) { return FtpParseLine(++lineNumber, hostType, line, style, counters); }
};

TEST(LineParser, NtServerThatSendsUnixLinesIsParsedAsUnix) {
    Listing listing{7002, {}, {}};
    EXPECT_NE(nullptr, listing.Parse("drwxr-xr-x 2 a b 1 Jan 2 2001 d"));
    EXPECT_EQ(nullptr, listing.Parse("01-15-98  09:05PM       1 a"));
    EXPECT_NE(nullptr, listing.Parse("-rw-r--r-- 1 a b 1 Jan 2 2001 f"));
}

TEST(LineParser, CountsFoldersFilesAndLinksAndTheLinksBytesToo) {
    Listing listing{7001, {}, {}};
    listing.Parse("drwxr-xr-x 2 a b 4 Jan 2 2001 d1");
    listing.Parse("drwxr-xr-x 2 a b 4 Jan 2 2001 d2");
    listing.Parse("-rw-r--r-- 1 a b 100 Jan 2 2001 f1");
    listing.Parse("-rw-r--r-- 1 a b 200 Jan 2 2001 f2");
    listing.Parse("-rw-r--r-- 1 a b 300 Jan 2 2001 f3");
    listing.Parse("lrwxrwxrwx 1 a b 10 Jan 2 2001 l -> m");
    EXPECT_EQ(2u, listing.counters.folders);
    EXPECT_EQ(3u, listing.counters.files);
    EXPECT_EQ(1u, listing.counters.links);
    EXPECT_EQ(618u, listing.counters.bytes);
}

TEST(LineParser, DevicesAndUntypedEntriesCountAsFilesWithoutBytes) {
    Listing listing{7001, {}, {}};
    listing.Parse("prw-r--r-- 1 a b 5 Jan 2 2001 pipe");
    listing.Parse("crw-r--r-- 1 a b 5 Jan 2 2001 device");
    EXPECT_EQ(2u, listing.counters.files);
    EXPECT_EQ(0u, listing.counters.bytes);
    Listing nt{7002, {}, {}};
    nt.Parse("01-15-98  09:05PM       1,024 a");
    EXPECT_EQ(1u, nt.counters.files);
    EXPECT_EQ(0u, nt.counters.bytes);
}

TEST(LineParser, RejectedLineCountsNothing) {
    Listing listing{7001, {}, {}};
    EXPECT_EQ(nullptr, listing.Parse("No files found."));
    EXPECT_EQ(0u, listing.counters.files + listing.counters.folders + listing.counters.links);
}

TEST(LineParser, BytesGoBeyondFourGigabytes) {
    Listing listing{7001, {}, {}};
    for (int i = 0; i < 3; ++i) listing.Parse("-rw-r--r-- 1 a b 4000000000 Jan 2 2001 big");
    EXPECT_EQ(12000000000ull, listing.counters.bytes);
}

TEST(LineParser, FileTypeFollowsKindAndName) {
    Listing listing{7001, {}, {}};
    const LVobjectPtr folder = listing.Parse("drwxr-xr-x 2 a b 4 Jan 2 2001 d.txt");
    const LVobjectPtr other = listing.Parse("drwxr-xr-x 2 a b 4 Jan 2 2001 e");
    const LVobjectPtr text = listing.Parse("-rw-r--r-- 1 a b 4 Jan 2 2001 f.txt");
    const LVobjectPtr upper = listing.Parse("-rw-r--r-- 1 a b 4 Jan 2 2001 F.TXT");
    const LVobjectPtr plain = listing.Parse("-rw-r--r-- 1 a b 4 Jan 2 2001 f");
    ASSERT_NE(nullptr, folder->fileType);
    EXPECT_EQ(folder->fileType, other->fileType);
    EXPECT_NE(folder->fileType, text->fileType);
    EXPECT_EQ(text->fileType, upper->fileType);
    ASSERT_NE(nullptr, plain->fileType);
    EXPECT_NE(text->fileType, plain->fileType);
}

}  // namespace
