// What the platform functions were given, record by record, and looks at what they leave behind.
#pragma once

#include <lomlisp/platform/suite.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include <tests/support/Chains.h>

namespace lomlisp::test {

// Every answer but RTNORM is a refusal.
inline constexpr int kRefusals[] = {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0, RTNORM + 1};

// A record as "8:text" or "10:1,2,3": its type, then the value that such a type has.
inline std::string RecordText(const embedded::Record& record) {
  std::ostringstream text;
  text << record.type;
  const ads_u_val& value = record.value;
  switch (DxfType(record.type)) {
    case RTSHORT:
      text << ':' << value.rint;
      break;
    case RTLONG:
      text << ':' << value.rlong;
      break;
    case RTINT64:
      text << ':' << value.mnInt64;
      break;
    case RTREAL:
    case RTANG:
    case RTORINT:
      text << ':' << value.rreal;
      break;
    case RTSTR:
    case RTDXF0:
      text << ':' << (record.hasText ? Utf8(record.text) : "<null>");
      break;
    case RTENAME:
    case RTPICKS:
      text << ':' << value.rlname[0] << ',' << value.rlname[1];
      break;
    case RTPOINT:
      text << ':' << value.rpoint[0] << ',' << value.rpoint[1];
      break;
    case RT3DPOINT:
      text << ':' << value.rpoint[0] << ',' << value.rpoint[1] << ',' << value.rpoint[2];
      break;
    default:
      break;
  }
  return text.str();
}

// The records of a chain that the latest call of the function was given, as "0:LINE 62:1".
inline std::string Given(std::string_view function, size_t position = 0) {
  const embedded::LoggedCall* call = Host::Instance().log.Last(function);
  if (call == nullptr) return "not called";
  if (position >= call->chains.size()) return "no such chain";
  std::string text;
  for (const embedded::Record& record : call->chains[position])
    text += (text.empty() ? "" : " ") + RecordText(record);
  return text;
}

// nil in its other shape: an atom of type RTNIL.
inline CLOMAdsLispVar AtomOfNil() {
  CLOMAdsLispVar atom(short{1});
  atom.GetAtom() = static_cast<ADSResType>(RTNIL);
  return atom;
}
inline CLOMAdsLispVar PickSet() { return CLOMAdsLispVar(Records{Name(7, RTPICKS)}); }
// An RTSTR whose text is null.
inline CLOMAdsLispVar NullText() { return CLOMAdsLispVar(Records{String(nullptr)}); }
// The same atom under a DXF code.
inline CLOMAdsLispVar Coded(CLOMAdsLispVar atom, short code) {
  EXPECT_TRUE(atom.GetAtom().MakeDXF(code));
  return atom;
}
inline CLOMAdsLispVar Group(short code, const CLOMAdsLispVar& value) { return Dotted({code, value}); }

// Lets each of the allocations of `attempt` fail in turn, if it makes any; that it goes on without harm
// is all that is asked.
template <class Attempt>
void SurviveEachAllocation(Attempt attempt) {
  embedded::Ledger& ledger = Host::Instance().ledger;
  const uint64_t before = ledger.Mark();
  attempt();
  const uint64_t allocations = ledger.Mark() - before;
  for (uint64_t n = 1; n <= allocations + 1; ++n) {
    SCOPED_TRACE(n);
    ledger.FailAllocation(n);
    attempt();
    ledger.FailAllocation(0);
  }
}

}  // namespace lomlisp::test
