#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

#include <limits>
#include <string>

namespace lomlisp::test::variants {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A variant of a type with one member of its value set.
template <class Member, class Value>
VARIANT Of(VARTYPE type, Member VARIANT::*member, Value value) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = type;
  variant.*member = static_cast<Member>(value);
  return variant;
}
VARIANT Bare(VARTYPE type) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = type;
  return variant;
}

// A variant with that text, zeros and all.
COleVariant TextVariant(const std::wstring& text) {
  COleVariant variant;
  variant.vt = VT_BSTR;
  variant.bstrVal = SysAllocStringLen(text.data(), static_cast<unsigned int>(text.size()));
  return variant;
}
std::wstring TextOf(const VARIANT& variant) {
  return variant.bstrVal != nullptr ? std::wstring(variant.bstrVal, SysStringLen(variant.bstrVal)) : L"";
}

CLOMAdsLispVar Atom(const resbuf& record) {
  CLOMAdsLispVar atom(0);
  atom.GetAtom() = record;
  return atom;
}

// Opens the way to set a record anew.
class SettableRecord : public ResBuf {
 public:
  explicit SettableRecord(short value) : ResBuf(value) {}
  void Set(const COleVariant& variant) { Init(variant); }
};

class Variants : public HostTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(Printed(), "") << "conversions of variants are silent";
    HostTest::TearDown();
  }

  // The record made from a variant, which the value must hold too.
  static std::string Convert(const COleVariant& variant) {
    const std::string record = AtomTree(ResBuf(variant));
    const CLOMAdsLispVar value(variant);
    EXPECT_NE(value.New(), nullptr);
    EXPECT_EQ(AtomTree(value.New()->atom), record);
    EXPECT_TRUE(value.New()->children.empty());
    EXPECT_EQ(value.New()->dotted, 0);
    return record;
  }
  static double RealOf(const COleVariant& variant) {
    const CLOMAdsLispVar value(variant);
    EXPECT_EQ(value.GetAtom().Type(), RTREAL);
    return value.GetAtom().resval.rreal;
  }
  static void ExpectReal(const CLOMAdsLispVar& value, double expected) {
    const COleVariant variant = value.LispToOleVariant();
    EXPECT_EQ(variant.vt, VT_R8) << Tree(value);
    EXPECT_EQ(variant.dblVal, expected) << Tree(value);
  }
  static void ExpectText(const CLOMAdsLispVar& value, const std::wstring& expected) {
    const COleVariant variant = value.LispToOleVariant();
    EXPECT_EQ(variant.vt, VT_BSTR);
    EXPECT_TRUE(TextOf(variant) == expected) << Tree(value);
  }
};

// --- From a variant ---

TEST_F(Variants, IntegersOf16BitsBecomeShorts) {
  EXPECT_EQ(Convert(Of(VT_I2, &VARIANT::iVal, 7)), "5003:7");
  EXPECT_EQ(Convert(Of(VT_I2, &VARIANT::iVal, -32768)), "5003:-32768");
  EXPECT_EQ(Convert(Of(VT_UI2, &VARIANT::uiVal, 32767)), "5003:32767");
  EXPECT_EQ(Convert(Of(VT_UI2, &VARIANT::uiVal, 32768)), "5003:-32768");
  EXPECT_EQ(Convert(Of(VT_UI2, &VARIANT::uiVal, 65535)), "5003:-1");
}

TEST_F(Variants, IntegersOf32BitsBecomeLongs) {
  EXPECT_EQ(Convert(Of(VT_I4, &VARIANT::lVal, 7)), "5010:7");
  EXPECT_EQ(Convert(Of(VT_I4, &VARIANT::lVal, -70000)), "5010:-70000");
  EXPECT_EQ(Convert(Of(VT_UI4, &VARIANT::ulVal, 70000U)), "5010:70000");
  EXPECT_EQ(Convert(Of(VT_UI4, &VARIANT::ulVal, 0xFFFFFFFFU)), "5010:-1");
  EXPECT_EQ(Convert(Of(VT_INT, &VARIANT::intVal, -70000)), "5010:-70000");
  EXPECT_EQ(Convert(Of(VT_UINT, &VARIANT::uintVal, 70000U)), "5010:70000");
  EXPECT_EQ(Convert(Of(VT_UINT, &VARIANT::uintVal, 0x80000000U)), "5010:-2147483648");
}

