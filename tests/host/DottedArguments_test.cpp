#include <tests/support/HostTest.h>

namespace lomlisp::test::dottedarguments {
namespace {

class DottedArguments : public HostTest {};

embedded::Record RecordOf(short type, short value = 0) {
  embedded::Record record;
  record.type = type;
  record.value.rint = value;
  return record;
}

// The platform gives no such arguments, but getArgs reads them.
TEST_F(DottedArguments, ParametersAreWhatCarAndCdrFind) {
  host.Define(L"F", [] {
    CLOMAdsLispVar first;
    CLOMAdsLispVar second;
    CLOMAdsLispVar third;
    CLOMAdsLispVar fourth(L"old");
    CLOMAdsLisp::Parameter(first, second, third, fourth);
    EXPECT_EQ(Text(first), "1");
    EXPECT_EQ(Text(second), "2");
    EXPECT_EQ(Text(third), "3");
    EXPECT_EQ(Text(fourth), "4");
    return RTNORM;
  });
  host.Call(L"F", embedded::Chain{RecordOf(RTSHORT, 1), RecordOf(RTSHORT, 2), RecordOf(RTSHORT, 3),
                                  RecordOf(RTDOTE), RecordOf(RTSHORT, 4)});
}

}  // namespace
}  // namespace lomlisp::test::dottedarguments
