#include "transfer/transfer_progress.h"

#include <atomic>
#include <mutex>
#include <utility>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "listing/directory_entry.h"

namespace {

// Written by the worker, read by the window's thread. Texts are made before the lock is taken.
struct Published {
    std::mutex lock;
    TransferProgress progress;
};
Published gPublished;
std::atomic<bool> gRunning{false};
std::atomic<void (*)(const TransferProgress&)> gWatcher{nullptr};

void TellWatcher(void (*watcher)(const TransferProgress&)) {
    TransferProgress seen;
    {
        const std::lock_guard guard(gPublished.lock);
        seen = gPublished.progress;
    }
    watcher(seen);
}

template <class Change>
void Publish(const Change& change) {
    {
        const std::lock_guard guard(gPublished.lock);
        change(gPublished.progress);
        ++gPublished.progress.change;
    }
    if (const auto watcher = gWatcher.load()) TellWatcher(watcher);
}

void PublishText(std::string TransferProgress::*field, std::string text) {
    Publish([&](TransferProgress& progress) { progress.*field = std::move(text); });
}

void PublishItem(unsigned messageId, const char* name) {
    const std::string shown = ShownName(name != nullptr ? name : "");
    PublishText(&TransferProgress::item, Zarn_ResVsprintf(messageId, shown).c_str());
}

std::string PlaceText(const char* host, const char* path) {
    std::string shownPath = ShownName(path != nullptr ? path : "");
    if (host == nullptr || *host == '\0') return shownPath;
    return ShownName(host) + " : " + shownPath;
}

std::string BytesText(std::uint64_t done, std::uint64_t total) {
    return total == 0 ? std::to_string(done) : Zarn_ResVsprintf(MSG_BYTES_OF_TOTAL, done, total).c_str();
}

// A file may have grown since it was listed, and the listing cuts its size to 32 bits.
int BarPosition(std::uint64_t done, std::uint64_t total) {
    return done >= total ? kBarEnd : static_cast<int>(done * kBarEnd / total);
}

}  // namespace

void ResetTransferProgress() {
    Publish([](TransferProgress& progress) {
        const std::uint32_t change = progress.change;
        progress = TransferProgress();
        progress.change = change;
    });
}

void SetDlgCreatingText(const char* name) {
    PublishItem(MSG_CREATING_DIRECTORY, name);
}

void SetDlgTransferingText(const char* name) {
    PublishItem(MSG_TRANSFERING_FILE, name);
}

void SetDlgFromText(const char* host, const char* path) {
    PublishText(&TransferProgress::source, PlaceText(host, path));
}

void SetDlgSendToText(const char* host, const char* path) {
    PublishText(&TransferProgress::destination, PlaceText(host, path));
}

void SetByteCountText(std::uint64_t done, std::uint64_t total) {
    PublishText(&TransferProgress::bytes, BytesText(done, total));
}

void SetProgressBar(int position) {
    Publish([position](TransferProgress& progress) { progress.bar = position; });
}

void ShowTransferProgress(std::uint64_t done, std::uint64_t total) {
    std::string bytes = BytesText(done, total);
    Publish([&](TransferProgress& progress) {
        progress.bytes = std::move(bytes);
        if (total > 0) progress.bar = BarPosition(done, total);
    });
}

void ShowMode(char mode) {
    Publish([mode](TransferProgress& progress) { progress.mode = mode; });
}

void RefreshCountersText(const TransferCounters& counters) {
    PublishText(&TransferProgress::counters, CountersText(counters.files, counters.folders));
}

bool ReadTransferProgress(TransferProgress& seen) {
    const std::lock_guard guard(gPublished.lock);
    if (gPublished.progress.change == seen.change) return false;
    seen = gPublished.progress;
    return true;
}

void SetTransferRunning(bool running) {
    gRunning = running;
}

bool TransferRunning() {
    return gRunning;
}

std::string CountersText(int files, int folders) {
    if (files > 0 && folders > 0) {
        return Zarn_ResVsprintf(MSG_FILES_TRANSFERED_FOLDERS_CREATED, files, folders).c_str();
    }
    if (files > 0) return Zarn_ResVsprintf(MSG_FILES_TRANSFERED, files).c_str();
    if (folders > 0) return Zarn_ResVsprintf(MSG_FOLDERS_CREATED, folders).c_str();
    return {};
}

void WatchTransferProgress(void (*published)(const TransferProgress& progress)) {
    gWatcher = published;
}
