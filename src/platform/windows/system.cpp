#include "platform/system.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace platform {
namespace {

constexpr DWORD kUsEnglish = 1033;
constexpr UINT kWesternPage = 1252;

DWORD FormatError(DWORD error, DWORD language, wchar_t* buffer, DWORD capacity) {
    constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    return ::FormatMessageW(flags, nullptr, error, language, buffer, capacity, nullptr);
}

}  // namespace

std::uint32_t LastSystemError() {
    return ::GetLastError();
}

void SetLastSystemError(std::uint32_t error) {
    ::SetLastError(error);
}

std::string SystemErrorText(std::uint32_t error) {
    const LastErrorKeeper keeper;
    wchar_t buffer[2048];
    DWORD length = FormatError(error, kUsEnglish, buffer, ARRAYSIZE(buffer));
    if (length == 0) length = FormatError(error, 0, buffer, ARRAYSIZE(buffer));
    while (length > 0 && buffer[length - 1] <= L' ') --length;
    return FromWide(std::wstring_view(buffer, length));
}

void WriteDebugger(const char* text) {
    const LastErrorKeeper keeper;
    ::OutputDebugStringA(text);
}

std::string UserName() {
    wchar_t name[257];
    DWORD length = ARRAYSIZE(name);
    if (!::GetUserNameW(name, &length) || length == 0) return {};
    return FromWide(std::wstring_view(name, length - 1));
}

std::string ProgramPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return {};
        if (length < path.size()) return FromWide(std::wstring_view(path.data(), length));
        path.resize(path.size() * 2);
    }
}

void PlayBeep(Beep beep) {
    ::MessageBeep(beep == Beep::Asterisk ? MB_ICONASTERISK : MB_ICONEXCLAMATION);
}

std::string SystemPageToUtf8(std::string_view bytes) {
    if (bytes.empty()) return {};
    const UINT page = ::GetACP() == CP_UTF8 ? kWesternPage : ::GetACP();
    const int size = static_cast<int>(bytes.size());
    const int needed = ::MultiByteToWideChar(page, 0, bytes.data(), size, nullptr, 0);
    if (needed <= 0) return {};
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    ::MultiByteToWideChar(page, 0, bytes.data(), size, wide.data(), needed);
    return FromWide(wide);
}

std::string LocaleLower(std::string_view text) {
    if (text.empty()) return {};
    const std::wstring wide = ToWide(text);
    const int size = static_cast<int>(wide.size());
    std::wstring lower(wide.size(), L'\0');
    // One character stays one character in this mapping.
    if (::LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_LOWERCASE, wide.data(), size, lower.data(), size) != size) {
        return std::string(text);
    }
    return FromWide(lower);
}

int LocaleCompare(std::string_view a, std::string_view b) {
    const std::wstring wideA = ToWide(a);
    const std::wstring wideB = ToWide(b);
    const int result = ::CompareStringW(LOCALE_USER_DEFAULT, 0, wideA.data(), static_cast<int>(wideA.size()),
                                        wideB.data(), static_cast<int>(wideB.size()));
    if (result == 0) return a.compare(b);
    return result - CSTR_EQUAL;
}

}  // namespace platform
