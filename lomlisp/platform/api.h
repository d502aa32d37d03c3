// What the library shows outside when it is a shared library: LOMLISP_API stands before each class and each
// function, or object, of its headers that is defined in a file. Linked as an archive it says nothing.
//
// The build sets LOMLISP_SHARED for the library and for its users, LOMLISP_BUILDING for the library alone.
#pragma once

#if !defined(LOMLISP_SHARED)
#define LOMLISP_API
#elif !defined(_WIN32)
#define LOMLISP_API __attribute__((visibility("default")))
#elif defined(LOMLISP_BUILDING)
#define LOMLISP_API __declspec(dllexport)
#else
#define LOMLISP_API __declspec(dllimport)
#endif
