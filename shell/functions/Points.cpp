#include <shell/functions/Points.h>

#include <embedded/Nesting.h>

namespace lomlisp::shell {

using embedded::Chain;
using embedded::Mark;
using embedded::Record;

namespace {

double RealOf(const Record& record) {
  switch (record.type) {
    case RTREAL:
      return record.value.rreal;
    case RTSHORT:
      return record.value.rint;
    default:
      return record.value.rlong;
  }
}

bool IsNumber(const Record& record) {
  return record.type == RTREAL || record.type == RTSHORT || record.type == RTLONG;
}

}  // namespace

std::optional<Coordinates> TakePoint(const Chain& chain, size_t& position) {
  size_t next = position;
  if (next == chain.size() || chain[next++].type != RTLB) return std::nullopt;
  Coordinates point{};
  size_t axis = 0;
  while (next < chain.size() && axis < 3 && IsNumber(chain[next])) point[axis++] = RealOf(chain[next++]);
  if (axis < 2 || next == chain.size() || chain[next].type != RTLE) return std::nullopt;
  position = next + 1;
  return point;
}

std::optional<Coordinates> PointIn(const Chain& item) {
  size_t position = 0;
  const auto point = TakePoint(item, position);
  return position == item.size() ? point : std::nullopt;
}

Chain PointItem(const Coordinates& point) {
  Record record = Mark(RT3DPOINT);
  for (size_t axis = 0; axis < 3; ++axis) record.value.rpoint[axis] = point[axis];
  return {record};
}

}  // namespace lomlisp::shell
