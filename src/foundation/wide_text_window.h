// Texts between the program (UTF-8) and the wide window calls, which are used so that every character shows whatever
// the program's code page is. For window files only.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/windows/wide_text.h"

inline std::wstring Wide(std::string_view text) {
    return platform::ToWide(text);
}

inline std::string Narrow(std::wstring_view text) {
    return platform::FromWide(text);
}

inline void SetText(HWND window, std::string_view text) {
    SetWindowTextW(window, Wide(text).c_str());
}

inline std::string GetText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return Narrow(text);
}

inline void SetItemText(HWND dialog, int item, std::string_view text) {
    SetText(GetDlgItem(dialog, item), text);
}

inline std::string ItemText(HWND dialog, int item) {
    return GetText(GetDlgItem(dialog, item));
}

// The text for a multi-line edit field, which breaks lines at CR LF only.
inline std::string WithCrLf(std::string_view text) {
    std::string lines;
    char before = '\0';
    for (const char character : text) {
        if (character == '\n' && before != '\r') lines += '\r';
        lines += character;
        before = character;
    }
    return lines;
}
