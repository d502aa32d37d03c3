// New entries of tables, and new names of old ones.
#pragma once

#include <embedded/drawing/GivenGroups.h>

#include <optional>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// Whether entries of that table can be made from groups.
bool IsEntryType(std::wstring_view type);

// Makes an entry from groups without their type; what is missing is as in a new drawing. Refuses illegal
// names, those that there are, and what CheckGroup refuses; `made` is set when there is no objection.
std::optional<std::string> MakeEntry(Drawing& drawing, std::wstring_view table, GivenGroups given,
                                     Object*& made);

// Why an entry cannot get that name; nothing when it has it already.
std::optional<std::string> CheckRename(Drawing& drawing, const Object& entry, std::wstring_view name);

// To be called after the name in an entry's groups was changed: the entry is found under it, and what
// named the entry names it still. Linear in the drawing.
void FollowRename(Drawing& drawing, Object& entry, const std::wstring& oldName);

}  // namespace lomlisp::embedded
