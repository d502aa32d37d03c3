#include <embedded/selection/Filter.h>

#include <embedded/Text.h>
#include <embedded/drawing/GroupRecords.h>
#include <embedded/selection/Wildcard.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace lomlisp::embedded {

namespace {

constexpr int kEntityNameCode = -1;
constexpr int kExtendedDataCode = -3;
constexpr int kOperatorCode = -4;
constexpr int kSpaceCode = 67;
constexpr int kLayoutCode = 410;

// What an entity that leaves the group out has.
std::optional<GroupValue> DefaultOf(int code) {
  switch (code) {
    case 6:
      return L"BYLAYER";
    case kLayerCode:
      return L"0";
    case 39:
      return 0.0;
    case 48:
      return 1.0;
    case 60:
    case kSpaceCode:
      return 0LL;
    case 62:
      return 256LL;
    case 210:
      return Point{0.0, 0.0, 1.0};
    case 370:
      return -1LL;
    case kLayoutCode:
      return L"Model";
    default:
      return std::nullopt;
  }
}

enum class Connective { And, Or, Xor, Not };

struct ConnectiveName {
  std::wstring_view name;
  const char* quoted;
  Connective connective;
};

constexpr ConnectiveName kConnectives[] = {{L"AND", "\"<AND\"", Connective::And},
                                           {L"OR", "\"<OR\"", Connective::Or},
                                           {L"XOR", "\"<XOR\"", Connective::Xor},
                                           {L"NOT", "\"<NOT\"", Connective::Not}};

std::optional<Connective> ConnectiveNamed(std::wstring_view name) {
  const auto* found = std::find_if(std::begin(kConnectives), std::end(kConnectives),
                                   [&](const ConnectiveName& one) { return one.name == name; });
  return found != std::end(kConnectives) ? std::optional(found->connective) : std::nullopt;
}

std::string Quoted(Connective connective) { return kConnectives[static_cast<size_t>(connective)].quoted; }

// --- What a filter is made of ---

enum class Relation { Any, Equal, Unequal, Less, LessOrEqual, Greater, GreaterOrEqual, CommonBit, AllBits };

// For x, y and z; the first alone for whatever is no point.
struct Relations {
  std::array<Relation, 3> axes;
  bool isContrary = false;
};

using Applications = std::vector<Wildcard>;
using Wanted = std::variant<long long, double, Point, Wildcard, Reference, Applications>;

struct Test {
  int code = 0;
  Relations relations;
  Wanted wanted;
  bool holdsWithout = false;  // what it says of an entity that leaves the group out at its default
};

enum class Operation { Test, JumpIfFalse, JumpIfTrue, Negate, Save, XorSaved };

struct Step {
  Operation operation;
  size_t argument = 0;  // which test, step or place among the saved truths
};

}  // namespace

// Computes one truth, which is true at first. Jumps go forward.
struct Filter::Program {
  std::vector<Test> tests;
  std::vector<Step> steps;
  size_t savedTruths = 0;
};

namespace {

// --- What a group of an entity says to a test ---

// Values of another kind than the wanted one never match.
struct Comparison {
  const Relations& relations;

  template <typename Wanted, typename Given>
  bool operator()(const Wanted&, const Given&) const {
    return false;
  }
  bool operator()(long long wanted, long long given) const {
    const Relation relation = relations.axes.front();
    if (relation == Relation::CommonBit) return (given & wanted) != 0;
    if (relation == Relation::AllBits) return (given & wanted) == wanted;
    return IsRelated(relation, given, wanted, given == wanted);
  }
  bool operator()(double wanted, double given) const {
    return IsRelated(relations.axes.front(), given, wanted, IsNear(given, wanted));
  }
  bool operator()(const Point& wanted, const Point& given) const {
    const auto holds = [&](size_t axis, double wantedPart, double givenPart) {
      return IsRelated(relations.axes[axis], givenPart, wantedPart, IsNear(givenPart, wantedPart));
    };
    const bool holdsAll =
        holds(0, wanted.x, given.x) && holds(1, wanted.y, given.y) && holds(2, wanted.z, given.z);
    return holdsAll != relations.isContrary;
  }
  // A real under the code of a point is its x, as LISP sees it.
  bool operator()(const Point& wanted, double given) const { return (*this)(wanted, Point{given, 0.0, 0.0}); }
  bool operator()(const Wildcard& wanted, const std::wstring& given) const {
    return IsSame(wanted.Matches(given));
  }
  bool operator()(Reference wanted, Reference given) const { return IsSame(given == wanted); }

