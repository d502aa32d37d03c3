#include <embedded/selection/Shape.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

namespace {

// The mean width of a character, in heights of a capital letter; the fonts are not looked at.
constexpr double kCharacterWidth = 0.9;
// From one line to the next, in heights of a capital letter.
constexpr double kLineDistance = 5.0 / 3.0;

// Characters whatever the width of wchar_t: the second half of a pair counts nothing.
bool IsCharacter(wchar_t unit) { return unit < 0xDC00 || unit > 0xDFFF; }

struct TextSize {
  double width;
  double height;
};

// A rectangle whose point at the given parts of its width and height is at `anchor`.
void AddBox(const Transform& place, TextSize size, Position anchor, Shape& shape) {
  const double left = -anchor.x * size.width;
  const double bottom = -anchor.y * size.height;
  const double right = left + size.width;
  const double top = bottom + size.height;
  shape.AddArea({place.Plan({left, bottom, 0}), place.Plan({right, bottom, 0}), place.Plan({right, top, 0}),
                 place.Plan({left, top, 0})});
}

// Shown is the tag of an ATTDEF, otherwise the text.
std::wstring_view ShownText(const Object& entity) {
  return TextOf(entity.groups, entity.Type() == L"ATTDEF" ? 2 : 1);
}

TextSize SizeOf(const Object& text) {
  const std::wstring_view characters = ShownText(text);
  const double height = std::abs(RealOf(text.groups, 40));
  const auto count = std::count_if(characters.begin(), characters.end(), IsCharacter);
  const double factor = std::abs(RealOf(text.groups, 41, 1.0));
  return {static_cast<double>(count) * height * factor * kCharacterWidth, height};
}

// Between the two points of an aligned text or one that is fitted in.
void AddFittedText(const Transform& axes, const Point& from, const Point& to, double height, Shape& shape) {
  const Point along{to.x - from.x, to.y - from.y, 0};
  const double width = std::hypot(along.x, along.y);
  const Point x = Normalised(along);
  const Transform place = axes * Translation(from) * Transform{x, {-x.y, x.x, 0}, {0, 0, 1}, {}};
  AddBox(place, {width, height}, {0, 0}, shape);
}

// The parts of width and height at which the second point stands.
Position AnchorOf(long long horizontal, long long vertical) {
  if (horizontal == 4) return {0.5, 0.5};
  const double x = horizontal == 1 ? 0.5 : horizontal == 2 ? 1.0 : 0.0;
  const double y = vertical == 2 ? 0.5 : vertical == 3 ? 1.0 : 0.0;
  return {x, y};
}

// --- MTEXT ---

// Counts the characters of the lines of a text with its format codes: \P and \n end a line, \f...; and its
// like show nothing, \L and its like neither, braces group.
class LineCount {
 public:
  // The lines that the text takes, and the characters of the longest, where no more than `most` go into one.
  struct Lines {
    double count = 0;
    double longest = 0;
  };

  static Lines Of(const std::wstring& text, double most) {
    LineCount counter(most);
    for (size_t index = 0; index < text.size(); ++index) index = counter.Take(text, index);
    counter.EndLine();
    return counter.m_lines;
  }

 private:
  explicit LineCount(double most) : m_most(std::max(most, 1.0)) {}

  // Gives where the last character is that it took.
  size_t Take(const std::wstring& text, size_t index) {
    const wchar_t character = text[index];
    if (character == L'\\' && index + 1 < text.size()) return TakeCode(text, index + 1);
    if (character == L'\n')
      EndLine();
    else if (character != L'{' && character != L'}' && IsCharacter(character))
      ++m_inLine;
    return index;
  }

  size_t TakeCode(const std::wstring& text, size_t index) {
    static constexpr std::wstring_view kWithValue = L"ACcFfHpQTW";
    static constexpr std::wstring_view kSwitches = L"LlOoKk";
    const wchar_t code = text[index];
    if (code == L'P') EndLine();
    if (kWithValue.find(code) != std::wstring_view::npos)
      return std::min(text.find(L';', index), text.size());
    if (code != L'P' && kSwitches.find(code) == std::wstring_view::npos) ++m_inLine;
    return index;
  }

  void EndLine() {
    m_lines.count += std::max(std::ceil(m_inLine / m_most), 1.0);
    m_lines.longest = std::max(m_lines.longest, std::min(m_inLine, m_most));
    m_inLine = 0;
  }

  double m_most;
  double m_inLine = 0;
  Lines m_lines;
};

// Long texts come in pieces.
std::wstring WholeText(const Groups& groups) {
  std::wstring whole;
  for (const Group& group : groups)
    if (const auto* text = std::get_if<std::wstring>(&group.value);
        text != nullptr && (group.code == 1 || group.code == 3))
      whole += *text;
  return whole;
}

TextSize SizeOfMText(const Groups& groups) {
  const double height = std::abs(RealOf(groups, 40));
  const double character = height * kCharacterWidth;
  const double frame = RealOf(groups, 41);
  const bool isFramed = frame > 0 && character > 0;
  const double most = isFramed ? std::floor(frame / character) : std::numeric_limits<double>::infinity();
  const auto lines = LineCount::Of(WholeText(groups), most);
  const double distance = height * kLineDistance * RealOf(groups, 44, 1.0);
  return {lines.longest * character, height + (lines.count - 1) * distance};
}

// The direction of the lines: a vector, or else an angle.
Transform MTextAxes(const Object& entity) {
  const Point normal = NormalOf(entity);
  const Point* direction = FindPoint(entity.groups, 11);
  const Point x = direction != nullptr ? Normalised(*direction) : Point();
  if (x == Point()) return ObjectAxes(normal) * Rotation(RealOf(entity.groups, 50));
  return {x, CrossProduct(normal, x), normal, {}};
}

}  // namespace

void AddText(const Object& entity, const Transform& toWorld, Shape& shape) {
  const Groups& groups = entity.groups;
  const Point* first = FindPoint(groups, 10);
  const Point* second = FindPoint(groups, 11);
  const long long horizontal = IntegerOf(groups, 72);
  const long long vertical = IntegerOf(groups, entity.Type() == L"TEXT" ? 73 : 74);
  const bool isAtFirst = second == nullptr || (horizontal == 0 && vertical == 0);
  if (first == nullptr && isAtFirst) return;
  const Transform axes = OwnAxes(entity, toWorld);
  const TextSize size = SizeOf(entity);
  if (first != nullptr && !isAtFirst && (horizontal == 3 || horizontal == 5))
    return AddFittedText(axes, *first, *second, size.height, shape);
  const Transform place = axes * Translation(isAtFirst ? *first : *second) * Rotation(RealOf(groups, 50));
  AddBox(place, size, isAtFirst ? Position() : AnchorOf(horizontal, vertical), shape);
}

void AddMText(const Object& entity, const Transform& toWorld, Shape& shape) {
  const Point* anchor = FindPoint(entity.groups, 10);
  if (anchor == nullptr) return;
  // Numbered row by row, from the top left.
  const long long attachment = std::clamp(IntegerOf(entity.groups, 71, 1), 1LL, 9LL) - 1;
  const long long column = attachment % 3;
  const long long row = attachment / 3;
  const Position parts{static_cast<double>(column) / 2, 1 - static_cast<double>(row) / 2};
  AddBox(toWorld * Translation(*anchor) * MTextAxes(entity), SizeOfMText(entity.groups), parts, shape);
}

}  // namespace lomlisp::embedded
