// Folders of the system and the user, and the step into the one that the program begins in. Which folder suits is
// start_folder.h.
#pragma once

#include <string>

// The user's folder for downloads; their documents or their profile where the system knows none. Empty without any.
std::string DownloadsFolder();
// Leaves the folder that the program was started in for the user's downloads, unless files belong there.
void EnterStartFolder(const std::string& programPath);
