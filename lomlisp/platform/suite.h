// What the library uses of the application suite's shared helpers.
#pragma once

#include <lomlisp/platform/ads.h>
#include <lomlisp/platform/mfc.h>

#include <charconv>
#include <iterator>
#include <string>

namespace lomlisp {

// A closed range of DXF group codes and the result type of their values.
struct DxfRange {
  short first;
  short last;
  short type;
};

// In ascending order, without overlaps. A code in no range is no group code.
inline constexpr DxfRange kDxfRanges[] = {
    {-5, -5, RTENAME},    {-4, -4, RTSTR},       {-3, -3, RTSHORT},    {-2, -1, RTENAME},
    {0, 9, RTSTR},        {10, 19, RT3DPOINT},   {20, 59, RTREAL},     {60, 79, RTSHORT},
    {90, 99, RTLONG},     {100, 102, RTSTR},     {105, 105, RTSTR},    {110, 112, RT3DPOINT},
    {113, 149, RTREAL},   {160, 169, RTINT64},   {170, 179, RTSHORT},  {210, 219, RT3DPOINT},
    {220, 239, RTREAL},   {270, 299, RTSHORT},   {300, 319, RTSTR},    {320, 369, RTENAME},
    {370, 389, RTSHORT},  {390, 399, RTENAME},   {400, 409, RTSHORT},  {410, 419, RTSTR},
    {420, 429, RTLONG},   {430, 439, RTSTR},     {440, 459, RTLONG},   {460, 469, RTREAL},
    {470, 479, RTSTR},    {480, 481, RTENAME},   {999, 1009, RTSTR},   {1010, 1019, RT3DPOINT},
    {1020, 1059, RTREAL}, {1060, 1070, RTSHORT}, {1071, 1071, RTLONG},
};

inline constexpr short kFirstDxfCode = -5;
inline constexpr short kLastDxfCode = 1071;

// The ranges spread out, so that a look-up is one load: 0 where a code is no group code.
struct DxfTypeTable {
  short types[kLastDxfCode - kFirstDxfCode + 1];
};

constexpr DxfTypeTable MakeDxfTypeTable() {
  DxfTypeTable table{};
  for (const DxfRange& range : kDxfRanges)
    for (int code = range.first; code <= range.last; ++code) table.types[code - kFirstDxfCode] = range.type;
  return table;
}

inline constexpr DxfTypeTable kDxfTypeTable = MakeDxfTypeTable();

}  // namespace lomlisp

// The result type (RTSTR, RTREAL, ...) of the value of a DXF group code; any other code, the RT
// codes included, is given back unchanged. Constant time.
constexpr short DxfType(short code) {
  if (code < lomlisp::kFirstDxfCode || code > lomlisp::kLastDxfCode) return code;
  const short type = lomlisp::kDxfTypeTable.types[code - lomlisp::kFirstDxfCode];
  return type != 0 ? type : code;
}

namespace lom_string_utils {

// The shortest decimal text that reads back as the same double: "0.1", "1e+300", "-0", "inf", "nan".
inline CString FormatShortestDouble(double value) {
  char digits[32];
  char* const end = std::to_chars(digits, std::end(digits), value).ptr;
  return CString(std::wstring(digits, end).c_str());
}

}  // namespace lom_string_utils
