#include <gtest/gtest.h>

#include "foundation/trace.h"
#include "listing/dump_reader.h"
#include "support/local_folder.h"

namespace {

class DumpReaderTest : public testing::Test {
  protected:
    std::vector<std::string> LinesOf(const std::string& bytes) {
        folder.Write("dump", bytes);
        DumpReader reader;
        EXPECT_TRUE(reader.Open("test", folder.PathOf("dump").c_str()));
        std::vector<std::string> lines;
        std::string_view line;
        while (reader.NextLine(line)) lines.emplace_back(line);
        return lines;
    }
    LocalFolder folder;
};

using Lines = std::vector<std::string>;

TEST_F(DumpReaderTest, LinesEndAtCarriageReturnOrLineFeed) {
    EXPECT_EQ((Lines{"a", "b", "c", "d"}), LinesOf("a\r\nb\nc\rd\r\n"));
}

TEST_F(DumpReaderTest, LastLineWithoutItsEndIsALine) {
    EXPECT_EQ((Lines{"a", "b"}), LinesOf("a\r\nb"));
}

TEST_F(DumpReaderTest, EmptyLinesAreNone) {
    EXPECT_EQ((Lines{"a", "b"}), LinesOf("\r\na\r\n\r\n \t\r\n\n\rb\r\r\n"));
    EXPECT_EQ(Lines{}, LinesOf(""));
    EXPECT_EQ(Lines{}, LinesOf("\n"));
}

TEST_F(DumpReaderTest, TotalIsSkippedOnlyAsTheFirstLine) {
    EXPECT_EQ((Lines{"a", "total 12", "b"}), LinesOf("total 12\r\na\r\ntotal 12\r\nb\r\n"));
}

TEST_F(DumpReaderTest, TotalIsSkippedOnlyInThisForm) {
    EXPECT_EQ((Lines{"Total 12"}), LinesOf("Total 12\r\n"));
    EXPECT_EQ((Lines{"totals"}), LinesOf("totals\r\n"));
    EXPECT_EQ((Lines{"total"}), LinesOf("total\r\n"));
}

TEST_F(DumpReaderTest, LeadingBlanksAreSkippedAndTrailingOnesStay) {
    EXPECT_EQ((Lines{"a ", "b\t"}), LinesOf("  \t a \r\n\tb\t\r\n"));
}

TEST_F(DumpReaderTest, MissingFileIsNoListing) {
    DumpReader reader;
    EXPECT_FALSE(reader.Open("test", folder.PathOf("missing").c_str()));
    EXPECT_FALSE(reader.Open("test", ""));
    std::string_view line;
    EXPECT_FALSE(reader.NextLine(line));
}

TEST_F(DumpReaderTest, LongListingComesInOrderAcrossBlocks) {
    std::string bytes;
    Lines expected;
    for (int i = 0; i < 20000; ++i) {
        expected.push_back("line " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 37), 'x'));
        bytes += expected.back() + (i % 3 == 0 ? "\n" : "\r\n");
    }
    EXPECT_EQ(expected, LinesOf(bytes));
}

TEST_F(DumpReaderTest, LineWithoutEndIsHandedOutCutAndTheNextOneIsWhole) {
    const std::string endless(300'000, 'x');
    const Lines lines = LinesOf("a\r\n" + endless + "\r\nb\r\n");
    ASSERT_EQ(3u, lines.size());
    EXPECT_EQ("a", lines[0]);
    EXPECT_EQ(kLongestListingLine, lines[1].size());
    EXPECT_EQ("b", lines[2]);
}

TEST_F(DumpReaderTest, LineEndAtEveryPlaceOfABlockBorder) {
    for (std::size_t before = 65530; before <= 65540; ++before) {
        const Lines lines = LinesOf(std::string(before - 60000, 'y') + "\r\n" + std::string(59998 - 45000, 'x') +
                                    "\r\n" + std::string(44996 - 30000, 'x') + "\r\n" + std::string(15000, 'x') +
                                    "\r\n" + std::string(14990, 'z') + "\r\n" + "end\r\n");
        ASSERT_EQ(6u, lines.size()) << before;
        EXPECT_EQ("end", lines[5]) << before;
        EXPECT_EQ(std::string(14990, 'z'), lines[4]) << before;
    }
}

TEST_F(DumpReaderTest, ListingCutAtEveryByteNeverFails) {
    const std::string whole = "total 8\r\n-rw-r--r-- 1 a b 1 Jan 2 2001 x\r\ndrwxr-xr-x 2 a b 1 Jan 2 2001 d\n";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const Lines lines = LinesOf(whole.substr(0, length));
        EXPECT_LE(lines.size(), 2u) << length;
    }
}

}  // namespace
