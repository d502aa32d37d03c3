#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/PlatformCall.h>
#include <embedded/Reader.h>
#include <embedded/Shape.h>
#include <embedded/Text.h>

#include <algorithm>
#include <exception>
#include <utility>
#include <variant>

namespace lomlisp::embedded {

namespace {

// --- The shapes of values ---

// The number of records of a list of two or three reals that begins there; 0 for all else.
size_t PointLength(const Chain& chain, size_t begin) {
  size_t end = begin + 1;
  while (end < chain.size() && end - begin <= 3 && chain[end].type == RTREAL) ++end;
  const bool isPoint =
      chain[begin].type == RTLB && end - begin >= 3 && end < chain.size() && chain[end].type == RTLE;
  return isPoint ? end - begin + 1 : 0;
}

Record PointRecord(const Chain& chain, size_t begin, size_t length) {
  Record point = Mark(length == 4 ? RTPOINT : RT3DPOINT);
  for (size_t axis = 0; axis < 3; ++axis)
    point.value.rpoint[axis] = axis < length - 2 ? chain[begin + 1 + axis].value.rreal : 0.0;
  return point;
}

Chain WithPointsAsRecords(const Chain& chain) {
  Chain folded;
  folded.reserve(chain.size());
  for (size_t index = 0; index < chain.size();) {
    const size_t length = PointLength(chain, index);
    folded.push_back(length > 0 ? PointRecord(chain, index, length) : chain[index]);
    index += std::max(length, size_t{1});
  }
  return folded;
}

Chain WithPointsAsLists(const Chain& chain) {
  Chain spread;
  spread.reserve(chain.size());
  for (const Record& record : chain) {
    if (record.type != RTPOINT && record.type != RT3DPOINT) {
      spread.push_back(record);
      continue;
    }
    spread.push_back(Mark(RTLB));
    for (size_t axis = 0; axis < (record.type == RTPOINT ? 2u : 3u); ++axis)
      spread.emplace_back(Mark(RTREAL)).value.rreal = record.value.rpoint[axis];
    spread.push_back(Mark(RTLE));
  }
  return spread;
}

Chain WithDotsAtEnd(Chain chain) {
  Nesting nesting(Place::Items, false);
  std::vector<bool> isDropped(chain.size());
  std::vector<bool> isDot(chain.size());
  for (size_t index = 0; index < chain.size(); ++index) {
    const Nesting::Role role = nesting.Take(chain[index].type, index);
    if (role == Nesting::Role::Misplaced) return chain;
    if (role != Nesting::Role::Close || nesting.PairDot() == Nesting::kNone) continue;
    isDropped[nesting.PairDot()] = true;
    isDot[index] = true;
  }
  Chain moved;
  moved.reserve(chain.size());
  for (size_t index = 0; index < chain.size(); ++index)
    if (!isDropped[index]) moved.push_back(isDot[index] ? Mark(RTDOTE) : std::move(chain[index]));
  return moved;
}

// --- The arguments of one call ---

// The host's own chain, which a module can neither free nor lose: what it did to the chain is found
// without following what it may have written there.
class ArgumentChain {
 public:
  ArgumentChain(Chain arguments, Ledger& ledger) : m_copy(std::move(arguments)), m_ledger(ledger) {
    m_first = Materialise(m_copy, ledger, Owner::Host);
    for (resbuf* record = m_first; record != nullptr; record = record->rbnext)
      m_parts.push_back({record, HoldsText(record->restype) ? record->resval.rstring : nullptr});
  }
  ~ArgumentChain() {
    for (const Part& part : m_parts) {
      m_ledger.Free(part.text, Owner::Host);
      m_ledger.Free(part.record, Owner::Host);
    }
  }
  ArgumentChain(const ArgumentChain&) = delete;
  ArgumentChain& operator=(const ArgumentChain&) = delete;

  resbuf* First() const { return m_first; }

  bool IsUnchanged() const {
    const resbuf* next = m_first;
    for (const Part& part : m_parts) {
      if (next != part.record) return false;
      if (part.text != nullptr && next->resval.rstring != part.text) return false;
      if (HoldsText(next->restype) && next->resval.rstring != part.text) return false;
      next = next->rbnext;
    }
    return next == nullptr && Matches(m_first, m_copy);
  }

