// Numbers written as decimal digits: read from texts of servers and settings, and grouped for people. Sizes with a unit
// belong to size_text.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Value of the leading number, after blanks and a sign; saturates instead of overflowing.
int Zarn_atoi(std::string_view text);
// Unsigned 32-bit value of the leading digits, after blanks, modulo 2^32.
std::uint32_t ParseUnsigned(std::string_view text);

// The digits with "," between groups of three. Quirk: more than twelve characters stay without separators, kept.
std::string GroupDigits(std::string_view digits);
