#include "ftp/control/reserved_names.h"

#include "foundation/text_compare.h"
#include "foundation/trace.h"

bool FileNameIsReserved(const char* name) {
    if (name == nullptr) return false;
    // Quirk: only these six; com1. and the like are allowed, kept.
    static constexpr std::string_view kReservedPrefixes[] = {"con.", "aux.", "prn.", "nul.", "lpt1.", "lpt2."};
    const std::string lower = AsciiLower(name);
    for (const std::string_view prefix : kReservedPrefixes) {
        if (!lower.starts_with(prefix)) continue;
        DbgVsprintf("FileNameIsReserved", "ERROR. %s is a reserved filename. Returning TRUE", name);
        return true;
    }
    return false;
}