 private:
  struct Part {
    resbuf* record;
    wchar_t* text;
  };
  Chain m_copy;
  Ledger& m_ledger;
  resbuf* m_first = nullptr;
  std::vector<Part> m_parts;
};

CallResult Failed(std::string error) {
  CallResult result;
  result.value = {Mark(RTNIL)};
  result.status = RTERROR;
  result.errors.push_back(std::move(error));
  return result;
}

// Gives what went wrong, if something did.
std::optional<std::string> Invoke(const Host::Function& function, int& status) {
  status = RTERROR;
  try {
    status = function();
    return std::nullopt;
  } catch (const std::exception& exception) {
    return std::string("an exception: ") + exception.what();
  } catch (...) {
    return "an exception";
  }
}

// --- Calls written in LISP ---

// What an expression does, in order: the innermost calls come first.
struct PushItem {
  Chain item;
};
struct PushSymbol {
  std::wstring name;
};
struct Begin {
  std::wstring function;
};
struct End {};
using Step = std::variant<PushItem, PushSymbol, Begin, End>;

// Reads a whole expression before anything of it is called.
class ExpressionReader {
 public:
  ExpressionReader(const Host& host, std::wstring_view text) : m_host(host), m_reader(text) {}

  std::optional<std::vector<Step>> Read(std::string& error) {
    bool isGood = m_reader.Next() == Reader::Token::Open ? ReadFunction()
                                                         : Fail("a call is expected, as in (NAME 1 2)");
    while (isGood && m_depth > 0) isGood = ReadArgument(m_reader.Next());
    if (isGood && m_reader.Next() != Reader::Token::End) isGood = Fail("something behind the call");
    if (isGood) return std::move(m_steps);
    error = m_reader.Error();
    return std::nullopt;
  }

 private:
  bool Fail(std::string_view reason) {
    m_reader.Fail(reason);
    return false;
  }

  // What follows an opening bracket; () is nil.
  bool ReadFunction() {
    const Reader::Token token = m_reader.Next();
    if (token == Reader::Token::Error) return false;
    if (token == Reader::Token::Close && m_depth > 0) {
      m_steps.push_back(PushItem{{Mark(RTNIL)}});
      return true;
    }
    if (token != Reader::Token::Symbol)
      return Fail("a list that is no call: it must begin with a function's name, or have a ' before it");
    if (!m_host.IsDefined(m_reader.Symbol())) return Fail("no function is named " + Utf8(m_reader.Symbol()));
    m_steps.push_back(Begin{m_reader.Symbol()});
    ++m_depth;
    return true;
  }

  bool ReadArgument(Reader::Token token) {
    switch (token) {
      case Reader::Token::Open:
        return ReadFunction();
      case Reader::Token::Close:
        m_steps.push_back(End{});
        --m_depth;
        return true;
      case Reader::Token::Symbol:
        m_steps.push_back(PushSymbol{m_reader.Symbol()});
        return true;
      case Reader::Token::Dot:
        return Fail("a dot in a call");
      case Reader::Token::End:
        return Fail("a call that does not end");
      default:
        break;
    }
    auto& push = std::get<PushItem>(m_steps.emplace_back(PushItem{}));
    return m_reader.ReadItem(token, push.item);
  }

  const Host& m_host;
  Reader m_reader;
  std::vector<Step> m_steps;
  size_t m_depth = 0;
};

// Carries the steps out; the calls that have begun stand on a stack with their arguments.
class Evaluation {
 public:
  explicit Evaluation(Host& host) : m_host(host) {}

  CallResult Run(const std::vector<Step>& steps) {
    for (const Step& step : steps) std::visit([this](const auto& one) { Do(one); }, step);
    m_result.errors = std::move(m_errors);
    m_result.notices = std::move(m_notices);
    return std::move(m_result);
  }

 private:
  struct Pending {
    std::wstring function;
    Chain arguments;
  };

  void Push(const Chain& item) {
    Chain& arguments = m_pending.back().arguments;
    arguments.insert(arguments.end(), item.begin(), item.end());
  }

  void Do(const PushItem& step) { Push(step.item); }

  void Do(const PushSymbol& step) {
    const Chain* value = m_host.symbols.Find(step.name);
    const bool hasItem = value != nullptr && !value->empty();
    Push(hasItem ? *value : Chain{Mark(RTNIL)});
  }

  void Do(const Begin& step) { m_pending.push_back({step.function, {}}); }

