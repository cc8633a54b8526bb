#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "listing/corpus.h"
#include "listing/line_parser.h"

namespace {

// In a block of exactly its size, so that the sanitizers see a read behind the line.
LVobjectPtr ParseExact(std::uint32_t lineNumber, std::uint32_t hostType, std::string_view line, ListingStyle& style,
                       ListingCounters& counters) {
    const auto bytes = std::make_unique<char[]>(line.size() + 1);
    char* const start = bytes.get() + 1;
    line.copy(start, line.size());
    return FtpParseLine(lineNumber, hostType, std::string_view(start, line.size()), style, counters);
}

void CheckSample(const CorpusSample& sample, std::uint32_t& lineNumber, ListingStyle& style) {
    ListingCounters counters;
    for (const CorpusLine& line : sample.lines) {
        const LVobjectPtr entry = ParseExact(++lineNumber, sample.hostType, line.line, style, counters);
        EXPECT_EQ(ExpectedToday(line.expected, entry.get()), DescribeEntry(entry.get()))
            << sample.file << ": " << line.line;
    }
}

TEST(Corpus, HasSixtySamplesWithExpectedEntries) {
    const std::vector<CorpusSample> samples = ReadCorpus();
    EXPECT_GE(samples.size(), 60u);
    for (const CorpusSample& sample : samples) {
        EXPECT_GE(sample.hostType, 7000u) << sample.file;
        EXPECT_FALSE(sample.lines.empty()) << sample.file;
        for (const CorpusLine& line : sample.lines) EXPECT_FALSE(line.expected.empty()) << sample.file;
    }
}

TEST(Corpus, EachSampleAlone) {
    for (const CorpusSample& sample : ReadCorpus()) {
        std::uint32_t lineNumber = 0;
        ListingStyle style;
        CheckSample(sample, lineNumber, style);
    }
}

TEST(Corpus, AllSamplesOfAHostTypeTogether) {
    // A Windows NT server's listing has one style, so that those samples that begin in another stay alone.
    std::map<std::uint32_t, std::pair<std::uint32_t, ListingStyle>> listings;
    for (const CorpusSample& sample : ReadCorpus()) {
        const bool beginsAsUnix = sample.lines.front().line.front() > '9' || sample.lines.front().line.front() < '0';
        if (sample.hostType == 7002 && beginsAsUnix) continue;
        auto& [lineNumber, style] = listings[sample.hostType];
        CheckSample(sample, lineNumber, style);
    }
}

TEST(Corpus, EveryLineCutAtEveryByte) {
    for (const CorpusSample& sample : ReadCorpus()) {
        for (const CorpusLine& line : sample.lines) {
            for (std::size_t length = 0; length <= line.line.size(); ++length) {
                for (const std::uint32_t hostType : {7001u, 7002u, 7005u}) {
                    ListingStyle style;
                    ListingCounters counters;
                    const LVobjectPtr entry =
                        ParseExact(1, hostType, std::string_view(line.line).substr(0, length), style, counters);
                    EXPECT_TRUE(!entry || entry->name.get() != nullptr) << sample.file;
                }
            }
        }
    }
}

TEST(Corpus, EveryLineWithABlankPutInAnywhere) {
    for (const CorpusSample& sample : ReadCorpus()) {
        for (const CorpusLine& line : sample.lines) {
            for (std::size_t position = 0; position <= line.line.size(); ++position) {
                std::string disturbed = line.line;
                disturbed.insert(position, 1, ' ');
                ListingStyle style;
                ListingCounters counters;
                const LVobjectPtr entry = ParseExact(1, sample.hostType, disturbed, style, counters);
                EXPECT_TRUE(!entry || entry->name.get() != nullptr) << sample.file;
            }
        }
    }
}

}  // namespace
