#include <embedded/dxf/TagWriter.h>

#include <embedded/dxf/BinaryTags.h>
#include <embedded/dxf/Fault.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

namespace lomlisp::embedded {

namespace {

class AsciiWriter final : public TagWriter {
 public:
  void Text(int code, std::string_view text) override {
    Code(code);
    m_bytes += text;
    m_bytes += '\n';
  }

  void Integer(int code, long long integer) override {
    Code(code);
    Number(integer);
    m_bytes += '\n';
  }

  // The shortest text that reads back as the same number, and as a real.
  void Real(int code, double real) override {
    Code(code);
    const size_t begin = m_bytes.size();
    Number(real);
    if (m_bytes.find_first_of(".e", begin) == std::string::npos) m_bytes += ".0";
    m_bytes += '\n';
  }

  void Binary(int code, std::string_view digits) override { Text(code, digits); }

 private:
  // Codes are written three wide.
  void Code(int code) {
    if (code < 100) m_bytes += ' ';
    if (code < 10) m_bytes += ' ';
    Number(code);
    m_bytes += '\n';
  }

  template <typename T>
  void Number(T number) {
    char digits[32];  // enough for every number
    m_bytes.append(digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr);
  }
};

class BinaryWriter final : public TagWriter {
 public:
  explicit BinaryWriter(bool hasShortCodes) : m_hasShortCodes(hasShortCodes) { m_bytes = kBinarySentinel; }

  void Text(int code, std::string_view text) override {
    Code(code);
    m_bytes += text;
    m_bytes += '\0';
  }

  void Integer(int code, long long integer) override {
    Code(code);
    switch (KindOf(code)) {
      case GroupKind::Bool:
        return Fitting<int8_t>(integer);
      case GroupKind::Short:
        return Fitting<int16_t>(integer);
      case GroupKind::Long:
        return Fitting<int32_t>(integer);
      default:
        return Fitting<int64_t>(integer);
    }
  }

  void Real(int code, double real) override {
    Code(code);
    Little(std::bit_cast<uint64_t>(real), sizeof(real));
  }

  void Binary(int code, std::string_view digits) override {
    constexpr size_t kMostBytes = 255;
    if (digits.size() > 2 * kMostBytes) throw Fault("a chunk of more than 255 bytes, for a binary file");
    Code(code);
    m_bytes += static_cast<char>(static_cast<unsigned char>(digits.size() / 2));
    for (size_t at = 0; at < digits.size(); at += 2) {
      unsigned char byte = 0;
      std::from_chars(digits.data() + at, digits.data() + at + 2, byte, 16);
      m_bytes += static_cast<char>(byte);
    }
  }

 private:
  void Little(uint64_t number, size_t size) {
    for (; size > 0; --size, number >>= 8) m_bytes += static_cast<char>(static_cast<unsigned char>(number));
  }

  // Some programs write unsigned integers, which have the same bytes.
  template <typename Signed>
  void Fitting(long long integer) {
    using Unsigned = std::make_unsigned_t<Signed>;
    if (!std::in_range<Signed>(integer) && !std::in_range<Unsigned>(integer))
      throw Fault("an integer of more than " + std::to_string(8 * sizeof(Signed)) +
                  " bits, for a binary file");
    Little(static_cast<uint64_t>(integer), sizeof(Signed));
  }

  void Code(int code) {
    const bool isLarge = m_hasShortCodes && code >= kLargeCode;
    if (isLarge) m_bytes += static_cast<char>(kLargeCode);
    Little(static_cast<uint64_t>(code), m_hasShortCodes && !isLarge ? 1 : 2);
  }

  bool m_hasShortCodes;
};

}  // namespace

std::unique_ptr<TagWriter> MakeTagWriter(DxfForm form, DxfVersion version) {
  if (form == DxfForm::Ascii) return std::make_unique<AsciiWriter>();
  return std::make_unique<BinaryWriter>(version == DxfVersion::R12);
}

}  // namespace lomlisp::embedded
