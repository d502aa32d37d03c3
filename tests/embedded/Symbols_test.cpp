#include <tests/support/HostTest.h>

namespace lomlisp::test {
namespace {

using embedded::Owner;
using embedded::Switches;
using embedded::Symbols;

class SymbolsTest : public HostTest {
 protected:
  // The chain that acedGetSym gives, by types.
  std::string Got(const wchar_t* name) {
    resbuf* chain = nullptr;
    EXPECT_EQ(acedGetSym(name, &chain), RTNORM);
    const std::string types = Types(chain);
    acutRelRb(chain);
    return types;
  }
  int Put(const wchar_t* name, std::wstring_view text) { return acedPutSym(name, TextChain(text)); }
  int Put(const wchar_t* name, resbuf* chain) {
    const int status = acedPutSym(name, chain);
    acutRelRb(chain);
    return status;
  }
  std::string Stored(const wchar_t* name) {
    const embedded::Chain* value = host.symbols.Find(name);
    return value != nullptr ? Utf8(embedded::ToText(*value)) : "unbound";
  }
};

TEST_F(SymbolsTest, LegalNames) {
  for (const wchar_t* name :
       {L"X", L"a-b", L"C:LINE", L"1+", L"+", L"-", L"1A", L"*ERROR*", L"\u00DCBER", L"a.b", L"TT"})
    EXPECT_TRUE(Symbols::IsLegal(name)) << Utf8(name);
  for (const wchar_t* name : {L"", L"T", L"t", L"nil", L"NIL", L".", L"..", L"1", L"-1", L"1.5", L"1e5",
                              L"a b", L"a\t", L"a(", L")", L"a\"b", L"'a", L"a;b"})
    EXPECT_FALSE(Symbols::IsLegal(name)) << Utf8(name);
}

TEST_F(SymbolsTest, ValuesComeBackAsFreshChainsOfTheClients) {
  EXPECT_EQ(Put(L"x", L"(1 \"a\")"), RTNORM);
  resbuf* first = nullptr;
  resbuf* second = nullptr;
  EXPECT_EQ(acedGetSym(L"X", &first), RTNORM);
  EXPECT_EQ(acedGetSym(L"x", &second), RTNORM);
  EXPECT_NE(first, second);
  EXPECT_EQ(host.ledger.Live().blocks, 10U);
  EXPECT_EQ(Types(first), "5016 5003:1 5005:a 5017");
  first->rbnext->resval.rint = 7;
  acutRelRb(first);
  EXPECT_EQ(Text(second), "(1 \"a\")");
  acutRelRb(second);
}

TEST_F(SymbolsTest, AnUnboundSymbolIsAsTheSwitchSays) {
  EXPECT_EQ(Got(L"UNBOUND"), "5019");
  host.switches.unboundGivesNull = true;
  EXPECT_EQ(Got(L"UNBOUND"), "");
}

TEST_F(SymbolsTest, TheChainIsSetToNullWhenThereIsNoMemory) {
  Put(L"X", L"(1 2)");
  host.ledger.FailAllocation(3);
  resbuf record{};
  resbuf* chain = &record;
  EXPECT_EQ(acedGetSym(L"X", &chain), RTERROR);
  EXPECT_EQ(chain, nullptr);
}

TEST_F(SymbolsTest, TheStoredValueIsACopy) {
  resbuf* chain = acutBuildList(RTSTR, L"one", 0);
  EXPECT_EQ(acedPutSym(L"X", chain), RTNORM);
  chain->resval.rstring[0] = L'O';
  acutRelRb(chain);
  EXPECT_EQ(Stored(L"X"), "\"one\"");
}

TEST_F(SymbolsTest, NamesThatCannotBeBoundAreRefused) {
  TextChain value(L"1");
  for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L"T", L"t", L"nil", L"a b", L"5"}) {
    resbuf* chain = nullptr;
    EXPECT_EQ(acedPutSym(name, value), RTERROR);
    EXPECT_EQ(acedGetSym(name, &chain), RTERROR);
    EXPECT_EQ(chain, nullptr);
  }
  EXPECT_EQ(acedGetSym(L"X", nullptr), RTERROR);
}

