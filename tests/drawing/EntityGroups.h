// What the tests of making, changing and reading entities share: chains from groups, and dumps.
#pragma once

#include <embedded/drawing/Drawing.h>
#include <embedded/drawing/EntityMaker.h>
#include <embedded/drawing/EntityReader.h>
#include <embedded/drawing/GroupRecords.h>
#include <tests/support/HostTest.h>

#include <string>

namespace lomlisp::test {

using embedded::Drawing;
using embedded::EntityMaker;
using embedded::Group;
using embedded::Groups;
using embedded::Object;
using embedded::Point;
using embedded::Reference;

// A chain from groups of any code, -3 and 1001 included.
inline embedded::Chain ChainOf(const Drawing& drawing, const Groups& groups) {
  embedded::Chain chain;
  for (const Group& group : groups) AppendRecord(chain, group, drawing);
  return chain;
}

inline embedded::Chain ChainOf(const Drawing& drawing, const Object& object, const Groups& groups) {
  Groups all{{-1, Reference{object.handle}}};
  all.insert(all.end(), groups.begin(), groups.end());
  return ChainOf(drawing, all);
}

inline std::string ValueText(const embedded::GroupValue& value) {
  struct Printer {
    std::string operator()(long long number) const { return std::to_string(number); }
    std::string operator()(double number) const {
      char digits[32];
      return std::string(digits, std::to_chars(digits, std::end(digits), number).ptr);
    }
    std::string operator()(const Point& point) const {
      return "(" + (*this)(point.x) + " " + (*this)(point.y) + (point.isFlat ? "" : " " + (*this)(point.z)) +
             ")";
    }
    std::string operator()(const std::wstring& text) const { return Utf8(text); }
    std::string operator()(const Reference& reference) const {
      return "#" + Utf8(embedded::HandleText(reference.handle));
    }
  };
  return std::visit(Printer(), value);
}

// As in "0:LINE 5:2A 330:#1F 100:AcDbEntity 8:0"; of a drawing without its numbers "5" and "330".
inline std::string Line(const Groups& groups, bool hasHandles = false) {
  std::string line;
  for (const Group& group : groups) {
    if (!hasHandles && (group.code == 5 || group.code == 105 || group.code == 330)) continue;
    if (!line.empty()) line += ' ';
    line += std::to_string(group.code) + ":" + ValueText(group.value);
  }
  return line;
}

inline std::string Line(const Object& object, bool hasHandles = false) {
  std::string line = Line(object.groups, hasHandles);
  for (const embedded::ExtendedData& data : object.extended)
    line += " | " + Utf8(data.application) + " " + Line(data.groups, true);
  return line;
}

// Everything that a refusal must leave as it is.
inline std::string Dump(Drawing& drawing) {
  std::string dump;
  for (uint64_t handle = 1; handle < drawing.NextHandle(); ++handle) {
    const Object* object = drawing.FindHandle(handle);
    if (object == nullptr) continue;
    dump += std::to_string(handle) + " " + Line(*object, true);
    dump += object->isErased ? " erased" : "";
    dump += object->needsRegeneration ? " stale" : "";
    dump += " " + std::to_string(object->parts.size()) + "\n";
  }
  dump += std::to_string(drawing.Entities().members.size()) + " " + std::to_string(drawing.Blocks().size());
  dump += " " + std::to_string(drawing.regenerations) + "\n";
  for (const auto& section : drawing.Sections()) dump += Line(section.groups, true) + "\n";
  return dump;
}

inline embedded::Chain Read(const Drawing& drawing, const Object& object) {
  return embedded::EntityGroups(drawing, object, [](std::wstring_view) { return true; });
}

}  // namespace lomlisp::test
