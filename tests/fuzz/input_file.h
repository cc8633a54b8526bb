// An input, or a part of one, as a file: what readers of received files are given. One file serves all inputs of a run.
#pragma once

#include <string>
#include <string_view>

#include "fuzz/harness.h"
#include "platform/files.h"

class InputFile {
  public:
    InputFile() : path_(platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "FUZ")) {
        REQUIRE_THAT(!path_.empty());
    }
    ~InputFile() { platform::DeleteFilePath(path_.c_str()); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Replaces what the file holds; its path.
    const char* Fill(std::string_view bytes) const {
        const platform::FileHandle file =
            platform::OpenFile(path_.c_str(), {platform::FileAccess::Write, platform::FileDisposition::CreateAlways});
        REQUIRE_THAT(file != platform::kNoFile && platform::WriteFile(file, bytes));
        REQUIRE_THAT(platform::CloseFile(file));
        return path_.c_str();
    }

  private:
    std::string path_;
};
