// The registry of the native test build lives in memory, one for each process. What only tests may do with it.
#pragma once

#ifndef _WIN32

#include <cstdint>

#include "platform/registry.h"

namespace host_registry {

// Forgets every key and value of both roots. Open keys behave as if their key had been deleted.
void Clear();
// Every later write of a value gives this error number, until 0 takes the fault away.
void RefuseWrites(int error);

}  // namespace host_registry

#endif
