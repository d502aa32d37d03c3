// Groups of binary data: 310 to 319, and 1004 in extended data.
//
// The embedded host has their bytes as DXF files do, as a text of hexadecimal digits, so that for the library
// they are text groups. In the real host's records they are a buffer and its length: there is no text in
// them.
#pragma once

#include <lomlisp/platform/ads.h>

#include <string_view>

namespace lomlisp {

#ifdef LOMLISP_HOST_SDK

// Whether a record of that type holds bytes.
constexpr bool IsBinary(short type) { return (type >= 310 && type <= 319) || type == 1004; }

inline char* BufferOf(const resbuf& record) { return record.resval.rbinary.buf; }

// None for a length that is none.
inline std::string_view BytesOf(const resbuf& record) {
  const ads_binary& binary = record.resval.rbinary;
  if (binary.buf == nullptr || binary.clen <= 0) return {};
  return {binary.buf, static_cast<size_t>(binary.clen)};
}

// A null buffer has no length.
inline void SetBuffer(resbuf& record, char* buffer, short length) {
  record.resval.rbinary.clen = buffer != nullptr ? length : short{0};
  record.resval.rbinary.buf = buffer;
}

#else

constexpr bool IsBinary(short) { return false; }
inline char* BufferOf(const resbuf&) { return nullptr; }
inline std::string_view BytesOf(const resbuf&) { return {}; }
inline void SetBuffer(resbuf&, char*, short) {}

#endif

}  // namespace lomlisp
