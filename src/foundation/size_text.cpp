#include "foundation/size_text.h"

#include <algorithm>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/trace.h"
#include "platform/system.h"

namespace {

constexpr std::int32_t kMegabyte = 1048576;

bool FailEmpty(char* out, std::size_t capacity) {
    if (out != nullptr && capacity >= 1) *out = '\0';
    return false;
}

}  // namespace

bool Zarn_GetSizeText(std::int32_t count, char* out, bool useMegabytes, std::size_t capacity) {
    static constexpr char kFuncName[] = "Zarn_GetSizeText";
    DbgVsprintf(kFuncName, "Entered");
    const OwnedText grouped = OwnedText::Copy(GroupDigits(std::to_string(count)));
    if (!grouped) {
        DbgPrintApiError(kFuncName, "LocalAlloc()", platform::LastSystemError());
        DbgVsprintf(kFuncName, "ERROR. No Memory. Returning FALSE");
        return FailEmpty(out, capacity);
    }
    const bool inMegabytes = useMegabytes && count > kMegabyte;
    const double amount = static_cast<double>(count) / (inMegabytes ? kMegabyte : 1024);
    const OwnedText text = Zarn_ResVsprintf(inMegabytes ? MSG_SIZE_IN_MB : MSG_SIZE_IN_KB, amount, grouped.get());
    if (!text) {
        DbgVsprintf(kFuncName, "ERROR. Call to Zarn_ResVsprintf() Failed. Returning FALSE");
        return FailEmpty(out, capacity);
    }
    const std::size_t length = text.view().size();
    if (out == nullptr || length >= capacity) {
        DbgVsprintf(kFuncName, "%d > %d. Returning FALSE", static_cast<int>(length), static_cast<int>(capacity));
        return FailEmpty(out, capacity);
    }
    std::copy_n(text.get(), length + 1, out);
    return true;
}
