// The rows of a LISP whose lists are conses, through its C interface: the same loops for each LISP.
//
// `Lisp` has the type Value and, as static functions that are inlined, what follows from their use here.
// Values that outlive a function are in its `roots`, where its garbage collector finds them.
#pragma once

#include <bench/EntityChain.h>
#include <bench/peers/Content.h>
#include <bench/peers/Made.h>
#include <bench/peers/Platform.h>
#include <bench/peers/Records.h>

#include <map>
#include <string>
#include <utility>

template <class Lisp>
class Conses {
 public:
  using Value = typename Lisp::Value;

  static Workload Make(const std::string& row, int size) {
    const RowsByName rows = Rows();
    const auto found = rows.find(row);
    if (found == rows.end()) throw std::invalid_argument("no such row: " + row);
    return found->second(size);
  }

 private:
  // --- Where values are kept ---

  static Value& Input() { return Lisp::roots[0]; }
  static Value& Second() { return Lisp::roots[1]; }
  static Value& Sought() { return Lisp::roots[2]; }
  static Value& Result() { return Lisp::roots[3]; }

  // --- Content ---

  static void Add(Value value, Digest& digest) {
    if (!Lisp::IsNil(value) && !Lisp::IsCons(value)) return Lisp::AddAtom(value, digest);
    digest.Open();
    for (; Lisp::IsCons(value); value = Lisp::Cdr(value)) Add(Lisp::Car(value), digest);
    if (!Lisp::IsNil(value)) Lisp::AddAtom(value, digest);
    digest.Close();
  }

  static Digest DigestOfResult() {
    Digest digest;
    Add(Result(), digest);
    Result() = Lisp::Nil();
    return digest;
  }

  template <class Compute>
  static Workload Computing(Compute compute) {
    Workload work;
    work.run = [compute] { Result() = compute(); };
    work.check = DigestOfResult;
    return work;
  }

  // --- Values ---

  // A list that grows at its end.
  struct List {
    Value first = Lisp::Nil();
    Value last = Lisp::Nil();
    void Append(Value member) {
      const Value cell = Lisp::Cons(member, Lisp::Nil());
      if (Lisp::IsNil(first))
        first = cell;
      else
        Lisp::SetCdr(last, cell);
      last = cell;
    }
  };

  template <class Make>
  static Value ListOf(int count, Make make) {
    Value list = Lisp::Nil();
    for (int i = count - 1; i >= 0; --i) list = Lisp::Cons(make(i), list);
    return list;
  }

  static Value Integer(int number) { return Lisp::Integer(number); }
  static Value Real(int number) { return Lisp::Real(RealKey(number)); }
  static Value Text(std::wstring_view text) { return Lisp::Text(text.data(), text.size()); }
  static Value Key(int number) { return Text(TextKey(number)); }
  static Value Pair(int number) { return Lisp::Cons(Integer(number), Integer(1)); }
  static Value ItemValue(int position) {
    const Item item = ItemAt(position);
    return Lisp::Cons(Integer(item.number),
                      Lisp::Cons(Lisp::Real(item.real), Lisp::Cons(Text(item.text), Lisp::Nil())));
  }

  // --- From chains ---

  static Value AtomOf(const resbuf& record) {
    switch (DxfType(record.restype)) {
      case RTSTR:
        return Text(record.resval.rstring);
      case RTREAL:
        return Lisp::Real(record.resval.rreal);
      case RTENAME:
        return Lisp::Integer(static_cast<long>(record.resval.rlname[0]));
      case RT3DPOINT: {
        const double* const point = record.resval.rpoint;
        return Lisp::Cons(Lisp::Real(point[0]),
                          Lisp::Cons(Lisp::Real(point[1]), Lisp::Cons(Lisp::Real(point[2]), Lisp::Nil())));
      }
      default:
        return Lisp::Integer(record.resval.rint);
    }
  }

  static Value GroupOf(const resbuf& record) {
    if (record.restype == -3) return Lisp::Integer(-3);
    if (record.restype == 1001) return Lisp::Cons(AtomOf(record), Lisp::Nil());
    return Lisp::Cons(Lisp::Integer(record.restype), AtomOf(record));
  }

  static Value FromDxf(const resbuf* chain) {
    List groups;
    for (; chain != nullptr; chain = chain->rbnext) groups.Append(GroupOf(*chain));
    return groups.first;
  }

