// The corpus of listing lines beside this file: many servers' lines with the entries they give. A file is one listing:
//
//     # 001 what it is.
//     host 7001
//     > a line of the listing         (\t, \\ and \xNN stand for bytes)
//     = kind | name | size | links | owner | group | mode | time      or:  = rejected
//
// A time "*-03-03 14:05" has the year that a line without a year gets today; "now" is the time of parsing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "listing/directory_entry.h"

struct CorpusLine {
    std::string line;
    std::string expected;
};
struct CorpusSample {
    std::string file;
    std::uint32_t hostType = 0;
    std::vector<CorpusLine> lines;
};

std::vector<CorpusSample> ReadCorpus();
// The entry in the form of the expected text; null: "rejected". The time is written as it is.
std::string DescribeEntry(const LVobject* entry);
// The expected text with its time put in: today's year or the present minute.
std::string ExpectedToday(const std::string& expected, const LVobject* entry);
