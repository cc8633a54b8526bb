#include "ftp/errors/server_error.h"

#include <atomic>
#include <iterator>
#include <mutex>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/session_view.h"

namespace {

struct OperationText {
    int operation;
    unsigned sentence;
};
constexpr OperationText kOperationTexts[] = {
    {kOperationStatistics, MSG_STATISTICS_FAILED},
    {kOperationChangeDirectory, MSG_CHANGE_REMOTE_DIRECTORY_FAILED},
    {kOperationList, MSG_LIST_REMOTE_DIRECTORY_FAILED},
    {kOperationRename, MSG_RENAME_REMOTE_FILE_FAILED},
    {kOperationMakeDirectory, MSG_CREATE_REMOTE_DIRECTORY_FAILED},
    {kOperationCurrentDirectory, MSG_GET_REMOTE_DIRECTORY_FAILED},
    {kOperationRemoveDirectory, MSG_DELETE_REMOTE_DIRECTORY_FAILED},
    {kOperationRenameFile, MSG_RENAME_REMOTE_FILE_FAILED},
    {kOperationRenameDirectory, MSG_RENAME_REMOTE_DIRECTORY_FAILED},
    {kOperationTransfer, MSG_FILE_TRANSFER_FAILED},
};

std::atomic<bool> gDialogOpen{false};

std::mutex gSubjectLock;
std::string gSubject;

std::string ErrorSubject() {
    const std::lock_guard guard(gSubjectLock);
    return gSubject;
}

}  // namespace

unsigned OperationSentence(int operation) {
    for (const OperationText& row : kOperationTexts)
        if (row.operation == operation) return row.sentence;
    return MSG_PORT_COMMAND_FAILED;
}

void NameErrorSubject(std::string_view name) {
    const std::lock_guard guard(gSubjectLock);
    gSubject.assign(name);
}

ServerErrorFields SetSrvErrorDlgItems(int operation, std::string_view reply) {
    ServerErrorFields fields;
    fields.returned.assign(reply);
    if (IsReplyLine(reply)) {
        fields.code = (reply[0] - '0') * 100 + (reply[1] - '0') * 10 + (reply[2] - '0');
        fields.returned.erase(0, 3);
        fields.definition = CatalogueText(MSG_REPLY_EXPLANATION_BASE + static_cast<unsigned>(fields.code));
    }
    // Only the sentence for a new directory has places for values; the others do not use them.
    const std::string subject = ErrorSubject();
    const std::string whole(reply);
    const MessageInsert inserts[] = {MessageInsert(subject), MessageInsert(whole)};
    fields.task = FormatCatalogueText(OperationSentence(operation), inserts);
    return fields;
}

void ShowServerError(int operation, const char* reply) {
    constexpr char kFuncName[] = "ShowServerError";
    if (operation == 0 || reply == nullptr) return;
    if (gDialogOpen.exchange(true)) {
        DbgVsprintf(kFuncName, "WARNING. A server error is shown already. Returning");
        return;
    }
    std::string shown = reply;
    const std::size_t carriageReturn = shown.find('\r');
    if (carriageReturn != std::string::npos) {
        shown[carriageReturn] = ' ';
        if (carriageReturn + 1 < shown.size() && shown[carriageReturn + 1] == '\n') shown[carriageReturn + 1] = ' ';
    }
    gSessionView.showServerError(operation, shown.c_str());
    gDialogOpen = false;
}
