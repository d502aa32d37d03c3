// nlohmann/json, with texts in UTF-8.

#include <bench/EntityChain.h>
#include <bench/peers/Content.h>
#include <bench/peers/HeapBytes.h>
#include <bench/peers/Made.h>
#include <bench/peers/Platform.h>
#include <bench/peers/Records.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Value = nlohmann::json;
using Array = Value::array_t;

// --- Content ---

void Add(const Value& value, Digest& digest) {
  if (value.is_array()) {
    digest.Open();
    for (const Value& member : value) Add(member, digest);
    digest.Close();
  } else if (value.is_string()) {
    digest.Characters(value.get_ref<const std::string&>());
  } else if (value.is_number_float()) {
    digest.Real(value.get<double>());
  } else {
    digest.Integer(value.get<int64_t>());
  }
}

Digest DigestOf(const Value& value) {
  Digest digest;
  Add(value, digest);
  return digest;
}

// --- Values ---

template <class... Members>
Value ArrayOf(Members&&... members) {
  Array array;
  array.reserve(sizeof...(members));
  (array.emplace_back(std::forward<Members>(members)), ...);
  return array;
}

Value Items(int count) { return Value::parse(JsonText(count)); }

template <class Make>
Value ListOf(int count, Make make) {
  Array list;
  list.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) list.push_back(make(i));
  return list;
}

Value Integer(int number) { return number; }
Value Text(int number) { return Narrow(TextKey(number)); }
Value Pair(int number) { return ArrayOf(number, 1); }

// --- Conversions ---

// Texts of samples are ASCII; what UTF-8 takes beside this is left out.
std::string Utf8(const wchar_t* text) { return std::string(text, text + std::wcslen(text)); }

Value AtomOf(const resbuf& record) {
  switch (DxfType(record.restype)) {
    case RTSTR:
      return Utf8(record.resval.rstring);
    case RTREAL:
      return record.resval.rreal;
    case RTENAME:
      return record.resval.rlname[0];
    default:
      return record.resval.rint;
  }
}

Value GroupOf(const resbuf& record) {
  if (record.restype == -3) return -3;
  if (record.restype == 1001) return ArrayOf(AtomOf(record));
  if (DxfType(record.restype) != RT3DPOINT) return ArrayOf(record.restype, AtomOf(record));
  const double* const point = record.resval.rpoint;
  return ArrayOf(record.restype, point[0], point[1], point[2]);
}

Value FromDxf(const resbuf* chain) {
  Array groups;
  for (; chain != nullptr; chain = chain->rbnext) groups.push_back(GroupOf(*chain));
  return groups;
}

wchar_t* PlatformText(const std::string& text) {
  auto* const copy = static_cast<wchar_t*>(acad_malloc((text.size() + 1) * sizeof(wchar_t)));
  std::copy(text.begin(), text.end(), copy);
  copy[text.size()] = 0;
  return copy;
}

void AppendAtom(const Value& value, short code, short type, ChainBuilder& chain) {
  resbuf& record = chain.Append(code);
  switch (type) {
    case RTSTR:
      record.resval.rstring = PlatformText(value.get_ref<const std::string&>());
      break;
    case RTREAL:
      record.resval.rreal = value.get<double>();
      break;
    case RTENAME:
      record.resval.rlname[0] = value.get<int64_t>();
      break;
    default:
      record.resval.rint = value.get<short>();
      break;
  }
}

void AppendPlainGroup(const Value& group, ChainBuilder& chain) {
  if (!group.is_array()) return AppendAtom(group, RTSHORT, RTSHORT, chain);
  chain.Append(RTLB);
  if (group.size() == 1) {
    AppendAtom(group[0], RTSTR, RTSTR, chain);
  } else {
    AppendAtom(group[0], RTSHORT, RTSHORT, chain);
    chain.Append(RTDOTE);
    const short type = DxfType(group[0].get<short>());
    if (type == RT3DPOINT) {
      chain.Append(RTLB);
      for (size_t i = 1; i < 4; ++i) AppendAtom(group[i], RTREAL, RTREAL, chain);
      chain.Append(RTLE);
    } else {
      AppendAtom(group[1], type, type, chain);
    }
  }
  chain.Append(RTLE);
}

OwnedChain ToPlain(const Value& groups) {
  ChainBuilder chain;
  chain.Append(RTLB);
  for (const Value& group : groups) AppendPlainGroup(group, chain);
  chain.Append(RTLE);
  return chain.Take();
}

