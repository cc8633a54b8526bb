// "." and "..": a folder's own name and its parent's, which servers list and no walk may follow.
#pragma once

#include <string_view>

bool IsDotEntry(std::string_view name);
