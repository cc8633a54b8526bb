// Folders of the system and the user, and entering the one that the program starts in. Which folder suits is
// start_folder.h.
#pragma once

#include <string>

// The user's folder for downloads, else for documents, else the profile. Empty when none of them exists.
std::string DownloadsFolder();
// Changes to the user's downloads when the folder that the program was started in does not suit.
void EnterStartFolder(const std::string& programPath);
