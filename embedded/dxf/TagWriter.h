// Writes tags into memory, in either form of a file.
#pragma once

#include <embedded/drawing/Drawing.h>
#include <embedded/dxf/Dxf.h>

#include <memory>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// Each function writes one tag, and throws a Fault when the form cannot hold the value.
class TagWriter {
 public:
  TagWriter() = default;
  TagWriter(const TagWriter&) = delete;
  TagWriter& operator=(const TagWriter&) = delete;
  virtual ~TagWriter() = default;

  // A text as the file holds it, without control characters.
  virtual void Text(int code, std::string_view text) = 0;
  virtual void Integer(int code, long long integer) = 0;
  virtual void Real(int code, double real) = 0;
  // Bytes by their hexadecimal digits.
  virtual void Binary(int code, std::string_view digits) = 0;

  // What was written since the last time.
  std::string& Bytes() { return m_bytes; }

 protected:
  std::string m_bytes;
};

std::unique_ptr<TagWriter> MakeTagWriter(DxfForm form, DxfVersion version);

}  // namespace lomlisp::embedded
