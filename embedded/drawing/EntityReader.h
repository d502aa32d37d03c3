// The groups of an object as a LISP function gets them.
#pragma once

#include <embedded/Chain.h>
#include <embedded/drawing/Drawing.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

// -1 with the name, the stored groups in order, -3 and the wanted extended data, each behind its 1001; no -3
// when there are none. Of an entity the groups with default values (6, 39, 48, 60, 62) are left out,
// and its extrusion (210) is given. A handle (5) is given also where the file has none. No function: no
// extended data.
Chain EntityGroups(const Drawing& drawing, const Object& object,
                   const std::function<bool(std::wstring_view application)>& isWanted = {});

// The applications that a caller asks for: texts, bare or within one pair of brackets. Says why not for
// anything else; an empty chain asks for none.
std::optional<std::vector<std::wstring>> ApplicationNames(const Chain& chain, std::string& objection);

}  // namespace lomlisp::embedded
