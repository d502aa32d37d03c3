#include <shell/functions/Arguments.h>
#include <shell/functions/Functions.h>
#include <shell/functions/Groups.h>
#include <shell/functions/Points.h>

#include <shell/Values.h>

#include <lomlisp/platform/modules.h>

#include <embedded/Nesting.h>
#include <embedded/selection/SelectionMode.h>

#include <optional>
#include <utility>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Mark;
using embedded::Record;

// The corners as a bare run of points; nothing when something else is among them.
std::optional<Chain> CornersOf(const Chain& item) {
  if (item.front().type != RTLB) return std::nullopt;
  Chain corners;
  size_t position = 1;
  while (const auto point = TakePoint(item, position)) {
    Record& corner = corners.emplace_back(Mark(RT3DPOINT));
    for (size_t axis = 0; axis < 3; ++axis) corner.value.rpoint[axis] = (*point)[axis];
  }
  return position + 1 == item.size() ? std::optional(std::move(corners)) : std::nullopt;
}

// (ssget [mode] [point [point]] [corners] [filter])
class SelectionArguments {
 public:
  explicit SelectionArguments(const Arguments& arguments) : m_arguments(arguments) {
    TakeMode();
    const auto mode = embedded::ReadSelectionMode(m_mode);
    if (!mode) throw LispError(L"bad SSGET mode string");
    if (embedded::TakesPointChain(*mode)) TakeCorners();
    TakePointOrNil(m_first);
    TakePointOrNil(m_second);
    if (HasNext()) m_filter = GroupsOf(Take());
    if (HasNext()) throw LispError(L"too many arguments");
  }

  Chain Select() const {
    const HeapChain corners(m_corners);
    const HeapChain filter(m_filter);
    const void* first = PlaceOf(m_first);
    if (!m_corners.empty()) first = corners.Get();
    Name set;
    const int status =
        acedSSGet(m_hasMode ? m_mode.c_str() : nullptr, first, PlaceOf(m_second), filter.Get(), set.words);
    if (status == RTCAN) throw LispError(L"Function cancelled");
    return status == RTNORM ? NameItem(set, RTPICKS) : Nil();
  }

 private:
  bool HasNext() const { return m_next < m_arguments.size(); }
  const Chain& Take() { return m_arguments[m_next++]; }

  void TakeMode() {
    if (!HasNext() || m_arguments[m_next].front().type != RTSTR) return;
    m_mode = TextIn(Take());
    m_hasMode = true;
  }

  void TakeCorners() {
    if (!HasNext()) return;
    const auto corners = CornersOf(m_arguments[m_next]);
    if (!corners) throw LispError(L"bad point argument");
    m_corners = *corners;
    ++m_next;
  }

  void TakePointOrNil(std::optional<Coordinates>& place) {
    if (!HasNext()) return;
    const Chain& item = m_arguments[m_next];
    place = PointIn(item);
    if (place || IsNil(item)) ++m_next;
  }

  const Arguments& m_arguments;
  size_t m_next = 0;
  std::wstring m_mode;
  bool m_hasMode = false;
  std::optional<Coordinates> m_first;
  std::optional<Coordinates> m_second;
  Chain m_corners;
  Chain m_filter;
};

Chain SSGet(const Arguments& arguments) { return SelectionArguments(arguments).Select(); }

Chain SSAdd(const Arguments& arguments) {
  const Name entity(arguments[0]);
  const Name set(arguments[1]);
  Name result;
  const int status = acedSSAdd(entity.OrNull(), set.OrNull(), result.words);
  return status == RTNORM ? NameItem(result, RTPICKS) : Nil();
}

Chain SSDel(const Arguments& arguments) {
  return TrueOr(acedSSDel(Name(arguments[0]).words, Name(arguments[1]).words) == RTNORM);
}

Chain SSMemb(const Arguments& arguments) {
  return TrueOr(acedSSMemb(Name(arguments[0]).words, Name(arguments[1]).words) == RTNORM);
}

Chain SSLength(const Arguments& arguments) {
  int32_t length = 0;
  const int status = acedSSLength(Name(arguments[0]).words, &length);
  return status == RTNORM ? IntegerItem(length) : Nil();
}

Chain SSName(const Arguments& arguments) {
  Name entity;
  const int status = acedSSName(Name(arguments[0]).words, IntegerIn(arguments[1]), entity.words);
  return status == RTNORM ? NameItem(entity) : Nil();
}

Chain SSFree(const Arguments& arguments) { return TrueOr(acedSSFree(Name(arguments[0]).words) == RTNORM); }

}  // namespace

void DefineSelectionFunctions() {
  DefineHostFunction("ssget", SSGet);
  DefineHostFunction("ssadd", SSAdd);
  DefineHostFunction("ssdel", SSDel);
  DefineHostFunction("ssmemb", SSMemb);
  DefineHostFunction("sslength", SSLength);
  DefineHostFunction("ssname", SSName);
  DefineHostFunction("ssfree", SSFree);
}

}  // namespace lomlisp::shell
