#include "foundation/catalogue.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "foundation/error_text.h"
#include "foundation/message_ids.h"
#include "foundation/text_copy.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "platform/strings.h"
#include "platform/system.h"

namespace {

// Longest texts that the several fetching routines take from the catalogue.
constexpr std::size_t kLongestText = 1023;
constexpr std::size_t kLongestToFormat = 510;
constexpr std::size_t kLongestToPrint = 258;
constexpr std::size_t kLongestToRoute = 518;
// Room of an expansion with numbered inserts, terminator included.
constexpr std::size_t kNumberedBuffer = 519;

// Which expansion a message takes is fixed by its id, not derived from its text. Sorted.
constexpr unsigned kPrintfMessages[] = {
    6042, 6043, 7025, 7038, 7052, 7053, 7056, 7057, 7071, 7094, 7099, 7115, 7116, 7117, 7118,
    7119, 7120, 7160, 7161, 7162, 7163, 7164, 7165, 7168, 7173, 7174, 7175, 7179, 7181, 7184,
    7186, 7191, 7192, 7208, 7209, 7216, 7225, 7251, 7269, 7291, 7301, 7326, 7327, 7329,
};

CatalogueSource gSource = platform::LoadText;

void TraceLoadFailure(const char* funcName, unsigned id) {
    const std::uint32_t error = platform::LastSystemError();
    const OwnedText errorText = GetErrorText(error);
    if (!errorText) return;
    DbgVsprintf(funcName, "Call to LoadString(%d) failed. Err:%d:%s", static_cast<int>(id), static_cast<int>(error),
                errorText.get());
}

void TraceClass(const char* funcName, InsertClass insertClass, const char* text) {
    switch (insertClass) {
        case InsertClass::Decimal:
            DbgVsprintf(funcName, "First Format arg for FormatMessage() is Decimal. (%s)", text);
            break;
        case InsertClass::LongDecimal:
            DbgVsprintf(funcName, "First Format arg for FormatMessage() is Long Decimal. (%s)", text);
            break;
        case InsertClass::Unsigned:
            DbgVsprintf(funcName, "First Format arg for FormatMessage() is Unsigned Int. (%s)", text);
            break;
        case InsertClass::Hex:
            DbgVsprintf(funcName, "First Format arg for FormatMessage() is Hex. (%s)", text);
            break;
        case InsertClass::Text:
            DbgVsprintf(funcName, "First Format arg for FormatMessage() is string. (%s)", text);
            break;
        case InsertClass::None:
        case InsertClass::Unknown:
            break;
    }
}

void RouteExpansionFailure(const char* funcName, std::size_t capacity, const char* format) {
    OutPutPrint(
        FormatBounded(funcName, capacity, "%s() Call to vsprintf(buf, %s, vaArgs) failed.", funcName, format).c_str());
}

// Routed whatever the switches say, unlike the overruns of the tracer's own buffers.
void RouteOverrun(int written, const std::string& text) {
    const int excess = written - static_cast<int>(text.size());
    OutPutPrint(Zarn_Vsprintf("Zarn_ResVsprintf", "ERROR. we just outstepped our Bounds by %d chars for %s", excess,
                              text.c_str())
                    .get());
}

OwnedText ExpandAsPrintf(unsigned id, const std::string& text, bool hasPercentBang,
                         std::span<const MessageInsert> inserts) {
    static constexpr char kFuncName[] = "Zarn_ResVsprintf";
    if (hasPercentBang) {
        OutPutPrint(Zarn_Vsprintf(kFuncName, "WARNING String:%d Calling vsprintf() AND pPercentBang is NOT NULL",
                                  static_cast<int>(id))
                        .get());
    } else {
        DbgVsprintf(kFuncName, "String:%d Calling vsprintf()", static_cast<int>(id));
    }
    std::string expansion = ExpandPrintf(text, inserts);
    if (expansion.empty()) {
        RouteExpansionFailure(kFuncName, kTraceBuffer, text.c_str());
        return {};
    }
    const int written = static_cast<int>(expansion.size());
    gBounds.limit = static_cast<int>(kTraceBuffer) - 1;
    gBounds.written = written;
    if (expansion.size() >= kTraceBuffer) {
        expansion.resize(kTraceBuffer - 1);
        RouteOverrun(written, expansion);
    }
    return DupString(expansion.c_str());
}

OwnedText ExpandWithNumbers(unsigned id, const std::string& text, bool hasPercentBang,
                            std::span<const MessageInsert> inserts) {
    static constexpr char kFuncName[] = "Zarn_ResVsprintf";
    if (!hasPercentBang) {
        OutPutPrint(Zarn_Vsprintf(kFuncName, "WARNING String:%d Calling FormatMessage() AND pPercentBang is NULL",
                                  static_cast<int>(id))
                        .get());
    } else {
        DbgVsprintf(kFuncName, "String:%d Calling FormatMessage()", static_cast<int>(id));
    }
    std::string expansion;
    if (!ExpandNumbered(text, inserts, expansion) || expansion.empty()) return {};
    // A long insert costs its end, not the whole message.
    CheckBounds(kFuncName, kNumberedBuffer, expansion);
    return DupString(expansion.c_str());
}

OwnedText LoadAndExpand(unsigned id, std::span<const MessageInsert> inserts) {
    static constexpr char kFuncName[] = "Zarn_ResVsprintf";
    std::string text;
    if (!gSource(id, kLongestToFormat, text)) {
        TraceLoadFailure(kFuncName, id);
        return {};
    }
    // A long decimal counts as unknown here; only PrintCatalogueText knows it.
    const InsertClass insertClass = FirstInsertClass(text);
    if (insertClass != InsertClass::LongDecimal) TraceClass(kFuncName, insertClass, text.c_str());
    const bool hasPercentBang = insertClass != InsertClass::None;
    return IsPrintfMessage(id) ? ExpandAsPrintf(id, text, hasPercentBang, inserts)
                               : ExpandWithNumbers(id, text, hasPercentBang, inserts);
}

bool PrintfForPrinting(unsigned id, const std::string& text, bool isNumbered, std::span<const MessageInsert> inserts,
                       std::string& out) {
    static constexpr char kFuncName[] = "DoPrintIdArgs";
    if (isNumbered) {
        // The full stop after the first word is part of the text; Zarn_ResVsprintf has none.
        OutPutPrint(Zarn_Vsprintf(kFuncName, "WARNING. String:%d Calling vsprintf() AND pPercentBang is NOT NULL",
                                  static_cast<int>(id))
                        .get());
    } else {
        DbgVsprintf(kFuncName, "String:%d Calling vsprintf()", static_cast<int>(id));
    }
    out = ExpandPrintf(text, inserts);
    if (out.empty()) {
        RouteExpansionFailure(kFuncName, kTextBuffer, text.c_str());
        return false;
    }
    CheckBounds(kFuncName, kTraceBuffer, out);
    return true;
}

bool NumberedForPrinting(unsigned id, const std::string& text, bool isNumbered, std::span<const MessageInsert> inserts,
                         std::string& out) {
    static constexpr char kFuncName[] = "DoPrintIdArgs";
    if (!isNumbered) {
        OutPutPrint(Zarn_Vsprintf(kFuncName,
                                  "WARNING String:%d Calling FormatMessage() AND bFormatedForFormatMessage is FALSE",
                                  static_cast<int>(id))
                        .get());
    } else {
        DbgVsprintf(kFuncName, "String:%d Calling FormatMessage()", static_cast<int>(id));
    }
    if (ExpandNumbered(text, inserts, out) && !out.empty()) return true;
    const OwnedText errorText = GetErrorText(platform::kErrorInvalidParameter);
    OutPutPrint(FormatBounded(kFuncName, kTraceBuffer, "%s(%s) FormatMessage() Failed for ID:%d. Err:%d:%s", kFuncName,
                              text.c_str(), static_cast<int>(id), static_cast<int>(platform::kErrorInvalidParameter),
                              errorText.c_str())
                    .c_str());
    return false;
}

}  // namespace