void AppendDxfGroup(const Value& group, ChainBuilder& chain) {
  if (!group.is_array()) {
    chain.Append(-3);
    return;
  }
  if (group.size() == 1) return AppendAtom(group[0], 1001, RTSTR, chain);
  const short code = group[0].get<short>();
  if (DxfType(code) != RT3DPOINT) return AppendAtom(group[1], code, DxfType(code), chain);
  resbuf& point = chain.Append(code);
  for (size_t i = 0; i < 3; ++i) point.resval.rpoint[i] = group[i + 1].get<double>();
}

OwnedChain ToDxf(const Value& groups) {
  ChainBuilder chain;
  for (const Value& group : groups) AppendDxfGroup(group, chain);
  return chain.Take();
}

Workload ChainToValue(int size) {
  return Making([chain = NewEntityChain(size)] { return FromDxf(chain); }, DigestOf);
}

Workload ValueToChain(int size, OwnedChain (*write)(const Value& groups)) {
  return Making([value = FromDxf(NewEntityChain(size)), write] { return write(value); },
                [](const OwnedChain& chain) { return DigestOfChain(chain.get()); });
}

// --- Text and whole values ---

Workload Read(int size) {
  return Making([text = JsonText(size)] { return Value::parse(text); }, DigestOf);
}

Workload Print(int size) {
  return Making([value = Items(size)] { return value.dump(); },
                [](const std::string& text) { return DigestOfPrinted(std::string_view(text)); });
}

Workload CopyAndEqual(int size) {
  return Making(
      [value = Items(size)] {
        Value copy(value);
        Require(copy == value, "a copy is equal");
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
  work.run = [=] { *value = nullptr; };
  work.check = [=] { return *digest; };
  return work;
}

// --- Search ---

using MakeKey = Value (*)(int number);

Workload Assoc(int size, MakeKey makeKey) {
  const Value pairs = ListOf(size, [makeKey](int i) { return ArrayOf(makeKey(i), i); });
  return Repeated(RepeatsOfSearch(size), Making(
                                             [pairs, key = makeKey(size - 1)] {
                                               const Array& array = pairs.get_ref<const Array&>();
                                               return &*std::find_if(
                                                   array.begin(), array.end(),
                                                   [&](const Value& pair) { return pair[0] == key; });
                                             },
                                             [](const Value* pair) { return DigestOf(*pair); }));
}

template <class DigestOfFound>
Workload Find(int size, MakeKey makeKey, DigestOfFound digestOfFound) {
  return Repeated(
      RepeatsOfSearch(size),
      Making(
          [list = ListOf(size, makeKey), key = makeKey(size - 1)] {
            const Array& array = list.get_ref<const Array&>();
            return std::pair(std::find(array.begin(), array.end(), key), &array);
          },
          [digestOfFound](const auto& found) { return digestOfFound(found.first, *found.second); }));
}

// The rest from the member on.
Workload Member(int size, MakeKey makeKey) {
  return Find(size, makeKey, [](Array::const_iterator found, const Array& array) {
    return DigestOf(Array(found, array.end()));
  });
}

Workload Position(int size, MakeKey makeKey) {
  return Find(size, makeKey, [](Array::const_iterator found, const Array& array) {
    Digest digest;
    digest.Integer(found - array.begin());
    return digest;
  });
}

// --- Memory: beside the slot that holds the value ---

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
      Add(value, digest);
      value = nullptr;
    }
    return digest;
  };
  return work;
}

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  static const std::map<std::string, std::function<Workload(int)>> rows{
      {"chain-to-value", ChainToValue},
      {"value-to-plain", [](int n) { return ValueToChain(n, ToPlain); }},
      {"value-to-dxf", [](int n) { return ValueToChain(n, ToDxf); }},
      {"read", Read},
      {"print", Print},
      {"print-debug", Print},
      {"copy-equal", CopyAndEqual},
      {"release", Release},
      {"assoc-text", [](int n) { return Assoc(n, Text); }},
      {"assoc-integer", [](int n) { return Assoc(n, Integer); }},
      {"member-text", [](int n) { return Member(n, Text); }},
      {"member-integer", [](int n) { return Member(n, Integer); }},
      {"position-text", [](int n) { return Position(n, Text); }},
      {"position-integer", [](int n) { return Position(n, Integer); }},
      {"memory-integer", [](int n) { return Memory(n, Integer); }},
      {"memory-text", [](int n) { return Memory(n, [](int) { return Value(Utf8(kMemoryText)); }); }},
      {"memory-pair", [](int n) { return Memory(n, Pair); }},
      {"memory-entity", [](int n) { return Memory(n, [](int) { return FromDxf(TwelveGroups()); }); }},
  };
  const auto found = rows.find(row);
  if (found == rows.end()) throw std::invalid_argument("no such row: " + row);
  return found->second(size);
}
