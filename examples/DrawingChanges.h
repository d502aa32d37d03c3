// What has changed in a drawing between two moments.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Remembers the entities of the main list and their parts.
class DrawingSnapshot {
 public:
  explicit DrawingSnapshot(lomlisp::embedded::Drawing& drawing);

  // A line for each entity that is new, erased or changed since, in the order of handles, as in
  // "2F TEXT: (1 . "Kitchen") -> (1 . "Bath")".
  std::vector<std::wstring> ChangesSince(lomlisp::embedded::Drawing& drawing) const;
  size_t Size() const { return m_entities.size(); }

 private:
  struct State {
    lomlisp::embedded::Groups groups;
    std::vector<lomlisp::embedded::ExtendedData> extended;
  };
  using States = std::map<uint64_t, State>;
  static States StatesOf(lomlisp::embedded::Drawing& drawing);

  States m_entities;
};
