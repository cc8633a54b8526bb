#include "foundation/clipboard.h"

#include "foundation/trace.h"

bool ClipHasFiles() {
    DbgVsprintf("ClipHasFiles", "Entered");
    return false;
}
