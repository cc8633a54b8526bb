// Answers a control's request for a text: the control lends a buffer.
#pragma once

#include <string_view>

// Copies as much of `text` as fits, always with a NUL at the end. `capacity`: characters, the NUL included.
void GiveText(std::wstring_view text, wchar_t* buffer, int capacity);
