// Each allocation of each operation fails, from both heaps: alone, and with all behind it. Nothing may be
// lost or half done: what an operation does not finish, it has not begun, and only std::bad_alloc leaves it.
// A text for which the platform has no memory is null, and a record is left out.

#include <examples/parts/Parts.h>
#include <examples/plan/Plan.h>
#include <gtest/gtest.h>
#include <lomlisp/lisp/SlabHeap.h>
#include <lomlisp/listops/Members.h>
#include <lomlisp/lomlisp.h>
#include <tests/failures/Heaps.h>
#include <tests/failures/Platform.h>

#include <cstdio>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test {
namespace {

using Lisp = CLOMAdsLisp;
using Value = CLOMAdsLispVar;

// Otherwise a slab may have room for all of an operation's nodes.
#ifdef LOMLISP_SANITIZED
constexpr bool kEachNodeIsABlock = true;
#else
constexpr bool kEachNodeIsABlock = false;
#endif

// --- First of all: nobody has looked into the books of texts before ---

TEST(FailingAllocations, FirstLookIntoTheBooksOfTexts) {
  const Watch watch(Heap::Standard, 1, true);
  const ResBuf record(ADSResType(8));
  const ResBuf copy(record);
  EXPECT_EQ(copy.Type(), 8);
}

// --- Operands ---

// What an operation is given: LISP text, or a function that makes the value; nil without either.
class Operand {
 public:
  Operand() = default;
  Operand(const wchar_t* text) : m_text(text) {}
  Operand(Value (*make)()) : m_make(make) {}

  Value Make() const {
    if (m_make != nullptr) return m_make();
    Value value;
    if (m_text != nullptr) value.Read(m_text);
    return value;
  }

 private:
  const wchar_t* m_text = nullptr;
  Value (*m_make)() = nullptr;
};

template <class Make>
Value ListOf(int count, Make make) {
  Value list;
  for (int i = count - 1; i >= 0; --i) Lisp::SetQ(list, Lisp::Cons(Value(make(i)), list));
  return list;
}

Value LongText(int number) {
  return L"a text longer than any small buffer, number " + std::to_wstring(number);
}

// Deeper than walks go without the heap.
Value Deep() {
  Value value(L"core");
  for (int level = 0; level < 40; ++level) value = Lisp::List(value, level);
  return value;
}
Value Long() {
  return ListOf(70, [](int i) { return i; });
}
Value LongTexts() { return ListOf(5, LongText); }
Value ManyNumbers() {
  return ListOf(200, [](int i) { return i * 7 % 200; });
}
// As many as are sorted by their first characters.
Value ManyTexts() {
  const Value first(L"one text");
  const Value second(L"another text");
  return ListOf(10'000, [&](int i) { return i % 2 == 0 ? first : second; });
}
Value ManyPairs() {
  return ListOf(20, [](int i) { return Value(Lisp::Cons(i * 7 % 20, i)); });
}
// Two ways lead to each list within.
Value Shared() {
  Value value = Lisp::List(1, L"two");
  for (int level = 0; level < 6; ++level) value = Lisp::List(value, value);
  return value;
}
Value Reals() {
  return ListOf(3, [](int i) { return i + 0.5; });
}
Value Named() { return EntityName(1); }

// Extended data within extended data, further than a run goes without the heap.
Value Nested() {
  Value value = Lisp::List(Value(Lisp::Cons(8, L"core")));
  for (int level = 0; level < 12; ++level) value = Lisp::List(Lisp::List(-3, Lisp::List(L"APP", value)));
  return value;
}
// As if it were for extended data, but it is no list of groups in the end.
Value NestedBadly() {
  Value value = Lisp::List(1);
  for (int level = 0; level < 12; ++level) value = Lisp::List(Lisp::List(-3, Lisp::List(L"APP", value)));
  return value;
}
Value ManyGroups() {
  return ListOf(40, [](int i) { return Lisp::List(8, LongText(i)); });
}

constexpr const wchar_t* kEntity =
    L"((0 . \"LINE\") (8 . \"Walls\") (62 . 1) (10 (1.0 2.0 3.0)) (40 . 2.5) "
    L"(-3 (\"APP\" ((1000 . \"a text\") (1070 . 7) (1002 . \"{\") (1002 . \"}\")))))";
constexpr const wchar_t* kMixed =
    L"(1 2.5 \"text\" nil (3 (4 . \"five\")) ((6)) \"another text, a longer one\")";

// The operands of an operation, and what came of it.
struct Work {
  Value a;
  Value b;
  Value c;
  Value result;
  std::string shown;

  void Show(const resbuf* chain) {
    const Unwatched unwatched;
    shown += Described(chain) + "\n";
  }
  void Show(const std::wstring& text) {
    const Unwatched unwatched;
    shown += std::string(text.begin(), text.end()) + "\n";
  }
};

// An operation with its operands, of which those change in place that are named.
struct Row {
  using Operation = std::function<void(Work&)>;

  Row(const char* given, Operation work) : name(given), operation(std::move(work)) {}
  Row(const char* given, Operand first, Operation work) : name(given), a(first), operation(std::move(work)) {}
  Row(const char* given, Operand first, Operand second, Operation work)
      : name(given), a(first), b(second), operation(std::move(work)) {}
  Row(const char* given, Operand first, Operand second, Operand third, Operation work)
      : name(given), a(first), b(second), c(third), operation(std::move(work)) {}

  Row Changing(const char* operands) && {
    changes = operands;
    return std::move(*this);
  }
  // When memory runs out, they stay changed as far as the operation came.
  Row ChangingStepwise(const char* operands) && {
    isStepwise = true;
    return std::move(*this).Changing(operands);
  }

  const char* name;
  Operand a;
  Operand b;
  Operand c;
  Operation operation;
  std::string changes;
  bool isStepwise = false;

  friend void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }
};

// A chain of the value that the operation does not make itself.
struct Chain {
  enum Form { Brackets, Groups, ExtendedData };

