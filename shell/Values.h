// Values of the session's LISP as records, and back. Neither depth nor length costs stack.
#pragma once

#include <embedded/Chain.h>

#include <ecl/ecl.h>

#include <stdexcept>
#include <string>
#include <string_view>

// The interpreter's functions are used for the parts of a list: its macros read through pointers with a mark
// in them, which GCC's sanitizer takes for misaligned.
namespace lomlisp::shell {

// What a LISP function ends with: the script's error, with the host's text.
class LispError : public std::runtime_error {
 public:
  explicit LispError(std::wstring text) : std::runtime_error("LISP error"), m_text(std::move(text)) {}
  const std::wstring& Text() const { return m_text; }

 private:
  std::wstring m_text;
};

// Appends the item that a value is: lists and pairs with brackets and dots, points as lists of reals. An
// integer is an RTSHORT if it has 16 bits, else an RTLONG. Throws LispError for what cannot leave LISP: a
// symbol other than nil and T, a function, a file.
void AppendItem(embedded::Chain& chain, cl_object value);

// The value of one item; of several, or of a run of DXF groups, their list. RTVOID becomes what the prompt
// does not show. The chain must be one that the host has taken.
cl_object ValueOf(const embedded::Chain& chain);

// A symbol of the dialect's own, which stays where it is: nothing collects it.
cl_object LomSymbol(const char* name);

cl_object LispText(std::wstring_view text);
// Of a LISP string; empty for all else.
std::wstring TextOf(cl_object string);

}  // namespace lomlisp::shell