TEST_F(Variants, RealsBecomeReals) {
  EXPECT_EQ(Convert(Of(VT_R8, &VARIANT::dblVal, 2.5)), "5001:2.5");
  EXPECT_EQ(Convert(Of(VT_R4, &VARIANT::fltVal, 2.5F)), "5001:2.5");
  EXPECT_EQ(RealOf(Of(VT_R8, &VARIANT::dblVal, 0.1)), 0.1);
  EXPECT_EQ(RealOf(Of(VT_R4, &VARIANT::fltVal, 0.1F)), static_cast<double>(0.1F));
  EXPECT_EQ(RealOf(Of(VT_R8, &VARIANT::dblVal, 1e300)), 1e300);
  EXPECT_NE(RealOf(Of(VT_R8, &VARIANT::dblVal, kNaN)), RealOf(Of(VT_R8, &VARIANT::dblVal, kNaN)));
}

TEST_F(Variants, ATruthValueBecomesTheLongOneOrZero) {
  EXPECT_EQ(Convert(Of(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE)), "5010:1");
  EXPECT_EQ(Convert(Of(VT_BOOL, &VARIANT::boolVal, VARIANT_FALSE)), "5010:0");
  EXPECT_EQ(Convert(Of(VT_BOOL, &VARIANT::boolVal, 1)), "5010:1");
  EXPECT_EQ(Convert(Of(VT_BOOL, &VARIANT::boolVal, 256)), "5010:1");
}

TEST_F(Variants, ABytesSignIsExtendedWhetherItHasOneOrNot) {
  EXPECT_EQ(Convert(Of(VT_I1, &VARIANT::cVal, 7)), "5003:7");
  EXPECT_EQ(Convert(Of(VT_I1, &VARIANT::cVal, -56)), "5003:-56");
  EXPECT_EQ(Convert(Of(VT_UI1, &VARIANT::bVal, 127)), "5003:127");
  EXPECT_EQ(Convert(Of(VT_UI1, &VARIANT::bVal, 128)), "5003:-128");
  EXPECT_EQ(Convert(Of(VT_UI1, &VARIANT::bVal, 200)), "5003:-56");
  EXPECT_EQ(Convert(Of(VT_UI1, &VARIANT::bVal, 255)), "5003:-1");
}

TEST_F(Variants, ATextBecomesAText) {
  EXPECT_EQ(Convert(TextVariant(L"abc")), "5005:abc");
  EXPECT_EQ(Convert(TextVariant(L"")), "5005:");
  EXPECT_EQ(Convert(TextVariant(L"Stra\u00DFe")),
            "5005:Stra\xC3\x9F"
            "e");
}

TEST_F(Variants, ATextEndsAtItsFirstZero) {
  EXPECT_EQ(Convert(TextVariant(std::wstring(L"ab\0cd", 5))), "5005:ab");
  EXPECT_EQ(Convert(TextVariant(std::wstring(L"\0cd", 3))), "5005:");
}

TEST_F(Variants, ANullTextBecomesTheEmptyText) { EXPECT_EQ(Convert(Bare(VT_BSTR)), "5005:"); }

