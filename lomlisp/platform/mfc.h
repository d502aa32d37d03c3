// The MFC value classes that the library accepts and gives: the real ones where LOMLISP_MFC says
// that MFC is there, otherwise a small subset with MFC's names and meaning. OLE's VARIANT is the
// system's own on Windows, and a subset elsewhere.
#pragma once

#ifdef LOMLISP_MFC

// First the one that all others need, and that wants to be the one to include <windows.h>.
#include <afx.h>
// Then in any order.
#include <afxcoll.h>
#include <afxdisp.h>
#include <afxtempl.h>

#else

#ifdef _WIN32
// Without macros for min and max, and without the sockets and dialogs that nobody here asks for. Who
// wants them includes <windows.h> first.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// After <windows.h>, whose types it uses.
#include <oleauto.h>
#endif

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

// A wide text that owns its characters. A null pointer counts as the empty text.
class CString {
 public:
  CString() = default;
  CString(const wchar_t* text) { *this = text; }
  CString(const wchar_t* text, int length) : m_text(text, static_cast<size_t>(length)) {}

  // `text` may lie within this very string.
  CString& operator=(const wchar_t* text) {
    if (text != nullptr)
      m_text = text;
    else
      m_text.clear();
    return *this;
  }
  CString& operator+=(const wchar_t* text) {
    if (text != nullptr) m_text += text;
    return *this;
  }
  CString& operator+=(const CString& other) {
    m_text += other.m_text;
    return *this;
  }
  CString& operator+=(wchar_t character) {
    m_text += character;
    return *this;
  }

  // The characters with a terminating zero, valid until the string changes.
  operator const wchar_t*() const { return m_text.c_str(); }
  const wchar_t* GetString() const { return m_text.c_str(); }

  int GetLength() const { return static_cast<int>(m_text.size()); }
  bool IsEmpty() const { return m_text.empty(); }
  void Empty() { m_text.clear(); }
  wchar_t GetAt(int index) const { return m_text[static_cast<size_t>(index)]; }
  int Compare(const wchar_t* text) const { return m_text.compare(text != nullptr ? text : L""); }

  friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
  friend bool operator==(const CString& a, const wchar_t* b) { return a.Compare(b) == 0; }

 private:
  std::wstring m_text;
};

// A growing array. ARG_TYPE is how an element is passed in.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  using Index = std::ptrdiff_t;

  Index GetSize() const { return static_cast<Index>(m_elements.size()); }
  Index GetCount() const { return GetSize(); }
  Index GetUpperBound() const { return GetSize() - 1; }
  bool IsEmpty() const { return m_elements.empty(); }

  void SetSize(Index size) { m_elements.resize(static_cast<size_t>(size)); }
  void RemoveAll() { m_elements.clear(); }

  Index Add(ARG_TYPE element) {
    m_elements.push_back(element);
    return GetUpperBound();
  }
  // Grows the array first when `index` lies behind its end. Constant time at the end (amortised).
  void SetAtGrow(Index index, ARG_TYPE element) {
    if (index == GetSize()) {
      m_elements.push_back(element);
      return;
    }
    if (index > GetSize()) SetSize(index + 1);
    m_elements[static_cast<size_t>(index)] = element;
  }
  void SetAt(Index index, ARG_TYPE element) { m_elements[static_cast<size_t>(index)] = element; }

  const TYPE& GetAt(Index index) const { return m_elements[static_cast<size_t>(index)]; }
  TYPE& GetAt(Index index) { return m_elements[static_cast<size_t>(index)]; }
  TYPE& ElementAt(Index index) { return m_elements[static_cast<size_t>(index)]; }
  const TYPE& operator[](Index index) const { return GetAt(index); }
  TYPE& operator[](Index index) { return GetAt(index); }

 private:
  std::vector<TYPE> m_elements;
};

using CStringArray = CArray<CString, const CString&>;

#ifndef _WIN32

// --- OLE's variant, as far as scalar values go ---

// A text that knows its length, which stands in front of it, so that it may hold zeros; it ends
// with a zero all the same. Null is the empty text.
using BSTR = wchar_t*;

// Copies `length` characters, or leaves them unset for a null `text`; null when memory runs out.
inline BSTR SysAllocStringLen(const wchar_t* text, unsigned int length) {
  const size_t bytes = length * sizeof(wchar_t);
  auto* const block = static_cast<char*>(std::malloc(sizeof(size_t) + bytes + sizeof(wchar_t)));
  if (block == nullptr) return nullptr;
  std::memcpy(block, &bytes, sizeof bytes);
  auto* const copy = reinterpret_cast<BSTR>(block + sizeof bytes);
  if (text != nullptr) std::memcpy(copy, text, bytes);
  copy[length] = 0;
  return copy;
}

// Null for null.
inline BSTR SysAllocString(const wchar_t* text) {
  return text != nullptr ? SysAllocStringLen(text, static_cast<unsigned int>(std::wcslen(text))) : nullptr;
}

