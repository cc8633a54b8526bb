// The question before a received file takes the place of one that is there, and its answers. Asked by receive_target.h,
// shown by replace_dialog.h.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/file_time.h"

enum class ReplaceAnswer { Yes, YesToAll, No, Cancel };
// Which of the three texts of the "Confirm File Replace" dialog applies.
enum class ExistingFile { Ordinary, ReadOnly, System };

struct ReplaceQuestion {
    std::string name;
    std::string path;  // the local file in the way
    ExistingFile kind = ExistingFile::Ordinary;
    std::uint64_t oldSize = 0;  // bytes
    FileTime oldTime = 0;       // local time; 0 when unknown
    std::uint64_t newSize = 0;  // of the file on the server, as the listing said
    FileTime newTime = 0;
};