  void Do(const End&) {
    const Pending call = std::move(m_pending.back());
    m_pending.pop_back();
    m_result = m_host.Call(call.function, call.arguments);
    const std::string inner = m_pending.empty() ? std::string() : Utf8(call.function) + ": ";
    for (const std::string& error : m_result.errors) m_errors.push_back(inner + error);
    for (const std::string& notice : m_result.notices) m_notices.push_back(inner + notice);
    if (!m_pending.empty()) Push(m_result.value);
  }

  Host& m_host;
  std::vector<Pending> m_pending;
  CallResult m_result;
  std::vector<std::string> m_errors;
  std::vector<std::string> m_notices;
};

}  // namespace

Chain Shaped(Chain value, const Switches& switches) {
  value = WithNilForEmpty(WithDotsBeforeLast(std::move(value)));
  value = switches.pointsAsRecords ? WithPointsAsRecords(value) : WithPointsAsLists(value);
  return switches.dotted == Switches::Dotted::AtEnd ? WithDotsAtEnd(std::move(value)) : value;
}

void Host::Define(std::wstring_view name, Function function, const void* owner) {
  const std::wstring folded = Folded(name);
  m_functions.insert_or_assign(folded, Definition{std::move(function), owner});
  if (m_definitionObserver) m_definitionObserver(folded, true);
}

bool Host::Undefine(std::wstring_view name, const void* owner) {
  const auto found = m_functions.find(Folded(name));
  if (found == m_functions.end() || found->second.owner != owner) return false;
  const std::wstring folded = found->first;
  m_functions.erase(found);
  if (m_definitionObserver) m_definitionObserver(folded, false);
  return true;
}

void Host::UndefineAll(const void* owner) {
  for (const std::wstring& name : FunctionNames()) Undefine(name, owner);
}

void Host::ObserveDefinitions(std::function<void(const std::wstring& name, bool isDefined)> observer) {
  m_definitionObserver = std::move(observer);
}

bool Host::IsDefined(std::wstring_view name) const { return m_functions.contains(Folded(name)); }

std::vector<std::wstring> Host::FunctionNames() const {
  std::vector<std::wstring> names;
  for (const auto& [name, definition] : m_functions) names.push_back(name);
  return names;
}

CallResult Host::Call(std::wstring_view name, const Chain& arguments) {
  const std::wstring folded = Folded(name);
  const auto found = m_functions.find(folded);
  if (found == m_functions.end()) return Failed("no function is named " + Utf8(folded));
  // A copy: the function may define itself anew.
  const Function function = found->second.function;
  return Run(Utf8(folded), function, arguments);
}

CallResult Host::Call(std::wstring_view name, std::wstring_view arguments) {
  std::string error;
  const auto chain = FromText(arguments, error);
  return chain ? Call(name, *chain) : Failed(std::move(error));
}

CallResult Host::Evaluate(std::wstring_view expression) {
  std::string error;
  const auto steps = ExpressionReader(*this, expression).Read(error);
  return steps ? Evaluation(*this).Run(*steps) : Failed(std::move(error));
}

// Misuse of the heap is the fault of the function during which it came to light, at the latest when its
// arguments were freed.
CallResult Host::Run(const std::string& name, const Function& function, Chain arguments) {
  const size_t known = ledger.FaultCount();
  // Before the arguments, so that their blocks bear the name of whoever keeps them.
  ledger.SetFunction(name);
  CallResult result = RunInFrame(name, function, std::move(arguments));
  ledger.SetFunction(m_frames.empty() ? std::string() : m_frames.back()->name);
  for (std::string& fault : ledger.TakeFaults(known)) result.errors.push_back(std::move(fault));
  return result;
}

CallResult Host::RunInFrame(const std::string& name, const Function& function, Chain arguments) {
  const ArgumentChain chain(Shaped(std::move(arguments), switches), ledger);
  Frame frame;
  frame.name = name;
  frame.arguments = chain.First();
  m_frames.push_back(&frame);
  CallResult result;
  auto error = Invoke(function, result.status);
  m_frames.pop_back();

  result.errors = std::move(frame.errors);
  if (error) result.errors.push_back(std::move(*error));
  if (!chain.IsUnchanged()) result.errors.emplace_back("the argument chain was changed");
  result.kind = frame.kind;
  result.value = frame.result ? std::move(*frame.result) : Chain{Mark(RTNIL)};
  if (result.status == RTNORM && result.kind == CallResult::Kind::Nothing)
    result.notices.emplace_back("no result");
  return result;
}

}  // namespace lomlisp::embedded

