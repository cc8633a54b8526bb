// A temporary file for one listing or reply, deleted with the object. Not the file of the current folder's listing,
// which has one name for the whole run.
#pragma once

#include "ftp/data/dump_file.h"

class TemporaryDump {
  public:
    explicit TemporaryDump(const char* prefix) : name_(Zarn_GetTmpFileName(prefix)) {}
    ~TemporaryDump() {
        if (name_) platform::DeleteFilePath(name_.get());
    }
    TemporaryDump(const TemporaryDump&) = delete;
    TemporaryDump& operator=(const TemporaryDump&) = delete;
    // Null when the file could not be made.
    const char* Name() const { return name_.get(); }

  private:
    OwnedText name_;
};
