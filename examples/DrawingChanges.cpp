#include <examples/DrawingChanges.h>

#include <embedded/Chain.h>
#include <embedded/drawing/GroupRecords.h>

#include <algorithm>

using namespace lomlisp::embedded;

namespace {

std::wstring GroupText(const Group& group, const Drawing& drawing) {
  Chain chain;
  AppendRecord(chain, group, drawing);
  return ToText(chain);
}

std::wstring GroupsText(const Groups& groups, const Drawing& drawing) {
  std::wstring text;
  for (const Group& group : groups) text += (text.empty() ? L"" : L" ") + GroupText(group, drawing);
  return text;
}

// The groups of one list that the other does not have.
Groups Without(const Groups& groups, const Groups& others) {
  Groups rest;
  std::copy_if(groups.begin(), groups.end(), std::back_inserter(rest), [&](const Group& group) {
    return std::find(others.begin(), others.end(), group) == others.end();
  });
  return rest;
}

// Extended data as plain groups, 1001 in front of each application's.
Groups Flat(const std::vector<ExtendedData>& extended) {
  Groups groups;
  for (const ExtendedData& data : extended) {
    groups.push_back({kApplicationCode, data.application});
    groups.insert(groups.end(), data.groups.begin(), data.groups.end());
  }
  return groups;
}

std::wstring ChangeText(const Groups& before, const Groups& after, const Drawing& drawing) {
  return GroupsText(Without(before, after), drawing) + L" -> " + GroupsText(Without(after, before), drawing);
}

}  // namespace

DrawingSnapshot::DrawingSnapshot(Drawing& drawing) : m_entities(StatesOf(drawing)) {}

DrawingSnapshot::States DrawingSnapshot::StatesOf(Drawing& drawing) {
  States states;
  for (const Object* entity = Drawing::First(drawing.Entities()); entity != nullptr;
       entity = Drawing::Next(*entity))
    states.emplace(entity->handle, State{entity->groups, entity->extended});
  return states;
}

std::vector<std::wstring> DrawingSnapshot::ChangesSince(Drawing& drawing) const {
  std::vector<std::wstring> lines;
  const States now = StatesOf(drawing);
  const auto add = [&](uint64_t handle, const State& state, const std::wstring& what) {
    lines.push_back(HandleText(handle) + L" " + std::wstring(TextOf(state.groups, kTypeCode)) + what);
  };
  for (const auto& [handle, before] : m_entities) {
    const auto found = now.find(handle);
    if (found == now.end()) {
      add(handle, before, L": erased");
      continue;
    }
    const State& after = found->second;
    if (before.groups != after.groups)
      add(handle, after, L": " + ChangeText(before.groups, after.groups, drawing));
    if (before.extended != after.extended)
      add(handle, after, L": " + ChangeText(Flat(before.extended), Flat(after.extended), drawing));
  }
  for (const auto& [handle, after] : now)
    if (!m_entities.contains(handle)) add(handle, after, L": new");
  return lines;
}