 private:
  static bool IsNear(double one, double other) {
    return one == other || std::abs(one - other) <= kFilterFuzz;
  }

  bool IsSame(bool isEqual) const { return IsRelated(relations.axes.front(), 0, 0, isEqual); }

  template <typename Number>
  static bool IsRelated(Relation relation, Number given, Number wanted, bool isEqual) {
    switch (relation) {
      case Relation::Equal:
        return isEqual;
      case Relation::Unequal:
        return !isEqual;
      case Relation::Less:
        return given < wanted && !isEqual;
      case Relation::LessOrEqual:
        return given < wanted || isEqual;
      case Relation::Greater:
        return given > wanted && !isEqual;
      case Relation::GreaterOrEqual:
        return given > wanted || isEqual;
      case Relation::Any:
      case Relation::CommonBit:
      case Relation::AllBits:
        break;
    }
    return true;
  }
};

bool HoldsFor(const Test& test, const GroupValue& value) {
  return std::visit(Comparison{test.relations}, test.wanted, value);
}

bool HasAll(const Object& entity, const std::vector<Wildcard>& applications) {
  return std::all_of(applications.begin(), applications.end(), [&](const Wildcard& pattern) {
    return std::any_of(entity.extended.begin(), entity.extended.end(),
                       [&](const ExtendedData& data) { return pattern.Matches(data.application); });
  });
}

bool Holds(const Test& test, const Object& entity) {
  if (const auto* applications = std::get_if<Applications>(&test.wanted))
    return HasAll(entity, *applications);
  if (test.code == kEntityNameCode) return HoldsFor(test, Reference{entity.handle});
  bool isThere = false;
  for (const Group& group : entity.groups) {
    if (group.code != test.code) continue;
    if (HoldsFor(test, group.value)) return true;
    isThere = true;
  }
  if (isThere || !test.holdsWithout) return false;
  return test.code != kLayoutCode || IntegerOf(entity.groups, kSpaceCode) == 0;
}

}  // namespace

bool Filter::Matches(const Object& entity) const {
  const auto& [tests, steps, savedTruths] = *m_program;
  std::vector<bool> saved(savedTruths);
  bool truth = true;
  for (size_t next = 0; next < steps.size();) {
    const auto [operation, argument] = steps[next++];
    switch (operation) {
      case Operation::Test:
        truth = Holds(tests[argument], entity);
        break;
      case Operation::JumpIfFalse:
        if (!truth) next = argument;
        break;
      case Operation::JumpIfTrue:
        if (truth) next = argument;
        break;
      case Operation::Negate:
        truth = !truth;
        break;
      case Operation::Save:
        saved[argument] = truth;
        break;
      case Operation::XorSaved:
        truth = truth != saved[argument];
        break;
    }
  }
  return truth;
}

// --- From a chain ---

class Filter::Compiler {
 public:
  Compiler(const Chain& chain, const Drawing& drawing, std::string& objection)
      : m_chain(chain), m_drawing(drawing), m_objection(objection) {}

  std::optional<Program> Run() {
    m_open.push_back({Connective::And, 0});
    for (; m_record < m_chain.size(); ++m_record)
      if (!TakeRecord()) return std::nullopt;
    if (!HasNoRelation() || !HasNoneOpen()) return std::nullopt;
    EndJumps(m_open.front());
    return std::move(m_program);
  }

 private:
  struct Open {
    Connective connective;
    size_t record;  // where it was opened
    size_t operands = 0;
    std::vector<size_t> jumps{};  // steps that leave it
  };
  // One to three relations that wait for their group.
  struct Waiting {
    size_t record;
    std::vector<Relation> relations;
  };

  bool FailAt(size_t record, const std::string& why) {
    m_objection = "record " + std::to_string(record + 1) + ": " + why;
    return false;
  }
  bool Fail(const std::string& why) { return FailAt(m_record, why); }

