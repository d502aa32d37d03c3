#include <tests/support/HostTest.h>

#include <algorithm>
#include <vector>

namespace lomlisp::test::sortaliketexts {
namespace {

class SortAlikeTexts : public HostTest {};

// So many that they are sorted by their first characters at once, which are the same for half of them.
TEST_F(SortAlikeTexts, WhatComesBehindTheFirstCharactersDecides) {
  std::vector<std::wstring> texts;
  for (int number = 25'000; number > 10'000; --number)
    texts.push_back((number % 2 != 0 ? L"odd, " : L"even, ") + std::to_wstring(number));
  std::wstring written;
  for (const std::wstring& text : texts) written += L" \"" + text + L"\"";
  CLOMAdsLispVar list = V(L"(" + written + L")");
  list.Sort();
  std::sort(texts.begin(), texts.end());
  ASSERT_EQ(list.Length(), texts.size());
  for (size_t i = 0; i < texts.size(); ++i)
    ASSERT_EQ(list.New()->children[i]->atom == texts[i].c_str(), 1) << i;
}

}  // namespace
}  // namespace lomlisp::test::sortaliketexts
