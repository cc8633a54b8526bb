#include "ui/start/known_folders.h"

#include <windows.h>

#include <shlobj.h>

// Once more, to define the folders' ids here: the library that has them would bring every id of the system along.
#include <initguid.h>
#include <knownfolders.h>

#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "platform/files.h"
#include "ui/start/start_folder.h"

namespace {

bool IsFolder(const std::string& path) {
    platform::FileInfo info;
    return !path.empty() && platform::GetFileInfo(path.c_str(), info) && info.isFolder;
}

std::string KnownFolder(const KNOWNFOLDERID& folder) {
    wchar_t* path = nullptr;
    std::string result;
    if (SHGetKnownFolderPath(folder, 0, nullptr, &path) == S_OK && path != nullptr) result = Narrow(path);
    CoTaskMemFree(path);
    return result;
}

std::string SystemFolder() {
    wchar_t path[MAX_PATH] = L"";
    const UINT length = GetWindowsDirectoryW(path, MAX_PATH);
    return length > 0 && length < MAX_PATH ? Narrow(path) : std::string();
}

}  // namespace

std::string DownloadsFolder() {
    for (const KNOWNFOLDERID* place : {&FOLDERID_Downloads, &FOLDERID_Documents, &FOLDERID_Profile}) {
        std::string folder = KnownFolder(*place);
        if (IsFolder(folder)) return folder;
    }
    return {};
}

void EnterStartFolder(const std::string& programPath) {
    const std::string current = platform::CurrentFolder();
    if (IsFolderToStartIn(current, FolderOfPath(programPath), SystemFolder())) return;
    const std::string downloads = DownloadsFolder();
    DbgVsprintf("EnterStartFolder", "(%s) is left for (%s)", current.c_str(), downloads.c_str());
    if (!downloads.empty()) platform::SetCurrentFolder(downloads.c_str());
}
