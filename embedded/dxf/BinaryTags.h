// The tags of a binary file: a code of one or two bytes, a value of the code's width.
#pragma once

#include <embedded/dxf/Tags.h>

#include <string>

namespace lomlisp::embedded {

inline constexpr char kSentinelBytes[] = {0x41, 0x75, 0x74, 0x6F, 0x43, 0x41, 0x44, 0x20, 0x42, 0x69, 0x6E,
                                          0x61, 0x72, 0x79, 0x20, 0x44, 0x58, 0x46, 0x0D, 0x0A, 0x1A, 0x00};
// What every binary file begins with.
inline constexpr std::string_view kBinarySentinel(kSentinelBytes, sizeof(kSentinelBytes));

// Files up to R12 have codes of one byte, and this one before the two bytes of larger codes.
inline constexpr unsigned char kLargeCode = 0xFF;

class BinaryTags final : public TagSource {
 public:
  BinaryTags(std::string_view bytes, const TextCoding& coding);
  bool Next(Tag& tag) override;

 private:
  // As many bytes as that; a Fault when there are less.
  std::string_view Take(size_t size);
  template <typename Integer>
  Integer TakeInteger();
  std::string_view TakeText();
  double TakeReal();
  std::wstring TakeBinary();
  Reference TakeReference();
  int TakeCode();
  void TakeValue(Tag& tag);

  bool m_hasShortCodes = false;
  size_t m_begin = 0;  // of the tag
};

}  // namespace lomlisp::embedded
