#include <bench/SampleDrawing.h>
#include <embedded/drawing/Entries.h>

#include <iterator>
#include <string>
#include <utility>

using namespace lomlisp::embedded;

namespace {

constexpr int kPerRow = 400;
constexpr int kLayers = 20;

std::wstring LayerName(int number) { return L"LAYER-" + std::to_wstring(number); }

Groups GroupsAt(int number, uint64_t owner) {
  const double x = number % kPerRow * 10.0;
  const double y = number / kPerRow * 10.0;
  Groups groups{
      {0, L"LINE"}, {330, Reference{owner}}, {100, L"AcDbEntity"}, {8, LayerName(number % kLayers)}};
  const auto add = [&](Groups more) {
    groups.insert(groups.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
  };
  if (number % 3 == 0) {
    add({{62, 1LL + number % 7},
         {100, L"AcDbLine"},
         {10, Point{x, y, 0.0}},
         {11, Point{x + 6.25, y + 3.5, 0.0}}});
  } else if (number % 3 == 1) {
    groups.front().value = L"CIRCLE";
    add({{100, L"AcDbCircle"}, {10, Point{x + 2.0, y + 2.0, 0.0}}, {40, 1.75}});
  } else {
    groups.front().value = L"TEXT";
    add({{100, L"AcDbText"},
         {10, Point{x, y, 0.0}},
         {40, 2.5},
         {1, L"Raum " + std::to_wstring(number)},
         {100, L"AcDbText"}});
  }
  return groups;
}

}  // namespace

void FillWithSamples(Drawing& drawing, int entities) {
  const uint64_t owner = drawing.OwnerOf(drawing.Entities());
  for (int layer = 0; layer < kLayers; ++layer)
    drawing.NewEntry(L"LAYER", LayerName(layer), {{70, 0LL}, {62, 7LL}, {6, L"Continuous"}});
  for (int number = 0; number < entities; ++number) {
    Object& entity = drawing.NewObject(GroupsAt(number, owner));
    AddHandle(drawing, entity);
    drawing.Append(drawing.Entities(), entity);
  }
}
