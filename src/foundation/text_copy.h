// Copies of texts that their receiver owns: the narrow form that records keep and the wide form for calls that need
// one. For a text inside a function use std::string.
#pragma once

#include <cstddef>
#include <memory>

#include "foundation/owned_text.h"

// A copy in `size` zero-filled bytes (0: exactly what is needed). Null for a null source, when memory is short, or,
// with the last system error set to 122, for a size that is too small.
OwnedText DupString(const char* source, std::size_t size = 0);

// A wide copy in `sizeInBytes` bytes (0: exactly what is needed); null as for DupString.
std::unique_ptr<char16_t[]> Zarn_GetWideString(const char* source, std::size_t sizeInBytes = 0);
