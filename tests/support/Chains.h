// Chains record by record, and values with everything that their text hides.
#pragma once

#include <embedded/Ledger.h>
#include <lomlisp/lomlisp.h>

#include <cstring>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include <tests/support/HostTest.h>

namespace lomlisp::test {

inline resbuf NoValue(short type) {
  resbuf record{};
  record.restype = type;
  return record;
}
inline resbuf Short(short value, short type = RTSHORT) {
  resbuf record = NoValue(type);
  record.resval.rint = value;
  return record;
}
inline resbuf Long(int32_t value, short type = RTLONG) {
  resbuf record = NoValue(type);
  record.resval.rlong = value;
  return record;
}
inline resbuf Int64(__int64 value, short type = RTINT64) {
  resbuf record = NoValue(type);
  record.resval.mnInt64 = value;
  return record;
}
inline resbuf Real(double value, short type = RTREAL) {
  resbuf record = NoValue(type);
  record.resval.rreal = value;
  return record;
}
// The text stays the caller's.
inline resbuf String(const wchar_t* text, short type = RTSTR) {
  resbuf record = NoValue(type);
  record.resval.rstring = const_cast<wchar_t*>(text);
  return record;
}
inline resbuf Name(__int64 word, short type = RTENAME) {
  resbuf record = NoValue(type);
  record.resval.rlname[0] = word;
  record.resval.rlname[1] = word + 1;
  return record;
}
inline resbuf Point(double x, double y, double z, short type = RT3DPOINT) {
  resbuf record = NoValue(type);
  record.resval.rpoint[0] = x;
  record.resval.rpoint[1] = y;
  record.resval.rpoint[2] = z;
  return record;
}
inline resbuf Begin() { return NoValue(RTLB); }
inline resbuf End() { return NoValue(RTLE); }
inline resbuf Dot() { return NoValue(RTDOTE); }

// A chain that is only there to be read. Its records are no blocks of the platform's heap, so
// freeing one of them or its text is noticed.
class Records {
 public:
  Records(std::initializer_list<resbuf> records) : Records(std::vector<resbuf>(records)) {}
  explicit Records(std::vector<resbuf> records) : m_records(std::move(records)) {
    for (size_t i = 1; i < m_records.size(); ++i) m_records[i - 1].rbnext = &m_records[i];
    m_before = m_records;
  }
  Records(const Records&) = delete;
  Records& operator=(const Records&) = delete;
  // Whoever read the chain must have left it as it was.
  ~Records() { EXPECT_TRUE(IsUntouched()) << "the chain was changed"; }

  operator resbuf*() { return m_records.empty() ? nullptr : m_records.data(); }
  resbuf* At(size_t position) { return &m_records[position]; }

 private:
  bool IsUntouched() const {
    for (size_t i = 0; i < m_records.size(); ++i) {
      const resbuf &now = m_records[i], &before = m_before[i];
      if (now.rbnext != before.rbnext || now.restype != before.restype ||
          std::memcmp(&now.resval, &before.resval, sizeof now.resval) != 0)
        return false;
    }
    return true;
  }

  std::vector<resbuf> m_records;
  std::vector<resbuf> m_before;
};

// An atom as "5003:1" or "5005:text"; a DXF code shows no value, since the code does not tell what
// is there.
inline std::string AtomTree(const ResBuf& atom) {
  std::ostringstream text;
  text << atom.Type();
  switch (atom.Type()) {
    case RTSHORT:
      text << ':' << atom.resval.rint;
      break;
    case RTLONG:
      text << ':' << atom.resval.rlong;
      break;
    case RTINT64:
      text << ':' << atom.resval.mnInt64;
      break;
    case RTREAL:
    case RTANG:
    case RTORINT:
      text << ':' << atom.resval.rreal;
      break;
    case RTSTR:
    case RTDXF0:
      text << ':' << (atom.resval.rstring != nullptr ? Utf8(atom.resval.rstring) : "<null>");
      break;
    case RTENAME:
    case RTPICKS:
      text << ':' << atom.resval.rlname[0] << ',' << atom.resval.rlname[1];
      break;
    default:
      break;
  }
  return text.str();
}

// A value with its types, as in "(5003:1 nil {5003:2 5005:a})": braces are a dotted list, nil is no
// node. For values of a sane depth.
inline std::string Tree(const CLOMAdsLispVar::ConstElement& node) {
  if (node == nullptr) return "nil";
  if (node->Kind() == CLOMLispElement::Atom) return AtomTree(node->atom);
  std::string text = node->Kind() == CLOMLispElement::DottedList ? "{" : "(";
  bool first = true;
  for (const auto& child : node->children) {
    if (!first) text += ' ';
    first = false;
    text += Tree(child);
  }
  return text + (node->Kind() == CLOMLispElement::DottedList ? "}" : ")");
}
inline std::string Tree(const CLOMAdsLispVar::Element& node) {
  return Tree(CLOMAdsLispVar::ConstElement(node));
}
inline std::string Tree(const CLOMAdsLispVar& value) { return Tree(value.New()); }

// Lets each of the allocations of `attempt`, which says whether it got everything, fail in turn.
// A mark of the ledger is the number of allocations so far.
template <class Attempt>
void FailEachAllocation(Attempt attempt) {
  embedded::Ledger& ledger = Host::Instance().ledger;
  const uint64_t before = ledger.Mark();
  EXPECT_TRUE(attempt()) << "without a failure";
  const uint64_t allocations = ledger.Mark() - before;
  EXPECT_GT(allocations, 0U);
  bool noticed = false;
  for (uint64_t n = 1; n <= allocations; ++n) {
    ledger.FailAllocation(n);
    noticed = !attempt() || noticed;
    ledger.FailAllocation(0);
  }
  EXPECT_TRUE(noticed) << "no failure made a difference";
  EXPECT_TRUE(attempt()) << "after the failures";
}

// A value nested `depth` lists deep around `core`.
inline CLOMAdsLispVar Nested(size_t depth, CLOMAdsLispVar core) {
  for (size_t i = 0; i < depth; ++i) core.List();
  return core;
}

// A list, or a dotted list, of these members.
inline CLOMAdsLispVar ListOf(std::initializer_list<CLOMAdsLispVar> members, bool dotted = false) {
  CLOMAdsLispVar list(Records{Begin(), End()});
  for (const CLOMAdsLispVar& member : members) list.New()->children.push_back(member.New());
  list.New()->dotted = dotted ? 1 : 0;
  return list;
}
inline CLOMAdsLispVar Dotted(std::initializer_list<CLOMAdsLispVar> members) { return ListOf(members, true); }

}  // namespace lomlisp::test
