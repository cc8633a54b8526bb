// Counts the folders, files and bytes below a remote folder by listing it and everything below it. Runs on the worker
// and changes the session's current remote folder. What it finds is shown through the listing view only.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/owned_text.h"
#include "listing/dump_reader.h"

// One folder of the walk. The counters, the flag and the dialog are shared by all folders and belong to the caller
// that started the count.
struct RecursiveContents {
    OwnedText pszLocation;  // remote path to list
    OwnedText dumpFile;
    DumpReader reader;                      // open while the folder's entries are walked through
    std::atomic<bool>* bAborted = nullptr;  // also set when the server is lost
    std::uint32_t* folders = nullptr;
    std::uint32_t* files = nullptr;  // links and everything else included
    void* dialog = nullptr;          // passed on unchanged
    std::uint64_t* bytes = nullptr;
};

// A record for `location`, every shared pointer given; null when memory is short.
RecursiveContents* AllocateContents(std::string_view location, std::atomic<bool>& aborted, std::uint32_t& folders,
                                    std::uint32_t& files, void* dialog, std::uint64_t& bytes);
// Null is accepted. Closes and deletes the dump file.
void Zarn_FreeContents(RecursiveContents* pContents);
struct RecursiveContentsDeleter {
    void operator()(RecursiveContents* pContents) const { Zarn_FreeContents(pContents); }
};

// Counts on the active site, adding to the counters; always frees the record. FTP_COMPLETE, the result of the last
// folder's listing when that failed, FTP_ERROR after an abort.
int FtpRecurseDirContents(RecursiveContents* pContents);
