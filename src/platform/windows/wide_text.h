// UTF-8 arguments for the wide calls of Windows, and their results back. The wide calls are used throughout, so that
// this floor works the same in a program whose manifest does not ask for the UTF-8 code page.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/utf8.h"

namespace platform {

// Keeps the calling thread's last error over the calls that follow in the same scope.
class LastErrorKeeper {
  public:
    LastErrorKeeper() : error_(::GetLastError()) {}
    ~LastErrorKeeper() { ::SetLastError(error_); }
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

  private:
    DWORD error_;
};

inline std::wstring ToWide(std::string_view text) {
    const std::u16string wide = Utf8ToWide(text);
    return std::wstring(wide.begin(), wide.end());
}

inline std::string FromWide(std::wstring_view text) {
    return WideToUtf8(std::u16string(text.begin(), text.end()));
}

// A text argument for one wide call. Freeing it must not disturb the last error which that call left.
class WideArgument {
  public:
    explicit WideArgument(const char* text) : text_(ToWide(text == nullptr ? "" : text)) {}
    ~WideArgument() {
        const LastErrorKeeper keeper;
        std::wstring().swap(text_);
    }
    WideArgument(const WideArgument&) = delete;
    WideArgument& operator=(const WideArgument&) = delete;

    const wchar_t* Text() const { return text_.c_str(); }

  private:
    std::wstring text_;
};

// The address of a function that older systems may lack; null when it is absent.
template <class Function>
Function FindFunction(const wchar_t* library, const char* name) {
    const HMODULE module = ::GetModuleHandleW(library);
    if (module == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

}  // namespace platform
