// Stand-in: the arrays that are no templates.
#pragma once

#include <afxtempl.h>

class CStringArray : public CObject {
 public:
  INT_PTR GetSize() const { return m_texts.GetSize(); }
  INT_PTR GetCount() const { return m_texts.GetCount(); }
  bool IsEmpty() const { return m_texts.IsEmpty(); }
  INT_PTR GetUpperBound() const { return m_texts.GetUpperBound(); }
  void SetSize(INT_PTR size, INT_PTR growBy = -1) { m_texts.SetSize(size, growBy); }
  void RemoveAll() { m_texts.RemoveAll(); }
  const CString& GetAt(INT_PTR index) const { return m_texts.GetAt(index); }
  void SetAt(INT_PTR index, LPCTSTR text) { m_texts.SetAt(index, CString(text)); }
  void SetAt(INT_PTR index, const CString& text) { m_texts.SetAt(index, text); }
  CString& ElementAt(INT_PTR index) { return m_texts.ElementAt(index); }
  void SetAtGrow(INT_PTR index, LPCTSTR text) { m_texts.SetAtGrow(index, CString(text)); }
  void SetAtGrow(INT_PTR index, const CString& text) { m_texts.SetAtGrow(index, text); }
  INT_PTR Add(LPCTSTR text) { return m_texts.Add(CString(text)); }
  INT_PTR Add(const CString& text) { return m_texts.Add(text); }
  const CString& operator[](INT_PTR index) const { return m_texts[index]; }
  CString& operator[](INT_PTR index) { return m_texts[index]; }

 private:
  CArray<CString, const CString&> m_texts;
};
