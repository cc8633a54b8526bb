// Small routines on texts that the whole program uses: owned copies, byte counts and dates as the user sees them,
// comparison. Nothing here draws or measures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/file_time.h"
#include "foundation/owned_text.h"

// An owned copy in `size` zero-filled bytes (0: exactly what is needed); null for a null source or, with the last
// system error set to 122, for a size that is too small.
OwnedText DupString(const char* source, std::size_t size = 0);

// An owned wide copy of `source`; `sizeInBytes` 0 means exact; null as DupString.
std::unique_ptr<char16_t[]> Zarn_GetWideString(const char* source, std::size_t sizeInBytes = 0);

// "1.00MB  ( 1,048,577 bytes )" / "0.50KB  ( 512 bytes )" into `out` of `capacity` bytes. False, and an empty `out`,
// when it does not fit.
bool Zarn_GetSizeText(std::int32_t count, char* out, bool useMegabytes, std::size_t capacity);
// Decimal digits with "," between groups of three.
std::string GroupDigits(std::string_view digits);

// The date text of the list pane; null time: now. At midnight or on the full hour the year is shown, as wanted.
OwnedText Zarn_GetFileTimeString(const FileTime* time);
// The same text without the trace of its entry, for listings of many thousand lines: a trace line costs more than
// parsing the line that it is about.
OwnedText FileTimeText(const FileTime* time);

// Compare after cutting texts longer than n to n - 1 characters (as wanted), in the locale's word-sort order.
int Zarn_strncmpi(const char* a, const char* b, std::size_t n);
int Zarn_strncmp(const char* a, const char* b, std::size_t n);
// Decimal value of the leading digits, as the standard library's conversion; saturates instead of overflowing.
int Zarn_atoi(std::string_view text);
// Unsigned 32-bit value of leading decimal digits, modulo 2^32.
std::uint32_t ParseUnsigned(std::string_view text);
// Always false: paste has a test of its own.
bool ClipHasFiles();

// ASCII letters only, for protocol words and extensions.
std::string AsciiLower(std::string_view text);
std::string AsciiUpper(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
// Removes trailing characters that stand in `set`, while the text is longer than `shortest`.
void StripTrailing(std::string& text, std::string_view set, std::size_t shortest = 0);

// Bytes of a remote name as the program shows and stores them: unchanged when they are valid UTF-8, else read in the
// system's code page.
std::string DisplayName(std::string_view remoteBytes);
