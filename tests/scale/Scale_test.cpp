// Every operation on values that are deep and on values that are long: it needs no more stack, and time in
// proportion.
//
// What comes out in detail is the matter of each operation's own tests with kLarge members and levels.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

#include <algorithm>
#include <ctime>
#include <string>

namespace lomlisp::test::scale {
namespace {

using Value = CLOMAdsLispVar;

// --- What the operations work on ---

// A list of numbers, or a number in lists.
struct Input {
  Value list;
  size_t count;    // the members
  size_t records;  // of the chain
  Value key;       // one of the members
};

// A list of so many times the same node. The tests are compiled as they stand, so the library does what it
// can.
Value Members(size_t count, const Value& member) {
  Value list = ListOf({member});
  auto& members = list.New()->children;
  members.reserve(count);
  while (members.size() < count)
    members.insert(members.end(), members.begin(),
                   members.begin() + (std::min)(members.size(), count - members.size()));
  return list;
}

Input Long(size_t count) {
  const Value one = short{1};
  return {Members(count, one), count, count + 2, one};
}

Input Deep(size_t levels) {
  Value list = short{1};
  for (size_t i = 0; i < levels; ++i) list.List();
  return {list, 1, 2 * levels + 1, CLOMAdsLisp::Car(list)};
}

using In = const Input&;

std::wstring Repeated(std::wstring_view part, size_t times) {
  std::wstring text(part);
  text.reserve(part.size() * times);
  while (text.size() < part.size() * times) text.append(text, 0, part.size() * times - text.size());
  return text.substr(0, part.size() * times);
}

// The list as LISP text.
size_t Characters(In in) { return in.key.AtomP() ? 2 * in.count + 1 : in.records; }
std::wstring TextOf(In in) {
  if (in.key.AtomP()) return L"(" + Repeated(L"1 ", in.count - 1) + L"1)";
  return std::wstring(in.records / 2, L'(') + L"1" + std::wstring(in.records / 2, L')');
}

Value Copy(In in) { return Members(in.count, in.key); }
Value Pairs(In in) { return Members(in.count, DottedOf({in.key, 1})); }
// With keys in ascending order.
Value Entries(In in) {
  Value list = ListOf({});
  for (size_t i = 0; i < in.count; ++i) {
    Value entry = static_cast<long>(i);
    entry.Cons(in.key);
    list.New()->children.push_back(entry.New());
  }
  return list;
}

// --- What they give ---

size_t Length(const Value& value) { return static_cast<size_t>(value.Length()); }
size_t Printed() { return Host::Instance().console.Take().size(); }
size_t TextLength(const Value& value) {
  return value.StringP() ? std::wcslen(value.GetAtom().resval.rstring) : 0;
}

size_t Records(const resbuf* chain) {
  size_t records = 0;
  for (; chain != nullptr; chain = chain->rbnext) ++records;
  return records;
}

size_t One(In) { return 1; }
size_t None(In) { return 0; }
size_t Count(In in) { return in.count; }
size_t OneMore(In in) { return in.count + 1; }
size_t OneLess(In in) { return in.count - 1; }
size_t Twice(In in) { return 2 * in.count; }
size_t AllRecords(In in) { return in.records; }

// --- Operations of more than a line ---

size_t ReplaceText(In in) {
  CStringArray from, to;
  from.Add(L"1");
  to.Add(L"2");
  Value list = Copy(in);
  return static_cast<size_t>(list.ReplaceTextW(from, to));
}

size_t Sorted(In in) {
  Value list = Copy(in);
  return Length(list.Sort());
}

size_t PrintedOnCommandLine(In in) {
  CLOMAdsLisp::PrinC(in.list);
  return Printed();
}

size_t PrintedIntoBuffer(In in) {
  std::vector<wchar_t> buffer(4 * Characters(in));
  in.list.PrinC(buffer.data(), buffer.size());
  return std::min(std::wcslen(buffer.data()), Characters(in));
}

size_t Read(In in) {
  Value value;
  value.Read(TextOf(in).c_str());
  return Length(value);
}

size_t ReadOfMissingBrackets(In in) {
  Value value;
  const bool good = value.Read(TextOf(in).substr(0, Characters(in) - 1).c_str());
  Printed();
  return static_cast<size_t>(good);
}

size_t Formatted(In in) {
  CArray<Value, Value> values;
  for (size_t i = 0; i < in.count; ++i) values.Add(in.key);
  Value result;
  return static_cast<size_t>(Value::Format(result, Repeated(L"%d ", in.count).c_str(), values));
}

size_t FormattedList(In in) {
  CArray<Value, Value> values;
  values.Add(in.list);
  Value result;
  return static_cast<size_t>(Value::Format(result, L"%s", values));
}

size_t ToChain(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  return Records(chain);
}

size_t ToDxf(In in) {
  ADSList chain;
  in.list.LispToDXF(chain);
  return Records(chain);
}

// The groups (1 . "x") in a list, and extended data in extended data.
size_t GroupsToDxf(In in) {
  ADSList chain;
  Value::LispToDXFList(Members(in.count, DottedOf({1, L"x"})).New(), chain);
  return Records(chain);
}

size_t ThroughChain(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  Value value;
  value.ADSToLisp(chain);
  return Length(value);
}

size_t ListOfChain(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  return Length(CLOMAdsLisp::List(chain));
}

// As an array arrives.
size_t ListOfBareItems(In in) {
  ADSList chain;
  for (size_t i = 0; i < in.count; ++i) chain.Add(new ResBuf(short{1}), ADSCopyFlag::Adopt);
  return Length(CLOMAdsLisp::List(chain));
}

size_t ThroughExtendedData(In in) {
  ADSList chain;
  in.list.LispToXData(chain);
  Value value;
  value.XDataToLisp(chain);
  return Length(value);
}

size_t ThroughCopies(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  resbuf* const copy = ResBuf::copyToAcadResBufList(chain);
  const size_t records = Records(copy);
  acutRelRb(copy);
  return records;
}

size_t ChainCopied(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  return Records(ADSList(chain));
}

size_t ChainReversed(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  chain.Reverse();
  return Records(chain);
}

size_t ChainWalked(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  chain.GoStart();
  size_t steps = 0;
  while (chain.GoNext() != 0) ++steps;
  return steps;
}

size_t ChainPrinted(In in) {
  ADSList chain;
  in.list.LispToADS(chain);
  chain.Print();
  return static_cast<size_t>(Printed() > in.records);
}

// --- The host ---

// Without the log, which keeps copies of all chains.
class Silence {
 public:
  Silence() { Host::Instance().log.Enable(false); }
  ~Silence() { Host::Instance().log.Enable(true); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
};

size_t ThroughCall(In in) {
  const Silence silence;
  size_t length = 0;
  Host::Instance().Define(L"LENGTH", [&] {
    Value list;
    CLOMAdsLisp::Parameter(list);
    length = Length(list);
    CLOMAdsLisp::Return(list);
    return RTNORM;
  });
  ADSList chain;
  in.list.LispToADS(chain);
  Host::Instance().Call(L"LENGTH", embedded::Capture(chain));
  return length;
}

size_t ManyArguments(In in) {
  const Silence silence;
  size_t length = 0;
  Host::Instance().Define(L"LENGTH", [&] {
    length = Length(CLOMAdsLisp::ParameterList());
    return RTNORM;
  });
  ADSList chain;
  in.list.LispToADS(chain);
  embedded::Chain items = embedded::Capture(chain);
  items.pop_back();
  items.erase(items.begin());
  Host::Instance().Call(L"LENGTH", items);
  return length;
}

size_t ThroughSymbol(In in) {
  const Silence silence;
  CLOMAdsLisp::PutSym(L"LIST", in.list);
  const size_t length = Length(CLOMAdsLisp::GetSym(L"LIST"));
  CLOMAdsLisp::PutSym(L"LIST", CLOMAdsLisp::Nil);
  return length;
}

size_t ThroughHostText(In in) {
  std::string error;
  const auto chain = embedded::FromText(TextOf(in), error);
  return chain ? embedded::ToText(*chain).size() : 0;
}

// --- The operations ---

struct Operation {
  const char* name;
  size_t (*run)(In in);
  size_t (*expected)(In in);
  // Ten million records, or what hangs on each, are more than a test should take of time and memory.
  size_t most = kHuge;
};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

const Operation kOperations[] = {
    // values
    {"Share", [](In in) { return Length(Value(in.list)); }, Count},
    {"Clean",
     [](In in) {
       Value list = CLOMAdsLisp::Head(-1, in.list);
       list.Clean();
       return static_cast<size_t>(list.NilP());
     },
     One},
    {"GetAtom",
     [](In in) {
       in.list.GetAtom();
       return static_cast<size_t>(Printed() >= Characters(in));
     },
     One},
    {"AtomListP", [](In in) { return static_cast<size_t>(in.list.AtomListP()); },
     [](In in) { return static_cast<size_t>(in.key.AtomP()); }},
    {"AssocListP", [](In in) { return static_cast<size_t>(in.list.AssocListP()); }, One},
    {"Equal", [](In in) { return static_cast<size_t>(in.list == Copy(in)); }, One},
    {"EqualToDeepCopy", [](In in) { return static_cast<size_t>(in.list == CLOMAdsLisp::Head(-1, in.list)); },
     One},
    {"Eq", [](In in) { return static_cast<size_t>(in.list.Eq(Copy(in))); }, None},
    {"Less",
     [](In in) {
       const bool less = in.list < in.list;
       Printed();
       return static_cast<size_t>(less);
     },
     None},
    {"MakeString", [](In in) { return TextLength(in.list.MakeString()); }, None},
    {"MakeMaximum", [](In in) { return Length(in.list.MakeMaximum(in.list)); }, Count},
    {"LispToOleVariant", [](In in) { return static_cast<size_t>(in.list.LispToOleVariant().vt); },
     [](In) { return static_cast<size_t>(VT_EMPTY); }},
    // texts
    {"TextAsNumber",
     [](In in) { return static_cast<size_t>(Value(std::wstring(Characters(in), L'0')).MakeInt().ZeroP()); },
     One},
    {"TextAsReal",
     [](In in) { return static_cast<size_t>(Value(std::wstring(Characters(in), L'0')).MakeFloat().ZeroP()); },
     One},
    {"TextThroughVariant", [](In in) { return TextLength(Value(Value(TextOf(in)).LispToOleVariant())); },
     Characters},
    {"TextInUpperCase", [](In in) { return TextLength(CLOMAdsLisp::StrCase(TextOf(in))); }, Characters},
    {"TextEqual", [](In in) { return static_cast<size_t>(Value(TextOf(in)) == Value(TextOf(in))); }, One},
    {"ReplaceText", ReplaceText, One},
    // text forms
    {"PrinC", PrintedOnCommandLine, Characters},
    {"PrinCIntoBuffer", PrintedIntoBuffer, Characters},
    {"ToCString", [](In in) { return std::min<size_t>(std::wcslen(CLOMAdsLisp::ToCString(in.list)), 1000); },
     [](In in) { return std::min<size_t>(Characters(in), 1000); }},
    {"GetAsDebugString", [](In in) { return std::wcslen(in.list.GetAsDebugString()); }, Characters},
    {"Read", Read, Count},
    {"ReadWithoutTheEnd", ReadOfMissingBrackets, None},
    {"Format", Formatted, Count},
    {"FormatOfList", FormattedList, One},
    // parts
    {"Car", [](In in) { return static_cast<size_t>(CLOMAdsLisp::Car(in.list).Eq(in.key)); }, One},
    {"Cdr", [](In in) { return Length(CLOMAdsLisp::Cdr(in.list)); }, OneLess},
    {"CdrInPlace",
     [](In in) {
       Value list = Copy(in);
       size_t steps = 0;
       for (; !list.NilP(); ++steps) CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cdr(list));
       return steps;
     },
     Count},
    {"Nth",
     [](In in) {
       return static_cast<size_t>(
           CLOMAdsLisp::Nth(static_cast<unsigned int>(in.count - 1), in.list).Eq(in.key));
     },
     One},
    {"NthOfReverse",
     [](In in) { return static_cast<size_t>(CLOMAdsLisp::Nth(0, CLOMAdsLisp::Reverse(in.list)).Eq(in.key)); },
     One},
    {"Last", [](In in) { return CLOMAdsLisp::Last(in.list).NilP() ? size_t{0} : size_t{1}; }, One},
    {"Head", [](In in) { return Length(CLOMAdsLisp::Head(-1, in.list)); }, Count},
    {"Length", [](In in) { return static_cast<size_t>(CLOMAdsLisp::Length(in.list)); }, Count},
    // construction
    {"Cons", [](In in) { return Length(CLOMAdsLisp::Cons(in.list, in.list)); }, OneMore},
    {"ConsInPlace",
     [](In in) {
       Value list = ListOf({});
       for (size_t i = 0; i < in.count; ++i) CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(in.key, list));
       return Length(list);
     },
     Count},
    {"List", [](In in) { return Length(CLOMAdsLisp::List(in.list, in.list)); },
     [](In) -> size_t { return 2; }},
    {"Append", [](In in) { return Length(CLOMAdsLisp::Append(in.list, in.list)); }, Twice},
    {"NConc",
     [](In in) {
       Value list = ListOf({});
       for (size_t i = 0; i < in.count; ++i) CLOMAdsLisp::NConc(list, CLOMAdsLisp::List(in.key));
       return Length(list);
     },
     Count},
    {"Reverse", [](In in) { return Length(CLOMAdsLisp::Reverse(in.list)); }, Count},
    // changes
    {"RplaCa",
     [](In in) {
       Value list = Copy(in);
       return Length(CLOMAdsLisp::RplaCa(list, Members(in.count, short{1})));
     },
     [](In in) { return 2 * in.count - 1; }},
    {"RplaCd",
     [](In in) {
       Value list = Copy(in);
       return Length(CLOMAdsLisp::RplaCd(list, Members(in.count, short{1})));
     },
     [](In in) { return 2 * in.count - 1; }},
    {"Sort", Sorted, Count},
    {"AddNth",
     [](In in) { return Length(CLOMAdsLisp::AddNth(static_cast<int>(in.count), in.list, in.list)); },
     OneMore},
    {"DeleteNth",
     [](In in) { return Length(CLOMAdsLisp::DeleteNth(static_cast<int>(in.count - 1), in.list)); }, OneLess},
    {"SubstNth",
     [](In in) { return Length(CLOMAdsLisp::SubstNth(static_cast<int>(in.count - 1), in.list, in.list)); },
     Count},
    {"Insert",
     [](In in) { return Length(CLOMAdsLisp::Insert(in.list, in.list, static_cast<int>(in.count / 2))); },
     Twice},
    {"Subst", [](In in) { return Length(CLOMAdsLisp::Subst(2, in.key, in.list)); }, Count},
    {"Delete", [](In in) { return Length(CLOMAdsLisp::Delete(in.key, in.list)); }, None},
    {"DeleteOfNone", [](In in) { return Length(CLOMAdsLisp::Delete(L"another", in.list)); }, Count},
    // search
    {"Assoc", [](In in) { return CLOMAdsLisp::Assoc(L"another", Pairs(in)).NilP() ? size_t{1} : size_t{0}; },
     One},
    {"AssocOfKey", [](In in) { return CLOMAdsLisp::Assoc(in.key, Pairs(in)).NilP() ? size_t{0} : size_t{1}; },
     One},
    {"Member", [](In in) { return CLOMAdsLisp::Member(L"another", in.list).NilP() ? size_t{1} : size_t{0}; },
     One},
    {"Position", [](In in) { return static_cast<size_t>(1 + CLOMAdsLisp::Position(L"another", in.list)); },
     None},
    {"PositionOfKey", [](In in) { return static_cast<size_t>(1 + CLOMAdsLisp::Position(in.key, in.list)); },
     One},
    {"Index", [](In in) { return static_cast<size_t>(1 + CLOMAdsLisp::Index(L"another", Pairs(in))); }, None},
    {"Inherit",
     [](In in) {
       const Value entries = Entries(in);
       return Length(CLOMAdsLisp::Inherit(entries, entries));
     },
     Count},
    {"InheritanceStatus",
     [](In in) {
       const Value entries = Entries(in);
       return Length(CLOMAdsLisp::InheritanceStatus(entries, entries));
     },
     Count},
    // chains
    {"LispToADS", ToChain, AllRecords},
    {"LispToDXF", ToDxf, AllRecords},
    {"LispToDXFList", GroupsToDxf, Count, kLarge},
    {"ADSToLisp", ThroughChain, Count, kLarge},
    {"ListOfChain", ListOfChain, One, kLarge},
    {"ListOfBareItems", ListOfBareItems, Count, kLarge},
    {"XData", ThroughExtendedData, Count, kLarge},
    {"CopyToAcadResBuf", ThroughCopies, AllRecords, kLarge},
    {"ChainCopy", ChainCopied, AllRecords, kLarge},
    {"ChainReverse", ChainReversed, AllRecords, kLarge},
    {"ChainGoNext", ChainWalked, AllRecords, kLarge},
    {"ChainPrint", ChainPrinted, One, kLarge},
    // the host
    {"ParameterAndReturn", ThroughCall, Count, kLarge},
    {"ParameterList", ManyArguments, Count, kLarge},
    {"PutSymAndGetSym", ThroughSymbol, Count, kLarge},
    {"HostText", ThroughHostText, Characters, kLarge},
};

class Scale : public HostTest, public ::testing::WithParamInterface<Operation> {
 protected:
  static void Check(In in) { EXPECT_EQ(GetParam().run(in), GetParam().expected(in)); }
};

TEST_P(Scale, DeepValuesNeedNoStack) {
  OnSmallStack([] { Check(Deep(kLarge)); });
}

TEST_P(Scale, HugeValuesNeedNoStack) {
  OnSmallStack([] { Check(Long(GetParam().most)); });
}

// Seconds of this process. Below a hundredth, what the heap and the caches do differently counts for more.
double Measured(size_t (*run)(In in), In in) {
  const std::clock_t begin = std::clock();
  run(in);
  return std::max(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 0.01);
}

// How many times as long the large value takes: four times in linear time, sixteen times if each part looks
// at each.
double Ratio(size_t (*run)(In in), In small, In large) {
  double least = Measured(run, small), most = Measured(run, large);
  for (int again = 0; again < 2; ++again) {
    least = std::min(least, Measured(run, small));
    most = std::min(most, Measured(run, large));
  }
  return most / least;
}

constexpr double kBound = 8.0;

TEST_P(Scale, LongValuesTakeLinearTime) {
  EXPECT_LT(Ratio(GetParam().run, Long(kLarge / 40), Long(kLarge / 10)), kBound);
}

TEST_P(Scale, DeepValuesTakeLinearTime) {
  EXPECT_LT(Ratio(GetParam().run, Deep(kLarge / 40), Deep(kLarge / 10)), kBound);
}

TEST(ScaleBound, ShowsWhatIsQuadratic) {
  const auto eachWithEach = [](In in) {
    volatile size_t steps = 0;
    for (size_t i = 0; i < in.count * in.count; ++i) steps = steps + 1;
    return size_t{steps};
  };
  constexpr size_t kFew = kSlow ? 2'500 : 5'000;
  EXPECT_GT(Ratio(eachWithEach, Long(kFew), Long(kFew * 4)), kBound);
}

INSTANTIATE_TEST_SUITE_P(Operations, Scale, ::testing::ValuesIn(kOperations),
                         [](const auto& made) { return std::string(made.param.name); });

}  // namespace
}  // namespace lomlisp::test::scale
