#include <shell/DrawingChanges.h>

#include <embedded/Chain.h>
#include <embedded/drawing/GroupRecords.h>

#include <cstdint>
#include <map>
#include <unordered_set>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Drawing;
using embedded::ExtendedData;
using embedded::Group;
using embedded::Object;

using Entities = std::map<uint64_t, const Object*>;
using Lines = std::vector<std::wstring>;

Entities EntitiesOf(Drawing& drawing) {
  Entities entities;
  for (const Object* entity = Drawing::First(drawing.Entities()); entity != nullptr;
       entity = Drawing::Next(*entity))
    entities.emplace(entity->handle, entity);
  return entities;
}

std::wstring GroupText(const Group& group, const Drawing& drawing) {
  Chain chain;
  embedded::AppendRecord(chain, group, drawing);
  return embedded::ToText(chain);
}

// Group by group, extended data behind them.
Lines TextsOf(const Object& entity, const Drawing& drawing) {
  Lines texts;
  for (const Group& group : entity.groups) texts.push_back(GroupText(group, drawing));
  for (const ExtendedData& data : entity.extended) {
    texts.push_back(GroupText({embedded::kApplicationCode, data.application}, drawing));
    for (const Group& group : data.groups) texts.push_back(GroupText(group, drawing));
  }
  return texts;
}

// What of the texts the others do not have, or not as often.
std::wstring Without(const Lines& texts, const Lines& others) {
  std::unordered_multiset<std::wstring> rest(others.begin(), others.end());
  std::wstring line;
  for (const std::wstring& text : texts) {
    const auto found = rest.find(text);
    if (found != rest.end())
      rest.erase(found);
    else
      line += (line.empty() ? L"" : L" ") + text;
  }
  return line;
}

std::wstring Heading(const Object& entity) {
  return embedded::HandleText(entity.handle) + L" " + std::wstring(entity.Type()) + L": ";
}

bool IsSame(const Object& before, const Object& after) {
  return before.groups == after.groups && before.extended == after.extended;
}

}  // namespace

std::vector<std::wstring> DrawingChanges(Drawing& before, Drawing& after) {
  const Entities old = EntitiesOf(before);
  const Entities now = EntitiesOf(after);
  Lines lines;
  for (const auto& [handle, entity] : old) {
    const auto found = now.find(handle);
    if (found == now.end()) {
      lines.push_back(Heading(*entity) + L"erased");
    } else if (!IsSame(*entity, *found->second)) {
      const Lines then = TextsOf(*entity, before);
      const Lines texts = TextsOf(*found->second, after);
      lines.push_back(Heading(*entity) + Without(then, texts) + L" -> " + Without(texts, then));
    }
  }
  for (const auto& [handle, entity] : now)
    if (!old.contains(handle)) lines.push_back(Heading(*entity) + L"new");
  return lines;
}

}  // namespace lomlisp::shell
