// Each call of each host function, and of each function of the examples, is refused in every way, alone and
// with all calls behind it; or is said to be done without anything having been done.

#include <tests/failures/SampleHost.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::CallResult;
using embedded::LoggedCall;
using Lisp = CLOMAdsLisp;

// RTNORM for a call that does nothing: what it should have given is as it was.
constexpr int kAnswers[] = {RTERROR, RTNONE, RTCAN, RTREJ, RTFAIL, RTKWORD, 0, RTNORM + 1, RTNORM};

struct Figures {
  size_t functions = 0;
  size_t steps = 0;
  size_t answers = 0;
};

Figures& TheFigures() {
  static Figures figures;
  return figures;
}

// What a run must show, if anything is known of it: the text and what was printed.
struct Refusal {
  std::string result;
  std::string printed;
};

class FailingPlatform : public SampleHost {
 protected:
  using Run = std::function<std::string()>;
  // Of the answers so far; nothing when anything goes.
  using Expected = std::function<std::optional<Refusal>(const std::vector<LoggedCall>& calls)>;

  // Counts the calls of a good run, and then lets each of them fail.
  void FailEachCall(const Run& run, const Expected& expected) {
    const Refusal good = Shown(run);
    const size_t steps = host.log.Calls().size();
    EXPECT_GT(steps, 0u);
    for (size_t step = 1; step <= steps; ++step)
      for (const int answer : kAnswers)
        for (const bool andAllBehind : {false, true}) {
          if (andAllBehind && answer != RTERROR && answer != RTNORM) continue;
          SCOPED_TRACE(std::to_string(answer) + " to call " + std::to_string(step) +
                       (andAllBehind ? " and all behind it" : ""));
          Fail(run, step, answer, andAllBehind, expected);
          if (HasFailure()) return;
        }
    EXPECT_EQ(Shown(run).result, good.result) << "afterwards";
    ++TheFigures().functions;
    TheFigures().steps += steps;
    TheFigures().answers += steps * std::size(kAnswers);
  }

 private:
  void Fail(const Run& run, size_t step, int answer, bool andAllBehind, const Expected& expected) {
    Renew();
    const embedded::Balance before = host.ledger.Live();
    size_t call = 0;
    host.log.AnswerIf([=](const LoggedCall& logged) mutable -> std::optional<int> {
      const bool isMemory = logged.function.starts_with("acad_") || logged.function.starts_with("acut");
      if (isMemory) return std::nullopt;
      ++call;
      return call == step || (andAllBehind && call > step) ? std::optional(answer) : std::nullopt;
    });
    const std::string result = run();
    const std::string printed = Printed();
    const std::vector<LoggedCall> calls = host.log.Calls();
    if (const auto refusal = expected(calls)) {
      EXPECT_EQ(result, refusal->result);
      EXPECT_EQ(printed, refusal->printed);
    }
    EXPECT_TRUE(host.ledger.Live() == before) << "the ledger is not balanced";
    EXPECT_EQ(SetsGot(calls), SetsFreed(calls)) << "selection sets";
  }

  Refusal Shown(const Run& run) {
    Renew();
    const std::string result = run();
    return {result, Printed()};
  }

  // A free that is refused is not the caller's fault.
  static size_t SetsFreed(const std::vector<LoggedCall>& calls) {
    return CountOf(calls, [](const LoggedCall& call) { return call.function == "acedSSFree"; });
  }
  static size_t SetsGot(const std::vector<LoggedCall>& calls) {
    return CountOf(
        calls, [](const LoggedCall& call) { return call.function == "acedSSGet" && call.status == RTNORM; });
  }

 protected:
  template <class Wanted>
  static size_t CountOf(const std::vector<LoggedCall>& calls, Wanted wanted) {
    return static_cast<size_t>(std::count_if(calls.begin(), calls.end(), wanted));
  }
};

// --- The library's host functions ---

struct HostFunction {
  const char* name;
  const char* platform;  // the function whose refusal is that of the operation
  std::function<std::string()> run;
  Refusal refused;

  friend void PrintTo(const HostFunction& function, std::ostream* out) { *out << function.name; }
};

const CLOMAdsLispVar kNil;

// What a function of a module gives that LISP calls with the arguments 1 and "two".
std::string Called(const std::function<std::string()>& function) {
  std::string shown;
  const auto result = Host::Instance().Run(
      "F",
      [&] {
        shown = function();
        return RTNORM;
      },
      embedded::Capture(TextChain(L"1 \"two\"")));
  for (const std::string& error : result.errors) ADD_FAILURE() << error;
  return shown;
}

// A set that nobody got has no name.
std::string FreedSet(const CLOMAdsLispVar& set) {
  if (set.NilP()) return "nil";
  ads_name name;
  set.GetName(name);
  acedSSFree(name);
  return "a set";
}

