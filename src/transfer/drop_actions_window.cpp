#include "transfer/drop_actions_window.h"

#include <windows.h>

#include <shellapi.h>

#include <utility>

#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "transfer/drop_actions.h"
#include "transfer/progress_dialog.h"

std::vector<std::string> FilesOfDrop(void* drop) {
    const auto handle = static_cast<HDROP>(drop);
    std::vector<std::string> names;
    const UINT count = DragQueryFileW(handle, 0xFFFFFFFFu, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring name(DragQueryFileW(handle, i, nullptr, 0), L'\0');
        if (name.empty()) continue;
        DragQueryFileW(handle, i, name.data(), static_cast<UINT>(name.size() + 1));
        names.push_back(Narrow(name));
    }
    return names;
}

std::vector<std::string> FilesOnClipboard(WindowHandle owner) {
    std::vector<std::string> names;
    if (!IsClipboardFormatAvailable(CF_HDROP) || !OpenClipboard(static_cast<HWND>(owner))) return names;
    // The clipboard still owns the handle.
    if (const HANDLE drop = GetClipboardData(CF_HDROP)) names = FilesOfDrop(drop);
    CloseClipboard();
    return names;
}

bool drop_files_fx(Site* site, WindowHandle owner, TransferJob&& job, void (*finished)()) {
    if (!ReadyForDrop(site)) return false;
    job.site = site;
    job.start = TransferStart::DropFiles;
    return OpenTransferDialog(owner, std::move(job), finished);
}

bool paste_files_fx(Site* site, WindowHandle owner, bool (*drop)(Site* site, std::vector<std::string> files)) {
    if (!ReadyForDrop(site)) return false;
    std::vector<std::string> files = FilesOnClipboard(owner);
    DbgVsprintf("paste_files_fx", "%d files", static_cast<int>(files.size()));
    return !files.empty() && drop(site, std::move(files));
}
