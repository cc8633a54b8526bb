// The message catalogue: every text a user sees, by number. Fetches texts, expands them in the style that is fixed per
// id, and prints them to the console and the log. The texts themselves are in the resources.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "foundation/message_expansion.h"
#include "foundation/owned_text.h"
#include "foundation/printf_check.h"
#include "foundation/trace.h"

// A fresh copy of the catalogue text, cut to 1023 characters; null when there is none.
OwnedText Zarn_ResString(unsigned id);
// The same as a std::string, empty when there is none; not traced (for window texts read in bulk).
std::string CatalogueText(unsigned id);

// Where texts come from: the program's string table, or for a test what it needs; null brings the table back.
using CatalogueSource = bool (*)(unsigned id, std::size_t longest, std::string& text);
void SetCatalogueSource(CatalogueSource source);

// True when Zarn_ResVsprintf, or DoPrintIdArgs, expands `id` printf-style. Quirk: they differ in 7197, kept.
bool IsPrintfMessage(unsigned id);
bool IsPrintfMessageForPrinting(unsigned id);

// A fresh expansion of message `id`, at most 2047 characters printf-style or 518 with numbered inserts; null when the
// text is missing or the expansion failed.
OwnedText ExpandCatalogueText(unsigned id, std::span<const MessageInsert> inserts);
template <class... Values>
OwnedText Zarn_ResVsprintf(unsigned id, const Values&... values) {
    const MessageInsert inserts[] = {MessageInsert(values)..., MessageInsert()};
    return ExpandCatalogueText(id, std::span(inserts, sizeof...(values)));
}

// A catalogue text that carries printf conversions but belongs to the other style: fetched and formatted by its user.
std::string FormatCatalogueText(unsigned id, std::span<const MessageInsert> inserts);

// Expands message `id` and prints it, unstamped, to the console while verbose and to the log while logging.
void PrintCatalogueText(unsigned id, std::span<const MessageInsert> inserts);
template <class... Values>
void DoPrintIdArgs(unsigned id, const Values&... values) {
    const MessageInsert inserts[] = {MessageInsert(values)..., MessageInsert()};
    PrintCatalogueText(id, std::span(inserts, sizeof...(values)));
}

// Traces message `id` with numbered inserts, stamped as DbgVsprintf does.
void DbgTraceMessage(const char* funcName, unsigned id, std::span<const MessageInsert> inserts);
template <class... Values>
void DbgVsprintfID(const char* funcName, unsigned id, const Values&... values) {
    if (!gTrace.Any()) return;
    const MessageInsert inserts[] = {MessageInsert(values)..., MessageInsert()};
    DbgTraceMessage(funcName, id, std::span(inserts, sizeof...(values)));
}

// Routes a catalogue text without inserts, or a given text (null: nothing), through OutPutPrint.
void DoAddLine(unsigned id);
void DoAddLine(const char* text);
// Expands a printf-style format and routes it without the stamp.
void DoPrintArgs(const char* format, ...) ZARN_PRINTF(1, 2);
