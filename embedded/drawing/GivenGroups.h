// The groups of an entity as a LISP function hands them over to make or change one.
#pragma once

#include <embedded/Chain.h>
#include <embedded/drawing/Drawing.h>

#include <optional>
#include <string>
#include <vector>

namespace lomlisp::embedded {

struct GivenGroups {
  std::optional<Record> name;  // -1
  Groups groups;               // without names (-1, -2), reactors (-5), handles and extended data
  std::vector<ExtendedData> extended;
};

// Says why not for what is no run of groups: brackets, nil, points without a code, groups without a text,
// numbers that are not finite, a second type (0), extended data out of form. One application
// stands once among the extended data; it may have no groups. Its name is not looked up.
std::optional<GivenGroups> ReadGiven(const Chain& chain, const Drawing& drawing, std::string& objection);

// Starts an objection to a group.
std::string AboutGroup(int code);

}  // namespace lomlisp::embedded
