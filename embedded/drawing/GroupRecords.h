// Groups as the records of a chain, and back.
#pragma once

#include <embedded/Chain.h>
#include <embedded/drawing/Drawing.h>

#include <optional>
#include <string>

namespace lomlisp::embedded {

// What only records have, not the drawing's groups.
inline constexpr int kNameOfObject = -1;
inline constexpr int kExtendedData = -3;

// Appends the group's record; nothing for a code that no record can have. Angles become radians, integers are
// cut to the width of the record's value.
void AppendRecord(Chain& chain, const Group& group, const Drawing& drawing);

// The group that a record is, for an RTDXF0 the type (0). Angles become degrees; the drawing gives names
// their handles. Says why not, for a record that is no group or has no text, and for a name of another
// drawing.
std::optional<Group> ReadRecord(const Record& record, const Drawing& drawing, std::string& objection);

}  // namespace lomlisp::embedded
