#include <sys/stat.h>

#include "host_errors.h"
#include "platform/files.h"

namespace platform {

bool MakeWritable(const char* path) {
    struct stat status = {};
    if (::stat(path, &status) != 0 || ::chmod(path, status.st_mode | S_IWUSR) != 0) return host::FailFile();
    return true;
}

}  // namespace platform
