// The platform functions that ask the user.
#include <lomlisp/platform/modules.h>

#include <embedded/PlatformCall.h>
#include <embedded/Questions.h>

#include <optional>
#include <string>

using namespace lomlisp::embedded;

namespace {

constexpr size_t kLongestText = 132;

std::wstring TextFrom(const ACHAR* text) { return text != nullptr ? text : L""; }

std::optional<Point> PointFrom(const ads_real* point) {
  return point != nullptr ? std::optional(Point{point[0], point[1], point[2], false}) : std::nullopt;
}

void Store(const std::wstring& text, ACHAR* place) { place[text.copy(place, kLongestText)] = L'\0'; }

void Store(const Point& point, ads_real* place) {
  place[0] = point.x;
  place[1] = point.y;
  place[2] = point.z;
}

void Store(int number, int* place) { *place = number; }

void Store(double number, ads_real* place) { *place = number; }

// Asks, and puts the answer into its place. `ask` gives a reply.
template <typename Place, typename Ask>
int Give(PlatformCall& call, Place* place, Ask ask) {
  return call.Run([&] {
    if (place == nullptr) return call.Refuse("no place for the answer");
    const auto reply = ask(Host::Instance());
    if (reply.status == RTNORM) Store(reply.value, place);
    return Answered(call, reply);
  });
}

}  // namespace

int acedInitGet(int flags, const ACHAR* keywords) {
  return PlatformCall("acedInitGet", keywords).Run([&] {
    Host::Instance().answers.rules = {flags, Keywords(TextFrom(keywords))};
    return RTNORM;
  });
}

int acedGetInput(ACHAR* result) {
  PlatformCall call("acedGetInput");
  return call.Run([&] {
    if (result == nullptr) return call.Refuse("no place for the keyword");
    Store(Host::Instance().answers.lastKeyword, result);
    return RTNORM;
  });
}

int acedGetString(int allowBlanks, const ACHAR* prompt, ACHAR* result) {
  PlatformCall call("acedGetString", prompt);
  return Give(call, result, [&](Host& host) { return AskText(host, TextFrom(prompt), allowBlanks != 0); });
}

int acedGetKword(const ACHAR* prompt, ACHAR* result) {
  PlatformCall call("acedGetKword", prompt);
  return Give(call, result, [&](Host& host) { return AskKeyword(host, TextFrom(prompt)); });
}

int acedGetInt(const ACHAR* prompt, int* result) {
  PlatformCall call("acedGetInt", prompt);
  return Give(call, result, [&](Host& host) { return AskInteger(host, TextFrom(prompt)); });
}

int acedGetReal(const ACHAR* prompt, ads_real* result) {
  PlatformCall call("acedGetReal", prompt);
  return Give(call, result, [&](Host& host) { return AskReal(host, TextFrom(prompt)); });
}

int acedGetDist(const ads_point base, const ACHAR* prompt, ads_real* result) {
  PlatformCall call("acedGetDist", prompt);
  call.TakesPoint(base);
  return Give(call, result, [&](Host& host) { return AskDistance(host, TextFrom(prompt), PointFrom(base)); });
}

int acedGetAngle(const ads_point base, const ACHAR* prompt, ads_real* result) {
  PlatformCall call("acedGetAngle", prompt);
  call.TakesPoint(base);
  return Give(call, result, [&](Host& host) { return AskAngle(host, TextFrom(prompt), PointFrom(base)); });
}

int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result) {
  PlatformCall call("acedGetPoint", prompt);
  call.TakesPoint(base);
  return Give(call, result, [&](Host& host) { return AskPoint(host, TextFrom(prompt)); });
}

int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result) {
  PlatformCall call("acedGetCorner", prompt);
  if (base == nullptr) call.Object("no base point");
  call.TakesPoint(base);
  return Give(call, result, [&](Host& host) { return AskCorner(host, TextFrom(prompt)); });
}
