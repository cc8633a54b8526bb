// Where a received file goes: a temporary name beside the target, and the final name only when the server has confirmed
// the transfer. Decides what happens to a file of that name: asks, or chooses a free name. The file that stood there is
// never lost to a failed transfer.
#pragma once

#include <string>

enum class ReplaceAnswer { Yes, YesToAll, No, Cancel };
// Which of the three texts of the "Confirm File Replace" dialog applies.
enum class ExistingFile { Ordinary, ReadOnly, System };

struct ReceiveTarget {
    std::string finalPath;
    std::string temporaryPath;
    bool replaceExisting = false;
};

enum class TargetResult { Ready, Skipped, Cancelled, Failed };
// Chooses the names and makes the temporary file. `error` receives the system error of a failure.
TargetResult OpenReceiveTarget(const std::string& folder, const std::string& name, bool& replaceAll,
                               ReceiveTarget& target, unsigned& error);
// Gives the file its final name. False leaves what stood there untouched and the temporary file deleted.
bool CommitReceiveTarget(const ReceiveTarget& target, unsigned& error);
void DiscardReceiveTarget(const ReceiveTarget& target);
