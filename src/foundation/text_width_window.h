// Width of a text in a window's own font, in pixels.
#pragma once

#include <string_view>

#include "foundation/console_pane.h"

// 0 on failure, for a missing window, or an empty text.
int ZarnGetStringWidth(WindowHandle window, std::string_view text);
