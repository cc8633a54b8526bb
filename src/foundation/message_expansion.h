// Expands catalogue texts in the two styles they are written in: printf conversions, and numbered inserts ("%1!s!") as
// FormatMessage knows them. Pure functions on typed values: a text that asks for a value that was not given, or for
// one of another type, never reads foreign memory. Which style a message takes is the catalogue's business.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// One value to insert; borrows texts.
class MessageInsert {
  public:
    enum class Kind { None, Signed, Unsigned, Real, Text };
    MessageInsert() = default;
    MessageInsert(int value) : kind_(Kind::Signed), number_(value) {}
    MessageInsert(long value) : kind_(Kind::Signed), number_(value) {}
    MessageInsert(long long value) : kind_(Kind::Signed), number_(value) {}
    MessageInsert(unsigned value) : kind_(Kind::Unsigned), number_(value) {}
    MessageInsert(unsigned long value) : kind_(Kind::Unsigned), number_(static_cast<std::int64_t>(value)) {}
    MessageInsert(unsigned long long value) : kind_(Kind::Unsigned), number_(static_cast<std::int64_t>(value)) {}
    MessageInsert(double value) : kind_(Kind::Real), real_(value) {}
    MessageInsert(const char* value) : kind_(Kind::Text), text_(value) {}
    MessageInsert(const std::string& value) : kind_(Kind::Text), text_(value.c_str()) {}

    Kind kind() const { return kind_; }
    std::int64_t number() const { return number_; }
    double real() const { return real_; }
    const char* text() const { return text_ != nullptr ? text_ : "(null)"; }

  private:
    Kind kind_ = Kind::None;
    std::int64_t number_ = 0;
    double real_ = 0;
    const char* text_ = nullptr;
};

// printf-style: flags, width, precision and the conversions d i u x X c s f g %, with l and h ignored. A conversion
// without a matching value stays in the text as it is written.
std::string ExpandPrintf(std::string_view text, std::span<const MessageInsert> inserts);

// Numbered inserts: %1 .. %99 with an optional printf type between exclamation marks, %0 (ends the text), %n, %%, "%."
// "%!" "% ". False when an insert that the text names was not given or its type is malformed.
bool ExpandNumbered(std::string_view text, std::span<const MessageInsert> inserts, std::string& out);

// Class of the first "%1!" insert of a text, for tracing.
enum class InsertClass { None, Decimal, LongDecimal, Unsigned, Hex, Text, Unknown };
InsertClass FirstInsertClass(std::string_view text);

// Expands a command text a second time, without arguments: "%%" becomes "%", any other conversion is left
// alone. Callers that put a name into such a text double its percent signs with DoublePercents.
std::string ExpandOnceMore(std::string_view text);
std::string DoublePercents(std::string_view text);
