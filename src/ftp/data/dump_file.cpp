#include "ftp/data/dump_file.h"

#include <mutex>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "platform/system.h"

namespace {

// The worker fills and reads the file, the window's thread deletes it at the end.
std::mutex gListingFileLock;
std::string gListingFile;

}  // namespace

OwnedText Zarn_GetTmpFileName(const char* prefix) {
    constexpr char kFuncName[] = "Zarn_GetTmpFileName";
    const std::string folder = platform::TemporaryFolder();
    const std::string path = platform::MakeTemporaryFile(folder.c_str(), prefix != nullptr ? prefix : "TMP");
    if (path.empty()) {
        DbgPrintApiError(kFuncName, "GetTempFileName()", platform::LastSystemError());
        return {};
    }
    DbgVsprintf(kFuncName, "Done. Returning %s", path.c_str());
    return OwnedText::Copy(path);
}

platform::FileHandle GetDumpFileHandle(const char* traceContext, const char* fileName, platform::FileAccess access) {
    constexpr char kFuncName[] = "GetDumpFileHandle";
    DbgVsprintf(kFuncName, "Entered from %s", traceContext != nullptr ? traceContext : "");
    if (fileName == nullptr || *fileName == '\0') {
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL parameter. Returning NULL");
        platform::SetLastSystemError(platform::kErrorInvalidParameter);
        return platform::kNoFile;
    }
    platform::FileOptions options;
    options.access = access;
    // A shorter listing must not keep the tail of a longer one.
    options.disposition = access == platform::FileAccess::Read ? platform::FileDisposition::OpenExisting
                                                               : platform::FileDisposition::CreateAlways;
    const platform::FileHandle file = platform::OpenFile(fileName, options);
    if (file == platform::kNoFile) DbgFileCreateError(kFuncName, fileName, platform::LastSystemError());
    return file;
}

const char* ListingDumpFile() {
    const std::lock_guard guard(gListingFileLock);
    if (gListingFile.empty()) {
        const OwnedText name = Zarn_GetTmpFileName(nullptr);
        gListingFile = name.c_str();
    }
    return gListingFile.c_str();
}

void DeleteListingDumpFile() {
    const std::lock_guard guard(gListingFileLock);
    if (gListingFile.empty() || platform::DeleteFilePath(gListingFile.c_str())) return;
    constexpr std::uint32_t kErrorFileNotFound = 2;
    const std::uint32_t error = platform::LastSystemError();
    if (error != kErrorFileNotFound)
        DoPrintIdArgs(MSG_TEMPORARY_FILE_STAYS, gListingFile, platform::SystemErrorText(error));
}