const std::vector<HostFunction>& HostFunctions() {
  static const std::vector<HostFunction> functions = {
      {"GetSym", "acedGetSym", [] { return Text(Lisp::GetSym(L"X")); }, {"nil", ""}},
      {"PutSym",
       "acedPutSym",
       [] { return Text(Lisp::PutSym(L"X", V(L"(1 2)"))); },
       {"nil", "\nLOM_LispVariable::PutSym : Kann Variable \"X\" nicht setzen !"}},
      {"GetVar", "acedGetVar", [] { return Text(Lisp::GetVar(L"CLAYER")); }, {"nil", ""}},
      {"SetVarOfAnAtom",
       "acedSetVar",
       [] { return Text(Lisp::SetVar(L"USERI1", 5)); },
       {"nil", "CLOMAdsLispVar::SetVar : Kann Variable \"USERI1\" nicht setzen ( 5 ) !\n"}},
      {"SetVarOfAPoint",
       "acedSetVar",
       [] { return Text(Lisp::SetVar(L"LASTPOINT", V(L"(1.0 2.0 3.0)"))); },
       {"nil", "CLOMAdsLispVar::SetVar : Kann Variable \"LASTPOINT\" nicht setzen !\n"}},
      {"EntDel",
       "acdbEntDel",
       [] { return Lisp::EntDel(Lisp::EntLast()).NilP() ? "nil" : "a name"; },
       {"nil", ""}},
      {"EntGet", "acdbEntGetX", [] { return Text(Lisp::EntGet(Lisp::EntLast())); }, {"nil", ""}},
      {"EntGetOfApplications",
       "acdbEntGetX",
       [] { return Text(Lisp::EntGet(Lisp::EntLast(), V(L"(\"TAGS\")"))); },
       {"nil", ""}},
      {"EntLast",
       "acdbEntLast",
       [] { return Lisp::EntLast().NilP() ? "nil" : "a name"; },
       {"nil", "CLOMAdsLisp::EntLast : ads_entlast meldet Fehler !\n"}},
      {"EntMake",
       "acdbEntMake",
       [] { return Text(Lisp::EntMake(V(L"((0 . \"POINT\") (8 . \"0\") (10 (1.0 2.0 3.0)))"))); },
       {"nil", ""}},
      {"EntMod",
       "acdbEntMod",
       [] { return Lisp::EntMod(Lisp::EntGet(Lisp::EntLast())).NilP() ? "nil" : "a list"; },
       {"nil", ""}},
      {"EntNext",
       "acdbEntNext",
       [] { return Lisp::EntNext(Lisp::EntLast()).NilP() ? "nil" : "a name"; },
       {"nil", ""}},
      {"EntSel",
       "acedEntSel",
       [] { return Lisp::EntSel(L"Which? ").NilP() ? "nil" : "a pick"; },
       {"nil", ""}},
      {"EntUpd",
       "acdbEntUpd",
       [] { return Lisp::EntUpd(Lisp::EntLast()).NilP() ? "nil" : "a name"; },
       {"nil", ""}},
      {"SSGet",
       "acedSSGet",
       [] { return FreedSet(Lisp::SSGet(L"X", V(L"((0 . \"LINE\"))"), kNil, kNil)); },
       {"nil", ""}},
      {"SSGetOfAPolygon",
       "acedSSGet",
       [] { return FreedSet(Lisp::SSGet(L"CP", V(L"((-1.0 -1.0) (9.0 -1.0) (9.0 9.0))"), kNil, kNil)); },
       {"nil", ""}},
      {"ParameterList",
       "acedGetArgs",
       [] { return Called([] { return Text(Lisp::ParameterList()); }); },
       {"()", ""}},
      {"Parameters",
       "acedGetArgs",
       [] {
         return Called([] {
           CLOMAdsLispVar first;
           CLOMAdsLispVar second;
           Lisp::Parameter(first, second);
           return Text(second) + " " + Text(first);
         });
       },
       {"nil nil", ""}},
      {"ParameterArray",
       "acedGetArgs",
       [] {
         return Called([] {
           CArray<CLOMAdsLispVar, CLOMAdsLispVar&> parameters;
           Lisp::Parameter(parameters);
           return std::to_string(parameters.GetSize()) + Text(parameters[0]);
         });
       },
       {"1nil", ""}},
      {"ReturnOfAnAtom",
       "acedRetVal",
       [] { return Called([] { return CLOMAdsLispVar(5).ads_return() ? "taken" : "refused"; }); },
       {"refused", ""}},
      {"ReturnOfAList",
       "acedRetList",
       [] { return Called([] { return V(L"((1 2))").ads_return() ? "taken" : "refused"; }); },
       {"refused", ""}},
  };
  return functions;
}

class FailingPlatformOf : public FailingPlatform, public testing::WithParamInterface<HostFunction> {};

