// Chains and values against plain models of the two conversions, and there and back again.
#include <array>
#include <optional>
#include <random>

#include <tests/support/Chains.h>

namespace lomlisp::test {
namespace {

using Node = CLOMAdsLispVar::Element;

// --- A recursive model of the way from a chain to a value ---

class Reader {
 public:
  explicit Reader(const resbuf* chain) : m_record(chain) {}

  // The tree, or nothing when the chain does not convert.
  std::optional<std::string> Read() {
    if (m_record == nullptr) return "nil";
    Node root = std::make_shared<CLOMLispElement>();
    if (!Item(root) || m_record != nullptr) return std::nullopt;
    return Tree(root);
  }

 private:
  bool Item(Node& node) {
    if (m_record == nullptr) return true;
    if (m_record->restype != RTLB) return RunOrAtom(node);
    Step();
    if (!Members(node) || !AtEnd()) return false;
    Step();
    return true;
  }

  bool Members(Node& node) {
    if (m_record == nullptr) {
      node.reset();
      return true;
    }
    if (!AtEnd() && !NextMember(*node)) return false;
    while (m_record != nullptr) {
      if (m_record->restype == RTLE) return true;
      if (m_record->restype == RTDOTE) {
        if (node->children.empty()) return false;
        node->dotted = 1;
        if (node->children.size() == 2) return true;
        Step();
        return NextMember(*node);
      }
      if (!NextMember(*node)) return false;
    }
    return true;
  }

  bool RunOrAtom(Node& node) {
    if (!ResBuf::isBaseType(DxfType(m_record->restype)) && m_record->restype != RTT) return false;
    if (!ResBuf::isDXF(m_record->restype)) {
      Atom(*m_record, node);
      Step();
      return true;
    }
    bool marked = false;
    for (; m_record != nullptr && ResBuf::isDXF(m_record->restype); Step()) {
      if (m_record->restype == 1001 && !marked) return false;
      marked = marked || m_record->restype == -3;
      node->children.push_back(Group());
    }
    return true;
  }

  Node Group() {
    Node group = std::make_shared<CLOMLispElement>();
    if (m_record->restype == -3) {
      group->atom = short{-3};
      return group;
    }
    if (m_record->restype != 1001) {
      group->dotted = 1;
      Node code = std::make_shared<CLOMLispElement>();
      code->atom = m_record->restype;
      group->children.push_back(code);
    }
    resbuf plain = *m_record;
    plain.restype = DxfType(plain.restype);
    Node value = std::make_shared<CLOMLispElement>();
    Atom(plain, value);
    group->children.push_back(value);
    return group;
  }

  void Atom(const resbuf& record, Node& node) {
    if (record.restype == RTNIL || record.restype == RTVOID) {
      node.reset();
    } else if (record.restype == RTPOINT || record.restype == RT3DPOINT) {
      for (int i = 0; i < (record.restype == RTPOINT ? 2 : 3); ++i) {
        Node coordinate = std::make_shared<CLOMLispElement>();
        coordinate->atom = record.resval.rpoint[i];
        node->children.push_back(coordinate);
      }
    } else {
      node->atom = record;
    }
  }

  bool NextMember(CLOMLispElement& list) {
    Node member = std::make_shared<CLOMLispElement>();
    const bool read = Item(member);
    list.children.push_back(member);
    return read;
  }
  bool AtEnd() const {
    return m_record != nullptr && (m_record->restype == RTLE || m_record->restype == RTDOTE);
  }
  void Step() { m_record = m_record->rbnext; }

