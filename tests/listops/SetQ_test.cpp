// SetQ: assignment to variables of every type.
#include <tests/listops/Values.h>

#include <iterator>
#include <limits>
#include <string>
#include <utility>

namespace lomlisp::test::set_q {

using SetQTest = HostTest;
using SetQMemberTest = HostTest;

namespace {

CLOMAdsLispVar Int64(__int64 value) { return CLOMAdsLispVar(value); }
CLOMAdsLispVar Angle(double value) {
  CLOMAdsLispVar atom(0.0);
  atom.GetAtom() = ResBuf(value, ADSRealType::Angle);
  return atom;
}
CLOMAdsLispVar NullText() {
  CLOMAdsLispVar atom(L"");
  atom.GetAtom() = static_cast<const wchar_t*>(nullptr);
  return atom;
}

constexpr __int64 kName[2] = {0x1F, 7};

CLOMAdsLispVar EntityName() { return CLOMAdsLispVar(kName); }
CLOMAdsLispVar PickSet() {
  CLOMAdsLispVar atom(kName);
  atom.GetAtom() = ResBuf(kName, ADSNameType::PickSet);
  return atom;
}

// What a cast prints that does not accept the atom.
std::string BadCast(const std::string& target, const std::string& type, const std::string& value) {
  return "Fehler bei Cast von ResBuf auf " + target + ": ResBuf ist vom Typ " + type +
         "\nNameValue= " + value + "\nName";
}

// What reading a list as an atom prints.
std::string NoAtom(const std::string& list) {
  return "CLOMAdsLispVar::GetAtom : Kein Atom : Liste !" + list + "\n";
}

template <class Target>
void ExpectSet(const CLOMAdsLispVar& value, Target expected) {
  Target target = 99;
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
  EXPECT_EQ(target, expected) << Text(value);
  EXPECT_EQ(given.New(), value.New());
}

}  // namespace

// --- Numbers ---

TEST_F(SetQTest, ShortTakesTheLow16BitsOfIntegersAndTruncatesReals) {
  ExpectSet<short>(V(L"-7"), -7);
  ExpectSet<short>(CLOMAdsLispVar(70000L), 4464);
  ExpectSet<short>(Int64(0x100010005), 5);
  ExpectSet<short>(V(L"2.7"), 2);
  ExpectSet<short>(Angle(-2.7), -2);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, IntTakesTheLow32BitsOfIntegersAndTruncatesReals) {
  ExpectSet<int>(V(L"-7"), -7);
  ExpectSet<int>(CLOMAdsLispVar(70000L), 70000);
  ExpectSet<int>(Int64(0x100000005), 5);
  ExpectSet<int>(V(L"-2.7"), -2);
  ExpectSet<int>(Angle(2.7), 2);
  ExpectSet<int>(V(L"3000000000.0"), std::numeric_limits<int>::min());
  ExpectSet<int>(CLOMAdsLispVar(std::numeric_limits<double>::quiet_NaN()), std::numeric_limits<int>::min());
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, UnsignedIntTakesTheLow32BitsAndTruncatesRealsThrough64) {
  ExpectSet<unsigned int>(V(L"-1"), 4294967295U);
  ExpectSet<unsigned int>(CLOMAdsLispVar(70000L), 70000U);
  ExpectSet<unsigned int>(Int64(0x1FFFFFFFF), 4294967295U);
  ExpectSet<unsigned int>(V(L"3000000000.0"), 3000000000U);
  ExpectSet<unsigned int>(V(L"-2.7"), 4294967294U);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, LongHas32BitsOnEverySystem) {
  ExpectSet<long>(V(L"-7"), -7L);
  ExpectSet<long>(CLOMAdsLispVar(-70000L), -70000L);
  ExpectSet<long>(Int64(0x1FFFFFFFF), -1L);
  ExpectSet<long>(V(L"2.7"), 2L);
  ExpectSet<long>(V(L"3000000000.0"), static_cast<long>(std::numeric_limits<int>::min()));
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, Int64TakesEveryNumber) {
  ExpectSet<__int64>(V(L"-7"), -7);
  ExpectSet<__int64>(CLOMAdsLispVar(-70000L), -70000);
  ExpectSet<__int64>(Int64(0x123456789AB), 0x123456789AB);
  ExpectSet<__int64>(V(L"-3000000000.7"), -3000000000LL);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, DoubleTakesEveryNumber) {
  ExpectSet<double>(V(L"-7"), -7.0);
  ExpectSet<double>(CLOMAdsLispVar(70000L), 70000.0);
  ExpectSet<double>(Int64(0x100000000), 4294967296.0);
  ExpectSet<double>(V(L"2.5"), 2.5);
  ExpectSet<double>(Angle(1.5), 1.5);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, NumbersFromAtomsOfOtherTypesAreZeroAfterTheMessageOfTheCast) {
  const std::pair<CLOMAdsLispVar, std::pair<std::string, std::string>> atoms[] = {
      {V(L"\"3\""), {"RTSTR", "\"3\""}},
      {EntityName(), {"RTENAME", "<Entity name: 1f>"}},
      {NilAtom(), {"RTNIL", "RTNIL"}}};
  for (const auto& [atom, names] : atoms) {
    const auto& [type, value] = names;
    ExpectSet<short>(atom, 0);
    EXPECT_EQ(Printed(), BadCast("short", type, value));
    ExpectSet<int>(atom, 0);
    EXPECT_EQ(Printed(), BadCast("int", type, value));
    ExpectSet<unsigned int>(atom, 0);
    EXPECT_EQ(Printed(), BadCast("int", type, value));
    ExpectSet<long>(atom, 0);
    EXPECT_EQ(Printed(), BadCast("long", type, value));
    ExpectSet<__int64>(atom, 0);
    EXPECT_EQ(Printed(), BadCast("__int64", type, value));
    ExpectSet<double>(atom, 0);
    EXPECT_EQ(Printed(), BadCast("double", type, value));
  }
}

TEST_F(SetQTest, NumbersFromListsAreZeroAfterTheMessageOfTheAtom) {
  for (const CLOMAdsLispVar& value : {V(L"(1 2)"), CLOMAdsLispVar(), ListOf({}), DottedOf({1, 2})}) {
    const std::string message = NoAtom(Text(value));
    ExpectSet<short>(value, 0);
    EXPECT_EQ(Printed(), message);
    ExpectSet<int>(value, 0);
    EXPECT_EQ(Printed(), message);
    ExpectSet<unsigned int>(value, 0);
    EXPECT_EQ(Printed(), message);
    ExpectSet<long>(value, 0);
    EXPECT_EQ(Printed(), message);
    ExpectSet<__int64>(value, 0);
    EXPECT_EQ(Printed(), message);
    ExpectSet<double>(value, 0);
    EXPECT_EQ(Printed(), message);
  }
}

// --- Texts ---

TEST_F(SetQTest, TextPointerIsTheAtomsOwnText) {
  const CLOMAdsLispVar value = V(L"\"text\"");
  const wchar_t* target = nullptr;
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
  EXPECT_EQ(target, value.GetAtom().resval.rstring);
  EXPECT_STREQ(target, L"text");
  EXPECT_EQ(given.New(), value.New());
  CLOMAdsLisp::SetQ(target, NullText());
  EXPECT_EQ(target, nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, TextPointerFromSomethingElseIsNullAfterTheMessages) {
  const wchar_t* target = L"old";
  CLOMAdsLisp::SetQ(target, V(L"5"));
  EXPECT_EQ(target, nullptr);
  EXPECT_EQ(Printed(), BadCast("TCHAR* ", "RTSHORT", "5"));
  target = L"old";
  CLOMAdsLisp::SetQ(target, V(L"(1)"));
  EXPECT_EQ(target, nullptr);
  EXPECT_EQ(Printed(), NoAtom("(1)") + BadCast("TCHAR* ", "RTSHORT", "0"));
}

template <class String>
class SetQTextTest : public HostTest {};
using Strings = ::testing::Types<CString, std::wstring>;
TYPED_TEST_SUITE(SetQTextTest, Strings);

TYPED_TEST(SetQTextTest, TakesACopyOfTheText) {
  const std::pair<CLOMAdsLispVar, TypeParam> cases[] = {{V(L"\"text\""), TypeParam(L"text")},
                                                        {CLOMAdsLispVar(L""), TypeParam(L"")},
                                                        {NullText(), TypeParam(L"")}};
  for (const auto& [value, text] : cases) {
    TypeParam target = L"a longer text of before";
    const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
    EXPECT_TRUE(target == text) << Text(value);
    EXPECT_EQ(given.New(), value.New());
  }
  EXPECT_EQ(this->Printed(), "");
}

TYPED_TEST(SetQTextTest, OutlivesTheValue) {
  TypeParam target;
  CLOMAdsLisp::SetQ(target, V(L"\"text\""));
  EXPECT_TRUE(target == TypeParam(L"text"));
}

TYPED_TEST(SetQTextTest, FromSomethingElseIsEmptyAfterTheMessages) {
  TypeParam target = L"old";
  CLOMAdsLisp::SetQ(target, V(L"5"));
  EXPECT_TRUE(target == TypeParam(L""));
  EXPECT_EQ(this->Printed(), BadCast("TCHAR* ", "RTSHORT", "5"));
  target = L"old";
  CLOMAdsLisp::SetQ(target, V(L"(1)"));
  EXPECT_TRUE(target == TypeParam(L""));
  EXPECT_EQ(this->Printed(), NoAtom("(1)") + BadCast("TCHAR* ", "RTSHORT", "0"));
}

TEST_F(SetQTest, BufferTakesAsMuchOfTheTextAsFits) {
  const CLOMAdsLispVar value = V(L"\"abcdef\"");
  wchar_t buffer[8] = L"-------";
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(buffer, std::size(buffer), value);
  EXPECT_STREQ(buffer, L"abcdef");
  EXPECT_EQ(given.New(), value.New());
  CLOMAdsLisp::SetQ(buffer, 7, value);
  EXPECT_STREQ(buffer, L"abcdef");
  EXPECT_EQ(Printed(), "");
  CLOMAdsLisp::SetQ(buffer, 5, value);
  EXPECT_STREQ(buffer, L"abcd");
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetString() : String zu groß, wird abgeschnitten !\n");
}

TEST_F(SetQTest, BufferFromSomethingElseIsEmptyAfterTheMessage) {
  for (const CLOMAdsLispVar& value : {V(L"5"), V(L"(1)"), CLOMAdsLispVar(), NilAtom()}) {
    wchar_t buffer[4] = L"old";
    CLOMAdsLisp::SetQ(buffer, std::size(buffer), value);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetString() : Kein String !\n");
  }
}

TEST_F(SetQTest, BufferWithoutRoomIsLeftAloneAfterTheMessage) {
  wchar_t buffer[4] = L"old";
  CLOMAdsLisp::SetQ(buffer, 0, V(L"\"text\""));
  EXPECT_STREQ(buffer, L"old");
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetString : Ziel-String hat Größe 0 !\n");
  CLOMAdsLisp::SetQ(static_cast<wchar_t*>(nullptr), 4, V(L"\"text\""));
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetString : Ziel-String hat Größe 0 !\n");
}

// --- Flags ---

TEST_F(SetQTest, BoolIsSetByTextsAndIntegers) {
  const std::pair<CLOMAdsLispVar, bool> cases[] = {{CLOMAdsLispVar(L""), false},
                                                   {NullText(), false},
                                                   {V(L"\"0\""), true},
                                                   {V(L"\"text\""), true},
                                                   {V(L"0"), false},
                                                   {V(L"-5"), true},
                                                   {Int64(0), false},
                                                   {Int64(5), true},
                                                   {Int64(0x100000000), true},
                                                   {Int64(std::numeric_limits<__int64>::min()), true}};
  for (const auto& [value, expected] : cases) {
    bool target = !expected;
    const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
    EXPECT_EQ(target, expected) << Text(value);
    EXPECT_EQ(given.New(), value.New());
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, BoolIsLeftAloneByEverythingElseWithoutAMessage) {
  const CLOMAdsLispVar values[] = {V(L"2.5"),  V(L"0.0"),        CLOMAdsLispVar(0L), CLOMAdsLispVar(5L),
                                   Angle(1.0), CLOMAdsLispVar(), NilAtom(),          V(L"(1)"),
                                   ListOf({}), EntityName(),     DottedOf({1, 2})};
  for (const CLOMAdsLispVar& value : values) {
    for (const bool old : {false, true}) {
      bool target = old;
      const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
      EXPECT_EQ(target, old) << Text(value);
      EXPECT_EQ(given.New(), value.New());
    }
  }
  EXPECT_EQ(Printed(), "");
}

// --- Points and names ---

TEST_F(SetQTest, PointTakesTwoOrThreeNumbers) {
  double target[3] = {9, 9, 9};
  const CLOMAdsLispVar value = V(L"(1 2.5 -3)");
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
  EXPECT_EQ(given.New(), value.New());
  EXPECT_EQ(target[0], 1.0);
  EXPECT_EQ(target[1], 2.5);
  EXPECT_EQ(target[2], -3.0);
  CLOMAdsLisp::SetQ(target, V(L"(4 5)"));
  EXPECT_EQ(target[0], 4.0);
  EXPECT_EQ(target[1], 5.0);
  EXPECT_EQ(target[2], 0.0);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, PointFromSomethingElseIsZeroAfterTheMessage) {
  for (const CLOMAdsLispVar& value :
       {V(L"(1 2 3 4)"), V(L"(1)"), V(L"7"), CLOMAdsLispVar(), V(L"(\"a\" 2)"), DottedOf({1, 2})}) {
    double target[3] = {9, 9, 9};
    const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
    EXPECT_EQ(given.New(), value.New());
    for (const double coordinate : target) EXPECT_EQ(coordinate, 0.0);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetPoint() : Kein Punkt !\n");
  }
}

TEST_F(SetQTest, NameTakesEntitiesAndSelectionSets) {
  for (const CLOMAdsLispVar& value : {EntityName(), PickSet()}) {
    __int64 target[2] = {9, 9};
    const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
    EXPECT_EQ(target[0], kName[0]);
    EXPECT_EQ(target[1], kName[1]);
    EXPECT_EQ(given.New(), value.New());
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, NameFromSomethingElseIsZeroAfterTheMessage) {
  for (const CLOMAdsLispVar& value : {V(L"7"), V(L"(1)"), CLOMAdsLispVar()}) {
    __int64 target[2] = {9, 9};
    CLOMAdsLisp::SetQ(target, value);
    EXPECT_EQ(target[0], 0);
    EXPECT_EQ(target[1], 0);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::GetEName() : Kein Entity-Name und kein Auswahlsatz !\n");
  }
}

// --- Values ---

TEST_F(SetQTest, ValueSharesTheTree) {
  const CLOMAdsLispVar value = V(L"(1 2)");
  CLOMAdsLispVar target = V(L"(9)");
  const std::weak_ptr<CLOMLispElement> old = target.New();
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, value);
  EXPECT_EQ(target.New(), value.New());
  EXPECT_EQ(given.New(), value.New());
  EXPECT_TRUE(old.expired());
  CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Nil);
  EXPECT_TRUE(IsEmptyHandle(target));
  EXPECT_EQ(Printed(), "");
}

TEST_F(SetQTest, ValueToItselfDoesNothing) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMLispElement* node = value.New().get();
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(value, value);
  EXPECT_EQ(value.New().get(), node);
  EXPECT_EQ(given.New().get(), node);
  EXPECT_EQ(Text(value), "(1 2)");
}

TEST_F(SetQTest, ValueFromAHandleOnTheSameNodeKeepsIt) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar other = value;
  CLOMAdsLisp::SetQ(value, other);
  EXPECT_EQ(value.New(), other.New());
  EXPECT_EQ(Text(value), "(1 2)");
}

