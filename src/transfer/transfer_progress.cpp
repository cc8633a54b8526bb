#include "transfer/transfer_progress.h"

#include <algorithm>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "platform/files.h"

TransferProgress gTransfer;
TransferView gTransferView;

namespace {

constexpr std::uint64_t kBarEnd = 1000;

void Show(void (*set)(const char*), const std::string& text) {
    if (set != nullptr) set(text.c_str());
}

void ShowNamed(unsigned messageId, const char* name) {
    const std::string shown = ShownName(name != nullptr ? name : "");
    Show(gTransferView.setItem, Zarn_ResVsprintf(messageId, shown).c_str());
}

std::string PlaceText(const char* host, const char* path) {
    std::string shownPath = ShownName(path != nullptr ? path : "");
    if (host == nullptr || *host == '\0') return shownPath;
    return ShownName(host) + " : " + shownPath;
}

}  // namespace

void ResetTransfer() {
    gTransfer.counters = TransferCounters();
    gTransfer.replaceAll = false;
    gTransfer.listedFolder.clear();
    gTransfer.currentLocalFolder = platform::CurrentFolder();
}

void SetDlgCreatingText(const char* name) {
    ShowNamed(MSG_CREATING_DIRECTORY, name);
}

void SetDlgTransferingText(const char* name) {
    ShowNamed(MSG_TRANSFERING_FILE, name);
}

void SetDlgFromText(const char* host, const char* path) {
    Show(gTransferView.setSource, PlaceText(host, path));
}

void SetDlgSendToText(const char* host, const char* path) {
    Show(gTransferView.setDestination, PlaceText(host, path));
}

void SetByteCountText(std::uint64_t done, std::uint64_t total) {
    if (total == 0) {
        Show(gTransferView.setBytes, std::to_string(done));
        return;
    }
    Show(gTransferView.setBytes, Zarn_ResVsprintf(MSG_BYTES_OF_TOTAL, done, total).c_str());
}

void SetProgressBar(int position) {
    if (gTransferView.setBar != nullptr) gTransferView.setBar(position);
}

void ShowTransferProgress(std::uint64_t done, std::uint64_t total) {
    SetByteCountText(done, total);
    // A file may have grown since it was listed, and its size may have been cut to 32 bits there.
    if (total > 0) SetProgressBar(static_cast<int>(done >= total ? kBarEnd : done * kBarEnd / total));
}

void RefreshCountersText() {
    Show(gTransferView.setCounters, CountersText(gTransfer.counters.files, gTransfer.counters.folders));
}

std::string CountersText(int files, int folders) {
    if (files > 0 && folders > 0) {
        return Zarn_ResVsprintf(MSG_FILES_TRANSFERED_FOLDERS_CREATED, files, folders).c_str();
    }
    if (files > 0) return Zarn_ResVsprintf(MSG_FILES_TRANSFERED, files).c_str();
    if (folders > 0) return Zarn_ResVsprintf(MSG_FOLDERS_CREATED, folders).c_str();
    return {};
}
