#include "listing/corpus.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "foundation/file_time.h"
#include "foundation/number_text.h"
#include "platform/files.h"

namespace {

std::string Unescape(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            bytes += text[i];
            continue;
        }
        const char kind = text[++i];
        if (kind == 't') {
            bytes += '\t';
        } else if (kind == 'x' && i + 2 < text.size()) {
            unsigned value = 0;
            for (const char digit : text.substr(i + 1, 2)) {
                value = value * 16 + static_cast<unsigned>(digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10);
            }
            bytes += static_cast<char>(value);
            i += 2;
        } else {
            bytes += kind;
        }
    }
    return bytes;
}

const char* KindName(std::uint32_t type) {
    switch (type) {
        case kKindUnclassified:
            return "unclassified";
        case kKindFolder:
            return "folder";
        case kKindFile:
            return "file";
        case kKindLink:
            return "link";
        case kKindDevice:
            return "device";
        case kKindPipe:
            return "pipe";
        case kKindLocalFolder:
            return "localfolder";
        case kKindLocalFile:
            return "localfile";
        default:
            return "?";
    }
}

std::string TimeText(FileTime time) {
    CalendarTime calendar;
    if (!FileTimeToCalendar(time, calendar)) return "none";
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", calendar.year, calendar.month, calendar.day,
                  calendar.hour, calendar.minute);
    return text;
}

FileTime Now() {
    FileTime now = 0;
    CalendarToFileTime(platform::LocalTimeNow(), now);
    return now;
}

constexpr FileTime kMinute = 60ull * 10'000'000u;

void ReadSample(const std::string& path, CorpusSample& sample) {
    std::ifstream file(path, std::ios::binary);
    std::string line;
    while (std::getline(file, line)) {
        if (line.rfind("host ", 0) == 0) sample.hostType = ParseUnsigned(line.substr(5));
        if (line.rfind("> ", 0) == 0) sample.lines.push_back({Unescape(line.substr(2)), {}});
        if (line.rfind("= ", 0) == 0 && !sample.lines.empty()) sample.lines.back().expected = Unescape(line.substr(2));
    }
}

}  // namespace

std::vector<CorpusSample> ReadCorpus() {
    static constexpr char folder[] = ZARN_SOURCE_DIR "/tests/listing/corpus";
    std::vector<platform::FileInfo> files;
    platform::ListFolder(folder, files);
    std::vector<CorpusSample> samples;
    for (const platform::FileInfo& info : files) {
        CorpusSample sample;
        sample.file = info.name;
        std::string path = "/";
        path += info.name;
        path.insert(0, folder);
        ReadSample(path, sample);
        samples.push_back(std::move(sample));
    }
    std::sort(samples.begin(), samples.end(), [](const auto& a, const auto& b) { return a.file < b.file; });
    return samples;
}

std::string DescribeEntry(const LVobject* entry) {
    if (entry == nullptr) return "rejected";
    return std::string(KindName(entry->type)) + " | " + entry->name.c_str() + " | " + std::to_string(entry->size) +
           " | " + std::to_string(entry->links) + " | " + entry->owner.c_str() + " | " + entry->group.c_str() + " | " +
           entry->mode.c_str() + " | " + TimeText(entry->time);
}

std::string ExpectedToday(const std::string& expected, const LVobject* entry) {
    constexpr std::string_view kNow = "| now";
    if (entry != nullptr && expected.ends_with(kNow)) {
        const FileTime now = Now();
        const bool isNow = entry->time <= now && now - entry->time < kMinute;
        return expected.substr(0, expected.size() - 3) + (isNow ? TimeText(entry->time) : "now");
    }
    const std::size_t star = expected.rfind("| *-");
    if (star == std::string::npos) return expected;
    const CalendarTime today = platform::LocalTimeNow();
    const int month = static_cast<int>(ParseUnsigned(expected.substr(star + 4, 2)));
    const int year = month > today.month ? today.year - 1 : today.year;
    return expected.substr(0, star + 2) + std::to_string(year) + expected.substr(star + 3);
}
