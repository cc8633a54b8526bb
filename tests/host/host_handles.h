// Handles of the native platform are addresses of records on the heap; only here does one become the other.
#pragma once

#include <cstdint>

namespace host {

template <class Record>
Record* FromHandle(std::intptr_t handle) {
    return reinterpret_cast<Record*>(handle);  // NOLINT(performance-no-int-to-ptr): handles are numbers by contract
}

template <class Record>
std::intptr_t ToHandle(Record* record) {
    return reinterpret_cast<std::intptr_t>(record);
}

}  // namespace host
