#include <embedded/dxf/Tags.h>

#include <embedded/dxf/AsciiTags.h>
#include <embedded/dxf/BinaryTags.h>

namespace lomlisp::embedded {

bool TagSource::IsRestBlank() const {
  constexpr std::string_view kBlanks(" \t\r\n\x1A\0", 6);
  return m_bytes.find_first_not_of(kBlanks, m_position) == std::string_view::npos;
}

bool IsBinary(std::string_view bytes) { return bytes.starts_with(kBinarySentinel); }

std::unique_ptr<TagSource> MakeTagSource(std::string_view bytes, const TextCoding& coding) {
  if (IsBinary(bytes)) return std::make_unique<BinaryTags>(bytes, coding);
  return std::make_unique<AsciiTags>(bytes, coding);
}

}  // namespace lomlisp::embedded
