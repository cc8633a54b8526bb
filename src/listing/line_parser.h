// One listing line becomes one entry: chooses the parser by the site's host type and counts what it accepts.
#pragma once

#include <cstdint>
#include <string_view>

#include "listing/directory_entry.h"

struct ListingCounters {
    std::uint32_t folders = 0;
    std::uint32_t files = 0;
    std::uint32_t links = 0;
    std::uint64_t bytes = 0;
};

// State of one listing: which style its first line decided for (host type 7002).
struct ListingStyle {
    bool decided = false;
    bool isUnix = true;
};

// Decides the style of a Windows NT server's listing by one of its lines; false when the line does not show one.
bool DecideListingStyle(std::string_view line, ListingStyle& style);
// `lineNumber` counts from 1. Null for a rejected line.
LVobjectPtr FtpParseLine(std::uint32_t lineNumber, std::uint32_t hostType, std::string_view line, ListingStyle& style,
                         ListingCounters& counters);
