// Stand-in: the variant that owns its value.
#pragma once

#include <afx.h>

typedef const VARIANT* LPCVARIANT;

inline void AfxVariantInit(LPVARIANT variant) { VariantInit(variant); }

class COleVariant : public tagVARIANT {
 public:
  COleVariant() { AfxVariantInit(this); }
  COleVariant(const VARIANT& source) {
    AfxVariantInit(this);
    Copy(source);
  }
  COleVariant(LPCVARIANT source) {
    AfxVariantInit(this);
    Copy(*source);
  }
  COleVariant(const COleVariant& source) : tagVARIANT() {
    AfxVariantInit(this);
    Copy(source);
  }
  COleVariant(LPCTSTR source) {
    AfxVariantInit(this);
    *this = source;
  }
  COleVariant(LPCTSTR source, VARTYPE) : COleVariant(source) {}
  COleVariant(CString& source) {
    AfxVariantInit(this);
    *this = source;
  }
  COleVariant(BYTE source) {
    AfxVariantInit(this);
    *this = source;
  }
  COleVariant(short source, VARTYPE type = VT_I2) {
    AfxVariantInit(this);
    *this = source;
    vt = type;
  }
  COleVariant(long source, VARTYPE type = VT_I4) {
    AfxVariantInit(this);
    *this = source;
    vt = type;
  }
  COleVariant(LONGLONG source) {
    AfxVariantInit(this);
    *this = source;
  }
  COleVariant(ULONGLONG source) {
    AfxVariantInit(this);
    *this = source;
  }
  COleVariant(float source) {
    AfxVariantInit(this);
    *this = source;
  }
  COleVariant(double source) {
    AfxVariantInit(this);
    *this = source;
  }
  ~COleVariant() { VariantClear(this); }

  const COleVariant& operator=(const VARIANT& source) { return Copy(source); }
  const COleVariant& operator=(LPCVARIANT source) { return Copy(*source); }
  const COleVariant& operator=(const COleVariant& source) { return Copy(source); }
  const COleVariant& operator=(const LPCTSTR source) { return *this = CString(source); }
  const COleVariant& operator=(const CString& source) {
    const BSTR copy = source.AllocSysString();
    Become(VT_BSTR).bstrVal = copy;
    return *this;
  }
  const COleVariant& operator=(BYTE source) {
    Become(VT_UI1).bVal = source;
    return *this;
  }
  const COleVariant& operator=(short source) {
    Become(VT_I2).iVal = source;
    return *this;
  }
  const COleVariant& operator=(long source) {
    Become(VT_I4).lVal = static_cast<LONG>(source);
    return *this;
  }
  const COleVariant& operator=(LONGLONG source) {
    Become(VT_I8).llVal = source;
    return *this;
  }
  const COleVariant& operator=(ULONGLONG source) {
    Become(VT_UI8).ullVal = source;
    return *this;
  }
  const COleVariant& operator=(float source) {
    Become(VT_R4).fltVal = source;
    return *this;
  }
  const COleVariant& operator=(double source) {
    Become(VT_R8).dblVal = source;
    return *this;
  }

  operator LPVARIANT() { return this; }
  operator LPCVARIANT() const { return this; }
  void Clear() { VariantClear(this); }

 private:
  const COleVariant& Copy(const VARIANT& source) {
    VariantCopy(this, const_cast<VARIANT*>(&source));
    return *this;
  }
  tagVARIANT& Become(VARTYPE type) {
    VariantClear(this);
    vt = type;
    return *this;
  }
};
