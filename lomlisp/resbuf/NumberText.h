// Numbers from and to text, as the C standard has them in the "C" locale, whatever the locale is.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>

namespace lomlisp {

// The decimal number at the beginning of a text, behind blanks: a sign and digits, for a real also
// a decimal point and an exponent. What follows is ignored; 0 when there is none.
// Linear in the digits.
int32_t ScanInteger(const wchar_t* text);  // saturated
double ScanReal(const wchar_t* text);      // infinite, or 0, when it is out of range; 0 for null

// Writes a number, without a terminating zero, and gives the position behind it: "%lld", and "%f" (at most
// 317 characters).
wchar_t* WriteInteger(wchar_t* target, long long value);
wchar_t* WriteReal(wchar_t* target, double value);

// Appends a real with `precision` digits behind the point, as "%f" (fixed) or "%e" (scientific).
void AppendReal(std::wstring& text, double value, std::chars_format format, int precision);

}  // namespace lomlisp
