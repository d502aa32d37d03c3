#include <lomlisp/text/DebugLayout.h>
#include <tests/support/HostTest.h>

#include <string>

namespace lomlisp::test {

namespace {

// Other layouts than the one that the library ships with, for the length of a test.
class DebugLayout : public HostTest {
 protected:
  ~DebugLayout() override { Set(0, 0); }

  static void Set(unsigned long indentation, unsigned long numbering) {
    debugIndentation = indentation;
    debugNumbering = numbering;
  }

  static std::string Debug(const CLOMAdsLispVar& value) { return Utf8(value.GetAsDebugString().GetString()); }
};

TEST_F(DebugLayout, IsOneLineAsShipped) {
  EXPECT_EQ(debugIndentation, 0U);
  EXPECT_EQ(debugNumbering, 0U);
  EXPECT_EQ(Debug(V(L"(1 (\"a\" . 2) nil)")), "(1 (\"a\" . 2) nil)");
}

TEST_F(DebugLayout, IndentationPutsEachMemberOnALineOfItsOwn) {
  Set(2, 0);
  EXPECT_EQ(Debug(V(L"(1 (2))")), "(\r\n  1 \r\n(\r\n    2)\r\n)\r\n");
  EXPECT_EQ(Debug(V(L"(1 . nil)")), "(\r\n  1 . \r\n  nil)\r\n");
  EXPECT_EQ(Debug(V(L"()")), "()\r\n");
}

TEST_F(DebugLayout, AnAtomByItselfStandsAtTheFront) {
  Set(3, 1);
  EXPECT_EQ(Debug(5), "5");
  EXPECT_EQ(Debug(CLOMAdsLisp::Nil), "nil");
}

TEST_F(DebugLayout, NumberingPutsThePositionInFront) {
  Set(1, 7);
  EXPECT_EQ(Debug(V(L"(1 (2 3))")), "(\r\n0:  1 \r\n1: (\r\n0:   2 \r\n1:   3)\r\n)\r\n");
}

TEST_F(DebugLayout, NumberingWithoutIndentationDoesNothing) {
  Set(0, 1);
  EXPECT_EQ(Debug(V(L"(1 2)")), "(1 2)");
}

TEST_F(DebugLayout, PositionsOfAnyLengthFit) {
  Set(1, 1);
  CLOMAdsLispVar list = V(L"()");
  for (int i = 0; i < 1'001; ++i) list.New()->children.push_back(nullptr);
  const std::string text = Debug(list);
  EXPECT_NE(text.find("\r\n9:  nil \r\n10:  nil \r\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\r\n1000:  nil)\r\n"));
}

TEST_F(DebugLayout, DeepValuesNeedRoomForAllTheirBlanks) {
  Set(1, 0);
  CLOMAdsLispVar value = short{1};
  std::string opened, closed;
  for (int level = 0; level < 300; ++level) {
    value.List();
    opened += "(\r\n";
    closed += ")\r\n";
  }
  EXPECT_EQ(Debug(value), opened + std::string(300, ' ') + "1" + closed);
}

}  // namespace
}  // namespace lomlisp::test
