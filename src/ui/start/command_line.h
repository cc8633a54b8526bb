// Parses the command line: the switch "-d" and the names of local files.
#pragma once

#include <string>
#include <string_view>

struct CommandLineFiles {
    std::string names;  // each followed by "|"
    int count = 0;
};

// True when the command line contains the text "-d" anywhere.
bool WantsDebugTrace(std::string_view commandLine);
// The command line without "-d" and the blanks after it.
std::string_view WithoutDebugSwitch(std::string_view commandLine);
// The names in a text split at blanks; every word must name an existing file, else there are none. A text without
// blanks is one name.
CommandLineFiles FilesInArgv(std::string_view text);
