#include <shell/Signals.h>
#include <shell/Values.h>
#include <shell/functions/Arguments.h>
#include <shell/functions/Functions.h>
#include <shell/functions/Points.h>

#include <lomlisp/platform/modules.h>

#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/Questions.h>

#include <optional>
#include <utility>

#include <shell/Signals.h>
#include <shell/Values.h>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Host;
using embedded::Mark;

// What a question gives: the value, nil for Enter, the keyword. Where nobody answered the host has said so.
Chain ReplyOf(int status, const Chain& value) {
  switch (status) {
    case RTNORM:
      return value;
    case RTKWORD:
      return TextItem(Host::Instance().answers.lastKeyword);
    case RTCAN:
      throw LispError(L"Function cancelled");
    default:
      return Nil();
  }
}

Chain InitGet(const Arguments& arguments) {
  return TrueOr(acedInitGet(IntegerIn(arguments[0]), TextIn(arguments[1]).c_str()) == RTNORM);
}

// Not by acedGetString, which cuts long texts.
Chain GetString(const Arguments& arguments) {
  const auto reply = embedded::AskText(Host::Instance(), TextIn(arguments[1]), !IsNil(arguments[0]));
  if (reply.isMistake) throw LispError(std::wstring(reply.objection.begin(), reply.objection.end()));
  return ReplyOf(reply.status, TextItem(reply.value));
}

Chain GetInt(const Arguments& arguments) {
  int number = 0;
  const int status = acedGetInt(TextIn(arguments[0]).c_str(), &number);
  return ReplyOf(status, IntegerItem(number));
}

Chain GetReal(const Arguments& arguments) {
  ads_real number = 0.0;
  const int status = acedGetReal(TextIn(arguments[0]).c_str(), &number);
  return ReplyOf(status, RealItem(number));
}

Chain GetKword(const Arguments& arguments) {
  const auto reply = embedded::AskKeyword(Host::Instance(), TextIn(arguments[0]));
  if (reply.isMistake) throw LispError(std::wstring(reply.objection.begin(), reply.objection.end()));
  return ReplyOf(reply.status, TextItem(reply.value));
}

Chain GetPoint(const Arguments& arguments) {
  const auto base = PointIn(arguments[0]);
  Coordinates point{};
  const int status = acedGetPoint(PlaceOf(base), TextIn(arguments[1]).c_str(), point.data());
  return ReplyOf(status, PointItem(point));
}

Chain GetCorner(const Arguments& arguments) {
  const auto base = PointIn(arguments[0]);
  Coordinates point{};
  const int status = acedGetCorner(PlaceOf(base), TextIn(arguments[1]).c_str(), point.data());
  return ReplyOf(status, PointItem(point));
}

Chain GetDist(const Arguments& arguments) {
  const auto base = PointIn(arguments[0]);
  ads_real distance = 0.0;
  const int status = acedGetDist(PlaceOf(base), TextIn(arguments[1]).c_str(), &distance);
  return ReplyOf(status, RealItem(distance));
}

Chain GetAngle(const Arguments& arguments) {
  const auto base = PointIn(arguments[0]);
  ads_real angle = 0.0;
  const int status = acedGetAngle(PlaceOf(base), TextIn(arguments[1]).c_str(), &angle);
  return ReplyOf(status, RealItem(angle));
}

// (entity point)
Chain EntSel(const Arguments& arguments) {
  Name name;
  Coordinates point{};
  const ACHAR* const prompt = IsNil(arguments[0]) ? nullptr : TextIn(arguments[0]).c_str();
  const int status = acedEntSel(prompt, name.words, point.data());
  return ReplyOf(status, {Mark(RTLB), NameItem(name).front(), PointItem(point).front(), Mark(RTLE)});
}

// --- Answers laid down ---

embedded::Point DrawingPoint(const Coordinates& at) { return {at[0], at[1], at[2], false}; }

// nil is Enter, "^C" a cancellation, a text what is typed; a point picks, an entity or a list of an entity
// and a point picks that, a selection set selects.
embedded::UserAnswer AnswerOf(const Chain& item) {
  const embedded::Record& first = item.front();
  if (IsNil(item)) return embedded::PressEnter();
  if (first.type == RTSTR && first.text == L"^C") return embedded::PressCancel();
  if (first.type == RTSTR) return embedded::TypeText{first.text};
  if (first.type == RTENAME) return embedded::PickEntity{HandleIn(first), {}};
  if (first.type == RTPICKS) return embedded::SelectEntities{HandlesIn(Name(item))};
  if (const auto point = PointIn(item)) return embedded::PickPoint{DrawingPoint(*point)};
  if (item.size() > 2 && item[1].type == RTENAME)
    if (const auto point = PointIn(Chain(item.begin() + 2, item.end() - 1)))
      return embedded::PickEntity{HandleIn(item[1]), DrawingPoint(*point)};
  throw LispError(L"bad argument value: no answer: " + embedded::ToText(item));
}

Chain Answer(const Arguments& arguments) {
  embedded::Answers& answers = Host::Instance().answers;
  for (const Chain& argument : arguments) answers.Add(AnswerOf(argument));
  return IntegerItem(static_cast<int>(answers.Waiting()));
}

}  // namespace

void DefineInputFunctions(Input& input) {
  DefineHostFunction("initget", InitGet);
  DefineHostFunction("getstring", GetString);
  DefineHostFunction("getint", GetInt);
  DefineHostFunction("getreal", GetReal);
  DefineHostFunction("getkword", GetKword);
  DefineHostFunction("getpoint", GetPoint);
  DefineHostFunction("getcorner", GetCorner);
  DefineHostFunction("getdist", GetDist);
  DefineHostFunction("getangle", GetAngle);
  DefineHostFunction("entsel", EntSel);
  DefineHostFunction("answer", Answer);
  Interpreter::Instance().Define("read-line", [&input](const Arguments&) {
    const auto line = input.ReadLine(L"");
    if (WasInterrupted()) {
      ForgetInterrupt();
      throw LispError(L"Function cancelled");
    }
    return line ? TextItem(*line) : Nil();
  });
  Host::Instance().answers.source =
      [&input](const std::wstring& prompt) -> std::optional<embedded::UserAnswer> {
    auto line = input.ReadLine(prompt);
    if (WasInterrupted()) return embedded::PressCancel();
    if (!line) return std::nullopt;
    return embedded::TypeText{std::move(*line)};
  };
}

}  // namespace lomlisp::shell