  bool HasNoRelation() {
    return !m_waiting || FailAt(m_waiting->record, "a relation without a group behind it");
  }
  bool HasNoneOpen() {
    const Open& open = m_open.back();
    return m_open.size() == 1 || FailAt(open.record, Quoted(open.connective) + " is not closed");
  }

  bool TakeRecord() {
    std::optional<Group> group = ReadGroup();
    if (!group) return false;
    if (group->code == kOperatorCode) return TakeOperator(Folded(std::get<std::wstring>(group->value)));
    if (group->code == kExtendedDataCode) return HasNoRelation() && TakeApplications();
    if (group->code >= kFirstExtendedCode)
      return Fail("of extended data, only the names of applications behind a -3 can be asked for");
    return TakeTest(std::move(*group));
  }

  std::optional<Group> ReadGroup() {
    std::string why;
    auto group = ReadRecord(m_chain[m_record], m_drawing, why);
    if (!group) Fail(why);
    return group;
  }

  // --- Operators ---

  bool TakeOperator(std::wstring_view text) {
    if (!HasNoRelation()) return false;
    if (const auto opened = text.starts_with(L'<') ? ConnectiveNamed(text.substr(1)) : std::nullopt) {
      m_open.push_back({*opened, m_record});
      return true;
    }
    if (const auto closed =
            text.ends_with(L'>') ? ConnectiveNamed(text.substr(0, text.size() - 1)) : std::nullopt)
      return Close(*closed);
    return TakeRelations(text);
  }

  bool Close(Connective connective) {
    const Open& open = m_open.back();
    if (m_open.size() == 1) return Fail("nothing is open that this closes");
    if (open.connective != connective)
      return Fail("this does not close the " + Quoted(open.connective) + " of record " +
                  std::to_string(open.record + 1));
    const size_t least = connective == Connective::Xor ? 2 : 1;
    if (open.operands < least) return Fail(Quoted(connective) + " has too few operands");
    EndJumps(open);
    m_open.pop_back();
    return EndOperand();
  }

  void EndJumps(const Open& open) {
    for (const size_t jump : open.jumps) m_program.steps[jump].argument = m_program.steps.size();
  }

  // What follows the steps of a test or of a closed operator.
  bool EndOperand() {
    Open& open = m_open.back();
    ++open.operands;
    switch (open.connective) {
      case Connective::And:
        return AddJump(open, Operation::JumpIfFalse);
      case Connective::Or:
        return AddJump(open, Operation::JumpIfTrue);
      case Connective::Xor:
        if (open.operands == 1) return AddStep(Operation::Save, SaveTruth());
        if (open.operands == 2) return AddStep(Operation::XorSaved, --m_savedNow);
        break;
      case Connective::Not:
        if (open.operands == 1) return AddStep(Operation::Negate);
        break;
    }
    return Fail(Quoted(open.connective) + " has too many operands");
  }

  bool AddJump(Open& open, Operation operation) {
    open.jumps.push_back(m_program.steps.size());
    return AddStep(operation);
  }

  bool AddStep(Operation operation, size_t argument = 0) {
    m_program.steps.push_back({operation, argument});
    return true;
  }

  size_t SaveTruth() {
    const size_t place = m_savedNow++;
    m_program.savedTruths = std::max(m_program.savedTruths, m_savedNow);
    return place;
  }

  // --- Relations ---

  bool TakeRelations(std::wstring_view text) {
    m_waiting = Waiting{m_record, {}};
    for (size_t begin = 0; begin <= text.size();) {
      const size_t end = std::min(text.find(L',', begin), text.size());
      const auto relation = RelationNamed(text.substr(begin, end - begin));
      if (!relation) return Fail("the operator \"" + Utf8(text) + "\" is unknown");
      m_waiting->relations.push_back(*relation);
      begin = end + 1;
    }
    return m_waiting->relations.size() <= 3 || Fail("more than three relations");
  }

