#include "foundation/text_copy.h"

#include <algorithm>
#include <new>
#include <string>
#include <string_view>

#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "platform/system.h"
#include "platform/utf8.h"

namespace {

int CountOf(std::size_t size) {
    return static_cast<int>(size);
}

void FailBufferTooSmall(const char* funcName) {
    platform::SetLastSystemError(platform::kErrorInsufficientBuffer);
    gTraceSinks.reportApiError(funcName, funcName, platform::kErrorInsufficientBuffer);
    platform::SetLastSystemError(platform::kErrorInsufficientBuffer);
}

}  // namespace

OwnedText DupString(const char* source, std::size_t size) {
    static constexpr char kFuncName[] = "DupString";
    const bool debug = gTrace.debug;
    if (debug) DbgVsprintf(kFuncName, "Entered");
    if (source == nullptr) {
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL parameter. Returning NULL");
        return {};
    }
    const std::string_view text = source;
    const std::size_t needed = text.size() + 1;
    if (size == 0) size = needed;
    if (size < needed) {
        DbgVsprintf(kFuncName, "ERROR. Buffer too small! Len: (%d < %d by %d bytes) , In: (0x%x:%s)", CountOf(size),
                    CountOf(needed), CountOf(needed - size), TraceAddress(source), source);
        FailBufferTooSmall(kFuncName);
        return {};
    }
    OwnedText copy = OwnedText::Copy(text, size);
    if (!copy) {
        gTraceSinks.reportApiError(kFuncName, "LocalAlloc()", platform::LastSystemError());
        return {};
    }
    // The trailing comma and blank are part of the text.
    if (debug) {
        DbgVsprintf(kFuncName, "RETURNING (0x%x:%s) Size:%d Len:(%d) In Addr:(0x%x), ", TraceAddress(copy.get()),
                    copy.get(), CountOf(size), CountOf(text.size()), TraceAddress(source));
    }
    return copy;
}

std::unique_ptr<char16_t[]> Zarn_GetWideString(const char* source, std::size_t sizeInBytes) {
    static constexpr char kFuncName[] = "Zarn_GetWideString";
    DbgVsprintf(kFuncName, "Entered");
    if (source == nullptr) {
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL parameter. Returning NULL");
        return nullptr;
    }
    const std::u16string wide = platform::Utf8ToWide(source);
    const std::size_t needed = (wide.size() + 1) * sizeof(char16_t);
    const std::size_t size = sizeInBytes != 0 ? sizeInBytes : needed;
    if (size < needed) {
        DbgVsprintf(kFuncName, "( TOO SMALL! Len: (%d < %d by %d) , In: (0x%x:%s)", CountOf(size), CountOf(needed),
                    CountOf(needed - size), TraceAddress(source), source);
        FailBufferTooSmall(kFuncName);
        return nullptr;
    }
    if (size > needed) {
        DbgVsprintf(kFuncName, "BUF LARGER! Len: (%d > %d by %d) , In: (0x%x:%s)", CountOf(size), CountOf(needed),
                    CountOf(size - needed), TraceAddress(source), source);
    }
    const std::size_t units = (size + 1) / sizeof(char16_t);
    std::unique_ptr<char16_t[]> copy(new (std::nothrow) char16_t[units]());
    if (copy == nullptr) {
        gTraceSinks.reportApiError(kFuncName, "LocalAlloc()", platform::LastSystemError());
        return nullptr;
    }
    std::copy(wide.begin(), wide.end(), copy.get());
    return copy;
}
