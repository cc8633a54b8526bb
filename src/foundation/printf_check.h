// Lets compilers that can do so check the arguments of our own printf-style functions against their formats.
#pragma once

// `text` and `first` are the positions, from 1, of the format text and of its first argument; `first` is 0 for a
// va_list.
#if defined(__GNUC__)
#define ZARN_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define ZARN_PRINTF(text, first)
#endif