TEST_F(SymbolsTest, NilUnbinds) {
  for (const wchar_t* nil : {L"nil", L"()"}) {
    Put(L"X", L"1");
    EXPECT_EQ(Put(L"X", nil), RTNORM);
    EXPECT_EQ(host.symbols.Find(L"X"), nullptr);
  }
  Put(L"X", L"1");
  EXPECT_EQ(Put(L"X", acutBuildList(RTVOID, 0)), RTNORM);
  EXPECT_EQ(Stored(L"X"), "unbound");
}

TEST_F(SymbolsTest, OneItemIsAcceptedAndOtherwiseTheValueIsKept) {
  EXPECT_EQ(Put(L"X", L"(1 (2))"), RTNORM);
  EXPECT_EQ(Put(L"X", L"1 2"), RTERROR);
  EXPECT_EQ(Put(L"X", L"(1) (2)"), RTERROR);
  EXPECT_EQ(acedPutSym(L"X", nullptr), RTERROR);
  EXPECT_EQ(Put(L"X", acutBuildList(RTLB, RTSHORT, 1, 0)), RTERROR);
  EXPECT_EQ(Put(L"X", acutBuildList(RTLE, 0)), RTERROR);
  EXPECT_EQ(Put(L"X", acutBuildList(0, L"LINE", RTSHORT, 1, 0)), RTERROR);
  EXPECT_EQ(Stored(L"X"), "(1 (2))");
  EXPECT_EQ(Put(L"X", acutBuildList(0, L"LINE", 8, L"0", 0)), RTNORM);
  EXPECT_EQ(Stored(L"X"), "(0 . \"LINE\") (8 . \"0\")");
}

TEST_F(SymbolsTest, BothFormsOfPairsAreAcceptedInBothSettings) {
  for (const auto dotted : {Switches::Dotted::BeforeLast, Switches::Dotted::AtEnd}) {
    host.switches.dotted = dotted;
    const std::string expected =
        dotted == Switches::Dotted::AtEnd ? "5016 5003:1 5003:2 5018" : "5016 5003:1 5018 5003:2 5017";
    EXPECT_EQ(Put(L"X", acutBuildList(RTLB, RTSHORT, 1, RTDOTE, RTSHORT, 2, RTLE, 0)), RTNORM);
    EXPECT_EQ(Stored(L"X"), "(1 . 2)");
    EXPECT_EQ(Got(L"X"), expected);
    EXPECT_EQ(Put(L"Y", acutBuildList(RTLB, RTSHORT, 1, RTSHORT, 2, RTDOTE, 0)), RTNORM);
    EXPECT_EQ(Stored(L"Y"), "(1 . 2)");
    EXPECT_EQ(Got(L"Y"), expected);
  }
}

TEST_F(SymbolsTest, PointsComeBackAsTheSwitchSays) {
  Put(L"X", L"(1.0 2.0 3.0)");
  EXPECT_EQ(Got(L"X"), "5009");
  host.switches.pointsAsRecords = false;
  EXPECT_EQ(Got(L"X"), "5016 5001 5001 5001 5017");
}

TEST_F(SymbolsTest, ABadChainIsRefusedAndNoted) {
  Put(L"X", L"1");
  resbuf* chain = acutNewRb(5025);
  EXPECT_EQ(Put(L"X", chain), RTERROR);
  EXPECT_EQ(host.log.Last("acedPutSym")->objection, "unknown type 5025 (record 1)");
  chain = acutNewRb(8);
  chain->resval.rint = 5;
  EXPECT_EQ(acedPutSym(L"X", chain), RTERROR);
  EXPECT_EQ(host.log.Last("acedPutSym")->objection, "a text pointer that cannot be one (record 1)");
  chain->resval.rstring = nullptr;
  acutRelRb(chain);
  EXPECT_EQ(Stored(L"X"), "1");
}

TEST_F(SymbolsTest, TheHostSetsThemDirectlyByTheSameRules) {
  std::string error;
  EXPECT_TRUE(host.symbols.Set(L"x", *embedded::FromText(L"(1 ())", error)));
  EXPECT_EQ(Stored(L"X"), "(1 nil)");
  EXPECT_FALSE(host.symbols.Set(L"x", {}));
  EXPECT_FALSE(host.symbols.Set(L"x", *embedded::FromText(L"1 2", error)));
  EXPECT_FALSE(host.symbols.Set(L"T", *embedded::FromText(L"1", error)));
  EXPECT_EQ(Stored(L"X"), "(1 nil)");
  host.symbols.Reset();
  EXPECT_EQ(Stored(L"X"), "unbound");
}

}  // namespace
}  // namespace lomlisp::test
