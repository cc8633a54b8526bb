// Shortens a path for display to what fits a width, component by component. Measuring is the caller's: a window, or a
// test.
#pragma once

#include <functional>
#include <string>
#include <string_view>

using MeasureText = std::function<int(std::string_view)>;

// The path when it fits into `width`, else its last component behind "/.../" and as much of the front as fits. Empty
// for a path without a separator that does not fit.
std::string Zarn_TuncateAndAddEllipses(std::string_view path, int width, const MeasureText& measure);
