#include "foundation/text_helpers.h"

#include <algorithm>
#include <climits>
#include <new>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "platform/system.h"

namespace {

// Longest count that is shown with separators, longest that fits the count's field, longest usual date.
constexpr std::size_t kLongestGrouped = 12;
constexpr std::size_t kLongestCount = 20;
constexpr std::size_t kLongestDate = 20;
constexpr std::int32_t kMegabyte = 1048576;

unsigned Address(const void* pointer) {
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(pointer));
}
int CountOf(std::size_t size) {
    return static_cast<int>(size);
}

void FailBufferTooSmall(const char* funcName) {
    platform::SetLastSystemError(platform::kErrorInsufficientBuffer);
    DbgPrintApiError(funcName, funcName, platform::kErrorInsufficientBuffer);
    platform::SetLastSystemError(platform::kErrorInsufficientBuffer);
}

bool FailEmpty(char* out, std::size_t capacity) {
    if (out != nullptr && capacity >= 1) *out = '\0';
    return false;
}

// A text longer than n loses everything from its n-th character on, one more than asked for; wanted.
std::string CutBelow(const char* text, std::size_t n) {
    std::string copy = text != nullptr ? text : "";
    if (copy.size() > n) copy.resize(n > 0 ? n - 1 : 0);
    return copy;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view SkipBlanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    return start != std::string_view::npos ? text.substr(start) : std::string_view();
}

char LowerLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
char UpperLetter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

OwnedText DupString(const char* source, std::size_t size) {
    static const char funcName[] = "DupString";
    const bool debug = gTrace.debug;
    if (debug) DbgVsprintf(funcName, "Entered");
    if (source == nullptr) {
        DbgVsprintf(funcName, "ERROR. Entered with NULL parameter. Returning NULL");
        return {};
    }
    const std::string_view text = source;
    const std::size_t needed = text.size() + 1;
    if (size == 0) size = needed;
    if (size < needed) {
        DbgVsprintf(funcName, "ERROR. Buffer too small! Len: (%d < %d by %d bytes) , In: (0x%x:%s)", CountOf(size),
                    CountOf(needed), CountOf(needed - size), Address(source), source);
        FailBufferTooSmall(funcName);
        return {};
    }
    OwnedText copy = OwnedText::Copy(text, size);
    if (!copy) {
        DbgPrintApiError(funcName, "LocalAlloc()", platform::LastSystemError());
        return {};
    }
    // The trailing comma and blank are part of the text.
    if (debug) {
        DbgVsprintf(funcName, "RETURNING (0x%x:%s) Size:%d Len:(%d) In Addr:(0x%x), ", Address(copy.get()), copy.get(),
                    CountOf(size), CountOf(text.size()), Address(source));
    }
    return copy;
}

std::unique_ptr<char16_t[]> Zarn_GetWideString(const char* source, std::size_t sizeInBytes) {
    static const char funcName[] = "Zarn_GetWideString";
    DbgVsprintf(funcName, "Entered");
    if (source == nullptr) {
        DbgVsprintf(funcName, "ERROR. Entered with NULL parameter. Returning NULL");
        return nullptr;
    }
    const std::u16string wide = platform::Utf8ToWide(source);
    const std::size_t needed = (wide.size() + 1) * sizeof(char16_t);
    const std::size_t size = sizeInBytes != 0 ? sizeInBytes : needed;
    if (size < needed) {
        DbgVsprintf(funcName, "( TOO SMALL! Len: (%d < %d by %d) , In: (0x%x:%s)", CountOf(size), CountOf(needed),
                    CountOf(needed - size), Address(source), source);
        FailBufferTooSmall(funcName);
        return nullptr;
    }
    if (size > needed) {
        DbgVsprintf(funcName, "BUF LARGER! Len: (%d > %d by %d) , In: (0x%x:%s)", CountOf(size), CountOf(needed),
                    CountOf(size - needed), Address(source), source);
    }
    const std::size_t units = (size + 1) / sizeof(char16_t);
    std::unique_ptr<char16_t[]> copy(new (std::nothrow) char16_t[units]());
    if (copy == nullptr) {
        DbgPrintApiError(funcName, "LocalAlloc()", platform::LastSystemError());
        return nullptr;
    }
    std::copy(wide.begin(), wide.end(), copy.get());
    return copy;
}

std::string GroupDigits(std::string_view digits) {
    if (digits.size() > kLongestCount) {
        OutPutPrint(Zarn_Vsprintf("GroupDigits", "ERROR. Too Many chars read from szDiskUsage. Max:%d, Read:%d",
                                  CountOf(kLongestCount), CountOf(digits.size()))
                        .get());
    }
    // More than twelve characters stay without separators, as wanted.
    if (digits.size() > kLongestGrouped) return std::string(digits);
    std::string grouped;
    for (std::size_t at = 0; at < digits.size(); ++at) {
        const bool startsGroup = at > 0 && IsDigit(digits[at - 1]) && (digits.size() - at) % 3 == 0;
        if (startsGroup) grouped += ',';
        grouped += digits[at];
    }
    const std::size_t room = digits.size() + digits.size() / 3 + 1;
    if (grouped.size() > room) {
        OutPutPrint(Zarn_Vsprintf("GroupDigits", "ERROR. Too Many chars copied to pszBytes:%x. Max:%d, Written:%d",
                                  Address(grouped.data()), CountOf(room), CountOf(grouped.size()))
                        .get());
        grouped.resize(room);
    }
    return grouped;
}

