// Memory that must not be touched: AddressSanitizer reports accesses to it; without it these do
// nothing.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define LOMLISP_EMBEDDED_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LOMLISP_EMBEDDED_ASAN 1
#endif
#endif

#ifdef LOMLISP_EMBEDDED_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace lomlisp::embedded {

inline void Poison([[maybe_unused]] const void* memory, [[maybe_unused]] size_t bytes) {
#ifdef LOMLISP_EMBEDDED_ASAN
  __asan_poison_memory_region(memory, bytes);
#endif
}

inline void Unpoison([[maybe_unused]] const void* memory, [[maybe_unused]] size_t bytes) {
#ifdef LOMLISP_EMBEDDED_ASAN
  __asan_unpoison_memory_region(memory, bytes);
#endif
}

}  // namespace lomlisp::embedded
