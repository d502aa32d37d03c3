// Stand-in, for systems that have none: as much of the system's header as MFC's value classes take, and those
// of its macros that hurt.
#pragma once

#define _WINDOWS_

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>

typedef unsigned char BYTE;
typedef int BOOL;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG;
typedef std::intptr_t INT_PTR;
typedef std::int32_t HRESULT;
typedef wchar_t WCHAR;
typedef WCHAR OLECHAR;
typedef OLECHAR* BSTR;
typedef const wchar_t* LPCWSTR;
typedef wchar_t* LPWSTR;
typedef const char* LPCSTR;
typedef unsigned short VARTYPE;
typedef short VARIANT_BOOL;
#define VARIANT_TRUE ((VARIANT_BOOL)-1)
#define VARIANT_FALSE ((VARIANT_BOOL)0)
#define S_OK ((HRESULT)0)

enum VARENUM {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_BSTR = 8,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000
};

typedef struct tagVARIANT VARIANT;
typedef VARIANT* LPVARIANT;
struct tagVARIANT {
  VARTYPE vt;
  unsigned short wReserved1;
  unsigned short wReserved2;
  unsigned short wReserved3;
  union {
    LONGLONG llVal;
    LONG lVal;
    BYTE bVal;
    short iVal;
    float fltVal;
    double dblVal;
    VARIANT_BOOL boolVal;
    LONG scode;
    BSTR bstrVal;
    void* byref;
    char cVal;
    unsigned short uiVal;
    ULONG ulVal;
    ULONGLONG ullVal;
    int intVal;
    unsigned int uintVal;
  };
};

// The length stands in front of the text.
inline BSTR SysAllocStringLen(const OLECHAR* text, unsigned int length) {
  char* const block = static_cast<char*>(std::malloc(8 + (length + 1) * sizeof(OLECHAR)));
  std::memcpy(block, &length, sizeof length);
  const BSTR copy = reinterpret_cast<BSTR>(block + 8);
  if (text != nullptr) std::memcpy(copy, text, length * sizeof(OLECHAR));
  copy[length] = 0;
  return copy;
}

inline BSTR SysAllocString(const OLECHAR* text) {
  return text == nullptr ? nullptr : SysAllocStringLen(text, static_cast<unsigned int>(std::wcslen(text)));
}

inline void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(reinterpret_cast<char*>(text) - 8);
}

inline unsigned int SysStringLen(BSTR text) {
  unsigned int length = 0;
  if (text != nullptr) std::memcpy(&length, reinterpret_cast<const char*>(text) - 8, sizeof length);
  return length;
}

inline void VariantInit(VARIANT* variant) { std::memset(variant, 0, sizeof *variant); }

inline HRESULT VariantClear(VARIANT* variant) {
  if (variant->vt == VT_BSTR) SysFreeString(variant->bstrVal);
  VariantInit(variant);
  return S_OK;
}

inline HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
  if (target == source) return S_OK;
  VariantClear(target);
  *target = *source;
  if (source->vt == VT_BSTR && source->bstrVal != nullptr)
    target->bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
  return S_OK;
}

#define TRUE 1
#define FALSE 0
#define CONST const
#define IN
#define OUT
#define OPTIONAL
#define VOID void
#define near
#define far
#define small char
#define interface struct
#define ERROR 0
#define NO_ERROR 0L
#define IGNORE 0
#define INFINITE 0xFFFFFFFF
#define STRICT 1
#define DELETE (0x00010000L)
#define DIFFERENCE 11
#define ABSOLUTE 1
#define RELATIVE 2
#define DrawText DrawTextW
#define FindText FindTextW
#define GetMessage GetMessageW
#define GetObject GetObjectW
#define ReplaceText ReplaceTextW
#define CreateWindow CreateWindowW
#define LoadString LoadStringW
#define Yield()
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
