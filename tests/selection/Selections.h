// Short ways to draw entities and to say which of them were found.
#pragma once

#include <embedded/selection/Picker.h>
#include <tests/support/HostTest.h>

#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test {

using embedded::Drawing;
using embedded::Group;
using embedded::Groups;
using embedded::Object;
using embedded::Picker;
using embedded::Point;

inline Group At(int code, double x, double y, double z = 0) { return {code, Point{x, y, z}}; }
inline Group Flat(int code, double x, double y) { return {code, Point{x, y, 0, true}}; }

// An entity on layer 0 without its place in a list.
inline Object& Make(Drawing& drawing, const wchar_t* type, Groups geometry) {
  Groups groups{{0, type}, {8, L"0"}};
  groups.insert(groups.end(), geometry.begin(), geometry.end());
  return drawing.NewObject(std::move(groups));
}

inline Object& Draw(Drawing& drawing, const wchar_t* type, Groups geometry) {
  Object& entity = Make(drawing, type, std::move(geometry));
  drawing.Append(drawing.Entities(), entity);
  return entity;
}

inline Object& DrawLine(Drawing& drawing, double x1, double y1, double x2, double y2) {
  return Draw(drawing, L"LINE", {At(10, x1, y1), At(11, x2, y2)});
}

inline Object& DrawPart(Drawing& drawing, Object& header, const wchar_t* type, Groups geometry) {
  Object& part = Make(drawing, type, std::move(geometry));
  drawing.AppendPart(header, part);
  return part;
}

// A block without content.
inline embedded::BlockDefinition& DefineBlock(Drawing& drawing, const wchar_t* name, Point base = {}) {
  return drawing.AppendBlock(drawing.NewObject({{0, L"BLOCK"}, {2, name}, {10, base}}),
                             drawing.NewObject({{0, L"ENDBLK"}}));
}

inline Object& DrawIn(Drawing& drawing, embedded::BlockDefinition& block, const wchar_t* type,
                      Groups geometry) {
  Object& entity = Make(drawing, type, std::move(geometry));
  drawing.Append(block.content, entity);
  return entity;
}

inline std::vector<Object*> Inside(Picker& picker, double x1, double y1, double x2, double y2) {
  return picker.Window({x1, y1}, {x2, y2}, false);
}
inline std::vector<Object*> Crossing(Picker& picker, double x1, double y1, double x2, double y2) {
  return picker.Window({x1, y1}, {x2, y2}, true);
}

// What a window does with the entities of a drawing: 'W' has all of them inside, 'C' meets some, '-'.
inline char Relation(Drawing& drawing, double x1, double y1, double x2, double y2) {
  Picker picker(drawing);
  if (!Inside(picker, x1, y1, x2, y2).empty()) return 'W';
  return Crossing(picker, x1, y1, x2, y2).empty() ? '-' : 'C';
}

}  // namespace lomlisp::test