  const resbuf* m_record;
};

// --- A recursive model of the way from a value to a chain ---

using Words = std::vector<std::string>;

void WriteGroups(const Node& node, Words& words, bool& good);

bool WriteGroup(const Node& node, Words& words) {
  if (CLOMAdsLispVar::isNull(node)) return false;
  if (CLOMAdsLispVar::isPoint(node)) {
    words.push_back("5009");
    return true;
  }
  if (CLOMAdsLispVar::isAtom(node) || node->children.empty()) return false;
  if (!CLOMAdsLispVar::isInt(node->children[0])) return false;
  const auto code = static_cast<short>(node->children[0]->atom);
  if (DxfType(code) == code || node->children.size() < 2) return false;
  const Node& value = node->children[1];
  if (code != -3) {
    const bool good =
        DxfType(code) == RT3DPOINT ? CLOMAdsLispVar::isPoint(value) : CLOMAdsLispVar::isAtom(value);
    if (good) words.push_back(std::to_string(code));
    return good;
  }
  words.push_back("-3");
  if (value == nullptr || value->Kind() != CLOMLispElement::List || value->children.empty()) return false;
  if (!CLOMAdsLispVar::isString(value->children[0])) return false;
  words.push_back("1001");
  bool good = true;
  for (size_t i = 1; i < value->children.size() && good; ++i) WriteGroups(value->children[i], words, good);
  return good;
}

void WriteGroups(const Node& node, Words& words, bool& good) {
  if (node == nullptr || CLOMAdsLispVar::isAtom(node)) return;
  for (const Node& child : node->children) {
    good = WriteGroup(child, words);
    if (!good) return;
  }
}

void Write(const Node& node, Words& words, bool dxf) {
  if (CLOMAdsLispVar::isNull(node)) {
    words.push_back("5019");
    return;
  }
  if (CLOMAdsLispVar::isAtom(node)) {
    words.push_back(std::to_string(node->atom.Type()));
    return;
  }
  if (dxf) {
    Words trial;
    bool good = true;
    WriteGroups(node, trial, good);
    if (good) {
      words.insert(words.end(), trial.begin(), trial.end());
      return;
    }
  }
  words.push_back("5016");
  for (size_t i = 0; i < node->children.size(); ++i) {
    Write(node->children[i], words, dxf && node->dotted == 0);
    if (i == 0 && node->dotted != 0) words.push_back("5018");
  }
  words.push_back("5017");
}

std::string Join(const Words& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

// The types alone: a code does not tell what is in its record.
std::string TypesOnly(const resbuf* chain) {
  Words words;
  for (; chain != nullptr; chain = chain->rbnext) words.push_back(std::to_string(chain->restype));
  return Join(words);
}

// --- Random material; the seeds are fixed, so every run tests the same ---

class Random {
 public:
  explicit Random(unsigned seed) : m_engine(seed) {}
  size_t Below(size_t bound) { return m_engine() % bound; }

  CLOMAdsLispVar Atom() {
    switch (Below(6)) {
      case 0:
        return CLOMAdsLispVar(static_cast<short>(Below(5)));
      case 1:
        return CLOMAdsLispVar(L"text");
      case 2:
        return CLOMAdsLispVar(1.5);
      case 3:
        return CLOMAdsLispVar(70000L);
      case 4:
        return CLOMAdsLispVar(static_cast<__int64>(8));
      default:
        return CLOMAdsLisp::Nil;
    }
  }
  // A list of anything, pairs included.
  CLOMAdsLispVar Value(int depth) {
    if (depth == 0 || Below(3) == 0) return Atom();
    if (Below(4) == 0) return Dotted({Value(depth - 1), Value(depth - 1)});
    CLOMAdsLispVar list = ListOf({});
    for (size_t i = Below(4); i > 0; --i) list.New()->children.push_back(Value(depth - 1).New());
    return list;
  }
  // Mostly groups and lists of them, with now and then a fault.
  CLOMAdsLispVar Groups(int depth) {
    CLOMAdsLispVar list = ListOf({}, Below(8) == 0);
    for (size_t i = Below(4); i > 0; --i) list.New()->children.push_back(Group(depth).New());
    return list;
  }

 private:
  CLOMAdsLispVar Group(int depth) {
    static constexpr std::array<short, 6> kCodes = {0, 8, 62, 40, 1000, 80};
    switch (Below(depth > 0 ? 8 : 5)) {
      case 0:
        return ListOf({short{10}, ListOf({1.0, 2.0, 3.0})});
      case 1:
        return ListOf({1.0, short{2}});
      case 2:
        if (Below(4) == 0) return Atom();
        [[fallthrough]];
      case 3:
      case 4:
        return ListOf({kCodes[Below(kCodes.size())], Atom()}, Below(2) == 0);
      case 5:
        return Groups(depth - 1);
      default: {
        CLOMAdsLispVar application = ListOf({L"APP"}, Below(10) == 0);
        for (size_t i = Below(3); i > 0; --i) application.New()->children.push_back(Groups(depth - 1).New());
        return ListOf({short{-3}, application}, Below(2) == 0);
      }
    }
  }

  std::mt19937 m_engine;
};

class RoundTrip : public HostTest {};

TEST_F(RoundTrip, EveryShortChainConvertsAsTheModelSays) {
  const std::array<resbuf, 8> alphabet = {
      Begin(), End(), Dot(), Short(1), String(L"l", 8), Short(0, -3), String(L"A", 1001), NoValue(5025)};
  constexpr size_t kLength = 5;
  size_t total = 1;
  for (size_t i = 0; i < kLength; ++i) total *= alphabet.size();
  for (size_t number = 0; number < total; ++number) {
    std::vector<resbuf> records;
    for (size_t i = 0, rest = number; i < kLength; ++i, rest /= alphabet.size())
      records.push_back(alphabet[rest % alphabet.size()]);
    Records chain(std::move(records));
    const std::optional<std::string> expected = Reader(chain).Read();
    CLOMAdsLispVar value;
    ASSERT_EQ(value.ADSToLisp(chain), expected.has_value()) << TypesOnly(chain);
    ASSERT_EQ(Tree(value), expected.value_or("nil")) << TypesOnly(chain);
  }
}

TEST_F(RoundTrip, LongerChainsConvertAsTheModelSays) {
  Random random(1);
  const std::array<resbuf, 12> alphabet = {Begin(),
                                           Begin(),
                                           Begin(),
                                           End(),
                                           End(),
                                           Dot(),
                                           Short(1),
                                           NoValue(RTNIL),
                                           Point(1, 2, 3),
                                           String(L"l", 8),
                                           Point(1, 2, 3, 10),
                                           NoValue(RTT)};
  for (unsigned int round = 0; round < Rounds(20'000); ++round) {
    std::vector<resbuf> records{Begin()};
    for (size_t i = random.Below(10); i > 0; --i) records.push_back(alphabet[random.Below(alphabet.size())]);
    size_t open = 0;
    for (const resbuf& record : records) open += record.restype == RTLB ? 1 : 0;
    for (const resbuf& record : records) open -= record.restype == RTLE && open > 0 ? 1 : 0;
    records.resize(records.size() + open, End());
    Records chain(std::move(records));
    const std::optional<std::string> expected = Reader(chain).Read();
    CLOMAdsLispVar value;
    ASSERT_EQ(value.ADSToLisp(chain), expected.has_value()) << TypesOnly(chain);
    ASSERT_EQ(Tree(value), expected.value_or("nil")) << TypesOnly(chain);
  }
}

TEST_F(RoundTrip, ValuesAreWrittenAsTheModelSays) {
  Random random(2);
  for (unsigned int round = 0; round < Rounds(10'000); ++round) {
    const CLOMAdsLispVar value = round % 2 == 0 ? random.Value(5) : random.Groups(4);
    for (const bool dxf : {false, true}) {
      ADSList target;
      CLOMAdsLispVar::LispToADS(value.New(), target, dxf);
      Words expected;
      Write(value.New(), expected, dxf);
      ASSERT_EQ(TypesOnly(target), Join(expected)) << Tree(value) << (dxf ? " as DXF" : "");
    }
  }
}

TEST_F(RoundTrip, PlainValuesComeBackAsTheyWere) {
  Random random(3);
  for (unsigned int round = 0; round < Rounds(10'000); ++round) {
    const CLOMAdsLispVar value = random.Value(5);
    ADSList target;
    CLOMAdsLispVar back;
    ASSERT_TRUE(back.ADSToLisp(value.LispToADS(target))) << Tree(value);
    ASSERT_EQ(Tree(back), Tree(value));
  }
}

TEST_F(RoundTrip, EntitiesComeBackAsTheyWere) {
  Records chain{Name(31, -1), String(L"LINE", 0), String(L"0", 8), Point(1, 2, 3, 10),
                Short(1, 62), Real(2.5, 40),      Long(70000, 90), Int64(1LL << 40, 160)};
  const CLOMAdsLispVar entity(chain);
  ADSList target;
  entity.LispToDXF(target);
  EXPECT_EQ(Types(target), Types(chain));
  EXPECT_EQ(Tree(CLOMAdsLispVar(static_cast<resbuf*>(target))), Tree(entity));
}

TEST_F(RoundTrip, LongerDottedListsAreTheOnesThatDoNotComeBack) {
  const CLOMAdsLispVar value = Dotted({short{1}, short{2}, short{3}});
  ADSList target;
  EXPECT_EQ(Types(value.LispToADS(target)), "5016 5003:1 5018 5003:2 5003:3 5017");
  EXPECT_EQ(CLOMAdsLispVar(static_cast<resbuf*>(target)).New(), nullptr);
}

}  // namespace
}  // namespace lomlisp::test
