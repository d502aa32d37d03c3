// Values as texts, and values from texts.

#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/messages.h>
#include <lomlisp/text/UpperCase.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

using namespace lomlisp;

CLOMAdsLispVar CLOMAdsLisp::PrinC(const CLOMAdsLispVar& value) {
  value.PrinC(nullptr, 0);
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::ToString(const CLOMAdsLispVar& value) {
  constexpr size_t kSize = 5000;
  const std::unique_ptr<wchar_t[]> buffer(new wchar_t[kSize]);
  value.PrinC(buffer.get(), kSize);
  return buffer.get();
}

CString CLOMAdsLisp::ToCString(const CLOMAdsLispVar& value) {
  wchar_t buffer[16384];
  value.PrinC(buffer, std::size(buffer));
  return buffer;
}

CLOMAdsLispVar CLOMAdsLisp::Read(const CLOMAdsLispVar& text) {
  if (!StringP(text)) {
    acutPrintf(messages::ReadOfOther);
    return Nil;
  }
  CLOMAdsLispVar value;
  value.Read(text.GetAtom());
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::StrCase(const CLOMAdsLispVar& text) {
  if (!StringP(text)) {
    acutPrintf(messages::StrCaseOfOther);
    return Nil;
  }
  std::wstring upper;
  SetQ(upper, text);
  std::transform(upper.begin(), upper.end(), upper.begin(), UpperCase);
  return upper;
}
