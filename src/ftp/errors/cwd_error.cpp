#include "ftp/errors/cwd_error.h"

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"

BoxAnswer Show550CwdError() {
    const std::string text = CatalogueText(MSG_CHANGE_DIRECTORY_550);
    return ShowMessageBox(text.c_str(), nullptr, BoxButtons::AbortRetryIgnore, BoxIcon::Question);
}
