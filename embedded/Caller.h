// Where a function was called from.
#pragma once

#ifdef _MSC_VER
#include <intrin.h>
#endif

// The return address of the function in which it stands, which is why it is a macro.
#if defined(_MSC_VER)
#define LOMLISP_CALLER _ReturnAddress()
#elif defined(__GNUC__)
#define LOMLISP_CALLER __builtin_return_address(0)
#else
#define LOMLISP_CALLER nullptr
#endif
