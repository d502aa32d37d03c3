// The embedded host when a client's allocations fail: what it cannot give it refuses, and nothing has
// changed.

#include <lomlisp/platform/modules.h>
#include <tests/failures/SampleHost.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace lomlisp::test {
namespace {

class FailingHost : public SampleHost {
 protected:
  using Run = std::function<std::string()>;

  // Each allocation of a run fails, alone and with all behind it. `look` looks at what came of that run,
  // before the next one begins with a new drawing.
  void FailEachAllocationOf(const Run& run, const std::function<void(const std::string& shown)>& look) {
    Renew();
    const uint64_t mark = host.ledger.Mark();
    const std::string good = run();
    const uint64_t allocations = host.ledger.Mark() - mark;
    for (uint64_t n = 1; n <= allocations; ++n)
      for (const bool andAllBehind : {false, true}) {
        SCOPED_TRACE(std::to_string(n) + (andAllBehind ? " and all behind it" : ""));
        Renew();
        const embedded::Balance before = host.ledger.Live();
        andAllBehind ? host.ledger.FailAllocationsFrom(n) : host.ledger.FailAllocation(n);
        const std::string shown = run();
        host.ledger.FailAllocation(0);
        EXPECT_TRUE(host.ledger.Live() == before) << "the ledger is not balanced";
        look(shown);
        if (HasFailure()) return;
      }
    Renew();
    EXPECT_EQ(run(), good) << "afterwards";
  }

  std::string NewDrawingText() {
    Renew();
    return DrawingText();
  }
};

// A chain of the platform's as text, released.
std::string Given(resbuf* chain) {
  const std::string text = chain != nullptr ? Text(chain) : "null";
  acutRelRb(chain);
  return text;
}

std::string NextLayer(int rewind) { return Given(acdbTblNext(L"LAYER", rewind)); }

struct PlatformFunction {
  const char* name;
  std::string (*run)();

