#include "foundation/error_text.h"

#include <string>

#include "platform/system.h"

OwnedText GetErrorText(std::uint32_t error) {
    const std::uint32_t last = platform::LastSystemError();
    const std::string text = platform::SystemErrorText(error != 0 ? error : last);
    OwnedText copy;
    if (!text.empty()) copy = OwnedText::Copy(text);
    platform::SetLastSystemError(last);
    return copy;
}
