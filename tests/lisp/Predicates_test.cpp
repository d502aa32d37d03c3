#include <tests/support/HostTest.h>

namespace lomlisp::test::predicates {
namespace {

using Value = CLOMAdsLispVar;
using Element = CLOMAdsLispVar::ConstElement;
using Node = CLOMAdsLispVar::Element;

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

Value Bare(short type) { return Atom(static_cast<ADSResType>(type)); }

Value Retyped(short type, ResBuf record) {
  record.restype = type;
  return Atom(record);
}

Value Name(ADSNameType type) {
  const __int64 words[2] = {31, 0};
  return Atom(ResBuf(words, type));
}

Value ListOf(std::initializer_list<Value> members, bool dotted = false) {
  const Node node = std::make_shared<CLOMLispElement>();
  for (const Value& member : members) node->children.push_back(member.New());
  node->dotted = dotted ? 1 : 0;
  return Handle(node);
}

Value DottedOf(std::initializer_list<Value> members) { return ListOf(members, true); }

// The predicates that hold, as in "NilP ListP ", asked of one of the three layers.
template <class Ask>
std::string Holding(const std::vector<std::pair<const char*, Ask>>& predicates, const auto& subject) {
  std::string names;
  for (const auto& [name, predicate] : predicates)
    if (predicate(subject)) names += std::string(name) + " ";
  return names;
}

std::string OfNode(const Element& node) {
  using Ask = bool (*)(const Element&);
  static const std::vector<std::pair<const char*, Ask>> predicates = {
      {"NilP", &Value::isNull},    {"AtomP", &Value::isAtom},           {"ListP", &Value::isList},
      {"IntP", &Value::isInt},     {"LongP", &Value::isLong},           {"Int64P", &Value::isInt64},
      {"RealP", &Value::isReal},   {"NumberP", &Value::isNumber},       {"StringP", &Value::isString},
      {"ENameP", &Value::isEName}, {"PickSetP", &Value::isPickSet},     {"AtomListP", &Value::isAtomList},
      {"PointP", &Value::isPoint}, {"AssocListP", &Value::isAssocList}, {"RealListP", &Value::isRealList},
  };
  return Holding(predicates, node);
}

std::string OfMember(const Value& value) {
  using Ask = bool (*)(const Value&);
  static const std::vector<std::pair<const char*, Ask>> predicates = {
      {"NilP", [](const Value& v) { return v.NilP(); }},
      {"AtomP", [](const Value& v) { return v.AtomP(); }},
      {"ListP", [](const Value& v) { return v.ListP(); }},
      {"IntP", [](const Value& v) { return v.IntP(); }},
      {"LongP", [](const Value& v) { return v.LongP(); }},
      {"Int64P", [](const Value& v) { return v.Int64P(); }},
      {"RealP", [](const Value& v) { return v.RealP(); }},
      {"NumberP", [](const Value& v) { return v.NumberP(); }},
      {"StringP", [](const Value& v) { return v.StringP(); }},
      {"ENameP", [](const Value& v) { return v.ENameP(); }},
      {"PickSetP", [](const Value& v) { return v.PickSetP(); }},
      {"AtomListP", [](const Value& v) { return v.AtomListP(); }},
      {"PointP", [](const Value& v) { return v.PointP(); }},
      {"AssocListP", [](const Value& v) { return v.AssocListP(); }},
      {"RealListP", [](const Value& v) { return v.RealListP(); }},
  };
  return Holding(predicates, value);
}

// LongP and Int64P exist only as members.
std::string OfFacade(const Value& value) {
  using Ask = bool (*)(const Value&);
  static const std::vector<std::pair<const char*, Ask>> predicates = {
      {"NilP", &CLOMAdsLisp::NilP},
      {"AtomP", &CLOMAdsLisp::AtomP},
      {"ListP", &CLOMAdsLisp::ListP},
      {"IntP", &CLOMAdsLisp::IntP},
      {"LongP", [](const Value& v) { return v.LongP(); }},
      {"Int64P", [](const Value& v) { return v.Int64P(); }},
      {"RealP", &CLOMAdsLisp::RealP},
      {"NumberP", &CLOMAdsLisp::NumberP},
      {"StringP", &CLOMAdsLisp::StringP},
      {"ENameP", &CLOMAdsLisp::ENameP},
      {"PickSetP", &CLOMAdsLisp::PickSetP},
      {"AtomListP", &CLOMAdsLisp::AtomListP},
      {"PointP", &CLOMAdsLisp::PointP},
      {"AssocListP", &CLOMAdsLisp::AssocListP},
      {"RealListP", &CLOMAdsLisp::RealListP},
  };
  return Holding(predicates, value);
}

const std::string kUnknownType = "CLOMAdsLispVar::Type : Unbekannter Variablen-Typ !\n";
const std::string kNoNumber = "CLOMAdsLispVar::ZeroP : Argument ist keine Zahl !\n";

class Predicates : public HostTest {
 protected:
  // What holds of a value, in all three layers, and its type.
  void Expect(const std::string& what, const Value& value, const std::string& holding, int type) {
    SCOPED_TRACE(what);
    const auto before = value.New().use_count();
    EXPECT_EQ(OfNode(value.New()), holding);
    EXPECT_EQ(OfMember(value), holding);
    EXPECT_EQ(OfFacade(value), holding);
    EXPECT_EQ(Printed(), "");
    EXPECT_EQ(value.Type(), type);
    EXPECT_EQ(Printed(), type == CLOMAdsLisp::dtUnknown ? kUnknownType : "");
    EXPECT_EQ(CLOMAdsLisp::Type(value), type);
    EXPECT_EQ(Printed(), type == CLOMAdsLisp::dtUnknown ? kUnknownType : "");
    EXPECT_EQ(value.New().use_count(), before) << "a reference was kept";
  }
  void ExpectZero(const Value& value, bool expected, const std::string& message = "") {
    EXPECT_EQ(value.ZeroP(), expected);
    EXPECT_EQ(Printed(), message);
    EXPECT_EQ(CLOMAdsLisp::ZeroP(value), expected);
    EXPECT_EQ(Printed(), message);
  }
};

TEST_F(Predicates, TheDataTypesHaveTheirNumbers) {
  EXPECT_EQ(CLOMAdsLisp::dtReal, 0);
  EXPECT_EQ(CLOMAdsLisp::dtInt, 1);
  EXPECT_EQ(CLOMAdsLisp::dtString, 2);
  EXPECT_EQ(CLOMAdsLisp::dtList, 3);
  EXPECT_EQ(CLOMAdsLisp::dtPickSet, 4);
  EXPECT_EQ(CLOMAdsLisp::dtEName, 5);
  EXPECT_EQ(CLOMAdsLisp::dtUnknown, 6);
}

TEST_F(Predicates, NilIsAListAndNoAtom) {
  Expect("nil", Value(), "NilP ListP AssocListP RealListP ", 3);
  Expect("RTNIL", Bare(RTNIL), "NilP AtomP AssocListP RealListP ", 6);
}

TEST_F(Predicates, AtomsOfTheKnownTypesAnswerToTheirs) {
  Expect("RTREAL", Value(2.5), "AtomP RealP NumberP ", 0);
  Expect("RTSHORT", Value(1), "AtomP IntP NumberP ", 1);
  Expect("RTLONG", Value(1L), "AtomP LongP RealP NumberP ", 0);
  Expect("RTINT64", Value(static_cast<__int64>(1)), "AtomP IntP Int64P RealP NumberP ", 0);
  Expect("RTSTR", Value(L"a"), "AtomP StringP ", 2);
  Expect("RTSTR, null", Bare(RTSTR), "AtomP StringP ", 2);
  Expect("RTENAME", Name(ADSNameType::Entity), "AtomP ENameP ", 5);
  Expect("RTPICKS", Name(ADSNameType::PickSet), "AtomP PickSetP ", 4);
}

TEST_F(Predicates, AtomsOfOtherTypesAreOnlyAtoms) {
  const double point[3] = {1, 2, 3};
  Expect("RTANG", Atom(ResBuf(1.0, ADSRealType::Angle)), "AtomP ", 6);
  Expect("RTPOINT", Atom(ResBuf(point, ADSPointType::Point)), "AtomP ", 6);
  Expect("RT3DPOINT", Atom(ResBuf(point)), "AtomP ", 6);
  for (const short type : {RTORINT, RTVOID, RTLB, RTLE, RTDOTE, RTT, static_cast<short>(5025)})
    Expect(std::to_string(type), Bare(type), "AtomP ", 6);
}

TEST_F(Predicates, ADxfCodeIsNotItsBaseType) {
  const ResBuf one(static_cast<short>(1));
  for (const int code : {62, 40, 90, 160, 8, 330, 10, -3})
    Expect(std::to_string(code), Retyped(static_cast<short>(code), one), "AtomP ", 6);
}

TEST_F(Predicates, ANodeWithoutAValueIsTheEmptyList) {
  const std::string holding = "ListP AtomListP AssocListP RealListP ";
  Expect("()", ListOf({}), holding, 3);
  Expect("RTNONE", Handle(Bare(RTNONE).New()), holding, 3);
}

TEST_F(Predicates, TwoOrThreeNumbersAreAPoint) {
  const std::string holding = "ListP AtomListP PointP AssocListP RealListP ";
  Expect("(1 2)", V(L"(1 2)"), holding, 3);
  Expect("(1.0 2 3)", V(L"(1.0 2 3)"), holding, 3);
  Expect("(long int64 real)", ListOf({Value(1L), Value(static_cast<__int64>(2)), Value(3.0)}), holding, 3);
}

TEST_F(Predicates, OtherListsOfAtomsAreNoPoints) {
  const std::string holding = "ListP AtomListP AssocListP RealListP ";
  for (const wchar_t* const text :
       {L"(1)", L"(1 2 3 4)", L"(\"a\" 2)", L"(1 2 \"a\")", L"(\"a\" \"b\" \"c\")"})
    Expect(Utf8(text), V(text), holding, 3);
  Expect("(angle angle)",
         ListOf({Atom(ResBuf(1.0, ADSRealType::Angle)), Atom(ResBuf(2.0, ADSRealType::Angle))}), holding, 3);
  Expect("(1 RTNIL)", ListOf({Value(1), Bare(RTNIL)}), holding, 3);
  Expect("(1 group)", ListOf({Value(1), Retyped(62, static_cast<short>(2))}), holding, 3);
}

TEST_F(Predicates, ListsWithListsAreNoAtomLists) {
  const std::string holding = "ListP AssocListP RealListP ";
  Expect("(1 (2))", V(L"(1 (2))"), holding, 3);
  Expect("((1 . 2) (3 . 4))", V(L"((1 . 2) (3 . 4))"), holding, 3);
  Expect("(1 ())", ListOf({Value(1), ListOf({})}), holding, 3);
  Expect("(1 2 (3 . 4))", ListOf({Value(1), Value(2), V(L"(3 . 4)")}), holding, 3);
}

TEST_F(Predicates, AnEmptyPointerAsAMemberIsNoAtom) {
  const std::string holding = "ListP AssocListP RealListP ";
  Expect("(nil)", ListOf({Value()}), holding, 3);
  Expect("(1 nil)", ListOf({Value(1), Value()}), holding, 3);
  Expect("(nil 1 2)", ListOf({Value(), Value(1), Value(2)}), holding, 3);
}

TEST_F(Predicates, ADottedListIsOnlyAList) {
  for (const wchar_t* const text : {L"(1 . 2)", L"(\"a\" . \"b\")"}) Expect(Utf8(text), V(text), "ListP ", 3);
  Expect("dotted ()", DottedOf({}), "ListP ", 3);
  Expect("dotted (1)", DottedOf({Value(1)}), "ListP ", 3);
  Expect("(1 2 . 3)", DottedOf({Value(1), Value(2), Value(3)}), "ListP ", 3);
  Expect("(1 . nil)", DottedOf({Value(1), Value()}), "ListP ", 3);
  Expect("(nil . 1)", DottedOf({Value(), Value(1)}), "ListP ", 3);
  Expect("((1) . 2)", DottedOf({V(L"(1)"), Value(2)}), "ListP ", 3);
  Expect("(1 . (2 . 3))", DottedOf({Value(1), V(L"(2 . 3)")}), "ListP ", 3);
  Expect("(1 2 . (3))", DottedOf({Value(1), Value(2), V(L"(3)")}), "ListP ", 3);
}

TEST_F(Predicates, ADottedListWhoseSecondMemberIsAProperListIsARealList) {
  const std::string holding = "ListP RealListP ";
  Expect("(1 . (2 3))", DottedOf({Value(1), V(L"(2 3)")}), holding, 3);
  Expect("(1 . ())", DottedOf({Value(1), ListOf({})}), holding, 3);
  Expect("(nil . (2))", DottedOf({Value(), V(L"(2)")}), holding, 3);
  Expect("(1 (2) . 3)", DottedOf({Value(1), V(L"(2)"), Value(3)}), holding, 3);
}

TEST_F(Predicates, AMillionMembersAreLookedAtOnce) {
  const Node node = std::make_shared<CLOMLispElement>();
  const Node atom = Value(1).New();
  for (int i = 0; i < kLarge; ++i) node->children.push_back(atom);
  Expect("(1 1 ...)", Handle(node), "ListP AtomListP AssocListP RealListP ", 3);
  node->children.push_back(nullptr);
  Expect("(1 1 ... nil)", Handle(node), "ListP AssocListP RealListP ", 3);
}

TEST_F(Predicates, ZeroIsWithinABillionth) {
  ExpectZero(Value(0.0), true);
  ExpectZero(Value(-0.0), true);
  ExpectZero(Value(0.0000000005), true);
  ExpectZero(Value(-0.0000000005), true);
  ExpectZero(Value(1e-9), true);
  ExpectZero(Value(1.1e-9), false);
  ExpectZero(Value(-1.0), false);
  ExpectZero(Value(0), true);
  ExpectZero(Value(1), false);
  ExpectZero(Value(0L), true);
  ExpectZero(Value(-1L), false);
  ExpectZero(Value(static_cast<__int64>(0)), true);
  ExpectZero(Value(static_cast<__int64>(4294967296)), false);
}

TEST_F(Predicates, WhatIsNoNumberIsNotZero) {
  ExpectZero(Atom(ResBuf(0.0, ADSRealType::Angle)), false, kNoNumber);
  ExpectZero(Value(L"0"), false, kNoNumber);
  ExpectZero(Value(), false, kNoNumber);
  ExpectZero(V(L"(0 0)"), false, kNoNumber);
  ExpectZero(Bare(RTNIL), false, kNoNumber);
  ExpectZero(Retyped(62, static_cast<short>(0)), false, kNoNumber);
}

}  // namespace
}  // namespace lomlisp::test::predicates
