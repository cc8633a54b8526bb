// How the bytes of a remote name become the text that the program shows and stores. Making such a name safe for the
// local disk belongs to transfer/local_names.h.
#pragma once

#include <string>
#include <string_view>

// Unchanged when the bytes are valid UTF-8; otherwise read in the system's code page.
std::string DisplayName(std::string_view remoteBytes);