OwnedText Zarn_ResString(unsigned id) {
    static constexpr char kFuncName[] = "Zarn_ResString";
    DbgVsprintf(kFuncName, "Entered. StringID:%d", static_cast<int>(id));
    std::string text;
    if (!gSource(id, kLongestText, text)) {
        // Callers report the error.
        DbgVsprintf(kFuncName, "ERROR. Returning NULL");
        return {};
    }
    OwnedText copy = DupString(text.c_str());
    // The stray parenthesis is part of the text.
    DbgVsprintf(kFuncName, "Done. Returning %x, Length %d)", TraceAddress(copy.get()), static_cast<int>(text.size()));
    return copy;
}

std::string CatalogueText(unsigned id) {
    std::string text;
    if (!gSource(id, kLongestText, text)) text.clear();
    return text;
}

void SetCatalogueSource(CatalogueSource source) {
    gSource = source != nullptr ? source : platform::LoadText;
}

bool IsPrintfMessage(unsigned id) {
    return std::binary_search(std::begin(kPrintfMessages), std::end(kPrintfMessages), id);
}

// 7197 has no inserts, so either expansion yields it.
bool IsPrintfMessageForPrinting(unsigned id) {
    return id == MSG_RESERVED_NAMES || IsPrintfMessage(id);
}