TEST_F(Variants, AnyOtherTypeBecomesAnEmptyList) {
  int32_t number = 7;
  VARIANT reference = Bare(VT_BYREF | VT_I4);
  reference.byref = &number;
  const VARIANT others[] = {Bare(VT_EMPTY),
                            Bare(VT_NULL),
                            Of(VT_DATE, &VARIANT::date, 1.5),
                            Of(VT_ERROR, &VARIANT::scode, 5),
                            Bare(VT_CY),
                            Bare(VT_DISPATCH),
                            Bare(VT_UNKNOWN),
                            Of(VT_I8, &VARIANT::llVal, 7),
                            Of(VT_UI8, &VARIANT::ullVal, 7U),
                            Bare(VT_ARRAY | VT_I4),
                            Bare(VT_ARRAY | VT_BSTR),
                            reference};
  for (const VARIANT& other : others) {
    SCOPED_TRACE(other.vt);
    EXPECT_EQ(Convert(other), "5000");
    const CLOMAdsLispVar value{COleVariant(other)};
    EXPECT_EQ(Tree(value), "()");
    EXPECT_TRUE(value.ListP());
    EXPECT_FALSE(value.NilP());
  }
}

TEST_F(Variants, ARecordThatIsSetAnewIsResetFirst) {
  SettableRecord record(7);
  record.Set(COleVariant(Of(VT_DATE, &VARIANT::date, 1.5)));
  EXPECT_EQ(record.Type(), RTNONE);
  record.Set(TextVariant(L"abc"));
  EXPECT_EQ(AtomTree(record), "5005:abc");
}

TEST_F(Variants, TheCallersVariantStaysAsItIs) {
  const std::wstring text(L"ab\0cd", 5);
  const COleVariant variant = TextVariant(text);
  const BSTR before = variant.bstrVal;
  {
    const CLOMAdsLispVar value(variant);
    const ResBuf record(variant);
    EXPECT_NE(value.GetAtom().resval.rstring, before);
    EXPECT_NE(record.resval.rstring, before);
  }
  EXPECT_EQ(variant.vt, VT_BSTR);
  EXPECT_EQ(variant.bstrVal, before);
  EXPECT_TRUE(TextOf(variant) == text);

  const COleVariant number(Of(VT_I4, &VARIANT::lVal, 70000));
  EXPECT_EQ(Tree(CLOMAdsLispVar(number)), "5010:70000");
  EXPECT_EQ(number.vt, VT_I4);
  EXPECT_EQ(number.lVal, 70000);
}

TEST_F(Variants, TheValueOutlivesTheVariant) {
  CLOMAdsLispVar value;
  {
    COleVariant variant = TextVariant(L"abc");
    value = CLOMAdsLispVar(variant);
    variant.Clear();
  }
  EXPECT_EQ(Tree(value), "5005:abc");
}

TEST_F(Variants, EachValueHasAFreshNode) {
  const COleVariant variant(Of(VT_I2, &VARIANT::iVal, 7));
  const CLOMAdsLispVar a(variant), b(variant);
  EXPECT_NE(a.New(), b.New());
  a.GetAtom() = static_cast<short>(8);
  EXPECT_EQ(Tree(b), "5003:7");
}

// --- To a variant ---

TEST_F(Variants, RealsAndLongIntegersBecomeReals) {
  ExpectReal(1.5, 1.5);
  ExpectReal(-0.1, -0.1);
  ExpectReal(1e300, 1e300);
  ExpectReal(100000L, 100000.0);
  ExpectReal(7L, 7.0);
  ExpectReal(static_cast<__int64>(5000000000), 5000000000.0);
  ExpectReal(static_cast<__int64>(9007199254740993), 9007199254740992.0);
}

TEST_F(Variants, AShortIntegerBecomesAnIntegerOf32Bits) {
  for (const int number : {7, 0, -1, 32767, -32768}) {
    const COleVariant variant = CLOMAdsLispVar(number).LispToOleVariant();
    EXPECT_EQ(variant.vt, VT_I4);
    EXPECT_EQ(variant.lVal, number);
  }
}

