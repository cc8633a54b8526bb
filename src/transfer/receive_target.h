// Where a received file goes: a temporary name beside the target, and the final name only when the server has confirmed
// the transfer. Decides what happens to a file of that name: asks, or chooses a free name. The file that stood there is
// never lost to a failed transfer.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/file_time.h"

enum class ReplaceAnswer { Yes, YesToAll, No, Cancel };
// Which of the three texts of the "Confirm File Replace" dialog applies.
enum class ExistingFile { Ordinary, ReadOnly, System };

// What is asked before a received file takes the place of one that is there.
struct ReplaceQuestion {
    std::string name;
    std::string path;  // the local file in the way
    ExistingFile kind = ExistingFile::Ordinary;
    std::uint64_t oldSize = 0;  // bytes
    FileTime oldTime = 0;       // local time; 0 when unknown
    std::uint64_t newSize = 0;  // of the file on the server, as the listing said
    FileTime newTime = 0;
};
// What is known of the file on the server, for that question.
struct IncomingFile {
    std::uint64_t size = 0;
    FileTime time = 0;
};

struct ReceiveTarget {
    std::string finalPath;
    std::string temporaryPath;
    bool replaceExisting = false;
};

// Forgets which files the last transfer made. A name that comes a second time in one transfer (two remote names that
// become the same local one) gets a free name instead of replacing the first file.
void ForgetReceivedFiles();

enum class TargetResult { Ready, Skipped, Cancelled, Failed };
// Chooses the names and makes the temporary file. `error` receives the system error of a failure.
TargetResult OpenReceiveTarget(const std::string& folder, const std::string& name, bool& replaceAll,
                               ReceiveTarget& target, unsigned& error, IncomingFile incoming = {});
// Gives the file its final name. False leaves what stood there untouched and the temporary file deleted.
bool CommitReceiveTarget(const ReceiveTarget& target, unsigned& error);
void DiscardReceiveTarget(const ReceiveTarget& target);