OwnedText ExpandCatalogueText(unsigned id, std::span<const MessageInsert> inserts) {
    OwnedText expansion = LoadAndExpand(id, inserts);
    DbgVsprintf("Zarn_ResVsprintf", "Done. Returning %x (%d bytes)", TraceAddress(expansion.get()),
                static_cast<int>(expansion.view().size()) + 1);
    return expansion;
}

std::string FormatCatalogueText(unsigned id, std::span<const MessageInsert> inserts) {
    const OwnedText text = Zarn_ResString(id);
    return ExpandPrintf(text.view(), inserts);
}

void PrintCatalogueText(unsigned id, std::span<const MessageInsert> inserts) {
    static constexpr char kFuncName[] = "DoPrintIdArgs";
    if (!gTrace.Any()) return;
    std::string text;
    if (!gSource(id, kLongestToPrint, text)) {
        TraceLoadFailure(kFuncName, id);
        return;
    }
    // Unlike the sibling, which takes the first "%1!", this one looks at the first percent sign only.
    const std::size_t percent = text.find('%');
    const bool isNumbered = percent != std::string::npos && text.compare(percent, 3, "%1!") == 0;
    if (isNumbered) {
        const InsertClass insertClass = FirstInsertClass(text);
        TraceClass(kFuncName, insertClass, text.c_str());
        if (insertClass == InsertClass::Unknown) {
            OutPutPrint(FormatBounded(kFuncName, kTextBuffer,
                                      "ERROR. First Format arg for FormatMessage() is UNKNOWN. (%s)", text.c_str())
                            .c_str());
            return;
        }
    }
    std::string line;
    const bool expanded = IsPrintfMessageForPrinting(id) ? PrintfForPrinting(id, text, isNumbered, inserts, line)
                                                         : NumberedForPrinting(id, text, isNumbered, inserts, line);
    if (!expanded) return;
    PrintUnstamped(line.c_str());
}

void DbgTraceMessage(const char* funcName, unsigned id, std::span<const MessageInsert> inserts) {
    if (!gTrace.Any()) return;
    const OwnedText text = Zarn_ResString(id);
    if (!text) {
        const std::uint32_t error = platform::LastSystemError();
        const OwnedText errorText = GetErrorText(error);
        if (!errorText) return;
        OutPutPrint(FormatBounded("DbgVsprintfID", kTraceBuffer, "%s(%s) LoadString() Failed for ID:%d. Err:%d:%s",
                                  "DbgVsprintfID", funcName != nullptr ? funcName : "(null)", static_cast<int>(id),
                                  static_cast<int>(error), errorText.get())
                        .c_str());
        return;
    }
    std::string message;
    if (!ExpandNumbered(text.view(), inserts, message) || message.empty()) {
        OutPutPrint(FormatBounded("DbgVsprintfID", kTextBuffer, "%s() Call to FormatMessage(Format:%s) failed.",
                                  "DbgVsprintfID", text.get())
                        .c_str());
        return;
    }
    RouteStamped(funcName, message.c_str());
}

void DoAddLine(unsigned id) {
    std::string text;
    if (!gSource(id, kLongestToRoute, text)) {
        TraceLoadFailure("DoAddLine", id);
        return;
    }
    OutPutPrint(text.c_str());
}

void DoAddLine(const char* text) {
    OutPutPrint(text);
}

void DoPrintArgs(const char* format, ...) {
    if (!gTrace.Any() || format == nullptr) return;
    char buffer[kTraceBuffer] = "";
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    gBounds.limit = static_cast<int>(kTraceBuffer) - 1;
    gBounds.written = length;
    if (length < 1) {
        RouteExpansionFailure("DoPrintArgs", kTraceBuffer, format);
        return;
    }
    OutPutPrint(buffer);
}