  explicit Chain(const Value& value, Form form = Brackets) {
    const Unwatched unwatched;
    if (form == Brackets) value.LispToADS(list);
    if (form == Groups) value.LispToDXF(list);
    if (form == ExtendedData) value.LispToXData(list);
    list.GoStart();
  }
  ~Chain() {
    const Unwatched unwatched;
    list.Clear();
  }
  operator resbuf*() { return list; }

  ADSList list;
};

// --- The operations ---

void FromChain(Work& w) {
  Chain chain(w.a);
  w.result = Value(chain);
}

void ToChain(Work& w) {
  ADSList chain;
  w.a.LispToADS(chain);
  w.Show(chain);
}

void ToGroups(Work& w) {
  ADSList chain;
  w.a.LispToDXF(chain);
  w.Show(chain);
}

void ToExtendedData(Work& w) {
  ADSList chain;
  w.a.LispToXData(chain);
  w.Show(chain);
}

void FromExtendedData(Work& w) {
  const Chain chain(w.a, Chain::ExtendedData);
  w.result.XDataToLisp(chain.list);
}

std::vector<Row> ValueRows() {
  return {
      Row("Integer", [](Work& w) { w.result = Value(short{1}); }),
      Row("UnsignedShort", [](Work& w) { w.result = Value(static_cast<unsigned short>(1)); }),
      Row("Int", [](Work& w) { w.result = Value(1); }),
      Row("UnsignedInt", [](Work& w) { w.result = Value(1U); }),
      Row("LongInteger", [](Work& w) { w.result = Value(1L); }),
      Row("UnsignedLong", [](Work& w) { w.result = Value(1UL); }),
      Row("Int64", [](Work& w) { w.result = Value(static_cast<__int64>(1)); }),
      Row("UnsignedInt64", [](Work& w) { w.result = Value(static_cast<unsigned long long>(1)); }),
      Row("Real", [](Work& w) { w.result = Value(1.5); }),
      Row("Text", [](Work& w) { w.result = Value(L"text"); }),
      Row("MfcText", [](Work& w) { w.result = Value(CString(L"a text longer than any small buffer")); }),
      Row("StandardText", [](Work& w) { w.result = Value(std::wstring(30, L'x')); }),
      Row("Point",
          [](Work& w) {
            const double point[3] = {1, 2, 3};
            w.result = Value(point);
          }),
      Row("Name",
          [](Work& w) {
            const __int64 name[2] = {1, 2};
            w.result = Value(name);
          }),
      Row("Variant",
          [](Work& w) { w.result = Value(COleVariant(L"a text longer than any small buffer", VT_BSTR)); }),
      Row("MakeBool", L"\"yes\"", [](Work& w) { w.result = w.a.MakeBool(); }),
      Row("MakeInt", L"\"12.5\"", [](Work& w) { w.result = w.a.MakeInt(); }),
      Row("MakeFloat", L"\"12.5\"", [](Work& w) { w.result = w.a.MakeFloat(); }),
      Row("MakeStringOfInteger", L"12", [](Work& w) { w.result = w.a.MakeString(); }),
      Row("MakeStringOfReal", L"12345.678", [](Work& w) { w.result = w.a.MakeString(); }),
      Row("MakeStringOfPoint", L"(1.5 2.5 1000000)", [](Work& w) { w.result = w.a.MakeString(); }),
      Row("MakeMaximum", L"(1 2 3)", L"\"t\"", [](Work& w) { w.result = w.a.MakeMaximum(w.b); }),
      Row("MakeMinimum", L"\"12\"", L"2.5", [](Work& w) { w.result = w.a.MakeMinimum(w.b); }),
      Row("EqualOfDeepLists", Deep, Deep, [](Work& w) { w.result = Lisp::Equal(w.a, w.b, 0.0) ? 1 : 0; }),
      Row("EqualOfSharedLists", Shared, Shared, [](Work& w) { w.result = w.a == w.b ? 1 : 0; }),
  };
}

std::vector<Row> ConversionRows() {
  return {
      Row("ChainToValue", kMixed,
          [](Work& w) {
            Chain chain(w.a);
            w.result.ADSToLisp(chain);
          }),
      Row("ChainToDeepValue", Deep, FromChain),
      Row("ChainToLongValue", Long, FromChain),
      Row("GroupsToValue", kEntity,
          [](Work& w) {
            Chain chain(w.a, Chain::Groups);
            w.result = Value(chain);
          }),
      Row("PointsAndTypesToValue",
          [](Work& w) {
            const double point[3] = {1, 2, 3};
            ResBuf flat(point, ADSPointType::Point);
            w.result.ADSToLisp(&flat);
            Value type;
            ResBuf text(L"ABC");
            resbuf coded = text;
            coded.restype = RTDXF0;
            type.ADSToLisp(&coded);
            w.result = Lisp::List(w.result, type);
          }),
      Row("ListOfAChain", kMixed,
          [](Work& w) {
            Chain chain(w.a);
            w.result = Lisp::List(chain);
            w.Show(chain);
          }),
      Row("StagesOfReading", kMixed,
          [](Work& w) {
            Chain chain(w.a);
            const resbuf* cur = chain;
            auto node = std::make_shared<CLOMLispElement>();
            Value::ADS_Liste(cur, node, false);
            w.result = ValueOf(node);
          }),
      Row("ValueToChain", kMixed, ToChain),
      Row("DeepValueToChain", Deep, ToChain),
      Row("ValueToGroups", kEntity, ToGroups),
      Row("ManyGroups", ManyGroups, ToGroups),
      Row("NestedGroups", Nested, ToGroups),
      Row("NestedGroupsThatAreNone", NestedBadly, ToGroups),
      Row("GroupsAmongOthers", L"(1 ((0 . \"LINE\") (8 . \"0\")) (\"a\" . 2))", ToGroups),
      Row("StagesOfWriting", kEntity, L"(8 . \"Walls\")", L"(\"APP\" ((1000 . \"a\")))",
          [](Work& w) {
            ADSList chain;
            Value::LispToDXFList(w.a.New(), chain);
            Value::LispToDXFElement(w.b.New(), chain);
            Value::LispToXDataList(w.c.New(), chain);
            w.Show(chain);
          }),
      Row("ValueToExtendedData", L"(1 2.5 \"text\" nil (\"another text\" (3)))", ToExtendedData),
      Row("DeepValueToExtendedData", Deep, ToExtendedData),
      Row("ExtendedDataToValue", L"(1 2.5 \"text\" nil (\"another text\" (3)))", FromExtendedData),
      Row("DeepExtendedDataToValue", Deep, FromExtendedData),
  };
}

std::vector<Row> TextRows() {
  return {
      Row("Read", L"(1)", [](Work& w) { w.a.Read(kMixed); }).Changing("a"),
      Row("ReadOfBadText", L"(1)", [](Work& w) { w.a.Read(L"(1 \"a\" (2"); }),
      Row("ReadOfADeepText", L"(1)",
          [](Work& w) {
            w.a.Read((std::wstring(40, L'(') + L"\"core\" . 1" + std::wstring(40, L')')).c_str());
          })
          .Changing("a"),
      Row("ReadOfAString", L"\"(1 2.5 (3 . 4))\"", [](Work& w) { w.result = Lisp::Read(w.a); }),
      Row("PrintIntoABuffer", Deep,
          [](Work& w) {
            wchar_t text[2000];
            w.a.PrinC(text, std::size(text));
            w.Show(text);
          }),
      Row("PrintOnTheCommandLine", Deep, [](Work& w) { w.result = Lisp::PrinC(w.a); }),
      Row("PrintANode", Deep,
          [](Work& w) {
            wchar_t text[2000] = L"> ";
            w.b.Print(w.a.New(), text, std::size(text));
            w.Show(text);
          }),
      Row("ToString", kMixed, [](Work& w) { w.result = Lisp::ToString(w.a); }),
      Row("ToCString", Deep, [](Work& w) { w.Show(Lisp::ToCString(w.a).GetString()); }),
      Row("DebugText", Deep, [](Work& w) { w.Show(w.a.GetAsDebugString().GetString()); }),
      Row("Format", L"(17 3.14159 \"a text\" 255 1000000.5 \"c\" 8)",
          [](Work& w) {
            CArray<Value, Value> args;
            for (Value rest = w.a; !rest.NilP(); Lisp::SetQ(rest, Lisp::Cdr(rest))) {
              args.Add(Lisp::Car(rest));
            }
            Value::Format(w.result, L"%5d %+8.3f %s %-40x| %e %c %o %% and some more text", args);
          }),
      Row("FormatOfItsOwnArgument", L"2.5",
          [](Work& w) {
            CArray<Value, Value> args;
            args.Add(w.a);
            Value::Format(w.a, L"%80.3f", args);
          })
          .Changing("a"),
      Row("StrCase", L"\"a text longer than any small buffer\"",
          [](Work& w) { w.result = Lisp::StrCase(w.a); }),
      Row("TextIntoMfcText", L"\"a text longer than any small buffer\"",
          [](Work& w) {
            CString text(L"old");
            Lisp::SetQ(text, w.a);
            w.Show(text.GetString());
          }),
      Row("TextIntoStandardText", L"\"a text longer than any small buffer\"",
          [](Work& w) {
            std::wstring text = L"old";
            Lisp::SetQ(text, w.a);
            w.Show(text);
          }),
      Row("ReplaceText", L"(\"a\" (\"b\" \"c\") \"a\" \"bb\")",
          [](Work& w) {
            CStringArray from;
            CStringArray to;
            for (const wchar_t* text : {L"a", L"b", L"bb"}) from.Add(text);
            for (const wchar_t* text : {L"a longer text", L"B", L"b"}) to.Add(text);
            w.a.ReplaceTextW(from, to);
          })
          .ChangingStepwise("a"),
      Row("ReplaceTextOfGroups", kEntity,
          [](Work& w) {
            CStringArray from;
            CStringArray to;
            from.Add(L"Walls");
            to.Add(L"ROOMS AND WALLS");
            {
              const Unwatched unwatched;
              w.a.New()->children[1]->children[1]->atom.MakeDXF(8);
            }
            w.a.ReplaceTextW(from, to);
          })
          .ChangingStepwise("a"),
  };
}

std::vector<Row> ListRows() {
  return {
      Row("Cdr", L"(1 2 3)", [](Work& w) { w.result = Lisp::Cdr(w.a); }),
      Row("CdrOfACopy", L"(1 2 3)",
          [](Work& w) {
            const Value other = w.a;
            Lisp::SetQ(w.a, Lisp::Cdr(w.a));
          })
          .Changing("a"),
      Row("Head", kMixed, [](Work& w) { w.result = Lisp::Head(4, w.a); }),
      Row("HeadInPlace", kMixed, [](Work& w) { w.a.Head(-1); }).Changing("a"),
      Row("HeadOfADeepList", Deep, [](Work& w) { w.result = Lisp::Head(-1, w.a); }),
      Row("CopyHead", kMixed,
          [](Work& w) {
            Value::Element head;
            Value::Element rest;
            try {
              Value::CopyHead(w.a.New(), head, rest, 3);
            } catch (const std::bad_alloc&) {
              if (head != nullptr) w.Show(L"wrong: a part of the head");
              throw;
            }
            w.result = ValueOf(head);
          }),
      Row("Cons", L"\"a\"", Long, [](Work& w) { w.result = Lisp::Cons(w.a, w.b); }),
      Row("ConsOfAPair", L"\"a\"", L"2", [](Work& w) { w.result = Lisp::Cons(w.a, w.b); }),
      Row("ConsBeforeADottedList", L"\"a\"", L"(1 . 2)", [](Work& w) { w.result = Lisp::Cons(w.a, w.b); }),
      Row("ConsInPlace", L"\"a\"", L"(1 2 3 4)", [](Work& w) { Lisp::SetQ(w.b, Lisp::Cons(w.a, w.b)); })
          .Changing("b"),
      Row("ConsIntoWhatIsTaken", L"\"a\"", L"(1 2 3 4)", [](Work& w) { w.a.Cons(std::move(w.b)); })
          .Changing("ab"),
      Row("ConsOfItself", L"(1 \"two\" (3))", [](Work& w) { Lisp::SetQ(w.a, Lisp::Cons(w.a, w.a)); })
          .Changing("a"),
      Row("ConsOfWhatContainsIt", Deep,
          [](Work& w) {
            Value inner = w.a;
            for (int level = 0; level < 35; ++level) inner.Car();
            w.a.Cons(std::move(inner));
          })
          .Changing("a"),
      Row("ConsProxyElsewhere", L"1", L"(2)", L"(3)", [](Work& w) { Lisp::SetQ(w.c, Lisp::Cons(w.a, w.b)); })
          .Changing("c"),
      Row("List", L"(1)", [](Work& w) { w.a.List(); }).Changing("a"),
      Row("ListOfOne", L"1", [](Work& w) { w.result = Lisp::List(w.a); }),
      Row("ListOfThree", L"1", L"2", L"(3)", [](Work& w) { w.result = Lisp::List(w.a, w.b, w.c); }),
      Row("ListOfEleven", L"1", L"\"two\"",
          [](Work& w) { w.result = Lisp::List(w.a, w.b, w.a, w.b, w.a, w.b, w.a, w.b, w.a, w.b, 11); }),
      Row("AppendInPlace", L"(1 2)", Long, [](Work& w) { w.a.Append(w.b); }).Changing("a"),
      Row("AppendToACopy", L"(1 \"two\")", L"(3 4 5 6)", [](Work& w) { w.result = Lisp::Append(w.a, w.b); }),
      Row("AppendToWhatIsShared", L"(1 \"two\")", L"(3 4 5 6)",
          [](Work& w) {
            const Value other = w.a;
            w.a.Append(w.b);
          })
          .Changing("a"),
      Row("AppendToItself", L"(1 2 3)", [](Work& w) { w.a.Append(w.a); }).Changing("a"),
      Row("AppendOfAnEmptyList", L"(1 2 3 4)", L"()", [](Work& w) { w.a.Append(w.b); }).Changing("a"),
      Row("AppendOfItselfEmpty", L"()", [](Work& w) { w.a.Append(w.a); }).Changing("a"),
      Row("NConc", L"(1 2)", Long, [](Work& w) { Lisp::NConc(w.a, w.b); }).Changing("a"),
      Row("Reverse", L"(1 \"two\" (3))", [](Work& w) { w.result = Lisp::Reverse(w.a); }),
      Row("ReverseOfACopy", L"(1 \"two\" (3))", [](Work& w) { w.a.Reverse(true); }).Changing("a"),
      Row("RplaCa", L"(1 2 3)", L"(\"a\" \"b\" \"c\" \"d\" \"e\")", [](Work& w) { Lisp::RplaCa(w.a, w.b); })
          .Changing("a"),
      Row("RplaCaOfAnEmptyList", L"()", L"(\"a\" \"b\")", [](Work& w) { Lisp::RplaCa(w.a, w.b); })
          .Changing("a"),
      Row("RplaCd", L"(1 2 3)", L"(\"a\" \"b\" \"c\" \"d\" \"e\")", [](Work& w) { Lisp::RplaCd(w.a, w.b); })
          .Changing("a"),
      Row("RplaCdOfAPair", L"(1 . 2)", L"(\"a\" \"b\")", [](Work& w) { Lisp::RplaCd(w.a, w.b); })
          .Changing("a"),
      Row("SortOfNumbers", ManyNumbers, [](Work& w) { w.a.Sort(); }).Changing("a"),
      Row("SortOfReals", Reals, [](Work& w) { w.a.Sort(); }).Changing("a"),
      Row("SortOfTexts", LongTexts, [](Work& w) { w.a.Sort(); }).Changing("a"),
      Row("SortOfManyTexts", ManyTexts, [](Work& w) { w.a.Sort(); }).Changing("a"),
      Row("SortOfMixedAtoms", L"(3 \"a\" 2.5 1 \"b\" 2)", [](Work& w) { w.a.Sort(); }).Changing("a"),
      Row("SortOfPairs", ManyPairs, [](Work& w) { Lisp::Sort(w.a); }).Changing("a"),
      Row("AddNth", kMixed, L"\"new\"", [](Work& w) { w.result = Lisp::AddNth(2, w.b, w.a); }),
      Row("DeleteNth", kMixed, [](Work& w) { w.result = Lisp::DeleteNth(2, w.a); }),
      Row("SubstNth", kMixed, L"\"new\"", [](Work& w) { w.result = Lisp::SubstNth(2, w.b, w.a); }),
      Row("InsertList", kMixed, L"(7 8 9)", [](Work& w) { w.result = Lisp::Insert(w.a, w.b, 2); }),
      Row("Subst", L"(1 \"two\" 1 (3))", L"1", L"\"one\"",
          [](Work& w) { w.result = Lisp::Subst(w.c, w.b, w.a); }),
      Row("Delete", Long, L"1", [](Work& w) { w.result = Lisp::Delete(w.b, w.a); }),
      Row("Assoc", Deep,
          [](Work& w) {
            Value alist;
            {
              const Unwatched unwatched;
              alist = Lisp::List(Lisp::List(1), Lisp::List(Lisp::Head(-1, w.a), 2));
            }
            w.result = Lisp::Assoc(w.a, alist);
          }),
      Row("Member", Long, L"7", [](Work& w) { w.result = Lisp::Member(w.b, w.a); }),
      Row("PositionOfADeepList", Deep,
          [](Work& w) {
            Value list;
            {
              const Unwatched unwatched;
              list = Lisp::List(1, Lisp::Head(-1, w.a));
            }
            w.result = Lisp::Position(w.a, list);
          }),
      Row("IndexOfADeepKey", Deep,
          [](Work& w) {
            Value list;
            {
              const Unwatched unwatched;
              list = Lisp::List(Lisp::List(1), Lisp::List(Lisp::Head(-1, w.a)));
            }
            w.result = Lisp::Index(w.a, list);
          }),
      Row("Inherit", L"((1 . 2) (3 . 4) (6 . 1))", L"((2 . 2) (3 . 5) (4 . 1) (5 . 1))",
          [](Work& w) { w.result = Lisp::Inherit(w.a, w.b); }),
      Row("InheritanceStatus", L"((1 . 2) (3 . 4) (6 . 1))", L"((2 . 2) (3 . 5) (4 . 1) (5 . 1))",
          [](Work& w) { w.result = Lisp::InheritanceStatus(w.a, w.b); }),
  };
}

// The records of the platform, and sequences of nodes.
std::vector<Row> RecordRows() {
  return {
      Row("RecordsOfTexts",
          [](Work& w) {
            const ResBuf text(L"a text");
            ResBuf copy(text);
            ResBuf assigned(short{1});
            assigned = copy;
            assigned = L"another text";
            copy = CString(L"a text longer than any small buffer");
            w.Show(&static_cast<const resbuf&>(copy));
            w.Show(&static_cast<const resbuf&>(assigned));
          }),
      Row("RecordOfAVariant",
          [](Work& w) {
            COleVariant variant(L"a text longer than any small buffer", VT_BSTR);
            try {
              const ResBuf record(std::move(variant));
              w.Show(&static_cast<const resbuf&>(record));
            } catch (const std::bad_alloc&) {
              w.Show(L"wrong: a record throws");
              throw;
            }
          }),
      Row("TextsUnderGroupCodes",
          [](Work& w) {
            ResBuf text(L"a text");
            text.MakeDXF(8);
            ResBuf second(text);
            ResBuf third;
            third = second;
            second.MakeBaseType();
            ResBuf number(L"7");
            number.MakeDXF(62);
            const ResBuf copy(number);
            w.Show(&static_cast<const resbuf&>(third));
            w.Show(&static_cast<const resbuf&>(second));
          }),
      Row("CopiesForThePlatform", kEntity,
          [](Work& w) {
            Chain chain(w.a, Chain::Groups);
            resbuf* const all = ResBuf::copyToAcadResBufList(chain);
            resbuf* const first = ResBuf::copyToAcadResBuf(chain);
            w.Show(all);
            w.Show(first);
            acutRelRb(all);
            acutRelRb(first);
          }),
      Row("ListOfCopies", kEntity,
          [](Work& w) {
            Chain chain(w.a, Chain::Groups);
            ADSList list(chain, ADSCopyFlag::Copy);
            list.AddAsList(chain.list);
            const ADSList copy(list);
            w.Show(copy);
          }),
      Row("ListOfAdoptedRecords", kEntity,
          [](Work& w) {
            resbuf* adopted = nullptr;
            {
              const Unwatched unwatched;
              const Chain chain(w.a, Chain::Groups);
              adopted = ResBuf::copyToAcadResBufList(chain.list);
            }
            ADSList list;
            list.AddAsList(adopted, ADSCopyFlag::Adopt);
            ADSList other(list);
            list.Splice(other);
            list.Reverse();
            list.Delete();
            w.Show(list);
            list.Clear();
          }),
      Row("ListThatIsHandedOver", kEntity,
          [](Work& w) {
            ADSList list;
            w.a.LispToDXF(list);
            const ADSList copy(list);
            list.DeleteMode(ADSDeleteFlag::Keep);
            resbuf* const chain = list;
            w.Show(chain);
            list.DeleteMode(ADSDeleteFlag::Release);
            list.DeleteMode(ADSDeleteFlag::Keep);
            w.Show(chain);
            acutRelRb(chain);
          }),
      Row("Children", Long,
          [](Work& w) {
            ChildSeq children(w.a.New()->children);
            children.push_front(w.a.New());
            children.push_back(w.b.New());
            children.insert(children.begin() + 3, children.begin(), children.end());
            children.insert(children.begin() + 1, w.a.New());
            children.erase(children.begin(), children.begin() + 100);
            children.reserve(500);
            w.shown = std::to_string(children.size());
          }),
      Row("Slabs",
          [](Work& w) {
            // More than a region has room for.
            std::vector<void*> blocks;
            const size_t count = kEachNodeIsABlock ? 3 : 8'000;
            {
              const Unwatched unwatched;
              blocks.reserve(count);
            }
            const auto free = [&] {
              for (void* const block : blocks) slabheap::Free(block, slabheap::kLargest);
            };
            try {
              while (blocks.size() < count) blocks.push_back(slabheap::Allocate(slabheap::kLargest));
            } catch (const std::bad_alloc&) {
              free();
              throw;
            }
            free();
            w.result = Value();
          }),
  };
}

std::vector<Row> HostRows() {
  const auto call = [](int (*function)()) {
    return [function](Work& w) {
      const Arguments arguments(w.a);
      w.result = function() == RTNORM ? Lisp::Nil : w.a;
    };
  };
  return {
      Row("ParameterList", kMixed,
          [](Work& w) {
            const Arguments arguments(w.a);
            w.result = Lisp::ParameterList();
          }),
      Row("GetArgs", kMixed,
          [](Work& w) {
            const Arguments arguments(w.a);
            Value value(1);
            try {
              value.getArgs();
            } catch (const std::bad_alloc&) {
              if (!value.NilP()) w.Show(L"wrong: a part of the arguments");
              throw;
            }
            w.result = value;
          }),
      Row("ParametersOfAnArray", kMixed,
          [](Work& w) {
            const Arguments arguments(w.a);
            CArray<Value, Value&> values;
            Lisp::Parameter(values);
            w.shown = std::to_string(values.GetSize());
          }),
      Row("Parameters", kMixed,
          [](Work& w) {
            const Arguments arguments(w.a);
            Value one;
            Value two;
            Value three;
            Lisp::Parameter(one, two, three);
            w.result = Lisp::List(one, two, three);
          }),
      Row("ReturnOfAnAtom", L"\"text\"", [](Work& w) { w.result = Lisp::Return(w.a); }),
      Row("ReturnOfAList", kMixed, [](Work& w) { w.result = Lisp::Return(w.a); }),
      Row("ReturnOfAListOfOneList", L"((1 2))", [](Work& w) { w.result = Lisp::Return(w.a); }),
      Row("ReturnOfNil", [](Work& w) { w.result = Lisp::Return(w.a); }),
      Row("GetSym", L"\"X\"", [](Work& w) { w.result = Lisp::GetSym(w.a); }),
      Row("GetSymOfAMember",
          [](Work& w) {
            const bool isGood = w.result.GetSym(L"X");
            if (isGood && w.result.NilP()) w.Show(L"wrong: no value, and no failure");
          }),
      Row("PutSym", L"\"X\"", kMixed, [](Work& w) { w.result = Lisp::PutSym(w.a, w.b); }),
      Row("GetVar", L"\"USERS1\"", [](Work& w) { w.result = Lisp::GetVar(w.a); }),
      Row("SetVarOfAText", L"\"USERS1\"", L"\"text\"", [](Work& w) { w.result = Lisp::SetVar(w.a, w.b); }),
      Row("EntGet", Named, [](Work& w) { w.result = Lisp::EntGet(w.a); }),
      Row("EntGetWithApplications", Named, L"(\"TAGS\" \"OTHERS\")",
          [](Work& w) { w.result = Lisp::EntGet(w.a, w.b); }),
      Row("EntLast", [](Work& w) { w.result = Lisp::EntLast(); }),
      Row("EntNext", Named, [](Work& w) { w.result = Lisp::EntNext(w.a); }),
      Row("EntMake", kEntity, [](Work& w) { w.result = Lisp::EntMake(w.a); }),
      Row("EntMod", kEntity, [](Work& w) { w.result = Lisp::EntMod(w.a); }),
      Row("EntSel", L"\"Select: \"", [](Work& w) { w.result = Lisp::EntSel(w.a); }),
      Row("SSGet", L"\"X\"", kEntity,
          [](Work& w) {
            w.result = Lisp::SSGet(w.a, w.b, Lisp::Nil, Lisp::Nil);
            --ThePlatform().openSets;
          }),
      Row("SSGetOfAPolygon", L"\"WP\"", L"((0 0) (1 0) (1 1))", kEntity,
          [](Work& w) {
            w.result = Lisp::SSGet(w.a, w.b, w.c, Lisp::Nil);
            --ThePlatform().openSets;
          }),
      Row("BillOfMaterials", L"(\"TYPE\")", call(plan::BillOfMaterials)),
      Row("LayerTotals", L"(1)", call(plan::LayerTotals)),
      Row("MoveToLayer", L"(((0 . \"LINE\") (8 . \"0\")) \"Seats\")", call(plan::MoveToLayer)),
      Row("ReplaceTexts", L"((\"Kitchen with a door\" \"T30\") (\"Room\" \"T90\"))",
          call(plan::ReplaceTexts)),
      Row("TagEntities", L"(((0 . \"LINE\") (8 . \"0\")) \"TAGS\" (\"checked\" 2026 2.5))",
          call(plan::TagEntities)),
      Row("ReadTags", L"(\"TAGS\")", call(plan::ReadTags)),
      Row("CountKinds", L"((\"bolt\" \"a nut with a long name\" \"bolt\"))",
          call(parts::Functions()[0].call)),
      Row("BoundingBox", L"(((1.0 2.0 3.0) (4.0 5.0 6.0)))", call(parts::Functions()[1].call)),
      Row("Label", L"(\"a prefix of some length\" 12 1.75)", call(parts::Functions()[2].call)),
      Row("Group", L"(8 ((0 . \"LINE\") (8 . \"Walls\")))", call(parts::Functions()[3].call)),
      Row("Nest", L"(((1 2) (3 4)))", call(parts::Functions()[4].call)),
      Row("NextNumber", L"(\"a prefix of some length\")", call(parts::Functions()[5].call)),
      Row("Remember", L"(\"X\" (1 \"two\"))", call(parts::Functions()[6].call)),
  };
}

std::vector<Row> AllRows() {
  std::vector<Row> all;
  for (auto rows : {ValueRows, ConversionRows, TextRows, ListRows, RecordRows, HostRows})
    for (Row& row : rows()) all.push_back(std::move(row));
  return all;
}

// --- The runner ---

struct Figures {
  long operations = 0;
  Blocks failed = {};
};

Figures& TheFigures() {
  static Figures figures;
  return figures;
}

std::string Text(const Value& value) {
  const CString text = value.GetAsDebugString();
  return std::string(text.GetString(), text.GetString() + text.GetLength());
}

// An operand, and what it was before the operation.
struct Subject {
  Subject(char letter, const Value& value)
      : name(letter), operand(value), node(value.New().get()), text(Text(value)) {}
  bool IsAsBefore() const { return operand.New().get() == node && Text(operand) == text; }

