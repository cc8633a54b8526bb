#include "foundation/number_text.h"

#include <algorithm>
#include <climits>

#include "foundation/ascii.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"

namespace {

constexpr std::size_t kLongestGrouped = 12;
constexpr std::size_t kLongestCount = 20;

int CountOf(std::size_t size) {
    return static_cast<int>(size);
}

std::string_view SkipBlanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    return start != std::string_view::npos ? text.substr(start) : std::string_view();
}

}  // namespace

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

std::string GroupDigits(std::string_view digits) {
    if (digits.size() > kLongestCount) {
        OutPutPrint(Zarn_Vsprintf("GroupDigits", "ERROR. Too Many chars read from szDiskUsage. Max:%d, Read:%d",
                                  CountOf(kLongestCount), CountOf(digits.size()))
                        .get());
    }
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
                                  TraceAddress(grouped.data()), CountOf(room), CountOf(grouped.size()))
                        .get());
        grouped.resize(room);
    }
    return grouped;
}
