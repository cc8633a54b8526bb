#include "fuzz/harness.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/utf8.h"

void RequireThat(bool holds, const char* condition, const char* file, int line) {
    if (holds) return;
    ::dprintf(STDERR_FILENO, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

void SilenceTraces() {
    // The stream only: the sanitizers and RequireThat write to the descriptor below it.
    std::FILE* nowhere = std::fopen("/dev/null", "w");
    if (nowhere != nullptr) stderr = nowhere;
}

std::uint8_t FuzzInput::Byte() {
    const std::string_view byte = Take(1);
    return byte.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(byte.front());
}

std::string_view FuzzInput::TextUntil(char end) {
    const std::size_t found = rest_.find(end);
    const std::string_view text = rest_.substr(0, found);
    rest_.remove_prefix(found == std::string_view::npos ? rest_.size() : found + 1);
    return text;
}

std::string_view FuzzInput::Take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const platform::CodePoint point = platform::ReadCodePoint(text);
        if (!point.valid) return false;
        text.remove_prefix(point.length);
    }
    return true;
}