  char name;
  const Value& operand;
  const void* node;
  std::string text;
};

// The operation once, on fresh operands.
class Attempt {
 public:
  explicit Attempt(const Row& row)
      : m_row(row),
        m_work{row.a.Make(), row.b.Make(), row.c.Make(), {}, {}},
        m_subjects{{'a', m_work.a}, {'b', m_work.b}, {'c', m_work.c}} {
    Forget();
  }

  void Start() {
    try {
      m_row.operation(m_work);
    } catch (const std::bad_alloc&) {
      m_hasThrown = true;
    }
  }

  void Check() const {
    for (const Subject& subject : m_subjects) {
      const bool changes = m_row.changes.find(subject.name) != std::string::npos;
      if (changes && (!m_hasThrown || m_row.isStepwise))
        Text(subject.operand);
      else
        EXPECT_TRUE(subject.IsAsBefore())
            << subject.name << ": " << subject.text << "\nis " << Text(subject.operand);
    }
    EXPECT_EQ(ThePlatform().openSets, 0) << "selection sets";
    EXPECT_EQ(m_work.shown.find("wrong"), std::string::npos) << m_work.shown;
  }

  bool HasThrown() const { return m_hasThrown; }

  std::string Picture() const {
    std::string picture = ThePlatform().taken + m_work.shown;
    for (const Value* value : {&m_work.a, &m_work.b, &m_work.c, &m_work.result})
      picture += Text(*value) + "\n";
    return picture;
  }

