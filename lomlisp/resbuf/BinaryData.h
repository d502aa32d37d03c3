// What a record of a binary group (platform/binary.h) holds, as hexadecimal digits and as a block of its own.
#pragma once

#include <lomlisp/platform/binary.h>

#include <array>
#include <cstddef>

namespace lomlisp {

// The two digits of a byte, in upper case.
std::array<wchar_t, 2> DigitsOf(char byte);

// The bytes of a record as a text from acad_malloc; null when memory runs out.
wchar_t* NewDigits(const resbuf& record);

// Whether a record of a binary group can hold what the digits say: pairs, not too many. Null is no bytes.
bool AreBytes(const wchar_t* digits);

// Gives a record the bytes of such digits, in a buffer from acad_malloc; none when memory runs out. What the
// record held before is not looked at.
void TakeBytes(resbuf& record, const wchar_t* digits);

// The block that holds the text, or the bytes, of a record.
inline void* ContentOf(const resbuf& record) {
  if (IsBinary(record.restype)) return BufferOf(record);
  return record.resval.rstring;
}
// Makes the content a copy, null for null. False when memory runs out; there is no content then.
bool CopyContent(resbuf& record);
void ClearContent(resbuf& record);

}  // namespace lomlisp
