// How many blocks the operations take from both heaps, the standard one and the platform's: what makes them
// slow first, and what does not depend on the machine. More than the figures here, by more than the margin,
// is a regression; who needs fewer lowers the figure.

#include <bench/EntityChain.h>
#include <bench/StandardHeap.h>
#include <gtest/gtest.h>
#include <lomlisp/lomlisp.h>
#include <tests/own_platform/Memory.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace {

using Lisp = CLOMAdsLisp;
using Value = CLOMAdsLispVar;

// --- The platform: the arguments 1 2.5 "text" (1 2 3) 5, and a result that nobody keeps ---

wchar_t argumentText[] = L"text";

std::vector<resbuf> NewArguments() {
  std::vector<resbuf> records;
  for (const short type : {RTSHORT, RTREAL, RTSTR, RTLB, RTSHORT, RTSHORT, RTSHORT, RTLE, RTSHORT}) {
    records.push_back({nullptr, type, {}});
    if (type == RTSTR) records.back().resval.rstring = argumentText;
  }
  for (size_t i = 1; i < records.size(); ++i) records[i - 1].rbnext = &records[i];
  return records;
}

}  // namespace

resbuf* acedGetArgs() {
  static std::vector<resbuf> records = NewArguments();
  return records.data();
}
int acedRetVal(const resbuf*) { return RTNORM; }
int acedRetList(const resbuf*) { return RTNORM; }
int acedGetSym(const ACHAR*, resbuf**) { return RTERROR; }
int acedPutSym(const ACHAR*, resbuf*) { return RTERROR; }

