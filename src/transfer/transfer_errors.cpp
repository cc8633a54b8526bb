#include "transfer/transfer_errors.h"

#include <string>
#include <string_view>

#include "foundation/catalogue.h"
#include "foundation/error_text.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "listing/directory_entry.h"
#include "platform/files.h"
#include "platform/system.h"

namespace {

constexpr char kFuncName[] = "TransferDlgError";
constexpr std::size_t kCodeLength = 4;  // three digits and the character after them

// Where the second insert of a message comes from.
enum class Detail { SystemText, ReplyText, WholeReply, Drive, ReservedNames };
struct ErrorRow {
    unsigned messageId;
    Detail detail;
};
// In the order of TransferErrorOption, which begins at 1.
constexpr ErrorRow kRows[] = {
    {MSG_CANNOT_SET_LOCAL_DIRECTORY, Detail::SystemText},
    {MSG_CREATE_FAILED, Detail::SystemText},
    {MSG_CANNOT_CREATE_LOCAL_FILE, Detail::SystemText},
    {MSG_NO_DRIVE_SPACE, Detail::Drive},
    {MSG_SET_REMOTE_DIRECTORY_FAILED, Detail::ReplyText},
    {MSG_CREATE_REMOTE_DIRECTORY_FAILED, Detail::WholeReply},
    {MSG_TRANSFER_FAILED, Detail::ReplyText},
    {MSG_NETWORK_ERROR, Detail::ReplyText},
    {MSG_TRANSFER_FAILED, Detail::SystemText},
    {MSG_TRANSFER_FAILED, Detail::ReservedNames},
};

// False when there is nothing to say.
bool ErrorDetail(Detail detail, std::uint32_t error, std::string_view reply, std::string& text) {
    switch (detail) {
        case Detail::SystemText:
        case Detail::Drive:
            if (error == 0) error = platform::LastSystemError();
            if (error == 0) return false;
            text = detail == Detail::Drive ? platform::CurrentFolder().substr(0, 2) : GetErrorText(error).c_str();
            return true;
        case Detail::ReplyText:
        case Detail::WholeReply:
            if (!IsReplyLine(reply)) return false;
            text = detail == Detail::WholeReply ? reply : reply.substr(kCodeLength);
            return true;
        case Detail::ReservedNames:
            text = CatalogueText(MSG_RESERVED_NAMES);
            return true;
    }
    return false;
}

std::string ErrorText(const ErrorRow& row, const std::string& name, const std::string& detail) {
    const bool driveFirst = row.detail == Detail::Drive;
    const MessageInsert inserts[] = {MessageInsert(driveFirst ? detail : name),
                                     MessageInsert(driveFirst ? name : detail)};
    // Three of the texts carry printf conversions but are in the other style's list.
    if (!IsPrintfMessage(row.messageId)) return FormatCatalogueText(row.messageId, inserts);
    return ExpandCatalogueText(row.messageId, inserts).c_str();
}

}  // namespace

BoxAnswer TransferDlgError(const char* name, int option, std::uint32_t error, const char* reply) {
    if (option < 1 || option > static_cast<int>(std::size(kRows))) {
        DbgVsprintf(kFuncName, "ERROR. UNKNOWN iXferOpt:%d.", option);
        return BoxAnswer::None;
    }
    const ErrorRow& row = kRows[option - 1];
    std::string detail;
    if (!ErrorDetail(row.detail, error, reply != nullptr ? reply : "", detail)) return BoxAnswer::None;
    const std::string text = ErrorText(row, ShownName(name != nullptr ? name : ""), detail);
    const OwnedText caption = Zarn_ResString(MSG_TRANSFER_ERROR_CAPTION);
    const BoxButtons buttons = option == kReservedOption ? BoxButtons::Ok : BoxButtons::AbortRetryIgnore;
    return ShowMessageBox(text.c_str(), caption.get(), buttons, BoxIcon::Exclamation);
}
