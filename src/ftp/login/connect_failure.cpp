#include "ftp/login/connect_failure.h"

#include <mutex>

namespace {

std::mutex gFailureLock;
std::string gFailure;

}  // namespace

void NoteConnectFailure(std::string_view reason) {
    const std::lock_guard guard(gFailureLock);
    gFailure.assign(reason);
}

std::string ConnectFailure() {
    const std::lock_guard guard(gFailureLock);
    return gFailure;
}
