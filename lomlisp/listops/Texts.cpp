// Values as texts.

#include <lomlisp/listops/CLOMAdsLisp.h>

#include <iterator>
#include <memory>

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
