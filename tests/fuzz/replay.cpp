// Runs every kept input through its harness: what a fuzzer found once is never let in again. Names each file before
// its turn, so that a crash is the last line's.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/harness.h"

namespace {

struct Target {
    const char* name;
    void (*run)(std::string_view);
};

constexpr Target kTargets[] = {
    {"reply_reader", FuzzReplyReader}, {"reply_stream", FuzzReplyStream}, {"pwd_path", FuzzPwdPath},
    {"unix_parser", FuzzUnixParser},   {"nt_parser", FuzzNtParser},       {"listing", FuzzListing},
    {"link_target", FuzzLinkTarget},   {"local_path", FuzzLocalPath},     {"destination", FuzzDestination},
    {"messages", FuzzMessages},        {"password", FuzzPassword},
};

std::vector<std::filesystem::path> InputsOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

void RunFile(const Target& target, const std::filesystem::path& path) {
    std::printf("%s/%s\n", target.name, path.filename().c_str());
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // A copy of exactly its size: one byte read too far is seen by the sanitizer.
    const std::vector<char> exact(bytes.begin(), bytes.end());
    target.run({exact.data(), exact.size()});
}

}  // namespace

int main(int count, char** arguments) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    SilenceTraces();
    const std::filesystem::path corpus = count > 1 ? arguments[1] : ZARN_SOURCE_DIR "/tests/fuzz/corpus";
    std::size_t replayed = 0;
    for (const Target& target : kTargets) {
        target.run({});
        const std::vector<std::filesystem::path> paths = InputsOf(corpus / target.name);
        if (paths.empty()) {
            std::printf("no inputs for %s in %s\n", target.name, corpus.c_str());
            return 1;
        }
        for (const std::filesystem::path& path : paths) RunFile(target, path);
        replayed += paths.size();
    }
    std::printf("replayed %zu inputs of %zu harnesses\n", replayed, std::size(kTargets));
    return 0;
}
