#include <bench/peers/Content.h>

#include <lomlisp/platform/suite.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <numeric>
#include <random>

Item ItemAt(int position) {
  return {position % 10'000, position % 100'000 + 0.5, L"text-" + std::to_wstring(position)};
}

namespace {

std::string RealText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

// The items between brackets, with something between the members and between the items.
std::string TextOfItems(int items, char open, char close, char separator) {
  std::string text(1, open);
  for (int i = 0; i < items; ++i) {
    const Item item = ItemAt(i);
    if (i > 0) text += separator;
    text += open + std::to_string(item.number) + separator + RealText(item.real) + separator + '"' +
            Narrow(item.text) + '"' + close;
  }
  return text + close;
}

bool IsSeparator(char character) {
  return std::string_view("()[], \"\n").find(character) != std::string_view::npos;
}

void AddToken(const std::string& token, Digest& digest) {
  char* end = nullptr;
  const double number = std::strtod(token.c_str(), &end);
  if (*end == 0)
    digest.Real(number);
  else
    digest.Characters(token);
}

}  // namespace

std::string LispText(int items) { return TextOfItems(items, '(', ')', ' '); }
std::string JsonText(int items) { return TextOfItems(items, '[', ']', ','); }

Digest DigestOfPrinted(std::string_view text) {
  Digest digest;
  std::string token;
  const auto finish = [&] {
    if (!token.empty()) AddToken(token, digest);
    token.clear();
  };
  for (const char character : text) {
    if (IsSeparator(character))
      finish();
    else
      token += character;
  }
  finish();
  return digest;
}

Digest DigestOfPrinted(std::wstring_view text) { return DigestOfPrinted(Narrow(text)); }

std::vector<int> Shuffled(int count) {
  std::vector<int> numbers(static_cast<size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  return numbers;
}

std::wstring TextKey(int number) { return L"LAYER-" + std::to_wstring(10'000'000 + number); }

double RealKey(int number) { return number + 0.25; }

int RepeatsOfSearch(int size) { return std::max(1, 200'000 / size); }

const resbuf* TwelveGroups() {
  static std::vector<resbuf> records = [] {
    std::vector<resbuf> groups;
    static wchar_t text[] = L"text of group 8";
    for (const short code : std::initializer_list<short>{0, 5, 330, 100, 8, 62, 100, 10, 11, 40, 1, 7}) {
      resbuf& group = groups.emplace_back();
      group.restype = code;
      if (DxfType(code) == RTSTR) group.resval.rstring = text;
    }
    for (size_t i = 1; i < groups.size(); ++i) groups[i - 1].rbnext = &groups[i];
    return groups;
  }();
  return records.data();
}

std::string Narrow(std::wstring_view text) {
  std::string narrow(text.size(), 0);
  std::transform(text.begin(), text.end(), narrow.begin(), [](wchar_t c) { return static_cast<char>(c); });
  return narrow;
}
