# Writes LispSources() with the files in FILES, which semicolons separate, to OUTPUT.
set(texts "")
foreach(file ${FILES})
  get_filename_component(name ${file} NAME)
  file(READ ${file} text)
  string(APPEND texts "    {\"${name}\", R\"~~~~(${text})~~~~\"},\n")
endforeach()
file(WRITE ${OUTPUT} "// Generated from the LISP files.
#include <shell/Sources.h>

std::span<const lomlisp::shell::LispSource> lomlisp::shell::LispSources() {
  static constexpr LispSource sources[] = {
${texts}  };
  return sources;
}
")
