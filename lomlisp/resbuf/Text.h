// Texts of records: zero-terminated, on the platform's heap, compared as UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lomlisp {

// The number of characters; 0 for null.
size_t TextLength(const wchar_t* text);

// The text itself; the empty text for null.
inline const wchar_t* TextOrEmpty(const wchar_t* text) { return text != nullptr ? text : L""; }

// A copy from acad_malloc; null for null and when memory runs out.
wchar_t* CopyText(const wchar_t* text);

// Negative, zero or positive as `a` is less than, equal to or greater than `b` in the order of
// UTF-16 code units, whatever the width of wchar_t. Neither may be null.
int CompareText(const wchar_t* a, const wchar_t* b);

// Whether two texts are the same; null is the same as null alone.
bool AreTextsEqual(const wchar_t* a, const wchar_t* b);

// The first four UTF-16 code units of a text, zeros behind its end, as a number: where those of two texts
// differ, they are in the order of the texts.
uint64_t FirstUnits(const wchar_t* text);

}  // namespace lomlisp