 private:
  const Row& m_row;
  Work m_work;
  Subject m_subjects[3];
  bool m_hasThrown = false;
};

class FailingAllocationsOf : public testing::TestWithParam<Row> {
 protected:
  // What a run without a failure shows.
  std::string Good(Blocks& asked) {
    Attempt run(GetParam());
    {
      const Watch watch;
      run.Start();
      asked = watch.Asked();
    }
    run.Check();
    EXPECT_FALSE(run.HasThrown());
    return run.Picture();
  }

  void Fail(Heap heap, long n, bool andAllBehind) {
    SCOPED_TRACE((heap == Heap::Standard ? "standard " : "platform ") + std::to_string(n) +
                 (andAllBehind ? " and all behind it" : ""));
    Forget();
    const Blocks before = LiveBlocks();
    {
      Attempt run(GetParam());
      bool hasFailed = false;
      {
        const Watch watch(heap, n, andAllBehind);
        run.Start();
        hasFailed = watch.HasFailed();
      }
      EXPECT_TRUE(hasFailed);
      EXPECT_FALSE(run.HasThrown() && heap == Heap::Platform) << "the platform gives null";
      run.Check();
    }
    Forget();
    if (HasFailure()) return;
    const Blocks after = LiveBlocks();
    EXPECT_EQ(after.standard, before.standard) << "blocks of the standard heap are lost";
    EXPECT_EQ(after.platform, before.platform) << "blocks of the platform's heap are lost";
  }

