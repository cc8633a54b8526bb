#include <sys/stat.h>

#include "platform/files.h"

namespace platform {

bool MakeWritable(const char* path) {
    struct stat status = {};
    return stat(path, &status) == 0 && chmod(path, status.st_mode | S_IWUSR) == 0;
}

}  // namespace platform
