// LISP text to values, and back: what can be read and printed reads the same again.
#include <tests/fuzz/Fuzz.h>

#include <vector>

void lomlisp::fuzz::Try(Input& input) {
  const std::wstring text = TakeRest(input);
  CLOMAdsLispVar value;
  if (!value.Read(text.c_str())) return;
  // Room for a number of a hundred digits, of which a piece may take half.
  std::vector<wchar_t> printed(8192 + text.size() * 16);
  value.PrinC(printed.data(), printed.size());
  CLOMAdsLispVar again;
  Require(again.Read(printed.data()), "what was printed can be read");
  value.GetAsDebugString();
}