using namespace lomlisp::embedded;

namespace {

int SetResult(CallResult::Kind kind, Chain value) {
  Host::Frame* frame = Host::Instance().CurrentFrame();
  if (frame == nullptr) return RTERROR;
  if (frame->kind != CallResult::Kind::Nothing) {
    frame->errors.emplace_back("a second result");
    return RTERROR;
  }
  for (Record& record : value)
    if (record.type == RTVOID) record.type = RTNIL;
  frame->kind = kind;
  frame->result = WithNilForEmpty(std::move(value));
  return RTNORM;
}

Chain ListOf(const resbuf* chain) {
  Chain items = Capture(chain);
  if (items.empty()) return {Mark(RTNIL)};
  if (Host::Instance().switches.foldSingleList) {
    Chain list = WithDotsBeforeLast(items);
    if (IsOneProperList(list)) return list;
  }
  return Bracketed(std::move(items));
}

int ReturnRecord(PlatformCall& call, const resbuf* record, CallResult::Kind kind = CallResult::Kind::Value) {
  call.Takes(record);
  return call.Run([&] { return SetResult(kind, Capture(record)); });
}

int ReturnMark(const char* function, short type, CallResult::Kind kind = CallResult::Kind::Value) {
  PlatformCall call(function);
  const resbuf record{nullptr, type, {}};
  return ReturnRecord(call, &record, kind);
}

}  // namespace

resbuf* acedGetArgs() {
  return PlatformCall("acedGetArgs").Run([] {
    const Host::Frame* frame = Host::Instance().CurrentFrame();
    return frame != nullptr ? frame->arguments : nullptr;
  });
}

int acedRetVal(const resbuf* record) {
  PlatformCall call("acedRetVal");
  if (record == nullptr)
    call.Object("no record");
  else if (record->rbnext != nullptr)
    call.Object("more than one record");
  return ReturnRecord(call, record);
}

int acedRetList(const resbuf* chain) {
  PlatformCall call("acedRetList");
  call.Takes(chain, Place::InsideOfList);
  return call.Run([&] { return SetResult(CallResult::Kind::List, ListOf(chain)); });
}

int acedRetVoid() { return ReturnMark("acedRetVoid", RTVOID, CallResult::Kind::Void); }

int acedRetNil() { return ReturnMark("acedRetNil", RTNIL); }

int acedRetT() { return ReturnMark("acedRetT", RTT); }

int acedRetInt(int value) {
  PlatformCall call("acedRetInt");
  resbuf record{nullptr, RTLONG, {}};
  record.resval.rlong = value;
  if (std::in_range<short>(value)) {
    record.restype = RTSHORT;
    record.resval.rint = static_cast<short>(value);
  }
  return ReturnRecord(call, &record);
}

int acedRetReal(ads_real value) {
  PlatformCall call("acedRetReal");
  const resbuf record{nullptr, RTREAL, {.rreal = value}};
  return ReturnRecord(call, &record);
}

int acedRetStr(const ACHAR* text) {
  PlatformCall call("acedRetStr");
  if (text == nullptr) call.Object("no text");
  // A record cannot hold a text that may not be changed; this one is only read.
  const resbuf record{nullptr, RTSTR, {.rstring = const_cast<ACHAR*>(text)}};
  return ReturnRecord(call, &record);
}

int acedRetPoint(const ads_point point) {
  PlatformCall call("acedRetPoint");
  if (point == nullptr) {
    call.Object("no point");
    return ReturnRecord(call, nullptr);
  }
  const resbuf record{nullptr, RT3DPOINT, {.rpoint = {point[0], point[1], point[2]}}};
  return ReturnRecord(call, &record);
}

int acedRetName(const ads_name name, int type) {
  PlatformCall call("acedRetName");
  if (name == nullptr || (type != RTENAME && type != RTPICKS)) {
    call.Object(name == nullptr ? "no name" : "a type that is neither RTENAME nor RTPICKS");
    return ReturnRecord(call, nullptr);
  }
  const resbuf record{nullptr, static_cast<short>(type), {.rlname = {name[0], name[1]}}};
  return ReturnRecord(call, &record);
}
