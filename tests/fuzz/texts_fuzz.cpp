// Texts that are expanded or decoded: message formats with any values, command texts with percent signs, passwords.
#include <algorithm>
#include <string>

#include "config/password_form.h"
#include "config/site.h"
#include "foundation/catalogue.h"
#include "foundation/message_expansion.h"
#include "fuzz/harness.h"

namespace {

// The longest that one character of a text can become: a number of 309 digits before its point and 500 behind it, or
// the value's own text.
constexpr std::size_t kLongestExpansion = 1000;

constexpr unsigned kPrintfMessage = 7025;
constexpr unsigned kNumberedMessage = 7318;

std::string catalogueText;

bool GiveCatalogueText(unsigned, std::size_t longest, std::string& text) {
    text = catalogueText.substr(0, longest);
    return true;
}

MessageInsert InsertOf(std::uint8_t kind, const std::string& text) {
    switch (kind % 9) {
        case 0:
            return static_cast<int>(text.size());
        case 1:
            return INT64_MIN;
        case 2:
            return UINT64_MAX;
        case 3:
            return 1.5e308;
        case 4:
            return -0.000123;
        case 5:
            return static_cast<const char*>(nullptr);
        case 6:
            return {};
        default:
            return text;
    }
}

// The catalogue's own ways of expanding, which cut to the sizes of the program's buffers.
void CheckCatalogue(std::string_view text, std::span<const MessageInsert> inserts) {
    catalogueText = text;
    SetCatalogueSource(GiveCatalogueText);
    const bool numbered = FirstInsertClass(text) != InsertClass::None;
    const unsigned id = numbered ? kNumberedMessage : kPrintfMessage;
    const OwnedText expanded = ExpandCatalogueText(id, inserts);
    REQUIRE_THAT(expanded.view().size() <= (numbered ? 518u : 2047u));
    FormatCatalogueText(id, inserts);
    SetCatalogueSource(nullptr);
}

}  // namespace

// Three bytes for the kinds of values, a text value up to a line feed, then the format.
void FuzzMessages(std::string_view input) {
    FuzzInput from(input);
    const std::uint8_t kinds[] = {from.Byte(), from.Byte(), from.Byte()};
    const std::string value(from.TextUntil('\n'));
    const std::string_view text = from.Rest();
    const MessageInsert inserts[] = {InsertOf(kinds[0], value), InsertOf(kinds[1], value), InsertOf(kinds[2], value)};

    const std::size_t longest = text.size() * (kLongestExpansion + value.size());
    REQUIRE_THAT(ExpandPrintf(text, inserts).size() <= longest);
    std::string numbered = "before";
    ExpandNumbered(text, inserts, numbered);
    REQUIRE_THAT(numbered.size() <= longest);
    FirstInsertClass(text);
    REQUIRE_THAT(ExpandOnceMore(text).size() <= text.size());
    CheckCatalogue(text, inserts);

    // A text without conversions comes out as it went in, whichever way it is taken.
    const std::string doubled = DoublePercents(text);
    REQUIRE_THAT(ExpandOnceMore(doubled) == text);
    REQUIRE_THAT(ExpandPrintf(doubled, inserts) == text);
    REQUIRE_THAT(ExpandNumbered(doubled, inserts, numbered) && numbered == text);
    if (std::count(text.begin(), text.end(), '%') == 0) REQUIRE_THAT(ExpandPrintf(text, {}) == text);
}

// The user up to a line feed, then the stored text, which serves as a password too.
void FuzzPassword(std::string_view input) {
    FuzzInput from(input);
    const std::string_view user = from.TextUntil('\n');
    const std::string_view text = from.Rest();
    const bool plain = user == "anonymous";
    const std::string decoded = DecodePassword(text, user);
    REQUIRE_THAT(plain ? decoded == text : decoded.empty() || decoded.size() == text.size() / 2);

    const std::string_view password = text.substr(0, kUserSize - 1);
    const std::string stored = EncodePassword(password, user);
    const bool sevenBit = std::all_of(password.begin(), password.end(), [](char c) { return (c & 0x80) == 0; });
    if (plain) REQUIRE_THAT(stored == password);
    if (!plain && sevenBit) REQUIRE_THAT(stored.size() == password.size() * 2);
    if (plain || sevenBit) REQUIRE_THAT(DecodePassword(stored, user) == password);
}