  // The items from `record` on, to the end of the chain or of the list; `record` is then behind that.
  static Value FromItems(const resbuf*& record) {
    List items;
    while (record != nullptr) {
      const resbuf& item = *record;
      record = record->rbnext;
      if (item.restype == RTLE) break;
      items.Append(item.restype == RTLB ? FromItems(record) : AtomOf(item));
    }
    return items.first;
  }

  // --- To chains ---

  static void AppendAtom(Value value, short code, short type, ChainBuilder& chain) {
    resbuf& record = chain.Append(code);
    switch (type) {
      case RTSTR:
        record.resval.rstring = Lisp::PlatformText(value);
        break;
      case RTREAL:
        record.resval.rreal = Lisp::ToReal(value);
        break;
      case RTENAME:
        record.resval.rlname[0] = Lisp::ToInteger(value);
        break;
      default:
        record.resval.rint = static_cast<short>(Lisp::ToInteger(value));
        break;
    }
  }

  static void AppendPlainReals(Value reals, ChainBuilder& chain) {
    chain.Append(RTLB);
    for (; Lisp::IsCons(reals); reals = Lisp::Cdr(reals)) AppendAtom(Lisp::Car(reals), RTREAL, RTREAL, chain);
    chain.Append(RTLE);
  }

  // (code . value) and (code x y z); ("APPLICATION") and -3 stand alone.
  static void AppendPlainGroup(Value group, ChainBuilder& chain) {
    if (!Lisp::IsCons(group)) return AppendAtom(group, RTSHORT, RTSHORT, chain);
    chain.Append(RTLB);
    if (Lisp::IsNil(Lisp::Cdr(group))) {
      AppendAtom(Lisp::Car(group), RTSTR, RTSTR, chain);
    } else {
      AppendAtom(Lisp::Car(group), RTSHORT, RTSHORT, chain);
      chain.Append(RTDOTE);
      const short type = DxfType(static_cast<short>(Lisp::ToInteger(Lisp::Car(group))));
      if (type == RT3DPOINT)
        AppendPlainReals(Lisp::Cdr(group), chain);
      else
        AppendAtom(Lisp::Cdr(group), type, type, chain);
    }
    chain.Append(RTLE);
  }

  static OwnedChain ToPlain(Value groups) {
    ChainBuilder chain;
    chain.Append(RTLB);
    for (; Lisp::IsCons(groups); groups = Lisp::Cdr(groups)) AppendPlainGroup(Lisp::Car(groups), chain);
    chain.Append(RTLE);
    return chain.Take();
  }

  static void AppendDxfGroup(Value group, ChainBuilder& chain) {
    if (!Lisp::IsCons(group)) {
      chain.Append(-3);
      return;
    }
    if (Lisp::IsNil(Lisp::Cdr(group))) return AppendAtom(Lisp::Car(group), 1001, RTSTR, chain);
    const auto code = static_cast<short>(Lisp::ToInteger(Lisp::Car(group)));
    if (DxfType(code) != RT3DPOINT) return AppendAtom(Lisp::Cdr(group), code, DxfType(code), chain);
    Value reals = Lisp::Cdr(group);
    for (double& coordinate : chain.Append(code).resval.rpoint) {
      coordinate = Lisp::ToReal(Lisp::Car(reals));
      reals = Lisp::Cdr(reals);
    }
  }

  static OwnedChain ToDxf(Value groups) {
    ChainBuilder chain;
    for (; Lisp::IsCons(groups); groups = Lisp::Cdr(groups)) AppendDxfGroup(Lisp::Car(groups), chain);
    return chain.Take();
  }

  // --- Rows ---

  static Workload ChainToValue(int size) {
    return Computing([chain = NewEntityChain(size)] { return FromDxf(chain); });
  }

  static Workload ValueToChain(int size, OwnedChain (*write)(Value groups)) {
    Input() = FromDxf(NewEntityChain(size));
    return Making([write] { return write(Input()); },
                  [](const OwnedChain& chain) { return DigestOfChain(chain.get()); });
  }

  // The function's result is a list of an integer, a text and an integer.
  static void ReturnPicked(Value result) {
    ChainBuilder chain;
    AppendAtom(Lisp::Car(result), RTSHORT, RTSHORT, chain);
    AppendAtom(Lisp::Car(Lisp::Cdr(result)), RTSTR, RTSTR, chain);
    AppendAtom(Lisp::Car(Lisp::Cdr(Lisp::Cdr(result))), RTSHORT, RTSHORT, chain);
    acedRetList(chain.Take().get());
  }