  static std::optional<Relation> RelationNamed(std::wstring_view name) {
    static constexpr std::pair<std::wstring_view, Relation> kRelations[] = {
        {L"*", Relation::Any},          {L"=", Relation::Equal},    {L"!=", Relation::Unequal},
        {L"/=", Relation::Unequal},     {L"<>", Relation::Unequal}, {L"<", Relation::Less},
        {L"<=", Relation::LessOrEqual}, {L">", Relation::Greater},  {L">=", Relation::GreaterOrEqual},
        {L"&", Relation::CommonBit},    {L"&=", Relation::AllBits}};
    const auto* found = std::find_if(std::begin(kRelations), std::end(kRelations),
                                     [&](const auto& one) { return one.first == name; });
    return found != std::end(kRelations) ? std::optional(found->second) : std::nullopt;
  }

  // Takes the waiting relations for a value.
  std::optional<Relations> RelationsFor(const GroupValue& value) {
    const auto waiting = std::exchange(m_waiting, std::nullopt);
    if (!waiting) return Relations{{Relation::Equal, Relation::Equal, Relation::Equal}};
    const auto& given = waiting->relations;
    if (const char* why = Mismatch(given, value)) {
      FailAt(waiting->record, why);
      return std::nullopt;
    }
    const Relation first = given.front();
    if (given.size() > 1) return Relations{{first, given[1], given.size() > 2 ? given[2] : Relation::Any}};
    if (first == Relation::Unequal && std::holds_alternative<Point>(value))
      return Relations{{Relation::Equal, Relation::Equal, Relation::Equal}, true};
    return Relations{{first, first, first}};
  }

  // Why such a value cannot be compared so, or null.
  static const char* Mismatch(const std::vector<Relation>& relations, const GroupValue& value) {
    const bool isPoint = std::holds_alternative<Point>(value);
    if (relations.size() > 1 && !isPoint) return "several relations for a value that is no point";
    const auto isAny = [&](auto... wanted) {
      return std::any_of(relations.begin(), relations.end(),
                         [&](Relation relation) { return ((relation == wanted) || ...); });
    };
    if (isAny(Relation::CommonBit, Relation::AllBits) && !std::holds_alternative<long long>(value))
      return "bits of a value that is no integer";
    const bool isOrdered =
        isPoint || std::holds_alternative<long long>(value) || std::holds_alternative<double>(value);
    if (!isOrdered &&
        isAny(Relation::Less, Relation::LessOrEqual, Relation::Greater, Relation::GreaterOrEqual))
      return "less or greater than a value that is no number";
    return nullptr;
  }

  // --- Tests ---

  bool TakeTest(Group group) {
    const auto relations = RelationsFor(group.value);
    if (!relations) return false;
    Test test{group.code, *relations, WantedOf(std::move(group.value))};
    const auto absent = DefaultOf(group.code);
    test.holdsWithout = absent && HoldsFor(test, *absent);
    return AddTest(std::move(test));
  }

  static Wanted WantedOf(GroupValue value) {
    return std::visit(
        [](auto& given) -> Wanted {
          if constexpr (std::is_same_v<decltype(given), std::wstring&>)
            return Wildcard(given);
          else
            return given;
        },
        value);
  }

  bool TakeApplications() {
    const size_t begin = m_record;
    Applications applications;
    while (m_record + 1 < m_chain.size() && m_chain[m_record + 1].type == kApplicationCode) {
      ++m_record;
      const auto group = ReadGroup();
      if (!group) return false;
      applications.emplace_back(std::get<std::wstring>(group->value));
    }
    if (applications.empty()) return FailAt(begin, "a -3 without a 1001 behind it");
    return AddTest({kExtendedDataCode, {}, std::move(applications)});
  }

  bool AddTest(Test test) {
    AddStep(Operation::Test, m_program.tests.size());
    m_program.tests.push_back(std::move(test));
    return EndOperand();
  }

  const Chain& m_chain;
  const Drawing& m_drawing;
  std::string& m_objection;
  Program m_program;
  size_t m_record = 0;
  std::vector<Open> m_open;  // the innermost last; first the whole filter, an AND
  std::optional<Waiting> m_waiting;
  size_t m_savedNow = 0;
};

std::optional<Filter> Filter::Compile(const Chain& chain, const Drawing& drawing, std::string& objection) {
  auto program = Compiler(chain, drawing, objection).Run();
  if (!program) return std::nullopt;
  return Filter(std::make_shared<const Program>(*std::move(program)));
}

}  // namespace lomlisp::embedded