namespace {

constexpr int kElements = 1'000;

// What both heaps have given out.
struct Blocks {
  long standard;
  long platform;
};

// A work that needs more than so many blocks has become worse: 2 in 100, and a few for what grows by
// doubling.
long WithMargin(long blocks) { return blocks + blocks / 50 + 2; }

template <class Work>
Blocks BlocksOf(Work work) {
  const auto standard = static_cast<long>(StandardHeapBlocks());
  const long platform = AllocatedBlocks();
  work();
  return {static_cast<long>(StandardHeapBlocks()) - standard, AllocatedBlocks() - platform};
}

// `work` does something to or with values that were there before.
template <class Work>
void ExpectAtMost(Blocks most, Work work) {
  const int printed = PrintedTexts();
  const Blocks taken = BlocksOf(work);
  EXPECT_LE(taken.standard, WithMargin(most.standard)) << "blocks of the standard heap";
  EXPECT_LE(taken.platform, WithMargin(most.platform)) << "blocks of the platform's heap";
  EXPECT_EQ(PrintedTexts(), printed);
  testing::Test::RecordProperty("standard", std::to_string(taken.standard));
  testing::Test::RecordProperty("platform", std::to_string(taken.platform));
}

// --- Values of kElements elements ---

template <class Make>
Value ListOf(int count, Make make) {
  Value list;
  for (int i = count - 1; i >= 0; --i) Lisp::SetQ(list, Lisp::Cons(make(i), list));
  return list;
}

Value Integer(int number) { return static_cast<long>(number); }
Value Text(int number) { return L"LAYER-" + std::to_wstring(1'000'000 + number); }
Value Pair(int number) { return Lisp::Cons(Integer(number), Integer(1)); }
Value Item(int number) { return Lisp::List(number, number + 0.5, Text(number)); }

const Value& Integers() {
  static const Value list = ListOf(kElements, Integer);
  return list;
}

const Value& Items() {
  static const Value list = ListOf(kElements, Item);
  return list;
}

resbuf* Chain() {
  static resbuf* const chain = NewEntityChain(kElements);
  return chain;
}

// --- Conversions ---

TEST(Allocations, ChainToValue) {
  ExpectAtMost({5'152, 1'862}, [] { const Value value(Chain()); });
}

TEST(Allocations, ValueToPlainChain) {
  const Value value(Chain());
  ExpectAtMost({0, 5'996}, [&] {
    ADSList chain;
    value.LispToADS(chain);
  });
}

// Without its extended data, which has another form in a value that is written.
TEST(Allocations, ValueToDxfChain) {
  const Value entity(Chain());
  const Value value = Lisp::Head(kElements / 7 * 6 - 1, entity);
  ExpectAtMost({6, 1'138}, [&] {
    ADSList chain;
    value.LispToDXF(chain);
  });
}

TEST(Allocations, Call) {
  ExpectAtMost({19, 8}, [] {
    Value a;
    Value b;
    Value c;
    Value d;
    Value e;
    Lisp::Parameter(a, b, c, d, e);
    Lisp::Return(Lisp::List(a, c, e));
  });
}

// --- Text ---

TEST(Allocations, Read) {
  const CString text = Items().GetAsDebugString();
  ExpectAtMost({5'010, 1'000}, [&] {
    Value value;
    EXPECT_TRUE(value.Read(text));
  });
}

TEST(Allocations, PrintIntoABuffer) {
  std::vector<wchar_t> buffer(kElements * 100);
  ExpectAtMost({0, 0}, [&] { Items().PrinC(buffer.data(), buffer.size()); });
}

TEST(Allocations, DebugText) {
  // 14 of them as the text grows by doubling.
  ExpectAtMost({15, 0}, [] { Items().GetAsDebugString(); });
}

TEST(Allocations, FormatOfSixDirectives) {
  CArray<Value, Value> args;
  for (const Value& value : {Value(17), Value(3.14159), Value(L"text"), Value(255), Value(1e10), Value(L"c")})
    args.Add(value);
  ExpectAtMost({18, 1}, [&] {
    Value result;
    Value::Format(result, L"%5d %8.3f %s %x %e %c", args);
  });
}

// --- Whole values ---

TEST(Allocations, DeepCopy) {
  ExpectAtMost({5'002, 1'000}, [] { Lisp::Head(-1, Items()); });
}

TEST(Allocations, EqualOfDeepCopies) {
  const Value copy = Lisp::Head(-1, Items());
  ExpectAtMost({0, 0}, [&] { EXPECT_TRUE(Lisp::Equal(Items(), copy, 0.0)); });
}

TEST(Allocations, Release) {
  Value copy = Lisp::Head(-1, Items());
  ExpectAtMost({0, 0}, [&] { copy.Clean(); });
}

// --- Lists ---

TEST(Allocations, ConsInFront) {
  ExpectAtMost({1'011, 0}, [] { ListOf(kElements, Integer); });
}

TEST(Allocations, Walk) {
  Value list = ListOf(kElements, Integer);
  ExpectAtMost({0, 0}, [&] {
    for (; !list.NilP(); Lisp::SetQ(list, Lisp::Cdr(list))) {
      long number = 0;
      Lisp::SetQ(number, Lisp::Car(list));
    }
  });
}

TEST(Allocations, ReverseInPlace) {
  Value list = ListOf(kElements, Integer);
  ExpectAtMost({0, 0}, [&] { list.Reverse(false); });
}

TEST(Allocations, AppendToACopy) {
  ExpectAtMost({2'014, 0}, [] { Lisp::Append(Integers(), Integers()); });
}

TEST(Allocations, AssocOfTheLast) {
  const Value pairs = ListOf(kElements, [](int number) { return Value(Lisp::Cons(Text(number), 1)); });
  const Value key = Text(kElements - 1);
  ExpectAtMost({0, 0}, [&] { EXPECT_FALSE(Lisp::Assoc(key, pairs).NilP()); });
}

TEST(Allocations, MemberAtTheEnd) {
  const Value number = Integer(kElements - 1);
  ExpectAtMost({2, 0}, [&] { EXPECT_FALSE(Lisp::Member(number, Integers()).NilP()); });
}

TEST(Allocations, PositionAtTheEnd) {
  const Value number = Integer(kElements - 1);
  ExpectAtMost({0, 0}, [&] { EXPECT_EQ(Lisp::Position(number, Integers()), kElements - 1); });
}

TEST(Allocations, SortOfTexts) {
  Value list = ListOf(kElements, [](int number) { return Text(number * 7 % kElements); });
  ExpectAtMost({2, 0}, [&] { list.Sort(); });
}

TEST(Allocations, Subst) {
  const Value oldNumber = Integer(7);
  const Value newNumber = Integer(8);
  ExpectAtMost({1'009, 0}, [&] { Lisp::Subst(newNumber, oldNumber, Integers()); });
}

TEST(Allocations, Delete) {
  const Value number = Integer(7);
  ExpectAtMost({10, 0}, [&] { Lisp::Delete(number, Integers()); });
}

TEST(Allocations, AddInTheMiddle) {
  const Value number = Integer(7);
  ExpectAtMost({1'002, 0}, [&] { Lisp::AddNth(kElements / 2, number, Integers()); });
}

TEST(Allocations, InheritOfTwo) {
  const Value own = ListOf(kElements / 2, [](int number) { return Pair(2 * number); });
  const Value inherited = ListOf(kElements / 2, [](int number) { return Pair(3 * number); });
  ExpectAtMost({10, 0}, [&] { Lisp::Inherit(own, inherited); });
}

// --- Memory ---

// What the heap keeps beside a block.
constexpr size_t kBytesBesideABlock = 8;

template <class Make>
size_t BytesOf(Make make) {
  const size_t bytes = StandardHeapBytes();
  const size_t blocks = StandardHeapBlocks();
  const Value value = make();
  return StandardHeapBytes() - bytes + (StandardHeapBlocks() - blocks) * kBytesBesideABlock;
}

TEST(Allocations, BytesOfAnIntegerAtom) {
  EXPECT_LE(BytesOf([] { return Integer(1); }), 96u);
}

TEST(Allocations, BytesOfADottedPairOfIntegers) {
  EXPECT_LE(BytesOf([] { return Pair(1); }), 400u);
}

}  // namespace
