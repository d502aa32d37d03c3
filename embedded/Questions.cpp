#include <embedded/Questions.h>

#include <embedded/Reader.h>
#include <embedded/Text.h>
#include <embedded/UserPoints.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <variant>

namespace lomlisp::embedded {

namespace {

constexpr const wchar_t* kNeedsInteger = L"Requires an integer value.";
constexpr const wchar_t* kNeedsNumber = L"Requires numeric value.";
constexpr const wchar_t* kNeedsDistance = L"Requires numeric distance or two points.";
constexpr const wchar_t* kNeedsAngle = L"Requires valid numeric angle or two points.";
constexpr const wchar_t* kInvalidPoint = L"Invalid point.";
constexpr const wchar_t* kInvalidKeyword = L"Invalid option keyword.";
constexpr const wchar_t* kSecondPoint = L"Specify second point: ";

std::optional<double> Finite(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

// Why acedInitGet does not allow the number.
const wchar_t* ObjectionTo(double number, int flags) {
  const bool isZeroRefused = (flags & kNoZero) != 0;
  const bool isNegativeRefused = (flags & kNoNegative) != 0;
  if (isZeroRefused && isNegativeRefused && number <= 0.0) return L"Value must be positive and nonzero.";
  if (isZeroRefused && number == 0.0) return L"Value must be nonzero.";
  if (isNegativeRefused && number < 0.0) return L"Value must be positive.";
  return nullptr;
}

std::optional<int> IntegerFrom(const UserAnswer& answer) {
  const auto typed = TypedText(answer);
  const auto number = typed ? ReadNumber(*typed) : std::nullopt;
  return number && number->type == RTSHORT ? std::optional<int>(number->value.rint) : std::nullopt;
}

std::optional<double> RealFrom(const UserAnswer& answer) {
  const auto typed = TypedText(answer);
  return typed ? ReadReal(*typed) : std::nullopt;
}

std::optional<double> AngleFrom(const UserAnswer& answer) {
  const auto typed = TypedText(answer);
  return typed ? ReadAngle(*typed) : std::nullopt;
}

double Distance(const Point& from, const Point& to) {
  return std::hypot(to.x - from.x, to.y - from.y, to.z - from.z);
}

// In plan view.
double Direction(const Point& from, const Point& to) {
  return WithinTurn(std::atan2(to.y - from.y, to.x - from.x), 2.0 * std::numbers::pi);
}

// A number that the user types or shows by two points.
class Measure {
 public:
  using Read = std::optional<double> (*)(const UserAnswer&);
  using Between = double (*)(const Point&, const Point&);

  Measure(Host& host, Question question, Read read, Between between)
      : m_host(host), m_question(std::move(question)), m_read(read), m_between(between) {}

  Reply<double> Ask(const std::optional<Point>& base) { return base ? AskFrom(*base) : AskBoth(); }

 private:
  Reply<double> AskBoth() {
    using NumberOrPoint = std::variant<double, Point>;
    const auto first = m_question.Ask<NumberOrPoint>(
        [&](const UserAnswer& answer) -> std::optional<NumberOrPoint> {
          if (const auto number = m_read(answer)) return *number;
          if (const auto point = TakePoint(answer)) return *point;
          return std::nullopt;
        },
        [&](const NumberOrPoint& value) {
          const auto* number = std::get_if<double>(&value);
          return number != nullptr ? ObjectionTo(*number, m_question.Flags()) : nullptr;
        });
    const auto* point = std::get_if<Point>(&first.value);
    if (point == nullptr) return {first, std::get<double>(first.value)};
    m_question.ChangePrompt(kSecondPoint);
    return AskFrom(*point);
  }

  Reply<double> AskFrom(const Point& base) {
    return m_question.Ask<double>(
        [&](const UserAnswer& answer) {
          if (const auto number = m_read(answer)) return number;
          const auto point = TakePoint(answer);
          return point ? Finite(m_between(base, *point)) : std::nullopt;
        },
        [&](double number) { return ObjectionTo(number, m_question.Flags()); });
  }

  std::optional<Point> TakePoint(const UserAnswer& answer) {
    const auto point = PointFrom(answer, CurrentOrigin(m_host.variables));
    if (point) SetLastPoint(m_host.variables, *point);
    return point;
  }

  Host& m_host;
  Question m_question;
  Read m_read;
  Between m_between;
};

// Up to the first blank.
std::wstring FirstWord(std::wstring_view text) {
  const auto isBlank = [](wchar_t character) { return character == L' ' || character == L'\t'; };
  return {text.begin(), std::find_if(text.begin(), text.end(), isBlank)};
}

}  // namespace

Reply<std::wstring> AskText(Host& host, const std::wstring& prompt, bool withBlanks) {
  host.answers.rules = {};
  const auto answer = TakeAnswer(host, prompt);
  if (!answer) return {Unanswered(), {}};
  if (std::holds_alternative<PressCancel>(*answer)) return {Cancelled(), {}};
  if (std::holds_alternative<SelectEntities>(*answer))
    return {{RTERROR, "a selection is laid down where a text is asked for", true}, {}};
  const std::wstring text = Shown(*answer);
  return {{RTNORM, {}, false}, withBlanks ? text : FirstWord(Trimmed(text))};
}

Reply<int> AskInteger(Host& host, const std::wstring& prompt) {
  Question question(host, prompt, kNeedsInteger, kNoEnter | kNoZero | kNoNegative | kAnyText);
  return question.Ask<int>(IntegerFrom, [&](int number) { return ObjectionTo(number, question.Flags()); });
}

Reply<double> AskReal(Host& host, const std::wstring& prompt) {
  Question question(host, prompt, kNeedsNumber, kNoEnter | kNoZero | kNoNegative | kAnyText);
  return question.Ask<double>(RealFrom, [&](double number) { return ObjectionTo(number, question.Flags()); });
}

Reply<double> AskDistance(Host& host, const std::wstring& prompt, const std::optional<Point>& base) {
  const Question question(host, prompt, kNeedsDistance, kNoEnter | kNoZero | kNoNegative | kAnyText);
  return Measure(host, question, RealFrom, Distance).Ask(base);
}

Reply<double> AskAngle(Host& host, const std::wstring& prompt, const std::optional<Point>& base) {
  const Question question(host, prompt, kNeedsAngle, kNoEnter | kNoZero | kAnyText);
  return Measure(host, question, AngleFrom, Direction).Ask(base);
}

Reply<Point> AskPoint(Host& host, const std::wstring& prompt) {
  Question question(host, prompt, kInvalidPoint, kNoEnter | kAnyText);
  auto reply = question.Ask<Point>(
      [&](const UserAnswer& answer) { return PointFrom(answer, CurrentOrigin(host.variables)); });
  if (reply.status == RTNORM) SetLastPoint(host.variables, reply.value);
  return reply;
}

Reply<Point> AskCorner(Host& host, const std::wstring& prompt) {
  auto reply = AskPoint(host, prompt);
  if (reply.status != RTNORM) return reply;
  reply.value.z = CurrentOrigin(host.variables).elevation;
  SetLastPoint(host.variables, reply.value);
  return reply;
}

Reply<std::wstring> AskKeyword(Host& host, const std::wstring& prompt) {
  Question question(host, prompt, kInvalidKeyword, kNoEnter | kAnyText);
  if (!question.HasKeywords() && (question.Flags() & kAnyText) == 0)
    return {{RTERROR, "no keywords are laid down", false}, {}};
  auto reply = question.Ask<std::wstring>([](const UserAnswer&) { return std::optional<std::wstring>(); });
  if (reply.status != RTKWORD) return reply;
  return {{RTNORM, {}, false}, host.answers.lastKeyword};
}

}  // namespace lomlisp::embedded
