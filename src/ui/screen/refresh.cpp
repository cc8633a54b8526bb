#include "ui/screen/refresh.h"

#include <atomic>

#include "ui/screen/app.h"
#include "ui/screen/messages.h"

namespace {

void (*gRefresh)() = [] {};
std::atomic<bool> gRefreshPosted{false};

}  // namespace

void InstallRefresh(void (*refresh)()) {
    gRefresh = refresh;
}

void RefreshWindowState() {
    gRefresh();
}

void PostRefreshWindowState() {
    if (gRefreshPosted.exchange(true)) return;
    if (!PostMessageW(gApp.mainWindow, kRefreshMessage, 0, 0)) gRefreshPosted = false;
}

void HandleRefreshMessage() {
    gRefreshPosted = false;
    RefreshWindowState();
}
