// What C++ written for the one purpose takes: the least that the same work can cost.

#include <bench/ByHand.h>
#include <bench/EntityChain.h>
#include <bench/peers/Content.h>
#include <bench/peers/Made.h>
#include <bench/peers/Nodes.h>
#include <bench/peers/Pick.h>
#include <bench/peers/Platform.h>
#include <bench/peers/Records.h>

#include <algorithm>
#include <cwchar>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Node = CLOMLispElement;
using Element = std::shared_ptr<Node>;

Workload ChainToValue(int size) {
  return Making([chain = NewEntityChain(size)] { return NodesByHand(chain); },
                [](const Element& value) {
                  Digest digest;
                  AddNode(*value, digest);
                  return digest;
                });
}

// --- The records of a value ---

// Behind `type`; the value of an atom.
void AppendAtom(const ResBuf& atom, short type, ChainBuilder& chain) {
  resbuf& record = chain.Append(type);
  record.resval = atom.resval;
  if (atom.Type() == RTSTR)
    record.resval.rstring = CopyOfText(atom.resval.rstring, std::wcslen(atom.resval.rstring));
}

void AppendPlain(const Node& node, ChainBuilder& chain) {
  if (node.Kind() == Node::Atom) return AppendAtom(node.atom, node.atom.Type(), chain);
  chain.Append(RTLB);
  for (const Element& member : node.children) {
    if (node.dotted == 1 && member != node.children.front()) chain.Append(RTDOTE);
    AppendPlain(*member, chain);
  }
  chain.Append(RTLE);
}

short CodeOf(const Node& group) { return group.children[0]->atom.resval.rint; }

void AppendGroup(const Node& group, ChainBuilder& chain) {
  const short code = CodeOf(group);
  const Node& value = *group.children[1];
  if (value.Kind() == Node::Atom) return AppendAtom(value.atom, code, chain);
  resbuf& point = chain.Append(code);
  for (size_t i = 0; i < 3; ++i) point.resval.rpoint[i] = value.children[i]->atom.resval.rreal;
}

// (-3 ("APPLICATION" (groups))).
void AppendExtendedData(const Node& data, ChainBuilder& chain) {
  chain.Append(-3);
  const Node& application = *data.children[1];
  AppendAtom(application.children[0]->atom, 1001, chain);
  for (const Element& group : application.children[1]->children) AppendGroup(*group, chain);
}

void AppendDxf(const Node& entity, ChainBuilder& chain) {
  for (const Element& group : entity.children) {
    if (CodeOf(*group) == -3)
      AppendExtendedData(*group, chain);
    else
      AppendGroup(*group, chain);
  }
}

Element EntityToWrite(int groups) {
  const Element entity = NodesByHand(NewEntityChain(groups));
  NestExtendedData(*entity);
  return entity;
}

template <class Append>
Workload ValueToChain(const Element& value, Append append) {
  return Making(
      [value, append] {
        ChainBuilder chain;
        append(*value, chain);
        return chain.Take();
      },
      [](const OwnedChain& chain) { return DigestOfChain(chain.get()); });
}

Workload ValueToPlainChain(int size) { return ValueToChain(NodesByHand(NewEntityChain(size)), AppendPlain); }
Workload ValueToDxfChain(int size) { return ValueToChain(EntityToWrite(size), AppendDxf); }

// --- A call ---

Workload Call(int size) {
  Workload work;
  work.run = [size] {
    for (int i = 0; i < size; ++i) PickByHand();
  };
  work.check = [] { return DigestOfChain(Returned()); };
  return work;
}

// --- Sorting keys in a vector ---

template <class Key, class AddKey>
Workload Sort(std::vector<Key> shuffled, AddKey addKey) {
  auto keys = std::make_shared<std::vector<Key>>();
  Workload work;
  work.prepare = [keys, shuffled = std::move(shuffled)] { *keys = shuffled; };
  work.run = [keys] { std::sort(keys->begin(), keys->end()); };
  work.check = [keys, addKey] {
    Digest digest;
    digest.Open();
    for (const Key& key : *keys) addKey(key, digest);
    digest.Close();
    return digest;
  };
  return work;
}

template <class Key, class Make>
std::vector<Key> ShuffledKeys(int size, Make make) {
  std::vector<Key> keys;
  for (const int number : Shuffled(size)) keys.push_back(make(number));
  return keys;
}

Workload SortIntegers(int size) {
  return Sort(Shuffled(size), [](int key, Digest& digest) { digest.Integer(key); });
}

Workload SortReals(int size) {
  return Sort(ShuffledKeys<double>(size, RealKey), [](double key, Digest& digest) { digest.Real(key); });
}

// The texts lie elsewhere and stay there, as those of the atoms do.
Workload SortTexts(int size) {
  static std::vector<std::wstring> texts;
  texts = ShuffledKeys<std::wstring>(size, TextKey);
  return Sort(std::vector<std::wstring_view>(texts.begin(), texts.end()),
              [](std::wstring_view key, Digest& digest) { digest.Characters(key); });
}

Workload SortPairs(int size) {
  struct KeyOfPair {
    int key;
    int value;
    bool operator<(const KeyOfPair& other) const { return key < other.key; }
  };
  return Sort(ShuffledKeys<KeyOfPair>(size,
                                      [](int number) {
                                        return KeyOfPair{number, 1};
                                      }),
              [](const KeyOfPair& pair, Digest& digest) {
                digest.Open();
                digest.Integer(pair.key);
                digest.Integer(pair.value);
                digest.Close();
              });
}

// --- Formatting ---

Workload Format(int size) {
  return Making(
      [size] {
        wchar_t buffer[200];
        for (int i = 0; i < size; ++i)
          std::swprintf(buffer, std::size(buffer), L"%5d %8.3f %ls %x %e %lc", kFormatInteger, kFormatReal,
                        kFormatText, static_cast<unsigned>(kFormatHexadecimal), kFormatExponent,
                        static_cast<wint_t>(*kFormatCharacter));
        return std::wstring(buffer);
      },
      [](const std::wstring& text) { return DigestOfPrinted(std::wstring_view(text)); });
}

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  using MakeRow = Workload (*)(int size);
  static const std::map<std::string, MakeRow> rows{
      {"chain-to-value", ChainToValue},
      {"value-to-plain", ValueToPlainChain},
      {"value-to-dxf", ValueToDxfChain},
      {"call", Call},
      {"sort-integers", SortIntegers},
      {"sort-reals", SortReals},
      {"sort-texts", SortTexts},
      {"sort-pairs", SortPairs},
      {"format", Format},
  };
  const auto found = rows.find(row);
  if (found == rows.end()) throw std::invalid_argument("no such row: " + row);
  return found->second(size);
}
