// The tags of a file: a code and a value each.
#pragma once

#include <embedded/drawing/Group.h>
#include <embedded/dxf/TextCoding.h>

#include <cstdint>
#include <memory>
#include <string_view>

namespace lomlisp::embedded {

// As a group, but with every coordinate on its own.
struct Tag {
  int code = 0;
  GroupValue value;
  uint64_t place = 0;  // where the code stands: the line, from 1, or the offset in a binary file
};

inline constexpr int kLastCode = 1071;
inline constexpr int kCommentCode = 999;

// Reads the tags of a file that is in memory and stays there.
class TagSource {
 public:
  TagSource(std::string_view bytes, const TextCoding& coding) : m_bytes(bytes), m_coding(coding) {}
  TagSource(const TagSource&) = delete;
  TagSource& operator=(const TagSource&) = delete;
  virtual ~TagSource() = default;

  // The next tag; false at the end of the file. Throws a Fault.
  virtual bool Next(Tag& tag) = 0;
  // How many bytes have been read.
  size_t Position() const { return m_position; }
  // Whether nothing is left but blanks and what fills up blocks of a disk.
  bool IsRestBlank() const;

 protected:
  std::string_view m_bytes;
  const TextCoding& m_coding;
  size_t m_position = 0;
};

bool IsBinary(std::string_view bytes);
// A source for a file of either form.
std::unique_ptr<TagSource> MakeTagSource(std::string_view bytes, const TextCoding& coding);

}  // namespace lomlisp::embedded
