// The MFC value classes that the library accepts and gives: the real ones where LOMLISP_MFC says
// that MFC is there, otherwise a small subset with MFC's names and meaning.
#pragma once

#ifdef LOMLISP_MFC

#include <afx.h>
#include <afxtempl.h>

#else

#include <cstddef>
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
  int Compare(const wchar_t* text) const { return m_text.compare(text); }

  friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
  friend bool operator==(const CString& a, const wchar_t* b) { return a.m_text == b; }

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

#endif
