// What was asked of the standard allocator in this process.
#pragma once

#include <cstddef>

// On Windows a DLL asks for its own, which is not seen from here.
#if defined(_WIN32) && defined(LOMLISP_SHARED)
inline constexpr bool kSeesHeapOfLibrary = false;
#else
inline constexpr bool kSeesHeapOfLibrary = true;
#endif

size_t StandardHeapBytes();
size_t StandardHeapBlocks();
