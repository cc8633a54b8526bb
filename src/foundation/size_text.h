// A byte count in kilobytes or megabytes, as the dialogs show it.
#pragma once

#include <cstddef>
#include <cstdint>

// "1.00MB  ( 1,048,577 bytes )" or "0.50KB  ( 512 bytes )" into `out` of `capacity` bytes. False, and an empty `out`,
// when it does not fit. Quirk: with `useMegabytes`, exactly one megabyte is still shown in kilobytes, kept.
bool Zarn_GetSizeText(std::int32_t count, char* out, bool useMegabytes, std::size_t capacity);
