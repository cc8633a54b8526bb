// What the server's listing says about one entry, for its property sheet: lists the entry's folder and picks its line.
// Runs on the worker. The sheet itself belongs to the windows, counting a folder's contents to recursive_count.h.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "config/site.h"
#include "listing/directory_entry.h"
#include "listing/tree_node.h"

// The properties of one remote entry. Texts are null for what is not known.
struct FtpProp {
    OwnedText name;   // as the listing gives it, a link's target included
    OwnedText umask;  // ten-character permission text
    OwnedText owner;
    OwnedText group;
    OwnedText sizeText;
    OwnedText dateText;  // made by the sheet from `time`
    OwnedText location;  // remote path of the entry's folder
    std::uint32_t links = 0;
    std::uint32_t size = 0;  // bytes
    std::uint32_t type = kKindUnclassified;
    FileTime time = 0;
    const FTobject* fileType = nullptr;  // not owned
    Site* site = nullptr;                // not owned
    // What is below a folder.
    std::uint32_t folders = 0;
    std::uint32_t files = 0;
    std::uint32_t symbolicLinks = 0;
    std::uint64_t diskUsage = 0;  // bytes
    std::atomic<bool> aborted{false};
};

// An empty record; null when memory is short.
FtpProp* AllocateFtpProp();
// Null is accepted.
void Zarn_FreeFtpProp(FtpProp* prop);
struct FtpPropDeleter {
    void operator()(FtpProp* prop) const { Zarn_FreeFtpProp(prop); }
};
using FtpPropPtr = std::unique_ptr<FtpProp, FtpPropDeleter>;

// Fill the record for an entry of the list or a node of the tree. FTP_COMPLETE, FTP_ERROR (also for what belongs to the
// local computer), or the listing's result when that failed.
int Zarn_GetLVProp(FtpProp* prop, const LVobject* entry);
int Zarn_GetTVProp(FtpProp* prop, const TVobject* node);
// The two steps of the above, for a record whose name, location, kind and site are set: a folder's, any other entry's.
int GetFtpDirProp(FtpProp* prop);
int GetFtpFileProp(FtpProp* prop);

// Seeks the record's name in a received listing. False when no line has exactly this name.
bool ParsePropFromFile(const char* file, FtpProp* prop);
// Moves mode, owner and group and copies the rest, when both have exactly the same name; false otherwise.
bool SetPropFromLVobject(FtpProp* prop, LVobject* obj);
