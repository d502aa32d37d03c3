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

}  // namespace
}  // namespace lomlisp::test
