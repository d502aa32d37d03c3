#include <tests/support/HostTest.h>

namespace lomlisp::test::textunits {
namespace {

class TextUnits : public HostTest {};

// Where a character has room for it, a text may hold one beyond the first plane as its two surrogates, too.
TEST_F(TextUnits, ACharacterIsEqualToItsSurrogates) {
  const wchar_t character[] = {static_cast<wchar_t>(0x10000U), L'x', 0};
  const wchar_t surrogates[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDC00), L'x', 0};
  const wchar_t other[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDC00), L'y', 0};
  if constexpr (sizeof(wchar_t) > 2) {
    EXPECT_EQ(ResBuf(character) == surrogates, 1);
    EXPECT_EQ(ResBuf(surrogates) == character, 1);
    EXPECT_EQ(ResBuf(character) == other, 0);
    EXPECT_EQ(ResBuf(character).Less(other), 1);
    EXPECT_EQ(ResBuf(character).Less(surrogates), 0);
  }
}

}  // namespace
}  // namespace lomlisp::test::textunits
