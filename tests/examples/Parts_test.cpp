// The example module over lists of parts, called as LISP calls it.
#include <examples/parts/Parts.h>
#include <tests/support/HostTest.h>

namespace lomlisp::test {
namespace {

class PartsModule : public HostTest {
 protected:
  PartsModule() {
    for (const LispFunction& function : parts::Functions()) host.Define(function.name, function.call);
  }
};

TEST_F(PartsModule, LabelsAPart) {
  const auto result = host.Evaluate(L"(LABEL \"M\" 12 1.75)");
  EXPECT_EQ(result.status, RTNORM);
  EXPECT_EQ(result.Text(), L"\"M12x1.75\"");
}

TEST_F(PartsModule, RefusesALabelThatDoesNotFit) {
  const auto result = host.Evaluate(L"(LABEL \"M\" 12 1e300)");
  EXPECT_EQ(result.status, RTERROR);
  EXPECT_EQ(result.kind, embedded::CallResult::Kind::Nothing);
}

TEST_F(PartsModule, NumbersGoOnBeyondSixteenBits) {
  EXPECT_EQ(host.Evaluate(L"(REMEMBER \"LAST-NUMBER\" 32767)").status, RTNORM);
  EXPECT_EQ(host.Evaluate(L"(NEXT-NUMBER \"P\")").Text(), L"\"P-32768\"");
  EXPECT_EQ(host.Evaluate(L"(NEXT-NUMBER \"P\")").Text(), L"\"P-32769\"");
}

TEST_F(PartsModule, GivesNoNumberBehindTheLast) {
  EXPECT_EQ(host.Evaluate(L"(REMEMBER \"LAST-NUMBER\" 2147483646)").status, RTNORM);
  EXPECT_EQ(host.Evaluate(L"(NEXT-NUMBER \"P\")").Text(), L"\"P-2147483647\"");
  EXPECT_EQ(host.Evaluate(L"(NEXT-NUMBER \"P\")").status, RTERROR);
}

}  // namespace
}  // namespace lomlisp::test
