// What belongs to the drawing that is open in the host, and ends with it.
#pragma once

#include <embedded/drawing/Drawing.h>
#include <embedded/drawing/EntityMaker.h>
#include <embedded/selection/Picker.h>
#include <embedded/selection/SelectionSets.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::embedded {

struct Session {
  Session(std::unique_ptr<Drawing> opened, size_t selectionSets)
      : drawing(std::move(opened)), maker(*drawing), picker(*drawing), sets(selectionSets) {}

  std::unique_ptr<Drawing> drawing;
  EntityMaker maker;
  Picker picker;
  SelectionSets sets;
  std::vector<uint64_t> previous;               // the handles of what was selected last
  std::vector<uint64_t> implied;                // of what is selected before a command
  std::map<std::wstring, size_t> tableCursors;  // where acdbTblNext goes on, by the table's folded name
};

}  // namespace lomlisp::embedded
