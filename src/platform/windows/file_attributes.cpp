#include <windows.h>

#include "platform/files.h"
#include "platform/windows/wide_text.h"

namespace platform {

bool MakeWritable(const char* path) {
    const WideArgument widePath(path);
    return ::SetFileAttributesW(widePath.Text(), FILE_ATTRIBUTE_NORMAL) != 0;
}

}  // namespace platform
