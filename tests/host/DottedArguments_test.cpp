// Arguments that are a dotted list. The platform gives none, but another one may.
#include <tests/support/Chains.h>

#include <functional>
#include <initializer_list>

namespace lomlisp::test::dotted_arguments {
namespace {

class DottedArguments : public HostTest {
 protected:
  // Runs the body as a function that is called with these items as its arguments, a dot in front of the last
  // one.
  void Call(std::initializer_list<short> items, const std::function<void()>& body) {
    embedded::Chain chain;
    for (const short item : items) {
      embedded::Record record;
      record.type = RTSHORT;
      record.value.rint = item;
      if (chain.size() + 1 == items.size()) chain.push_back({RTDOTE, {}, {}, false});
      chain.push_back(record);
    }
    host.Define(L"F", [&] {
      body();
      return RTNORM;
    });
    EXPECT_EQ(host.Call(L"F", chain).status, RTNORM);
  }
};

TEST_F(DottedArguments, GiveParametersWhatCarAndCdrFind) {
  Call({1, 2, 3, 4}, [] {
    CLOMAdsLispVar first, second, third, fourth, fifth;
    CLOMAdsLisp::Parameter(first, second, third, fourth, fifth);
    EXPECT_EQ(Tree(ListOf({first, second, third, fourth, fifth})), "(5003:1 5003:2 5003:3 5003:4 nil)");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(DottedArguments, AnAtomBehindTheDotIsTakenAsItIsAndReported) {
  Call({1, 2}, [] {
    CLOMAdsLispVar first, second;
    CLOMAdsLisp::Parameter(first, second);
    EXPECT_EQ(Tree(first) + " " + Tree(second), "5003:1 5003:2");
  });
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Car : Keine Liste !\n");
}

TEST_F(DottedArguments, EndAnArrayOfParametersAtTheAtom) {
  Call({1, 2}, [] {
    CArray<CLOMAdsLispVar, CLOMAdsLispVar&> parameters;
    CLOMAdsLisp::Parameter(parameters);
    ASSERT_EQ(parameters.GetSize(), 1);
    EXPECT_EQ(Tree(parameters[0]), "5003:1");
  });
  EXPECT_EQ(Printed(), "");
}

}  // namespace
}  // namespace lomlisp::test::dotted_arguments
