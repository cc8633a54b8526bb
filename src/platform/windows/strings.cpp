#include "platform/strings.h"

#include <windows.h>

#include "platform/utf8.h"
#include "platform/windows/wide_text.h"

namespace platform {

bool LoadText(unsigned id, std::size_t longest, std::string& text) {
    text.clear();
    const wchar_t* stored = nullptr;
    // A buffer size of 0 asks for the address of the text in the program itself; it has no terminator.
    const int length = ::LoadStringW(::GetModuleHandleW(nullptr), id, reinterpret_cast<wchar_t*>(&stored), 0);
    if (length <= 0 || stored == nullptr) {
        // An empty text looks like a missing one, and the system sets no error for some missing ones.
        ::SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return false;
    }
    text = FromWide(std::wstring_view(stored, static_cast<std::size_t>(length)));
    text.resize(CutUtf8(text, longest).size());
    return true;
}

}  // namespace platform
