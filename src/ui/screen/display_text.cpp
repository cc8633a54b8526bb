#include "ui/screen/display_text.h"

#include <algorithm>

void GiveText(std::wstring_view text, wchar_t* buffer, int capacity) {
    if (buffer == nullptr || capacity <= 0) return;
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity) - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = L'\0';
}
