#include <tests/support/HostTest.h>

namespace lomlisp::test {
namespace {

using embedded::LoggedCall;

class CallLogTest : public HostTest {
 protected:
  static int Put(const wchar_t* name = L"X") { return acedPutSym(name, TextChain(L"(1 \"a\")")); }
};

TEST_F(CallLogTest, CallsAreLoggedWithCopiesOfTheirArguments) {
  Put();
  resbuf* chain = nullptr;
  acedGetSym(L"X", &chain);
  acutRelRb(chain);
  ASSERT_EQ(host.log.Calls().size(), 2U);
  const LoggedCall& put = host.log.Calls()[0];
  EXPECT_EQ(put.function, "acedPutSym");
  EXPECT_EQ(put.name, L"X");
  ASSERT_EQ(put.chains.size(), 1U);
  EXPECT_EQ(Utf8(embedded::ToText(put.chains[0])), "(1 \"a\")");
  EXPECT_EQ(put.objection, std::nullopt);
  EXPECT_FALSE(put.forced);
  EXPECT_EQ(put.status, RTNORM);
  EXPECT_EQ(host.log.Calls()[1].function, "acedGetSym");
}

TEST_F(CallLogTest, MemoryAndPrintingAreNotLogged) {
  acad_free(acad_malloc(1));
  acutRelRb(acutNewRb(RTSHORT));
  acutRelRb(acutBuildList(RTSHORT, 1, 0));
  acutPrintf(L"text");
  EXPECT_TRUE(host.log.Calls().empty());
}

TEST_F(CallLogTest, CallsAreCountedAndTheLatestIsFound) {
  EXPECT_EQ(host.log.Count("acedPutSym"), 0U);
  EXPECT_EQ(host.log.Last("acedPutSym"), nullptr);
  Put(L"X");
  Put(L"Y");
  EXPECT_EQ(host.log.Count("acedPutSym"), 2U);
  EXPECT_EQ(host.log.Count("acedGetSym"), 0U);
  EXPECT_EQ(host.log.Last("acedPutSym")->name, L"Y");
  host.log.Clear();
  EXPECT_TRUE(host.log.Calls().empty());
}

TEST_F(CallLogTest, FailuresAreLoggedWithTheirStatus) {
  Put(L"T");
  EXPECT_EQ(host.log.Last("acedPutSym")->status, RTERROR);
  acedGetArgs();
  EXPECT_EQ(host.log.Last("acedGetArgs")->status, RTERROR);
}

TEST_F(CallLogTest, ALogThatIsOffKeepsNothing) {
  host.log.Enable(false);
  EXPECT_FALSE(host.log.Enabled());
  EXPECT_EQ(Put(), RTNORM);
  EXPECT_TRUE(host.log.Calls().empty());
  host.log.Enable(true);
  Put();
  EXPECT_EQ(host.log.Calls().size(), 1U);
}

TEST_F(CallLogTest, BadChainsAreRefusedAlsoWhenTheLogIsOff) {
  host.log.Enable(false);
  resbuf* chain = acutNewRb(RTLB);
  EXPECT_EQ(acedPutSym(L"X", chain), RTERROR);
  acutRelRb(chain);
}

TEST_F(CallLogTest, TheOrderedCallAnswersBeforeItDoesAnything) {
  host.log.Answer("acedPutSym", RTCAN, 2);
  EXPECT_EQ(Put(L"A"), RTNORM);
  EXPECT_EQ(Put(L"B"), RTCAN);
  EXPECT_TRUE(host.log.Last("acedPutSym")->forced);
  EXPECT_EQ(host.log.Last("acedPutSym")->status, RTCAN);
  EXPECT_EQ(host.symbols.Find(L"B"), nullptr);
  EXPECT_EQ(Put(L"C"), RTNORM);
  EXPECT_FALSE(host.log.Last("acedPutSym")->forced);
}

TEST_F(CallLogTest, SuccessCanBeOrderedToo) {
  host.log.Answer("acedPutSym", RTNORM, 1);
  EXPECT_EQ(Put(), RTNORM);
  EXPECT_EQ(host.symbols.Find(L"X"), nullptr);
}

TEST_F(CallLogTest, OrdersCountTheCallsOfTheirFunctionOnly) {
  host.log.Answer("acedPutSym", RTCAN, 1);
  host.log.Answer("acedPutSym", RTREJ, 2);
  host.log.Answer("acedPutSym", RTFAIL, 0);
  resbuf record{};
  EXPECT_EQ(acedGetVar(L"OSMODE", &record), RTNORM);
  EXPECT_EQ(Put(), RTCAN);
  EXPECT_EQ(Put(), RTREJ);
  EXPECT_EQ(Put(), RTNORM);
}

TEST_F(CallLogTest, AllCallsCanBeOrdered) {
  host.log.AnswerAll("acedPutSym", RTKWORD);
  EXPECT_EQ(Put(), RTKWORD);
  EXPECT_EQ(Put(), RTKWORD);
  host.log.Reset();
  EXPECT_FALSE(host.log.HasOrders());
  EXPECT_EQ(Put(), RTNORM);
}

TEST_F(CallLogTest, APredicateSeesTheArguments) {
  host.log.AnswerIf([](const LoggedCall& call) -> std::optional<int> {
    const bool isMine = call.name == L"B" && call.chains.size() == 1 && call.chains[0].size() == 4;
    return isMine ? std::optional(RTFAIL) : std::nullopt;
  });
  EXPECT_EQ(Put(L"A"), RTNORM);
  EXPECT_EQ(Put(L"B"), RTFAIL);
  host.log.Enable(false);
  EXPECT_EQ(Put(L"B"), RTFAIL);
}

TEST_F(CallLogTest, APredicateSeesTheObjection) {
  host.log.AnswerIf(
      [](const LoggedCall& call) { return call.objection ? std::optional(RTREJ) : std::nullopt; });
  resbuf* chain = acutNewRb(RTLB);
  EXPECT_EQ(acedPutSym(L"X", chain), RTREJ);
  acutRelRb(chain);
}

TEST_F(CallLogTest, FunctionsThatGivePointersGiveNull) {
  TextChain arguments(L"1");
  host.Define(L"F", [this] {
    host.log.Answer("acedGetArgs", RTCAN, 1);
    EXPECT_EQ(acedGetArgs(), nullptr);
    EXPECT_EQ(host.log.Last("acedGetArgs")->status, RTCAN);
    EXPECT_TRUE(host.log.Last("acedGetArgs")->forced);
    host.log.Answer("acedGetArgs", RTNORM, 1);
    EXPECT_NE(acedGetArgs(), nullptr);
    EXPECT_FALSE(host.log.Last("acedGetArgs")->forced);
    return RTNORM;
  });
  EXPECT_TRUE(host.Call(L"F", embedded::Capture(arguments)).errors.empty());
}

TEST_F(CallLogTest, RecordsAndMemoryTakeOrders) {
  host.log.Answer("acutNewRb", RTERROR, 2);
  resbuf* first = acutNewRb(RTSHORT);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(acutNewRb(RTSHORT), nullptr);
  host.log.AnswerAll("acutBuildList", RTERROR);
  EXPECT_EQ(acutBuildList(RTSHORT, 1, 0), nullptr);
  host.log.Answer("acad_malloc", RTERROR, 1);
  EXPECT_EQ(acad_malloc(1), nullptr);
  acutRelRb(first);
}

TEST_F(CallLogTest, PrintingAndReleasingTakeOrdersByNameOnly) {
  host.log.AnswerIf([](const LoggedCall&) { return std::optional(RTERROR); });
  EXPECT_EQ(acutPrintf(L"text"), RTNORM);
  EXPECT_EQ(acutRelRb(nullptr), RTNORM);
  host.log.Answer("acutPrintf", RTCAN, 1);
  host.log.Answer("acutRelRb", RTREJ, 1);
  EXPECT_EQ(acutPrintf(L"more"), RTCAN);
  EXPECT_EQ(acutRelRb(nullptr), RTREJ);
  EXPECT_EQ(Printed(), "text");
}

// --- Without a drawing ---

class NoDrawingTest : public HostTest {
 protected:
  const ads_name name = {0x1F, 0};
  ads_name answer = {7, 7};
  ads_point picked = {7, 7, 7};
};

TEST_F(NoDrawingTest, EverythingFailsAndIsLogged) {
  TextChain chain(L"1");
  EXPECT_EQ(acdbEntDel(name), RTERROR);
  EXPECT_EQ(acdbEntGetX(name, chain), nullptr);
  EXPECT_EQ(acdbEntGetX(name, nullptr), nullptr);
  EXPECT_EQ(acdbEntLast(answer), RTERROR);
  EXPECT_EQ(acdbEntMake(chain), RTERROR);
  EXPECT_EQ(acdbEntMod(chain), RTERROR);
  EXPECT_EQ(acdbEntNext(name, answer), RTERROR);
  EXPECT_EQ(acdbEntNext(nullptr, answer), RTERROR);
  EXPECT_EQ(acdbEntUpd(name), RTERROR);
  EXPECT_EQ(acedEntSel(L"Pick", answer, picked), RTERROR);
  EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, chain, answer), RTERROR);
  EXPECT_EQ(host.log.Calls().size(), 11U);
  for (const LoggedCall& call : host.log.Calls()) EXPECT_EQ(call.status, RTERROR);
  EXPECT_EQ(Utf8(embedded::ToText(host.log.Last("acdbEntDel")->chains.at(0))), "<Entity name: 1f>");
  EXPECT_EQ(Utf8(embedded::ToText(host.log.Last("acdbEntMake")->chains.at(0))), "1");
  EXPECT_EQ(host.log.Last("acedEntSel")->name, L"Pick");
  EXPECT_EQ(host.log.Last("acedSSGet")->name, L"X");
  EXPECT_EQ(answer[0], 7);
  EXPECT_EQ(picked[0], 7.0);
}

