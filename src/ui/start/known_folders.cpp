#include "ui/start/known_folders.h"

#include <windows.h>

#include <shlobj.h>

#include "foundation/trace.h"
#include "platform/files.h"
#include "ui/screen/wide_text.h"
#include "ui/start/start_folder.h"

namespace {

// {374DE290-123F-4565-9164-39C4925E467B}
constexpr GUID kDownloads = {0x374de290, 0x123f, 0x4565, {0x91, 0x64, 0x39, 0xc4, 0x92, 0x5e, 0x46, 0x7b}};

bool IsFolder(const std::string& path) {
    platform::FileInfo info;
    return !path.empty() && platform::GetFileInfo(path.c_str(), info) && info.isFolder;
}

// Found at run time: the systems that this program runs on do not all have it.
std::string KnownFolder(const GUID& folder) {
    using Ask = HRESULT(WINAPI*)(const GUID&, DWORD, HANDLE, wchar_t**);
    const HMODULE shell = GetModuleHandleW(L"shell32.dll");
    const FARPROC found = shell != nullptr ? GetProcAddress(shell, "SHGetKnownFolderPath") : nullptr;
    if (found == nullptr) return {};
    const auto ask = reinterpret_cast<Ask>(reinterpret_cast<void (*)()>(found));
    wchar_t* path = nullptr;
    std::string result;
    if (ask(folder, 0, nullptr, &path) == S_OK && path != nullptr) result = Narrow(path);
    CoTaskMemFree(path);
    return result;
}

std::string OldKnownFolder(int folder) {
    wchar_t path[MAX_PATH] = L"";
    return SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path) == S_OK ? Narrow(path) : std::string();
}

std::string SystemFolder() {
    wchar_t path[MAX_PATH] = L"";
    const UINT length = GetWindowsDirectoryW(path, MAX_PATH);
    return length > 0 && length < MAX_PATH ? Narrow(path) : std::string();
}

}  // namespace

std::string DownloadsFolder() {
    std::string folder = KnownFolder(kDownloads);
    if (!IsFolder(folder)) folder = OldKnownFolder(CSIDL_PERSONAL);
    if (!IsFolder(folder)) folder = OldKnownFolder(CSIDL_PROFILE);
    return IsFolder(folder) ? folder : std::string();
}

void EnterStartFolder(const std::string& programPath) {
    const std::string current = platform::CurrentFolder();
    if (IsFolderToStartIn(current, FolderOfPath(programPath), SystemFolder())) return;
    const std::string downloads = DownloadsFolder();
    DbgVsprintf("EnterStartFolder", "(%s) is left for (%s)", current.c_str(), downloads.c_str());
    if (!downloads.empty()) platform::SetCurrentFolder(downloads.c_str());
}
