#include "foundation/text_compare.h"

#include <algorithm>

#include "foundation/ascii.h"
#include "foundation/trace.h"
#include "platform/system.h"

namespace {

std::string CutBelow(const char* text, std::size_t n) {
    std::string copy = text != nullptr ? text : "";
    if (copy.size() > n) copy.resize(n > 0 ? n - 1 : 0);
    return copy;
}

template <char (*change)(char)>
std::string Changed(std::string_view text) {
    std::string copy(text);
    std::transform(copy.begin(), copy.end(), copy.begin(), change);
    return copy;
}

}  // namespace

int Zarn_strncmpi(const char* a, const char* b, std::size_t n) {
    DbgVsprintf("Zarn_strncmpi", "Entered");
    return platform::LocaleCompare(platform::LocaleLower(CutBelow(a, n)), platform::LocaleLower(CutBelow(b, n)));
}

int Zarn_strncmp(const char* a, const char* b, std::size_t n) {
    DbgVsprintf("Zarn_strncmp", "Entered");
    return platform::LocaleCompare(CutBelow(a, n), CutBelow(b, n));
}

std::string AsciiLower(std::string_view text) {
    return Changed<AsciiLower>(text);
}

std::string AsciiUpper(std::string_view text) {
    return Changed<AsciiUpper>(text);
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return AsciiLower(left) == AsciiLower(right); });
}

void StripTrailing(std::string& text, std::string_view set, std::size_t shortest) {
    while (text.size() > shortest && set.find(text.back()) != std::string_view::npos) text.pop_back();
}
