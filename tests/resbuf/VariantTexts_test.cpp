// Texts of variants when there is no memory for them: the subset of OLE's functions that stands in for them
// outside Windows.
#ifndef _WIN32

#include <sys/resource.h>
#include <tests/support/HostTest.h>

#include <limits>

namespace lomlisp::test::variant_texts {
namespace {

// While one lives, the process grows no further than to a gibibyte.
class LimitedMemory {
 public:
  LimitedMemory() {
    EXPECT_EQ(getrlimit(RLIMIT_AS, &m_before), 0);
    rlimit limited = m_before;
    limited.rlim_cur = rlim_t{1} << 30;
    EXPECT_EQ(setrlimit(RLIMIT_AS, &limited), 0);
  }
  ~LimitedMemory() { EXPECT_EQ(setrlimit(RLIMIT_AS, &m_before), 0); }
  LimitedMemory(const LimitedMemory&) = delete;
  LimitedMemory& operator=(const LimitedMemory&) = delete;

 private:
  rlimit m_before{};
};

constexpr unsigned int kLongest = (std::numeric_limits<unsigned int>::max)();

class VariantTexts : public HostTest {
 protected:
  void SetUp() override {
    if (kSanitized) GTEST_SKIP() << "the sanitizers' heap ends the program instead";
  }
};

TEST_F(VariantTexts, AreNullWhenMemoryRunsOut) {
  const LimitedMemory limited;
  EXPECT_EQ(SysAllocStringLen(nullptr, kLongest), nullptr);
}

// A text that is there, but for the length in front of it.
TEST_F(VariantTexts, ThatCannotBeCopiedLeaveTheTargetEmpty) {
  size_t block[] = {kLongest * sizeof(wchar_t), 0};
  VARIANT source{};
  source.vt = VT_BSTR;
  source.bstrVal = reinterpret_cast<BSTR>(&block[1]);
  COleVariant target(3.0);
  const LimitedMemory limited;
  EXPECT_EQ(VariantCopy(&target, &source), E_OUTOFMEMORY);
  EXPECT_EQ(target.vt, VT_EMPTY);
}

}  // namespace
}  // namespace lomlisp::test::variant_texts

#endif