TEST_F(SetQTest, ValueTakesAPartOfItsOwnTree) {
  CLOMAdsLispVar value = V(L"((1 2) 3)");
  const std::weak_ptr<CLOMLispElement> old = value.New();
  CLOMAdsLisp::SetQ(value, CLOMAdsLisp::Car(value));
  EXPECT_EQ(Text(value), "(1 2)");
  EXPECT_TRUE(old.expired());
}

TEST_F(SetQMemberTest, LetsTheOwnTreeGoAndSharesTheOther) {
  const CLOMAdsLispVar value = V(L"(1 2)");
  CLOMAdsLispVar target = V(L"((9))");
  NodeWatch watch;
  watch.Note(target);
  EXPECT_EQ(&target.SetQ(value), &target);
  EXPECT_EQ(target.New(), value.New());
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(SetQMemberTest, LeavesTheOtherHandlesOfTheOwnTreeAlone) {
  CLOMAdsLispVar target = V(L"(9)");
  const CLOMAdsLispVar other = target;
  target.SetQ(V(L"(1)"));
  EXPECT_EQ(Text(other), "(9)");
}

TEST_F(SetQMemberTest, ToItselfGivesNil) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar& same = value;
  value.SetQ(same);
  EXPECT_TRUE(IsEmptyHandle(value));
}

TEST_F(SetQMemberTest, LetsBothHandlesSeeLaterChanges) {
  CLOMAdsLispVar a = V(L"(1 2)");
  CLOMAdsLispVar b;
  b.SetQ(a);
  a.RplaCa(V(L"(8)"));
  b.RplaCd(V(L"(9)"));
  EXPECT_EQ(Text(a), "(8 9)");
  EXPECT_EQ(Text(b), "(8 9)");
}

}  // namespace lomlisp::test::set_q
