// The program's string table: numbered texts that travel with the program.
#pragma once

#include <string>

namespace platform {

// The text of `id`, UTF-8, cut to `longest` characters (a longer text keeps its first ones); false when the table has
// no such text, and the last system error is then 1814 (not found).
bool LoadText(unsigned id, std::size_t longest, std::string& text);

}  // namespace platform
