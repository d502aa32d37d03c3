// How many bytes were asked of the standard allocator in this process.
#pragma once

#include <cstddef>

size_t StandardHeapBytes();
