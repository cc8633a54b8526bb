// An address as the traces print it with %x. Not for anything but traces: two addresses may share one number.
#pragma once

#include <cstdint>

inline unsigned TraceAddress(const void* pointer) {
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(pointer));
}