inline unsigned int SysStringLen(BSTR text) {
  if (text == nullptr) return 0;
  size_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(text) - sizeof bytes, sizeof bytes);
  return static_cast<unsigned int>(bytes / sizeof(wchar_t));
}

inline void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(reinterpret_cast<char*>(text) - sizeof(size_t));
}

using VARTYPE = unsigned short;
using VARIANT_BOOL = short;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
};

struct VARIANT {
  VARTYPE vt;
  unsigned short wReserved1;
  unsigned short wReserved2;
  unsigned short wReserved3;
  union {
    long long llVal;
    int32_t lVal;
    unsigned char bVal;
    short iVal;
    float fltVal;
    double dblVal;
    VARIANT_BOOL boolVal;
    int32_t scode;
    double date;
    BSTR bstrVal;
    void* byref;
    signed char cVal;
    unsigned short uiVal;
    uint32_t ulVal;
    unsigned long long ullVal;
    int intVal;
    unsigned int uintVal;
  };
};

using HRESULT = int32_t;
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);

inline void VariantInit(VARIANT* variant) { *variant = VARIANT{}; }

// Frees what the variant owns, and makes it VT_EMPTY. What a variant refers to is not its own.
inline HRESULT VariantClear(VARIANT* variant) {
  if (variant->vt == VT_BSTR) SysFreeString(variant->bstrVal);
  VariantInit(variant);
  return S_OK;
}

// A deep copy. On failure `target` is VT_EMPTY.
inline HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
  if (target == source) return S_OK;
  VariantClear(target);
  VARIANT copy = *source;
  if (source->vt == VT_BSTR && source->bstrVal != nullptr) {
    copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
    if (copy.bstrVal == nullptr) return E_OUTOFMEMORY;
  }
  *target = copy;
  return S_OK;
}

#endif

inline void AfxVariantInit(VARIANT* variant) { VariantInit(variant); }

// A variant that owns its value. Copies are deep.
class COleVariant : public VARIANT {
 public:
  COleVariant() { AfxVariantInit(this); }
  COleVariant(const VARIANT& variant) : COleVariant() { Copy(variant); }
  COleVariant(const COleVariant& variant) : COleVariant(static_cast<const VARIANT&>(variant)) {}
  COleVariant(COleVariant&& variant) noexcept : VARIANT(variant) { AfxVariantInit(&variant); }
  COleVariant(unsigned char value) : COleVariant() { *this = value; }
  // As VT_I2, or as VT_BOOL for that type.
  COleVariant(short value, VARTYPE type = VT_I2) : COleVariant() {
    if (type == VT_BOOL)
      boolVal = value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    else
      iVal = value;
    vt = type;
  }
  // As VT_I4, VT_ERROR, or VT_BOOL; 32 bits.
  COleVariant(long value, VARTYPE type = VT_I4) : COleVariant() {
    if (type == VT_BOOL)
      boolVal = value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    else
      lVal = static_cast<int32_t>(value);
    vt = type;
  }
  COleVariant(float value) : COleVariant() { *this = value; }
  COleVariant(double value) : COleVariant() { *this = value; }
  COleVariant(const CString& text) : COleVariant() { *this = text; }
  COleVariant(const wchar_t* text, VARTYPE /*VT_BSTR*/) : COleVariant() { *this = text; }
  ~COleVariant() { VariantClear(this); }

  COleVariant& operator=(const VARIANT& variant) {
    Copy(variant);
    return *this;
  }
  COleVariant& operator=(const COleVariant& variant) { return *this = static_cast<const VARIANT&>(variant); }
  COleVariant& operator=(unsigned char value) {
    Become(VT_UI1);
    bVal = value;
    return *this;
  }
  COleVariant& operator=(short value) {
    Become(VT_I2);
    iVal = value;
    return *this;
  }
  COleVariant& operator=(long value) {
    Become(VT_I4);
    lVal = static_cast<int32_t>(value);
    return *this;
  }
  COleVariant& operator=(float value) {
    Become(VT_R4);
    fltVal = value;
    return *this;
  }
  COleVariant& operator=(double value) {
    Become(VT_R8);
    dblVal = value;
    return *this;
  }
  COleVariant& operator=(const CString& text) {
    return SetText(text.GetString(), static_cast<unsigned int>(text.GetLength()));
  }
  // Null is the empty text. The text may be this variant's own.
  COleVariant& operator=(const wchar_t* text) {
    return SetText(text, text != nullptr ? static_cast<unsigned int>(std::wcslen(text)) : 0);
  }

  void Clear() { VariantClear(this); }

 private:
  // The system changes no source, though not every declaration of its function says so.
  void Copy(const VARIANT& variant) { VariantCopy(this, const_cast<VARIANT*>(&variant)); }
  void Become(VARTYPE type) {
    VariantClear(this);
    vt = type;
  }
  COleVariant& SetText(const wchar_t* text, unsigned int length) {
    const BSTR copy = SysAllocStringLen(text, length);
    Become(VT_BSTR);
    bstrVal = copy;
    return *this;
  }
};

#endif