  friend void PrintTo(const PlatformFunction& function, std::ostream* out) { *out << function.name; }
};

const std::vector<PlatformFunction>& PlatformFunctions() {
  static const std::vector<PlatformFunction> functions = {
      {"EntGetX",
       [] {
         ads_name name = {};
         acdbEntNext(nullptr, name);
         return Given(acdbEntGetX(name, nullptr));
       }},
      {"TblSearch", [] { return Given(acdbTblSearch(L"LAYER", L"Walls", 0)); }},
      {"TblNext", [] { return NextLayer(1); }},
      {"GetSym",
       [] {
         resbuf* chain = nullptr;
         Host::Instance().symbols.Set(L"X", {embedded::Record{RTSTR, {}, L"text", true}});
         return acedGetSym(L"X", &chain) == RTNORM ? Given(chain) : std::string("null");
       }},
      {"GetVar",
       [] {
         resbuf record{nullptr, RTNIL, {}};
         if (acedGetVar(L"CLAYER", &record) != RTNORM)
           return std::string(record.restype == RTNIL ? "null" : "changed");
         const std::string text = Utf8(record.resval.rstring);
         acad_free(record.resval.rstring);
         return text;
       }},
      {"BuildList", [] { return Given(acutBuildList(RTLB, RTSTR, L"text", RTREAL, 2.5, RTLE, 0)); }},
      {"NewRb", [] { return Given(acutNewRb(RTSTR)); }},
      {"Malloc",
       [] {
         void* const block = acad_malloc(10);
         acad_free(block);
         return std::string(block != nullptr ? "a block" : "null");
       }},
  };
  return functions;
}

class FailingHostOf : public FailingHost, public testing::WithParamInterface<PlatformFunction> {};

TEST_P(FailingHostOf, PlatformFunction) {
  const std::string drawing = NewDrawingText();
  const uint64_t mark = host.ledger.Mark();
  GetParam().run();
  EXPECT_GT(host.ledger.Mark(), mark) << "nothing can fail";
  FailEachAllocationOf(GetParam().run, [&](const std::string& shown) {
    EXPECT_EQ(shown, "null");
    EXPECT_EQ(DrawingText(), drawing);
  });
}

INSTANTIATE_TEST_SUITE_P(, FailingHostOf, testing::ValuesIn(PlatformFunctions()),
                         [](const auto& row) { return std::string(row.param.name); });

// What could not be given is given the next time.
TEST_F(FailingHost, TableGoesOnBehindWhatItGave) {
  Renew();
  const std::string first = NextLayer(1);
  const std::string second = NextLayer(0);
  EXPECT_NE(first, second);
  NextLayer(1);
  host.ledger.FailAllocation(2);
  EXPECT_EQ(NextLayer(0), "null");
  EXPECT_EQ(NextLayer(0), second);
  NextLayer(1);
  host.ledger.FailAllocation(2);
  EXPECT_EQ(Given(acdbTblSearch(L"LAYER", L"Rooms", 1)), "null");
  EXPECT_EQ(NextLayer(0), second) << "the search has not moved it";
}

// Nothing of a client's is needed to change a drawing or to select.
TEST_F(FailingHost, OtherFunctionsTakeNothingOfTheClients) {
  Renew();
  ads_name name = {};
  ads_name set = {};
  ads_point picked;
  int32_t length = 0;
  ads_name last = {};
  const TextChain filter(L"(0 . \"LINE\")");
  host.ledger.FailAllocationsFrom(1);
  EXPECT_EQ(acdbEntLast(last), RTNORM);
  EXPECT_EQ(acdbEntNext(nullptr, name), RTNORM);
  EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, set), RTNORM);
  EXPECT_EQ(acedSSLength(set, &length), RTNORM);
  EXPECT_EQ(acedSSName(set, 0, name), RTNORM);
  EXPECT_EQ(acedSSDel(name, set), RTNORM);
  EXPECT_EQ(acedSSAdd(name, set, set), RTNORM);
  EXPECT_EQ(acedSSMemb(name, set), RTNORM);
  EXPECT_EQ(acedSSFree(set), RTNORM);
  EXPECT_EQ(acedEntSel(nullptr, name, picked), RTNORM);
  EXPECT_EQ(acdbEntUpd(name), RTNORM);
  EXPECT_EQ(acdbEntDel(name), RTNORM);
  EXPECT_EQ(acdbEntDel(name), RTNORM);
  EXPECT_EQ(acdbRegApp(L"OTHER"), RTNORM);
  host.ledger.FailAllocation(0);
  EXPECT_EQ(length, 4);
}

// --- The functions of the examples, on a drawing ---

struct Work {
  const char* name;
  const wchar_t* call;

  friend void PrintTo(const Work& work, std::ostream* out) { *out << work.name; }
};

class FailingHostOfExample : public FailingHost, public testing::WithParamInterface<Work> {};

TEST_P(FailingHostOfExample, Function) {
  FailEachAllocationOf(
      [&] {
        const auto result = host.Evaluate(GetParam().call);
        return Utf8(result.Text());
      },
      [&](const std::string&) {
        size_t got = 0;
        for (const embedded::LoggedCall& call : host.log.Calls())
          got += call.function == "acedSSGet" && call.status == RTNORM ? 1 : 0;
        EXPECT_EQ(host.log.Count("acedSSFree"), got) << "selection sets";
      });
}

INSTANTIATE_TEST_SUITE_P(
    , FailingHostOfExample,
    testing::Values(Work{"BillOfMaterials", L"(BILL-OF-MATERIALS \"TYPE\")"},
                    Work{"LayerTotals", L"(LAYER-TOTALS)"},
                    Work{"MoveToLayer", L"(MOVE-TO-LAYER '((0 . \"LINE,TEXT\")) \"Seats\")"},
                    Work{"ReplaceTexts", L"(REPLACE-TEXTS '(\"Kitchen\" \"T30\") '(\"Room\" \"T90\"))"},
                    Work{"TagEntities", L"(TAG-ENTITIES '((0 . \"LINE\")) \"TAGS\" '(\"checked\" 2026 2.5))"},
                    Work{"ReadTags", L"(READ-TAGS \"TAGS\")"}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace lomlisp::test
