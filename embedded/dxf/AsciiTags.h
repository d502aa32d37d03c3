// The tags of an ASCII file: a line with the code, a line with the value.
#pragma once

#include <embedded/dxf/Tags.h>

namespace lomlisp::embedded {

class AsciiTags final : public TagSource {
 public:
  using TagSource::TagSource;
  bool Next(Tag& tag) override;

 private:
  // Lines end with \n, \r\n or \r; the last one may have no end.
  std::string_view NextLine();
  int ReadCode(std::string_view line) const;
  void ReadValue(Tag& tag, std::string_view line) const;

  uint64_t m_line = 0;  // the one that was read last
};

}  // namespace lomlisp::embedded
