#include <lomlisp/resbuf/ResBuf.h>

#include <lomlisp/resbuf/Text.h>

using namespace lomlisp;

void ResBuf::Init(COleVariant variant) {
  Init();
  switch (variant.vt) {
    case VT_I2:
    case VT_UI2:
      Init(variant.iVal);
      break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
      Init(static_cast<long>(variant.lVal));
      break;
    case VT_R4:
      Init(static_cast<double>(variant.fltVal), ADSRealType::Real);
      break;
    case VT_R8:
      Init(variant.dblVal, ADSRealType::Real);
      break;
    case VT_BSTR:
      Init(TextOrEmpty(variant.bstrVal));
      break;
    case VT_BOOL:
      Init(variant.boolVal != 0 ? 1L : 0L);
      break;
    case VT_I1:
    case VT_UI1:
      Init(static_cast<short>(static_cast<signed char>(variant.bVal)));
      break;
    default:
      break;
  }
}
