// The embedded host's own data, walked in C++.

#include <bench/peers/Drawings.h>
#include <bench/peers/Made.h>
#include <bench/peers/Pick.h>

#include <map>
#include <memory>
#include <vector>

using namespace lomlisp::embedded;

namespace {

Workload EntGet(int size) {
  const Drawing& drawing = HostWithDrawing(size).CurrentDrawing();
  return Making(
      [&drawing] {
        double sum = 0.0;
        for (const Object* entity : drawing.Entities().members) {
          const Point point = PointOf(entity->groups, 10);
          sum += point.x + point.y;
        }
        return sum;
      },
      [](double sum) {
        Digest digest;
        digest.Real(sum);
        return digest;
      });
}

void SetColour(Object& entity, long long colour) {
  if (Group* const group = Find(entity.groups, 62))
    group->value = colour;
  else
    entity.groups.push_back({62, colour});
}

Workload EntMod(int size) {
  Drawing& drawing = HostWithDrawing(size).CurrentDrawing();
  auto run = std::make_shared<int>(0);
  Workload work;
  work.run = [&drawing, run] {
    ++*run;
    int position = 0;
    for (Object* const entity : drawing.Entities().members) {
      SetColour(*entity, NewColour(position++, *run));
      drawing.NoteChange(*entity);
    }
  };
  work.check = [&drawing] { return DigestOfColours(drawing); };
  return work;
}

bool IsWanted(const Object& entity) {
  const std::wstring_view type = entity.Type();
  return (type == L"TEXT" || type == L"LINE") && TextOf(entity.groups, kLayerCode).starts_with(L"LAYER-1");
}

Workload SSGet(int size) {
  const Drawing& drawing = HostWithDrawing(size).CurrentDrawing();
  return Making(
      [&drawing] {
        std::vector<const Object*> selected;
        for (const Object* entity : drawing.Entities().members)
          if (IsWanted(*entity)) selected.push_back(entity);
        return selected;
      },
      [](const std::vector<const Object*>& selected) {
        Digest digest;
        digest.Integer(static_cast<int64_t>(selected.size()));
        return digest;
      });
}

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  static const std::map<std::string, std::function<Workload(int)>> rows{
      {"entget", EntGet},
      {"entmod", EntMod},
      {"ssget", SSGet},
      {"call-in-host", [](int n) { return CallsInHost(n, PickByHand); }},
  };
  const auto found = rows.find(row);
  if (found == rows.end()) throw std::invalid_argument("no such row: " + row);
  return found->second(size);
}
