// The program around one harness for libFuzzer; the build sets which one by ZARN_FUZZ_HARNESS.
#include "fuzz/harness.h"

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    SilenceTraces();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    ZARN_FUZZ_HARNESS({reinterpret_cast<const char*>(bytes), size});
    return 0;
}
