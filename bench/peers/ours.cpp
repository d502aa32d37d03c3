// lomlisp.

#include <bench/EntityChain.h>
#include <bench/peers/Content.h>
#include <bench/peers/HeapBytes.h>
#include <bench/peers/Made.h>
#include <bench/peers/Nodes.h>
#include <bench/peers/Pick.h>
#include <bench/peers/Platform.h>
#include <lomlisp/lomlisp.h>

#include <map>
#include <memory>
#include <vector>

namespace {

using Value = CLOMAdsLispVar;
using Lisp = CLOMAdsLisp;

// --- Content ---

Digest DigestOf(const Value& value) {
  Digest digest;
  if (const auto root = value.New()) AddNode(*root, digest);
  return digest;
}

Digest DigestOfInteger(long long value) {
  Digest digest;
  digest.Integer(value);
  return digest;
}

// --- Values ---

// Of make(0) to make(count - 1).
template <class Make>
Value ListOf(int count, Make make) {
  Value list;
  for (int i = count - 1; i >= 0; --i) Lisp::SetQ(list, Lisp::Cons(make(i), list));
  return list;
}

Value Integer(int number) { return static_cast<long>(number); }
Value Real(int number) { return RealKey(number); }
Value Text(int number) { return TextKey(number); }
Value Pair(int number) { return Lisp::Cons(Integer(number), Integer(1)); }

Value Items(int count) {
  Value items;
  const std::string text = LispText(count);
  Require(items.Read(std::wstring(text.begin(), text.end()).c_str()), "the items can be read");
  return items;
}

Value Entity(int groups) { return Value(NewEntityChain(groups)); }

Value EntityToWrite(int groups) {
  const Value entity = Entity(groups);
  NestExtendedData(*entity.New());
  return entity;
}

// --- Conversions ---

Workload ChainToValue(int size) {
  return Making([chain = NewEntityChain(size)] { return Value(chain); }, DigestOf);
}

template <class Write>
Workload ValueToChain(const Value& value, Write write) {
  return Making(
      [value, write] {
        auto chain = std::make_unique<ADSList>();
        write(value, *chain);
        return chain;
      },
      [](const std::unique_ptr<ADSList>& chain) { return DigestOfChain(*chain); });
}

Workload ValueToPlainChain(int size) {
  return ValueToChain(Entity(size), [](const Value& value, ADSList& chain) { value.LispToADS(chain); });
}

Workload ValueToDxfChain(int size) {
  return ValueToChain(EntityToWrite(size),
                      [](const Value& value, ADSList& chain) { value.LispToDXF(chain); });
}

Workload Call(int size) {
  Workload work;
  work.run = [size] {
    for (int i = 0; i < size; ++i) PickWithLibrary();
  };
  work.check = [] { return DigestOfChain(Returned()); };
  return work;
}

// --- Text ---

Workload Read(int size) {
  const std::string text = LispText(size);
  return Making(
      [text = std::wstring(text.begin(), text.end())] {
        Value value;
        value.Read(text.c_str());
        return value;
      },
      DigestOf);
}

Workload Print(int size) {
  // A piece of text may use half of the room that is left.
  auto buffer = std::make_shared<std::vector<wchar_t>>(static_cast<size_t>(size) * 50 + 10'000);
  Workload work;
  work.run = [value = Items(size), buffer] { value.PrinC(buffer->data(), buffer->size()); };
  work.check = [buffer] { return DigestOfPrinted(std::wstring_view(buffer->data())); };
  return work;
}

Workload PrintDebug(int size) {
  return Making([value = Items(size)] { return value.GetAsDebugString(); },
                [](const CString& text) { return DigestOfPrinted(std::wstring_view(text.GetString())); });
}

Workload Format(int size) {
  auto args = std::make_shared<CArray<Value, Value>>();
  for (const Value& value : {Value(kFormatInteger), Value(kFormatReal), Value(kFormatText),
                             Value(kFormatHexadecimal), Value(kFormatExponent), Value(kFormatCharacter)})
    args->Add(value);
  return Making(
      [args, size] {
        Value result;
        for (int i = 0; i < size; ++i) Value::Format(result, L"%5d %8.3f %s %x %e %c", *args);
        return result;
      },
      [](const Value& text) { return DigestOfPrinted(std::wstring_view(text.GetAtom().resval.rstring)); });
}

// --- Whole values ---

Workload CopyAndEqual(int size) {
  return Making(
      [value = Items(size)] {
        Value copy = Lisp::Head(-1, value);
        Require(Lisp::Equal(value, copy, 0.0), "a copy is equal");
        return copy;
      },
      DigestOf);
}

Workload Release(int size) {
  auto value = std::make_shared<Value>();
  auto digest = std::make_shared<Digest>();
  Workload work;
  work.prepare = [=] {
    *value = Items(size);
    *digest = DigestOf(*value);
  };
  work.run = [=] { value->Clean(); };
  work.check = [=] { return *digest; };
  return work;
}

// --- Lists ---

Workload Cons(int size) {
  return Making([size] { return ListOf(size, Integer); }, DigestOf);
}

Workload Walk(int size) {
  auto list = std::make_shared<Value>();
  auto sum = std::make_shared<long long>();
  Workload work;
  work.prepare = [=] { *list = ListOf(size, Integer); };
  work.run = [=] {
    *sum = 0;
    for (Value& rest = *list; !rest.NilP(); Lisp::SetQ(rest, Lisp::Cdr(rest))) {
      long number = 0;
      Lisp::SetQ(number, Lisp::Car(rest));
      *sum += number;
    }
  };
  work.check = [=] { return DigestOfInteger(*sum); };
  return work;
}

Workload Reverse(int size) {
  auto list = std::make_shared<Value>();
  Workload work;
  work.prepare = [=] { *list = ListOf(size, Integer); };
  work.run = [=] { list->Reverse(false); };
  work.check = [=] { return DigestOf(*list); };
  return work;
}

Workload Append(int size) {
  return Making([a = ListOf(size, Integer), b = ListOf(3, Integer)] { return Lisp::Append(a, b); }, DigestOf);
}

using MakeKey = Value (*)(int);

Workload Assoc(int size, MakeKey makeKey) {
  const Value pairs = ListOf(size, [&](int i) { return Value(Lisp::Cons(makeKey(i), Integer(i))); });
  return Repeated(RepeatsOfSearch(size),
                  Making([pairs, key = makeKey(size - 1)] { return Lisp::Assoc(key, pairs); }, DigestOf));
}

Workload Member(int size, MakeKey makeKey) {
  return Repeated(RepeatsOfSearch(size), Making([list = ListOf(size, makeKey),
                                                 key = makeKey(size - 1)] { return Lisp::Member(key, list); },
                                                DigestOf));
}

Workload Position(int size, MakeKey makeKey) {
  return Repeated(
      RepeatsOfSearch(size),
      Making([list = ListOf(size, makeKey), key = makeKey(size - 1)] { return Lisp::Position(key, list); },
             DigestOfInteger));
}

Workload Sort(int size, MakeKey makeKey) {
  const std::vector<int> numbers = Shuffled(size);
  const Value shuffled = ListOf(size, [&](int i) { return makeKey(numbers[static_cast<size_t>(i)]); });
  auto list = std::make_shared<Value>();
  Workload work;
  // Only the outermost list is new.
  work.prepare = [=] { *list = Lisp::Insert(Lisp::Nil, shuffled, 0); };
  work.run = [=] { list->Sort(); };
  work.check = [=] { return DigestOf(*list); };
  return work;
}

Value ToEdit(int size) {
  return ListOf(size, [](int i) { return Integer(i % kDifferent); });
}

Workload Subst(int size) {
  return Making([list = ToEdit(size), oldValue = Integer(kOld),
                 newValue = Integer(kNew)] { return Lisp::Subst(newValue, oldValue, list); },
                DigestOf);
}

Workload Delete(int size) {
  return Making([list = ToEdit(size), oldValue = Integer(kOld)] { return Lisp::Delete(oldValue, list); },
                DigestOf);
}

Workload AddNth(int size) {
  return Making([list = ToEdit(size), newValue = Integer(kNew),
                 n = size / 2] { return Lisp::AddNth(n, newValue, list); },
                DigestOf);
}

Workload Inherit(int size) {
  const Value own = ListOf(size / 2, [](int i) { return Pair(2 * i); });
  const Value inherited = ListOf(size / 2, [](int i) { return Pair(3 * i); });
  return Making([own, inherited] { return Lisp::Inherit(own, inherited); }, DigestOf);
}

// --- Memory: beside the handle ---

template <class Make>
Workload Memory(int size, Make make) {
  auto values = std::make_shared<std::vector<Value>>(static_cast<size_t>(size));
  Workload work;
  work.heapBytes = HeapBytes;
  work.run = [=] {
    int number = 0;
    for (Value& value : *values) value = make(number++);
  };
  work.check = [=] {
    Digest digest;
    for (Value& value : *values) {
      AddNode(*value.New(), digest);
      value.Clean();
    }
    return digest;
  };
  return work;
}

using MakeRow = std::function<Workload(int size)>;

const std::map<std::string, MakeRow>& Rows() {
  static const std::map<std::string, MakeRow> rows{
      {"chain-to-value", ChainToValue},
      {"value-to-plain", ValueToPlainChain},
      {"value-to-dxf", ValueToDxfChain},
      {"call", Call},
      {"read", Read},
      {"print", Print},
      {"print-debug", PrintDebug},
      {"copy-equal", CopyAndEqual},
      {"release", Release},
      {"cons", Cons},
      {"walk", Walk},
      {"reverse", Reverse},
      {"append", Append},
      {"assoc-text", [](int size) { return Assoc(size, Text); }},
      {"assoc-integer", [](int size) { return Assoc(size, Integer); }},
      {"member-text", [](int size) { return Member(size, Text); }},
      {"member-integer", [](int size) { return Member(size, Integer); }},
      {"position-text", [](int size) { return Position(size, Text); }},
      {"position-integer", [](int size) { return Position(size, Integer); }},
      {"sort-integers", [](int size) { return Sort(size, Integer); }},
      {"sort-reals", [](int size) { return Sort(size, Real); }},
      {"sort-texts", [](int size) { return Sort(size, Text); }},
      {"sort-pairs", [](int size) { return Sort(size, Pair); }},
      {"subst", Subst},
      {"delete", Delete},
      {"addnth", AddNth},
      {"inherit", Inherit},
      {"format", Format},
      {"memory-integer", [](int size) { return Memory(size, Integer); }},
      {"memory-text", [](int size) { return Memory(size, [](int) { return Value(kMemoryText); }); }},
      {"memory-pair", [](int size) { return Memory(size, Pair); }},
      {"memory-entity",
       [](int size) { return Memory(size, [](int) { return Value(const_cast<resbuf*>(TwelveGroups())); }); }},
  };
  return rows;
}

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  const auto found = Rows().find(row);
  if (found == Rows().end()) throw std::invalid_argument("no such row: " + row);
  return found->second(size);
}