  static Workload Call(int size) {
    Workload work;
    work.run = [size] {
      for (int i = 0; i < size; ++i) {
        const resbuf* arguments = acedGetArgs();
        ReturnPicked(Lisp::CallPick(FromItems(arguments)));
      }
    };
    work.check = [] { return DigestOfChain(Returned()); };
    return work;
  }

  static Workload Read(int size) {
    Input() = Lisp::TextToRead(LispText(size));
    return Computing([] { return Lisp::Read(Input()); });
  }

  static Workload Print(int size) {
    Input() = ListOf(size, ItemValue);
    Workload work;
    work.run = [] { Result() = Lisp::Print(Input()); };
    work.check = [] { return DigestOfPrinted(Lisp::Characters(std::exchange(Result(), Lisp::Nil()))); };
    return work;
  }

  // Only where the LISP has it.
  static Workload Format(int size) requires requires { Lisp::Format(); }
  {
    Workload work;
    work.run = [size] {
      for (int i = 0; i < size; ++i) Result() = Lisp::Format();
    };
    work.check = [] { return DigestOfPrinted(Lisp::Characters(std::exchange(Result(), Lisp::Nil()))); };
    return work;
  }

  static Workload CopyAndEqual(int size) {
    Input() = ListOf(size, ItemValue);
    return Computing([] {
      const Value copy = Lisp::DeepCopy(Input());
      Require(Lisp::Equal(Input(), copy), "a copy is equal");
      return copy;
    });
  }

  static Workload Cons(int size) {
    return Computing([size] { return ListOf(size, Integer); });
  }

  static Workload Walk(int size) {
    Input() = ListOf(size, Integer);
    auto sum = std::make_shared<long long>();
    Workload work;
    work.run = [sum] {
      *sum = 0;
      for (Value rest = Input(); !Lisp::IsNil(rest); rest = Lisp::Cdr(rest))
        *sum += Lisp::ToInteger(Lisp::Car(rest));
    };
    work.check = [sum] {
      Digest digest;
      digest.Integer(*sum);
      return digest;
    };
    return work;
  }

  static Workload Reverse(int size) {
    Workload work = Computing([] { return Lisp::ReverseInPlace(Input()); });
    work.prepare = [size] { Input() = ListOf(size, Integer); };
    return work;
  }

  static Workload Append(int size) {
    Input() = ListOf(size, Integer);
    Second() = ListOf(3, Integer);
    return Computing([] { return Lisp::Append(Input(), Second()); });
  }

  using MakeKey = Value (*)(int number);

  template <class Compute>
  static Workload Searching(int size, MakeKey makeKey, Compute compute) {
    Input() = ListOf(size, makeKey);
    Sought() = makeKey(size - 1);
    return Repeated(RepeatsOfSearch(size), Computing(compute));
  }

  static Workload Assoc(int size, MakeKey makeKey) {
    Workload work = Searching(size, makeKey, [] { return Lisp::Assoc(Sought(), Input()); });
    Input() = ListOf(size, [makeKey](int i) { return Lisp::Cons(makeKey(i), Integer(i)); });
    return work;
  }

  static Workload Member(int size, MakeKey makeKey) {
    return Searching(size, makeKey, [] { return Lisp::Member(Sought(), Input()); });
  }

  static Workload Position(int size, MakeKey makeKey) {
    return Searching(size, makeKey, [] { return Lisp::Position(Sought(), Input()); });
  }

  template <class Make, class SortList>
  static Workload Sort(int size, Make make, SortList sort) {
    const std::vector<int> numbers = Shuffled(size);
    Input() = ListOf(size, [&](int i) { return make(numbers[static_cast<size_t>(i)]); });
    Workload work = Computing([sort] { return sort(Second()); });
    work.prepare = [] { Second() = Lisp::CopyOfList(Input()); };
    return work;
  }

  static void MakeListToEdit(int size) {
    Input() = ListOf(size, [](int i) { return Integer(i % kDifferent); });
  }

  static Workload Subst(int size) {
    MakeListToEdit(size);
    return Computing([] { return Lisp::Substitute(Integer(kNew), Integer(kOld), Input()); });
  }

