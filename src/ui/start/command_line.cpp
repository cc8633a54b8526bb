#include "ui/start/command_line.h"

#include "platform/files.h"

namespace {
constexpr std::string_view kDebugSwitch = "-d";
}

bool WantsDebugTrace(std::string_view commandLine) {
    return commandLine.find(kDebugSwitch) != std::string_view::npos;
}

std::string_view WithoutDebugSwitch(std::string_view commandLine) {
    const std::size_t at = commandLine.find(kDebugSwitch);
    if (at == std::string_view::npos) return commandLine;
    std::string_view rest = commandLine.substr(at + kDebugSwitch.size());
    const std::size_t word = rest.find_first_not_of(' ');
    return word == std::string_view::npos ? std::string_view() : rest.substr(word);
}

CommandLineFiles FilesInArgv(std::string_view text) {
    CommandLineFiles files;
    while (true) {
        const std::size_t start = text.find_first_not_of(' ');
        if (start == std::string_view::npos) return files;
        text.remove_prefix(start);
        const std::string word(text.substr(0, text.find(' ')));
        platform::FileInfo info;
        if (!platform::GetFileInfo(word.c_str(), info) || info.isFolder) return {};
        files.names += word + "|";
        ++files.count;
        text.remove_prefix(word.size());
    }
}