TEST_P(FailingPlatformOf, HostFunction) {
  const HostFunction& function = GetParam();
  FailEachCall(function.run, [&](const std::vector<LoggedCall>& calls) -> std::optional<Refusal> {
    const auto asked = [&](const LoggedCall& call) { return call.function == function.platform; };
    const auto call = std::find_if(calls.begin(), calls.end(), asked);
    const auto lastBefore = [&](const LoggedCall& other) { return other.forced && !asked(other); };
    // An operation in front of it may have been refused as well, or have done nothing.
    if (call == calls.end() || std::any_of(calls.begin(), call, lastBefore)) return std::nullopt;
    return call->forced && call->status != RTNORM ? std::optional(function.refused) : std::nullopt;
  });
}

INSTANTIATE_TEST_SUITE_P(, FailingPlatformOf, testing::ValuesIn(HostFunctions()),
                         [](const auto& row) { return std::string(row.param.name); });

// --- The functions of the examples ---

struct Example {
  const char* name;
  const wchar_t* call;
  const char* never = nullptr;  // what stands in no result: an entity that could not be read
  bool countsChanges = false;   // the result is the number of entities that were changed

  friend void PrintTo(const Example& example, std::ostream* out) { *out << example.name; }
};

const std::vector<Example>& Examples() {
  static const std::vector<Example> examples = {
      {"BillOfMaterials", L"(BILL-OF-MATERIALS \"TYPE\")", "((\"\""},
      {"LayerTotals", L"(LAYER-TOTALS)", "(\"\""},
      {"MoveToLayer", L"(MOVE-TO-LAYER '((0 . \"LINE,TEXT\")) \"Seats\")", nullptr, true},
      {"ReplaceTexts", L"(REPLACE-TEXTS '(\"Kitchen\" \"T30\") '(\"Room\" \"T90\"))", nullptr, true},
      {"TagEntities", L"(TAG-ENTITIES '((0 . \"LINE,TEXT\")) \"TAGS\" '(\"checked\" 2026 2.5))", nullptr,
       true},
      {"ReadTags", L"(READ-TAGS \"TAGS\")", "(nil"},
      {"CountKinds", L"(COUNT-KINDS '(\"bolt\" \"nut\" \"bolt\"))"},
      {"BoundingBox", L"(BOUNDING-BOX '((1.0 2.0) (3.0 4.0)))"},
      {"Label", L"(LABEL \"M\" 12 1.75)"},
      {"Group", L"(GROUP 8 '((0 . \"LINE\") (8 . \"Walls\")))"},
      {"Nest", L"(NEST '((1 2) (3 4)))"},
      {"NextNumber", L"(NEXT-NUMBER \"P\")"},
      {"Remember", L"(REMEMBER \"X\" '(1 2))"},
  };
  return examples;
}

class FailingPlatformOfExample : public FailingPlatform, public testing::WithParamInterface<Example> {
 protected:
  std::string Call() {
    m_result = host.Evaluate(GetParam().call);
    for (const std::string& error : m_result.errors) ADD_FAILURE() << error;
    return Utf8(m_result.Text());
  }

  CallResult m_result;
};

TEST_P(FailingPlatformOfExample, Function) {
  const Example& example = GetParam();
  FailEachCall([&] { return Call(); },
               [&](const std::vector<LoggedCall>& calls) -> std::optional<Refusal> {
                 const std::string text = Utf8(m_result.Text());
                 if (example.never != nullptr) {
                   EXPECT_EQ(text.find(example.never), std::string::npos) << text;
                 }
                 const size_t changed = CountOf(calls, [](const LoggedCall& call) {
                   return call.function == "acdbEntMod" && call.status == RTNORM;
                 });
                 if (example.countsChanges && m_result.kind == CallResult::Kind::Value) {
                   EXPECT_EQ(text, std::to_string(changed));
                 }
                 return std::nullopt;
               });
}

INSTANTIATE_TEST_SUITE_P(, FailingPlatformOfExample, testing::ValuesIn(Examples()),
                         [](const auto& row) { return std::string(row.param.name); });

// Numbers are given once.
TEST_F(FailingPlatform, NextNumberGivesNoneThatItCannotRemember) {
  Renew();
  host.log.Answer("acedPutSym", RTERROR, 1);
  EXPECT_EQ(Utf8(host.Evaluate(L"(NEXT-NUMBER \"P\")").Text()), "nil");
  EXPECT_EQ(Utf8(host.Evaluate(L"(NEXT-NUMBER \"P\")").Text()), "\"P-0001\"");
}

// In one line, to be quoted.
class PlatformSummary : public testing::Environment {
 public:
  void TearDown() override {
    const Figures& figures = TheFigures();
    std::printf("%zu functions, %zu calls of the platform, %zu refused or idle answers\n", figures.functions,
                figures.steps, figures.answers);
  }
};

const testing::Environment* const platformSummary = testing::AddGlobalTestEnvironment(new PlatformSummary);

}  // namespace
}  // namespace lomlisp::test