TEST_F(Variants, ATextBecomesATextOfItsOwn) {
  ExpectText(L"abc", L"abc");
  ExpectText(L"", L"");
  ExpectText(L"Stra\u00DFe \U0001F600", L"Stra\u00DFe \U0001F600");
  CLOMAdsLispVar value = L"abc";
  const COleVariant variant = value.LispToOleVariant();
  EXPECT_NE(variant.bstrVal, value.GetAtom().resval.rstring);
  value.Clean();
  EXPECT_TRUE(TextOf(variant) == L"abc");
}

TEST_F(Variants, ANullTextBecomesAnEmptyOne) { ExpectText(Atom(String(nullptr)), L""); }

TEST_F(Variants, EverythingElseBecomesAnEmptyVariant) {
  for (const CLOMAdsLispVar& value :
       {CLOMAdsLispVar(), Atom(NoValue(RTNIL)), Atom(NoValue(RTNONE)), Atom(NoValue(RTT)), ListOf({}),
        ListOf({1}), ListOf({1, 2}), ListOf({1.0, 2.0, 3.0}), ListOf({L"a"}), Dotted({1, 2}),
        ListOf({CLOMAdsLispVar()}), Atom(Name(31)), Atom(Name(31, RTPICKS)), Atom(Point(1, 2, 3)),
        Atom(Real(1.5, RTANG)), Atom(Short(3, 62)), Atom(Real(2.5, 40)), Atom(String(L"LINE", RTDXF0))})
    EXPECT_EQ(value.LispToOleVariant().vt, VT_EMPTY) << Tree(value);
}

TEST_F(Variants, TheValueStaysAsItIs) {
  for (const CLOMAdsLispVar& value :
       {CLOMAdsLispVar(7), CLOMAdsLispVar(2.5), CLOMAdsLispVar(L"abc"), ListOf({1, L"a"})}) {
    const auto node = value.New();
    const std::string tree = Tree(value);
    value.LispToOleVariant();
    EXPECT_EQ(value.New(), node);
    EXPECT_EQ(Tree(value), tree);
  }
}

// --- There and back ---

TEST_F(Variants, ThereAndBackAShortBecomesALongAndALongAReal) {
  const CLOMAdsLispVar once(CLOMAdsLispVar(7).LispToOleVariant());
  EXPECT_EQ(Tree(once), "5010:7");
  const CLOMAdsLispVar twice(once.LispToOleVariant());
  EXPECT_EQ(Tree(twice), "5001:7");
  const CLOMAdsLispVar again(twice.LispToOleVariant());
  EXPECT_EQ(Tree(again), "5001:7");
}

TEST_F(Variants, ThereAndBackATextStaysAndNilBecomesAnEmptyList) {
  EXPECT_EQ(Tree(CLOMAdsLispVar(CLOMAdsLispVar(L"abc").LispToOleVariant())), "5005:abc");
  EXPECT_EQ(Tree(CLOMAdsLispVar(CLOMAdsLispVar().LispToOleVariant())), "()");
}

// --- Memory, deep and long values ---

TEST_F(Variants, WithoutMemoryTheTextIsNull) {
  const COleVariant variant = TextVariant(L"abc");
  FailEachAllocation([&] { return Tree(CLOMAdsLispVar(variant)) == "5005:abc"; });
  FailEachAllocation([&] { return AtomTree(ResBuf(variant)) == "5005:abc"; });
}

TEST_F(Variants, DeepAndLongValuesNeedNoStack) {
  OnSmallStack([] {
    EXPECT_EQ(Nested(kLarge, 1).LispToOleVariant().vt, VT_EMPTY);
    const std::wstring text(kLarge, L'x');
    const COleVariant variant = CLOMAdsLispVar(text).LispToOleVariant();
    EXPECT_TRUE(TextOf(variant) == text);
    EXPECT_TRUE(CLOMAdsLispVar(variant) == CLOMAdsLispVar(text));
  });
}

}  // namespace
}  // namespace lomlisp::test::variants
