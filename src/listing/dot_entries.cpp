#include "listing/dot_entries.h"

bool IsDotEntry(std::string_view name) {
    return name == "." || name == "..";
}
