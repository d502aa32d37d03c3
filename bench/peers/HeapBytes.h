// What the standard heap has given out, with what it keeps beside each block.
#pragma once

#include <malloc.h>

#include <cstddef>

inline size_t HeapBytes() {
  const struct mallinfo2 books = mallinfo2();
  return books.uordblks + books.hblkhd;
}
