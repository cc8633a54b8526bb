#include "ftp/errors/error_texts.h"

#include <iterator>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"

namespace {

// The row's index is the offset of its text in the catalogue.
constexpr int kSocketErrors[] = {
    10063, 10093, 10091, 10092, 10058, 10004, 11001, 11002, 11003, 11004, 10009, 10035, 10036,
    10037, 10014, 10039, 10040, 10046, 10066, 10067, 10068, 10069, 10070, 10022, 10024, 10013,
    10062, 10071, 10038, 10049, 10048, 10047, 10044, 10043, 10055, 10060, 10056, 10057, 10042,
    10054, 10053, 10050, 10052, 10061, 10064, 10065, 10041, 10045, 10051, 10059,
};
static_assert(std::size(kSocketErrors) == MSG_SOCKET_ERROR_LAST - MSG_SOCKET_ERROR_FIRST + 1);

struct CommonDialogRange {
    unsigned first;
    unsigned last;
    unsigned message;
};
constexpr CommonDialogRange kCommonDialogErrors[] = {
    {1, 11, MSG_COMMON_DIALOG_FIRST},
    {4097, 4107, MSG_COMMON_DIALOG_PRINTER_FIRST},
    {8193, 8193, MSG_COMMON_DIALOG_NO_FONTS},
    {12289, 12291, MSG_COMMON_DIALOG_FILE_FIRST},
    {65535, 65535, MSG_COMMON_DIALOG_NOT_CREATED},
};

}  // namespace

OwnedText GetWsaErrorText(int error) {
    unsigned message = MSG_SOCKET_ERROR_FIRST;
    for (const int known : kSocketErrors) {
        if (known == error) return Zarn_ResString(message);
        ++message;
    }
    DbgVsprintf("GetWsaErrorText", "ERROR. Failed to find string for Err:%d", error);
    return {};
}

void DbgPrintSocketError(const char* callerName, const char* operation, platform::Socket socket, int error) {
    if (error == 0) error = platform::LastSocketError();
    if (error == 0) return;
    const OwnedText errorText = GetWsaErrorText(error);
    const OwnedText line = Zarn_ResVsprintf(MSG_SOCKET_ERROR_OCCURRED, operation, static_cast<unsigned>(socket), error,
                                            errorText ? errorText.get() : "Bad Error String");
    if (!line) {
        DbgVsprintf("DbgPrintSocketError", "Call to Zarn_ResString(%d) Failed", int{MSG_SOCKET_ERROR_OCCURRED});
        return;
    }
    PrintErrorLine(callerName, line.get());
    platform::SetLastSocketError(error);
}

unsigned CommonDialogMessage(unsigned error) {
    if (error == 0) return 0;
    for (const CommonDialogRange& range : kCommonDialogErrors)
        if (error >= range.first && error <= range.last) return range.message + (error - range.first);
    return MSG_COMMON_DIALOG_UNKNOWN;
}

void ShowCommonDialogError(unsigned error) {
    const unsigned message = CommonDialogMessage(error);
    if (message == 0) return;
    const OwnedText text = Zarn_ResString(message);
    if (text) ShowMessageBox(text.get(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}
