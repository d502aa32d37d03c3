// Stand-in: the system's header with all its macros, texts, and the class from which MFC's others derive.
#pragma once

#ifdef _WINDOWS_
#error MFC includes <windows.h> itself
#endif

#include <standard.h>
#include <windows.h>

#ifndef max
#define max(a, b) (((a) > (b)) ? (a) : (b))
#endif
#ifndef min
#define min(a, b) (((a) < (b)) ? (a) : (b))
#endif

#if !defined(UNICODE) || !defined(_UNICODE)
#error The library takes wide texts
#endif
typedef const wchar_t* LPCTSTR;
typedef wchar_t TCHAR;
#define _T(text) L##text
#define ASSERT(condition) ((void)0)
#define DEBUG_NEW new
#define THIS_FILE __FILE__

template <class Character>
struct StrTraitMFC_DLL {
  typedef Character XCHAR;
  typedef const Character* PCXSTR;
  typedef Character* PXSTR;
  typedef char YCHAR;
  typedef const char* PCYSTR;
};

// A counted text.
template <class Character, class Traits>
class CStringT {
 public:
  typedef typename Traits::XCHAR XCHAR;
  typedef typename Traits::PCXSTR PCXSTR;
  typedef typename Traits::PXSTR PXSTR;
  typedef typename Traits::YCHAR YCHAR;
  typedef typename Traits::PCYSTR PCYSTR;

  CStringT() { Set(L"", 0); }
  CStringT(const CStringT& text) { Set(text.m_text, text.m_length); }
  CStringT(PCXSTR text) { Set(text, LengthOf(text)); }
  CStringT(PCYSTR text) { SetNarrow(text); }
  explicit CStringT(XCHAR character, int repeat = 1) {
    Set(L"", 0);
    while (repeat-- > 0) AppendChar(character);
  }
  CStringT(PCXSTR text, int length) { Set(text, length); }
  explicit CStringT(const VARIANT& variant) {
    Set(variant.vt == VT_BSTR ? variant.bstrVal : L"",
        variant.vt == VT_BSTR ? static_cast<int>(SysStringLen(variant.bstrVal)) : 0);
  }
  ~CStringT() { std::free(m_text); }

  CStringT& operator=(const CStringT& text) { return Replace(text.m_text, text.m_length); }
  CStringT& operator=(PCXSTR text) { return Replace(text, LengthOf(text)); }
  CStringT& operator=(PCYSTR text) { return *this = CStringT(text); }
  CStringT& operator=(XCHAR character) { return Replace(&character, 1); }

  CStringT& operator+=(const CStringT& text) { return Add(text.m_text, text.m_length); }
  CStringT& operator+=(PCXSTR text) { return Add(text, LengthOf(text)); }
  CStringT& operator+=(PCYSTR text) { return *this += CStringT(text); }
  CStringT& operator+=(XCHAR character) { return Add(&character, 1); }
  void Append(PCXSTR text) { *this += text; }
  void Append(PCXSTR text, int length) { Add(text, length); }
  void AppendChar(XCHAR character) { *this += character; }

  operator PCXSTR() const { return m_text; }
  PCXSTR GetString() const { return m_text; }
  int GetLength() const { return m_length; }
  bool IsEmpty() const { return m_length == 0; }
  void Empty() { Replace(L"", 0); }
  XCHAR GetAt(int index) const { return m_text[index]; }
  XCHAR operator[](int index) const { return m_text[index]; }
  void SetAt(int index, XCHAR character) { m_text[index] = character; }
  PXSTR GetBuffer() { return m_text; }
  void ReleaseBuffer(int length = -1) { m_length = length < 0 ? LengthOf(m_text) : length; }
  int Compare(PCXSTR text) const { return std::wcscmp(m_text, text); }
  CStringT Mid(int first) const { return CStringT(m_text + first, m_length - first); }
  CStringT Left(int count) const { return CStringT(m_text, count); }
  BSTR AllocSysString() const { return SysAllocStringLen(m_text, static_cast<unsigned int>(m_length)); }

  friend CStringT operator+(const CStringT& a, const CStringT& b) { return CStringT(a) += b; }
  friend CStringT operator+(const CStringT& a, PCXSTR b) { return CStringT(a) += b; }
  friend CStringT operator+(PCXSTR a, const CStringT& b) { return CStringT(a) += b; }
  friend bool operator==(const CStringT& a, const CStringT& b) { return a.Compare(b) == 0; }
  friend bool operator==(const CStringT& a, PCXSTR b) { return a.Compare(b) == 0; }
  friend bool operator==(PCXSTR a, const CStringT& b) { return b.Compare(a) == 0; }
  friend bool operator!=(const CStringT& a, const CStringT& b) { return a.Compare(b) != 0; }
  friend bool operator!=(const CStringT& a, PCXSTR b) { return a.Compare(b) != 0; }
  friend bool operator!=(PCXSTR a, const CStringT& b) { return b.Compare(a) != 0; }
  friend bool operator<(const CStringT& a, const CStringT& b) { return a.Compare(b) < 0; }
  friend bool operator<(const CStringT& a, PCXSTR b) { return a.Compare(b) < 0; }
  friend bool operator<(PCXSTR a, const CStringT& b) { return b.Compare(a) > 0; }

 private:
  static int LengthOf(PCXSTR text) { return text != nullptr ? static_cast<int>(std::wcslen(text)) : 0; }

  void Set(PCXSTR text, int length) {
    const size_t count = static_cast<size_t>(length);
    m_text = static_cast<PXSTR>(std::malloc((count + 1) * sizeof(XCHAR)));
    if (count > 0) std::wmemcpy(m_text, text, count);
    m_text[count] = 0;
    m_length = length;
  }
  void SetNarrow(PCYSTR text) {
    Set(L"", 0);
    for (; text != nullptr && *text != 0; ++text) *this += static_cast<XCHAR>(*text);
  }
  CStringT& Replace(PCXSTR text, int length) {
    const PXSTR old = m_text;
    Set(text, length);
    std::free(old);
    return *this;
  }
  CStringT& Add(PCXSTR text, int length) {
    const size_t own = static_cast<size_t>(m_length);
    const size_t added = static_cast<size_t>(length);
    const PXSTR joined = static_cast<PXSTR>(std::malloc((own + added + 1) * sizeof(XCHAR)));
    std::wmemcpy(joined, m_text, own);
    if (added > 0) std::wmemcpy(joined + own, text, added);
    joined[own + added] = 0;
    std::free(m_text);
    m_text = joined;
    m_length += length;
    return *this;
  }

  PXSTR m_text;
  int m_length;
};

typedef CStringT<wchar_t, StrTraitMFC_DLL<wchar_t>> CString;

class CObject {
 public:
  virtual ~CObject() {}

 protected:
  CObject() {}

 private:
  CObject(const CObject&);
  void operator=(const CObject&);
};