TEST_F(NoDrawingTest, EverythingTakesOrders) {
  for (const char* function : {"acdbEntDel", "acdbEntLast", "acdbEntMake", "acdbEntMod", "acdbEntNext",
                               "acdbEntUpd", "acedEntSel", "acedSSGet"})
    host.log.AnswerAll(function, RTCAN);
  EXPECT_EQ(acdbEntDel(name), RTCAN);
  EXPECT_EQ(acdbEntLast(answer), RTCAN);
  EXPECT_EQ(acdbEntMake(nullptr), RTCAN);
  EXPECT_EQ(acdbEntMod(nullptr), RTCAN);
  EXPECT_EQ(acdbEntNext(name, answer), RTCAN);
  EXPECT_EQ(acdbEntUpd(name), RTCAN);
  EXPECT_EQ(acedEntSel(nullptr, answer, picked), RTCAN);
  EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, answer), RTCAN);
}

TEST_F(NoDrawingTest, BadChainsAreNoted) {
  resbuf* chain = acutNewRb(5025);
  acdbEntMake(chain);
  EXPECT_EQ(host.log.Last("acdbEntMake")->objection, "unknown type 5025 (record 1)");
  acdbEntGetX(name, chain);
  EXPECT_TRUE(host.log.Last("acdbEntGetX")->objection.has_value());
  acutRelRb(chain);
}

}  // namespace
}  // namespace lomlisp::test
