#include <tests/support/HostTest.h>

namespace lomlisp::test::releasedtexts {
namespace {

class ReleasedTexts : public HostTest {};

// A record that shows a text under a code that is not for texts holds it only where a record did that itself.
TEST_F(ReleasedTexts, ATextThatIsPlainAgainIsHeldByNobodyElse) {
  ResBuf text(L"text");
  ASSERT_TRUE(text.MakeDXF(60));
  ASSERT_TRUE(text.MakeDXF(1));
  text.MakeBaseType();
  ASSERT_EQ(text.Type(), RTSTR);
  {
    resbuf group = {};
    group.restype = 60;
    group.resval.rstring = text.resval.rstring;
    const ResBuf copy(group);
    EXPECT_EQ(copy.resval.rstring, text.resval.rstring);
  }
  EXPECT_EQ(text == L"text", 1);
}

}  // namespace
}  // namespace lomlisp::test::releasedtexts
