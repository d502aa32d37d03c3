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
      break;
    case RTPOINT:
      PutPoint(record.resval.rpoint, 2);
      break;
    case RT3DPOINT:
      PutPoint(record.resval.rpoint, 3);
      break;
    case RTSHORT:
      PutInteger(record.resval.rint);
      break;
    case RTLONG:
      PutInteger(record.resval.rlong);
      break;
    case RTINT64:
      PutInteger(record.resval.mnInt64);
      break;
    case RTSTR:
      m_quote = L"\""sv;
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
      break;
    case RTPICKS:
      Put(nameForm == NameForm::Long ? L"<Selection set: "sv : L"<Selset: "sv);
      PutHandle(record.resval.rlname[0]);
      Put(L">"sv);
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

size_t EstimateLength(const resbuf& record) {
  switch (DxfType(record.restype)) {
    case RTREAL:
    case RTANG:
      return 48;
    case RTPOINT:
      return 102;
    case RT3DPOINT:
      return 150;
    case RTSHORT:
    case RTLONG:
      return 12;
    case RTINT64:
      return 24;
    case RTSTR:
      if (IsBinary(record.restype)) return AtomText(record, NameForm::Short).Length();
      return TextLength(record.resval.rstring) + 2;
    case RTENAME:
      return 17;
    case RTPICKS:
      return 18;
    default:
      return AtomText(record, NameForm::Short).Length();
  }
}

}  // namespace lomlisp
