#include <tests/support/HostTest.h>

#include <limits>
#include <type_traits>

namespace lomlisp::test::value_handle {
namespace {

using Value = CLOMAdsLispVar;

static_assert(std::is_nothrow_move_constructible_v<Value>);
static_assert(std::is_nothrow_move_assignable_v<Value>);
static_assert(std::has_virtual_destructor_v<CLOMLispElement>);

// A handle on a node that a test has made.
class Handle : public Value {
 public:
  explicit Handle(Element node) : Value(node) {}
};

Value Atom(const ResBuf& record) {
  Value value(0);
  value.GetAtom() = record;
  return value;
}

Value Name(short type) {
  const __int64 words[2] = {31, 7};
  return Atom(ResBuf(words, static_cast<ADSNameType>(type)));
}

class ValueHandle : public HostTest {
 protected:
  static void ExpectAtom(const Value& value, short type, const std::string& text) {
    ASSERT_TRUE(value.AtomP());
    EXPECT_EQ(value.GetAtom().Type(), type);
    EXPECT_EQ(Text(value), text);
  }
  void ExpectPoint(const Value& value, double x, double y, double z, const std::string& message) {
    double point[3] = {9, 9, 9};
    value.GetPoint(point);
    EXPECT_EQ(point[0], x);
    EXPECT_EQ(point[1], y);
    EXPECT_EQ(point[2], z);
    EXPECT_EQ(Printed(), message);
  }
  void ExpectName(const Value& value, __int64 first, __int64 second, const std::string& message) {
    __int64 name[2] = {9, 9};
    value.GetName(name);
    EXPECT_EQ(name[0], first);
    EXPECT_EQ(name[1], second);
    EXPECT_EQ(Printed(), message);
  }
};

// --- Construction ---

TEST_F(ValueHandle, IsNilAtFirst) {
  const Value value;
  EXPECT_TRUE(value.NilP());
  EXPECT_EQ(value.New(), nullptr);
}

TEST_F(ValueHandle, IntegersOfEveryWidthBecomeAtoms) {
  ExpectAtom(Value(static_cast<short>(-5)), RTSHORT, "-5");
  ExpectAtom(Value(static_cast<unsigned short>(65535)), RTSHORT, "-1");
  ExpectAtom(Value(-5), RTSHORT, "-5");
  ExpectAtom(Value(70000L), RTLONG, "70000");
  ExpectAtom(Value(-70000L), RTLONG, "-70000");
  ExpectAtom(Value(static_cast<__int64>(5000000000)), RTINT64, "5000000000");
}

TEST_F(ValueHandle, WiderIntegersKeepTheirLow16Bits) {
  ExpectAtom(Value(70000), RTSHORT, "4464");
  ExpectAtom(Value(32768), RTSHORT, "-32768");
  ExpectAtom(Value(70000u), RTSHORT, "4464");
  ExpectAtom(Value(0xFFFFFFFFu), RTSHORT, "-1");
  ExpectAtom(Value(70000ul), RTSHORT, "4464");
  ExpectAtom(Value(static_cast<unsigned __int64>(0x1234567800018000)), RTSHORT, "-32768");
}

TEST_F(ValueHandle, ALongKeepsItsLow32Bits) {
  ExpectAtom(Value(static_cast<long>(0x100000005)), RTLONG, "5");
}

TEST_F(ValueHandle, ARealBecomesAnAtom) {
  ExpectAtom(Value(2.5), RTREAL, "2.500000");
  ExpectAtom(Value(3.0), RTREAL, "3.000000");
}

TEST_F(ValueHandle, ATextBecomesAnAtomWithACopy) {
  const wchar_t text[] = L"abc";
  const Value value(text);
  ExpectAtom(value, RTSTR, "\"abc\"");
  EXPECT_NE(static_cast<wchar_t*>(value.GetAtom()), text);
  CString string(L"def");
  ExpectAtom(Value(string), RTSTR, "\"def\"");
  const CString constant(L"ghi");
  ExpectAtom(Value(constant), RTSTR, "\"ghi\"");
  ExpectAtom(Value(std::wstring(L"jkl")), RTSTR, "\"jkl\"");
  ExpectAtom(Value(std::wstring(L"ab\0cd", 5)), RTSTR, "\"ab\"");
}

TEST_F(ValueHandle, AnEmptyTextIsATextAndNullIsNil) {
  ExpectAtom(Value(L""), RTSTR, "\"\"");
  EXPECT_STREQ(static_cast<wchar_t*>(Value(L"").GetAtom()), L"");
  ExpectAtom(Value(CString()), RTSTR, "\"\"");
  ExpectAtom(Value(std::wstring()), RTSTR, "\"\"");
  EXPECT_EQ(Value(static_cast<const wchar_t*>(nullptr)).New(), nullptr);
}

TEST_F(ValueHandle, ATextWithoutMemoryIsNull) {
  host.ledger.FailAllocation(1);
  const Value value(L"abc");
  EXPECT_TRUE(value.StringP());
  EXPECT_EQ(static_cast<wchar_t*>(value.GetAtom()), nullptr);
  EXPECT_EQ(Text(value), "\"\"");
}

TEST_F(ValueHandle, APointBecomesAListOfThreeReals) {
  const double point[3] = {1.0, 2.5, -3.0};
  const Value value(point);
  EXPECT_EQ(Text(value), "(1.000000 2.500000 -3.000000)");
  EXPECT_EQ(value.New()->Kind(), CLOMLispElement::List);
  for (const Value::Element& child : value.New()->children) EXPECT_EQ(child->atom.Type(), RTREAL);
  EXPECT_EQ(Value(static_cast<const double*>(nullptr)).New(), nullptr);
}

TEST_F(ValueHandle, ANameBecomesAnEntityName) {
  const __int64 name[2] = {31, 7};
  const Value value(name);
  ExpectAtom(value, RTENAME, "<Entity name: 1f>");
  EXPECT_EQ(value.GetAtom().resval.rlname[1], 7);
  EXPECT_EQ(Value(static_cast<const __int64*>(nullptr)).New(), nullptr);
}

TEST_F(ValueHandle, AChainBecomesItsValue) {
  const TextChain chain(L"(1 (\"a\" . 2))");
  EXPECT_EQ(Text(Value(chain)), "(1 (\"a\" . 2))");
  EXPECT_EQ(Value(static_cast<resbuf*>(nullptr)).New(), nullptr);
}

TEST_F(ValueHandle, TheLazyResultsBecomeValues) {
  const Value list = V(L"(1 2 3)");
  EXPECT_EQ(Text(Value(CLOMAdsLisp::Cdr(list))), "(2 3)");
  EXPECT_EQ(Text(Value(CLOMAdsLisp::Cons(list, list))), "((1 2 3) 1 2 3)");
  EXPECT_EQ(Text(Value(CLOMAdsLisp::Reverse(list))), "(3 2 1)");
  EXPECT_EQ(Text(list), "(1 2 3)");
}

TEST_F(ValueHandle, TheSharedNilIsEmpty) {
  EXPECT_EQ(CLOMAdsLisp::Nil.New(), nullptr);
  EXPECT_EQ(CLOMAdsLisp::nil().New(), nullptr);
  EXPECT_TRUE(CLOMAdsLisp::nil().NilP());
}

// --- Sharing ---

TEST_F(ValueHandle, ACopySharesTheTree) {
  const Value a = V(L"(1 2)");
  const Value b(a);
  EXPECT_EQ(b.New(), a.New());
  EXPECT_EQ(a.New().use_count(), 3);
  EXPECT_EQ(Value(Value()).New(), nullptr);
}

TEST_F(ValueHandle, AnAssignmentSharesTheTree) {
  const Value a = V(L"(1 2)");
  Value b(L"old");
  b = a;
  EXPECT_EQ(b.New(), a.New());
  EXPECT_EQ(host.ledger.Live().blocks, 0u);
  b = Value();
  EXPECT_EQ(b.New(), nullptr);
  EXPECT_EQ(Text(a), "(1 2)");
}

TEST_F(ValueHandle, AHandleOnANodeSharesIt) {
  const Value a = V(L"(1 2)");
  const Handle b(a.New());
  EXPECT_EQ(b.New(), a.New());
}

TEST_F(ValueHandle, AChangeInPlaceIsSeenThroughEveryHandle) {
  const Value a = V(L"(1 2)");
  Value b;
  b = a;
  b.RplaCa(V(L"(8 9)"));
  EXPECT_EQ(Text(a), "(8 9 2)");
}

TEST_F(ValueHandle, AssigningAValueToItselfLosesIt) {
  Value a = V(L"(1 2)");
  const Value& same = a;
  a = same;
  EXPECT_EQ(a.New(), nullptr);
}

TEST_F(ValueHandle, AssigningASharedTreeToItsOtherHandleKeepsIt) {
  Value a = V(L"(1 2)");
  const Value b = a;
  a = b;
  EXPECT_EQ(Text(a), "(1 2)");
  EXPECT_EQ(a.New(), b.New());
}

TEST_F(ValueHandle, AMoveLeavesNil) {
  Value a = V(L"(1 2)");
  Value b(std::move(a));
  EXPECT_EQ(a.New(), nullptr);
  EXPECT_EQ(Text(b), "(1 2)");
  EXPECT_EQ(b.New().use_count(), 2);
  a = std::move(b);
  EXPECT_EQ(b.New(), nullptr);
  EXPECT_EQ(Text(a), "(1 2)");
  Value& same = a;
  a = std::move(same);
  EXPECT_EQ(Text(a), "(1 2)");
}

TEST_F(ValueHandle, NewIsASecondReference) {
  const Value a = V(L"(1 2)");
  const Value::Element node = a.New();
  EXPECT_EQ(node.use_count(), 2);
}

TEST_F(ValueHandle, CleanLetsOnlyTheOwnReferenceGo) {
  Value a = V(L"(1 \"text\")");
  const Value b = a;
  a.Clean();
  EXPECT_TRUE(a.NilP());
  EXPECT_EQ(a.New(), nullptr);
  EXPECT_EQ(Text(b), "(1 \"text\")");
  a.Clean();
  EXPECT_EQ(a.New(), nullptr);
}

TEST_F(ValueHandle, TheLastHandleFreesTheTexts) {
  Value a = V(L"(\"a\" (\"b\" . \"c\"))");
  EXPECT_EQ(host.ledger.Live().blocks, 3u);
  const Value b = a;
  a.Clean();
  EXPECT_EQ(host.ledger.Live().blocks, 3u);
  a = b;
  EXPECT_EQ(Text(a), "(\"a\" (\"b\" . \"c\"))");
}

// --- Nodes ---

TEST_F(ValueHandle, AFreshNodeIsAnEmptyList) {
  const CLOMLispElement node;
  EXPECT_EQ(node.Kind(), 0);
  EXPECT_TRUE(node.children.empty());
  EXPECT_EQ(node.dotted, 0);
  EXPECT_EQ(node.atom.Type(), RTNONE);
}

TEST_F(ValueHandle, TheKindOfANodeIsListAtomOrDottedList) {
  EXPECT_EQ(V(L"(1 2)").New()->Kind(), 0);
  EXPECT_EQ(V(L"1").New()->Kind(), 1);
  EXPECT_EQ(V(L"(1 . 2)").New()->Kind(), 2);
  EXPECT_EQ(CLOMLispElement::List, 0);
  EXPECT_EQ(CLOMLispElement::Atom, 1);
  EXPECT_EQ(CLOMLispElement::DottedList, 2);
}

TEST_F(ValueHandle, EveryValueButNoneMakesANodeAnAtom) {
  for (const short type :
       {RTREAL, RTSHORT, RTLB, RTNIL, RTT, static_cast<short>(10), static_cast<short>(5025)}) {
    CLOMLispElement node;
    node.atom = static_cast<ADSResType>(type);
    EXPECT_EQ(node.Kind(), 1) << type;
  }
  CLOMLispElement none;
  none.atom = static_cast<ADSResType>(RTNONE);
  EXPECT_EQ(none.Kind(), 0);
}

TEST_F(ValueHandle, TheDottedMarkComesBeforeTheAtom) {
  CLOMLispElement node;
  node.atom = static_cast<short>(1);
  node.dotted = 1;
  EXPECT_EQ(node.Kind(), 2);
  node.dotted = 2;
  EXPECT_EQ(node.Kind(), 1);
}

// --- The atom ---

TEST_F(ValueHandle, GetAtomGivesTheNodesOwnRecord) {
  const Value a(1);
  const Value b = a;
  EXPECT_EQ(&a.GetAtom(), &a.New()->atom);
  a.GetAtom() = L"changed";
  EXPECT_EQ(Text(b), "\"changed\"");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueHandle, GetAtomTakesAnAtomOfAnyType) {
  EXPECT_EQ(Atom(static_cast<ADSResType>(RTNIL)).GetAtom().Type(), RTNIL);
  EXPECT_EQ(Atom(static_cast<ADSResType>(62)).GetAtom().Type(), 62);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueHandle, GetAtomOfAListSaysSoAndGivesZero) {
  const std::vector<std::pair<Value, std::string>> cases = {
      {V(L"(1 \"a\")"), "(1 \"a\")"},
      {V(L"(1 . 2)"), "(1 . 2)"},
      {Value(), "nil"},
      {Handle(std::make_shared<CLOMLispElement>()), "()"},
  };
  for (const auto& [value, text] : cases) {
    const ResBuf& atom = value.GetAtom();
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetAtom : Kein Atom : Liste !" + text + "\n");
    EXPECT_EQ(atom.Type(), RTSHORT);
    EXPECT_EQ(atom.resval.rint, 0);
  }
}

TEST_F(ValueHandle, FailedAccessesShareOneRecord) {
  const Value list = V(L"(1 2)");
  list.GetAtom() = static_cast<short>(7);
  EXPECT_EQ(&Value().GetAtom(), &list.GetAtom());
  EXPECT_EQ(static_cast<short>(Value().GetAtom()), 7);
  EXPECT_EQ(Text(list), "(1 2)");
}

// --- Names, points and texts ---

TEST_F(ValueHandle, GetNameTakesEntitiesAndSelectionSets) {
  ExpectName(Name(RTENAME), 31, 7, "");
  ExpectName(Name(RTPICKS), 31, 7, "");
}

TEST_F(ValueHandle, GetNameOfAnythingElseIsZero) {
  const std::string message = "CLOMAdsLispVar::GetEName() : Kein Entity-Name und kein Auswahlsatz !\n";
  ExpectName(Value(), 0, 0, message);
  ExpectName(V(L"(1 2)"), 0, 0, message);
  ExpectName(Value(31), 0, 0, message);
  ResBuf handle = Name(RTENAME).GetAtom();
  handle.restype = 330;
  ExpectName(Atom(handle), 0, 0, message);
}

TEST_F(ValueHandle, GetPointTakesTwoOrThreeNumbers) {
  ExpectPoint(V(L"(1 2)"), 1, 2, 0, "");
  ExpectPoint(V(L"(1.5 2.5 3.5)"), 1.5, 2.5, 3.5, "");
  ExpectPoint(V(L"(1.5 2 70000)"), 1.5, 2, 70000, "");
  ExpectPoint(CLOMAdsLisp::List(Value(static_cast<__int64>(5000000000)), Value(-1L)), 5e9, -1, 0, "");
}

TEST_F(ValueHandle, GetPointOfAnythingElseIsZero) {
  const std::string message = "CLOMAdsLispVar::GetPoint() : Kein Punkt !\n";
  for (const wchar_t* const text : {L"(1 2 3 4)", L"(1)", L"(\"a\" 2)", L"(1 . 2)", L"1", L"(1 (2))"})
    ExpectPoint(V(text), 0, 0, 0, message);
  ExpectPoint(Value(), 0, 0, 0, message);
  const double point[3] = {1, 2, 3};
  ExpectPoint(Atom(ResBuf(point)), 0, 0, 0, message);
}

TEST_F(ValueHandle, TheStaticGetPointLeavesThePointOfWhatIsNone) {
  double point[3] = {7, 8, 9};
  for (const wchar_t* const text : {L"(1 2 3 4)", L"(1)", L"(\"a\" 2)", L"(1 . 2)", L"1"})
    Value::GetPoint(V(text).New(), point);
  Value::GetPoint(nullptr, point);
  EXPECT_EQ(point[0], 7);
  EXPECT_EQ(point[1], 8);
  EXPECT_EQ(point[2], 9);
  Value::GetPoint(V(L"(1 2.5)").New(), point);
  EXPECT_EQ(point[0], 1);
  EXPECT_EQ(point[1], 2.5);
  EXPECT_EQ(point[2], 0);
  EXPECT_EQ(Printed(), "");
}

constexpr wchar_t kUntouched = L'#';
const std::string kNoRoom = Utf8(L"CLOMAdsLispVar::GetString : Ziel-String hat Gr\u00F6\u00DFe 0 !\n");
const std::string kNoText = "CLOMAdsLispVar::GetString() : Kein String !\n";
const std::string kCut = Utf8(L"CLOMAdsLispVar::GetString() : String zu gro\u00DF, wird abgeschnitten !\n");

TEST_F(ValueHandle, GetStringCopiesWhatFitsAndCutsTheRest) {
  struct Case {
    const wchar_t* text;
    size_t room;
    std::wstring expected;
    std::string message;
  };
  const Case cases[] = {
      {L"abcdef", 20, L"abcdef", ""},
      {L"abcdef", 7, L"abcdef", ""},
      {L"abcdef", 6, L"abcde", kCut},
      {L"abcdef", 5, L"abcd", kCut},
      {L"abcdef", 2, L"a", kCut},
      {L"abcdef", 1, L"", kCut},
      {L"", 1, L"", ""},
      {L"", 5, L"", ""},
      {L"a", 2, L"a", ""},
  };
  for (const Case& each : cases) {
    std::wstring buffer(32, kUntouched);
    Value(each.text).GetString(buffer.data(), each.room);
    EXPECT_EQ(buffer.c_str(), each.expected) << each.room;
    EXPECT_EQ(buffer[each.room], kUntouched) << each.room;
    EXPECT_EQ(Printed(), each.message) << each.room;
  }
}

TEST_F(ValueHandle, GetStringWithoutABufferOrRoomDoesNothingButSaySo) {
  wchar_t buffer[2] = {kUntouched, kUntouched};
  for (const Value& value : {Value(L"abc"), Value(1), Value()}) {
    value.GetString(buffer, 0);
    EXPECT_EQ(Printed(), kNoRoom);
    value.GetString(nullptr, 10);
    EXPECT_EQ(Printed(), kNoRoom);
    value.GetString(nullptr, 0);
    EXPECT_EQ(Printed(), kNoRoom);
  }
  EXPECT_EQ(buffer[0], kUntouched);
}

TEST_F(ValueHandle, GetStringOfWhatIsNoTextIsEmpty) {
  const std::vector<Value> values = {Value(), Value(1), V(L"(\"a\")"), Atom(static_cast<ADSResType>(RTNIL))};
  for (const Value& value : values) {
    wchar_t buffer[3] = {kUntouched, kUntouched, kUntouched};
    value.GetString(buffer, 3);
    EXPECT_EQ(buffer[0], L'\0');
    EXPECT_EQ(Printed(), kNoText);
  }
}

TEST_F(ValueHandle, GetStringOfANullTextIsEmpty) {
  wchar_t buffer[3] = {kUntouched, kUntouched, kUntouched};
  Atom(static_cast<const wchar_t*>(nullptr)).GetString(buffer, 3);
  EXPECT_EQ(buffer[0], L'\0');
  EXPECT_EQ(Printed(), "");
}

}  // namespace
}  // namespace lomlisp::test::value_handle