  static Workload Delete(int size) {
    MakeListToEdit(size);
    return Computing([] { return Lisp::Remove(Integer(kOld), Input()); });
  }

  static Workload AddNth(int size) {
    MakeListToEdit(size);
    return Computing([n = size / 2] {
      const Value copy = Lisp::CopyOfList(Input());
      Value before = copy;
      for (int i = 1; i < n; ++i) before = Lisp::Cdr(before);
      Lisp::SetCdr(before, Lisp::Cons(Integer(kNew), Lisp::Cdr(before)));
      return copy;
    });
  }

  static long KeyOf(Value entries) { return Lisp::ToInteger(Lisp::Car(Lisp::Car(entries))); }

  // The entries of both in ascending order; of two with the same key the own one.
  static Value Merged(Value own, Value inherited) {
    List merged;
    while (Lisp::IsCons(own) && Lisp::IsCons(inherited)) {
      const long ownKey = KeyOf(own);
      const long inheritedKey = KeyOf(inherited);
      Value& source = ownKey <= inheritedKey ? own : inherited;
      merged.Append(Lisp::Car(source));
      if (ownKey == inheritedKey) inherited = Lisp::Cdr(inherited);
      source = Lisp::Cdr(source);
    }
    for (const Value rest : {own, inherited})
      for (Value entry = rest; Lisp::IsCons(entry); entry = Lisp::Cdr(entry)) merged.Append(Lisp::Car(entry));
    return merged.first;
  }

  static Workload Inherit(int size) {
    Input() = ListOf(size / 2, [](int i) { return Pair(2 * i); });
    Second() = ListOf(size / 2, [](int i) { return Pair(3 * i); });
    return Computing([] { return Merged(Input(), Second()); });
  }

  // Beside the slot that holds the value.
  template <class Make>
  static Workload Memory(int size, Make make) {
    Workload work;
    work.prepare = [size] { Input() = Lisp::NewVector(size); };
    work.heapBytes = Lisp::HeapBytes;
    work.run = [size, make] {
      for (int i = 0; i < size; ++i) Lisp::SetSlot(Input(), i, make(i));
    };
    work.check = [size] {
      Digest digest;
      for (int i = 0; i < size; ++i) Add(Lisp::Slot(Input(), i), digest);
      return digest;
    };
    return work;
  }

  using RowsByName = std::map<std::string, std::function<Workload(int)>>;

  static RowsByName Rows() {
    RowsByName rows{
        {"chain-to-value", ChainToValue},
        {"value-to-plain", [](int size) { return ValueToChain(size, ToPlain); }},
        {"value-to-dxf", [](int size) { return ValueToChain(size, ToDxf); }},
        {"call", Call},
        {"read", Read},
        {"print", Print},
        {"print-debug", Print},
        {"copy-equal", CopyAndEqual},
        {"cons", Cons},
        {"walk", Walk},
        {"reverse", Reverse},
        {"append", Append},
        {"assoc-text", [](int size) { return Assoc(size, Key); }},
        {"assoc-integer", [](int size) { return Assoc(size, Integer); }},
        {"member-text", [](int size) { return Member(size, Key); }},
        {"member-integer", [](int size) { return Member(size, Integer); }},
        {"position-text", [](int size) { return Position(size, Key); }},
        {"position-integer", [](int size) { return Position(size, Integer); }},
        {"sort-integers", [](int size) { return Sort(size, Integer, Lisp::SortNumbers); }},
        {"sort-reals", [](int size) { return Sort(size, Real, Lisp::SortNumbers); }},
        {"sort-texts", [](int size) { return Sort(size, Key, Lisp::SortTexts); }},
        {"sort-pairs", [](int size) { return Sort(size, Pair, Lisp::SortPairs); }},
        {"subst", Subst},
        {"delete", Delete},
        {"addnth", AddNth},
        {"inherit", Inherit},
        {"memory-integer", [](int size) { return Memory(size, Integer); }},
        {"memory-text", [](int size) { return Memory(size, [](int) { return Text(kMemoryText); }); }},
        {"memory-pair", [](int size) { return Memory(size, Pair); }},
        {"memory-entity", [](int size) { return Memory(size, [](int) { return FromDxf(TwelveGroups()); }); }},
    };
    if constexpr (requires { Lisp::Format(); }) rows["format"] = Format;
    return rows;
  }
};
