#include "foundation/error_report.h"

#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_text.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "platform/system.h"
#include "platform/threads.h"

namespace {

// The three inserts of both texts are: what failed, the error number, the system's words for it.
void PrintSystemError(const char* reporter, const char* callerName, unsigned messageId, const char* subject,
                      std::uint32_t error) {
    const OwnedText errorText = GetErrorText(error);
    if (!errorText) {
        DbgVsprintf(reporter, "Call to GetErrorText(%d) Failed", static_cast<int>(error));
        return;
    }
    const OwnedText text = Zarn_ResString(messageId);
    if (!text) {
        DbgVsprintf(reporter, "Call to Zarn_ResString(%d) Failed", static_cast<int>(messageId));
        return;
    }
    const MessageInsert inserts[] = {subject, error, errorText.get()};
    std::string line;
    if (ExpandNumbered(text.view(), inserts, line)) PrintErrorLine(callerName, line.c_str());
}

}  // namespace

void PrintErrorLine(const char* callerName, const char* text) {
    const std::uint32_t last = platform::LastSystemError();
    const std::string line = FormatBounded("PrintErrorLine", kTraceBuffer, "ZARN:(%x) %s() %s",
                                           static_cast<unsigned>(platform::CurrentThreadId()), callerName, text);
    // Straight to the console: the filter of OutPutPrint would hide it there.
    if (gTrace.Any()) Zarn_DebuggerPrint(line.c_str());
    if (gTrace.logging) gTraceSinks.writeLog(line.c_str());
    PrintToConsole(line.c_str());
    platform::SetLastSystemError(last);
}

void DbgPrintApiError(const char* callerName, const char* callName, std::uint32_t error) {
    if (error == 0) return;
    const std::uint32_t last = platform::LastSystemError();
    PrintSystemError("DbgPrintApiError", callerName, MSG_API_FAILED, callName, error);
    platform::SetLastSystemError(last);
}

void DbgFileCreateError(const char* callerName, const char* fileName, std::uint32_t error) {
    if (error == 0) return;
    const std::uint32_t last = platform::LastSystemError();
    PrintSystemError("DbgFileCreateError", callerName, MSG_CREATE_FILE_FAILED, fileName, error);
    platform::SetLastSystemError(last);
}

void ShowNoMemoryError() {
    DbgVsprintf("ShowNoMemoryError", "Entered");
    const std::string text = CatalogueText(MSG_NO_MEMORY);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Stop);
}

bool ShowApiError(std::uint32_t error) {
    const OwnedText text = GetErrorText(error);
    DbgVsprintf("ShowApiError", "Entered");
    if (!text) {
        DbgVsprintf("ShowApiError", "Call to GetErrorText(%d) Failed", static_cast<int>(error));
        return false;
    }
    return ShowMessageBox(text.get(), nullptr, BoxButtons::Ok, BoxIcon::Stop) != BoxAnswer::None;
}
