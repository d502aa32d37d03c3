#include <lomlisp/resbuf/AtomText.h>

#include <lomlisp/resbuf/BinaryData.h>
#include <lomlisp/resbuf/NumberText.h>
#include <lomlisp/resbuf/ResBuf.h>
#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace lomlisp {

using namespace std::string_view_literals;

AtomText::AtomText(const resbuf& record, NameForm nameForm) {
  switch (DxfType(record.restype)) {
    case RTREAL:
    case RTANG:
      PutReal(record.resval.rreal);
      m_estimate = 48;
      break;
    case RTPOINT:
      PutPoint(record.resval.rpoint, 2);
      m_estimate = 102;
      break;
    case RT3DPOINT:
      PutPoint(record.resval.rpoint, 3);
      m_estimate = 150;
      break;
    case RTSHORT:
      PutInteger(record.resval.rint);
      m_estimate = 12;
      break;
    case RTLONG:
      PutInteger(record.resval.rlong);
      m_estimate = 12;
      break;
    case RTINT64:
      PutInteger(record.resval.mnInt64);
      m_estimate = 24;
      break;
    case RTSTR:
      m_isQuoted = true;
      if (IsBinary(record.restype)) {
        PutBytes(BytesOf(record));
        break;
      }
      m_body = {record.resval.rstring, TextLength(record.resval.rstring)};
      return;
    case RTENAME:
      Put(nameForm == NameForm::Long ? L"<Entity name: "sv : L"<Ename: "sv);
      PutHandle(record.resval.rlname[0]);
      Put(L">"sv);
      m_estimate = 17;
      break;
    case RTPICKS:
      Put(nameForm == NameForm::Long ? L"<Selection set: "sv : L"<Selset: "sv);
      PutHandle(record.resval.rlname[0]);
      Put(L">"sv);
      m_estimate = 18;
      break;
    case RTLB:
      Put(L"("sv);
      break;
    case RTLE:
      Put(L")"sv);
      break;
    case RTDOTE:
      Put(L"RTDOTE)"sv);
      break;
    default:
      Put(static_cast<const ResBuf&>(record).BaseTypeName());
      break;
  }
  m_body = {m_number.data(), m_length};
}

void AtomText::Put(std::wstring_view text) { m_length += text.copy(&m_number[m_length], text.size()); }

void AtomText::PutReal(double value) { EndAt(WriteReal(&m_number[m_length], value)); }

void AtomText::PutInteger(__int64 value) { EndAt(WriteInteger(&m_number[m_length], value)); }

void AtomText::PutHandle(__int64 word) {
  char digits[8];
  const char* const end = std::to_chars(digits, std::end(digits), static_cast<uint32_t>(word), 16).ptr;
  EndAt(std::copy(static_cast<const char*>(digits), end, &m_number[m_length]));
}

void AtomText::PutPoint(const ads_real* point, int dimensions) {
  Put(L"( "sv);
  for (int i = 0; i < dimensions; ++i) {
    PutReal(point[i]);
    Put(L" "sv);
  }
  Put(L")"sv);
}

void AtomText::PutBytes(std::string_view bytes) {
  for (const char byte : bytes.substr(0, m_number.size() / 2))
    for (const wchar_t digit : DigitsOf(byte)) m_number[m_length++] = digit;
}

}  // namespace lomlisp