bool Zarn_GetSizeText(std::int32_t count, char* out, bool useMegabytes, std::size_t capacity) {
    static const char funcName[] = "Zarn_GetSizeText";
    DbgVsprintf(funcName, "Entered");
    const OwnedText grouped = OwnedText::Copy(GroupDigits(std::to_string(count)));
    if (!grouped) {
        DbgPrintApiError(funcName, "LocalAlloc()", platform::LastSystemError());
        DbgVsprintf(funcName, "ERROR. No Memory. Returning FALSE");
        return FailEmpty(out, capacity);
    }
    // Kilobytes up to exactly one megabyte, as wanted.
    const bool inMegabytes = useMegabytes && count > kMegabyte;
    const double amount = static_cast<double>(count) / (inMegabytes ? kMegabyte : 1024);
    const OwnedText text = Zarn_ResVsprintf(inMegabytes ? MSG_SIZE_IN_MB : MSG_SIZE_IN_KB, amount, grouped.get());
    if (!text) {
        DbgVsprintf(funcName, "ERROR. Call to Zarn_ResVsprintf() Failed. Returning FALSE");
        return FailEmpty(out, capacity);
    }
    const std::size_t length = text.view().size();
    if (out == nullptr || length >= capacity) {
        DbgVsprintf(funcName, "%d > %d. Returning FALSE", CountOf(length), CountOf(capacity));
        return FailEmpty(out, capacity);
    }
    std::copy_n(text.get(), length + 1, out);
    return true;
}

OwnedText Zarn_GetFileTimeString(const FileTime* time) {
    DbgVsprintf("Zarn_GetFileTimeString", "Entered");
    return FileTimeText(time);
}

OwnedText FileTimeText(const FileTime* time) {
    static const char funcName[] = "Zarn_GetFileTimeString";
    CalendarTime calendar;
    if (time == nullptr || !FileTimeToCalendar(*time, calendar)) calendar = platform::LocalTimeNow();

    const char* month = MonthName(calendar.month);
    OwnedText text;
    if (calendar.hour == 0 || calendar.minute == 0) {
        // Listing lines that carry a year only are stored as midnight, so midnight and full hours show the year;
        // wanted.
        text = Zarn_Vsprintf(funcName, "%s %d  %d", month, calendar.day, calendar.year);
    } else {
        // 12:30 shows as 0:30PM, and the two forms differ in their blanks; both wanted.
        const char* half = calendar.hour >= 12 ? "PM" : "AM";
        const int hour = calendar.hour % 12;
        text = calendar.minute < 10
                   ? Zarn_Vsprintf(funcName, "%s %d  %d:0%d%s", month, calendar.day, hour, calendar.minute, half)
                   : Zarn_Vsprintf(funcName, "%s %d %d:%d%s", month, calendar.day, hour, calendar.minute, half);
    }
    if (!text) {
        DbgVsprintf(funcName, "ERROR. Returning NULL Date String");
        return {};
    }
    const std::size_t length = text.view().size();
    if (length > kLongestDate) {
        DbgVsprintf(funcName, "WARNING. Date text too long. (%s) by %d chars", text.get(),
                    CountOf(length - kLongestDate));
    }
    return text;
}

int Zarn_strncmpi(const char* a, const char* b, std::size_t n) {
    DbgVsprintf("Zarn_strncmpi", "Entered");
    return platform::LocaleCompare(platform::LocaleLower(CutBelow(a, n)), platform::LocaleLower(CutBelow(b, n)));
}

int Zarn_strncmp(const char* a, const char* b, std::size_t n) {
    DbgVsprintf("Zarn_strncmp", "Entered");
    return platform::LocaleCompare(CutBelow(a, n), CutBelow(b, n));
}

int Zarn_atoi(std::string_view text) {
    DbgVsprintf("Zarn_atoi", "Entered");
    text = SkipBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    long long value = 0;
    for (const char digit : text) {
        if (!IsDigit(digit)) break;
        value = std::min(value * 10 + (digit - '0'), static_cast<long long>(INT_MAX) + 1);
    }
    return static_cast<int>(negative ? -value : std::min(value, static_cast<long long>(INT_MAX)));
}

std::uint32_t ParseUnsigned(std::string_view text) {
    std::uint32_t value = 0;
    for (const char digit : SkipBlanks(text)) {
        if (!IsDigit(digit)) break;
        value = value * 10 + static_cast<std::uint32_t>(digit - '0');
    }
    return value;
}

bool ClipHasFiles() {
    DbgVsprintf("ClipHasFiles", "Entered");
    return false;
}

std::string AsciiLower(std::string_view text) {
    std::string copy(text);
    std::transform(copy.begin(), copy.end(), copy.begin(), LowerLetter);
    return copy;
}

std::string AsciiUpper(std::string_view text) {
    std::string copy(text);
    std::transform(copy.begin(), copy.end(), copy.begin(), UpperLetter);
    return copy;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return LowerLetter(left) == LowerLetter(right); });
}

void StripTrailing(std::string& text, std::string_view set, std::size_t shortest) {
    while (text.size() > shortest && set.find(text.back()) != std::string_view::npos) text.pop_back();
}

std::string DisplayName(std::string_view remoteBytes) {
    if (platform::IsValidUtf8(remoteBytes)) return std::string(remoteBytes);
    return platform::SystemPageToUtf8(remoteBytes);
}