  void FailAll(Heap heap, long count, long& failed) {
    for (long n = 1; n <= count; ++n)
      for (const bool andAllBehind : {false, true}) {
        Fail(heap, n, andAllBehind);
        // A report keeps blocks, which would count as lost from then on.
        if (HasFailure()) return;
      }
    failed += count;
  }
};

TEST_P(FailingAllocationsOf, Operation) {
  Blocks asked = {};
  Good(asked);
  // What is made once and stays was made by the first run.
  const std::string picture = Good(asked);
  EXPECT_TRUE(asked.standard + asked.platform > 0 || !kEachNodeIsABlock) << "nothing can fail";
  ++TheFigures().operations;
  FailAll(Heap::Standard, asked.standard, TheFigures().failed.standard);
  FailAll(Heap::Platform, asked.platform, TheFigures().failed.platform);
  EXPECT_EQ(Good(asked), picture) << "afterwards";
}

INSTANTIATE_TEST_SUITE_P(, FailingAllocationsOf, testing::ValuesIn(AllRows()),
                         [](const auto& row) { return std::string(row.param.name); });

// --- The books of texts grow, and never become smaller: each growth fails once ---

TEST(FailingAllocations, BooksOfTextsThatCannotGrow) {
  const Blocks before = LiveBlocks();
  long failed = 0;
  {
    std::vector<ResBuf> records;
    records.reserve(1'000);
    for (int number = 0; number < 1'000; ++number) {
      {
        ResBuf lost(L"text");
        const Watch watch(Heap::Standard, 1, true);
        lost.MakeDXF(8);
        if (watch.HasFailed()) {
          ++failed;
          EXPECT_EQ(lost.resval.rstring, nullptr) << number;
        }
      }
      records.emplace_back(L"text").MakeDXF(8);
      EXPECT_STREQ(records.back().resval.rstring, L"text");
    }
  }
  EXPECT_GT(failed, 2);
  TheFigures().failed.standard += failed;
  EXPECT_EQ(LiveBlocks().platform, before.platform);
}

// In one line, to be quoted.
class Summary : public testing::Environment {
 public:
  void TearDown() override {
    const Figures& figures = TheFigures();
    std::printf("%ld operations, %ld allocations failed (platform), %ld allocations failed (C++)\n",
                figures.operations, figures.failed.platform, figures.failed.standard);
  }
};

const testing::Environment* const summary = testing::AddGlobalTestEnvironment(new Summary);

}  // namespace
}  // namespace lomlisp::test
