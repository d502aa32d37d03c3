// Filters: which entities a selection takes.
//
// A filter is a chain of groups, all of which an entity must have. Texts are patterns (see Wildcard.h),
// integers are compared exactly, reals and coordinates within kFilterFuzz; names of objects (-1 for the
// entity itself, 330, ...) must be the same. Of several groups of one code in an entity, one is enough,
// with every relation; without one, no test of that code holds. What an entity leaves out at its default
// counts as there: 6 "BYLAYER", 8 "0", 39 0.0, 48 1.0, 60 0, 62 256, 67 0, 210 (0 0 1), 370 -1, and
// 410 "Model" where 67 is 0 (the layout of another space is only known by the group). 62 0 and
// 6 "BYBLOCK" match entities that say so.
//
// Groups -4, without regard to case:
//   "<AND" ... "AND>"  one test or more, all     "<XOR" ... "XOR>"  two, just one of them
//   "<OR" ... "OR>"    one test or more, any     "<NOT" ... "NOT>"  one, which does not hold
//   a relation, for the next group alone:
//     "="  "!=" "/=" "<>"  "*" (any value)    for all values
//     "<" "<=" ">" ">="                       for numbers and points; beyond the fuzz, or within it
//     "&" (a common bit)  "&=" (all bits of the filter)   for integers
//   For a point one to three relations, as ">,>,*", for x, y and z; those left out are "*". A single one
//   is for all of them: each must hold, and "!=" is the contrary of "=".
//
// -3 and a 1001 or more behind it: extended data of each of these applications, patterns.
#pragma once

#include <embedded/Chain.h>
#include <embedded/drawing/Drawing.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace lomlisp::embedded {

// How far reals and coordinates may be apart to be equal.
inline constexpr double kFilterFuzz = 1e-6;

class Filter {
 public:
  // Takes the chain as bare groups; the drawing gives names their handles. Nothing, and why and at which
  // record (from 1), when it is malformed. An empty chain is a filter that takes all.
  static std::optional<Filter> Compile(const Chain& chain, const Drawing& drawing, std::string& objection);
  bool Matches(const Object& entity) const;

 private:
  struct Program;
  class Compiler;
  explicit Filter(std::shared_ptr<const Program> program) : m_program(std::move(program)) {}

  std::shared_ptr<const Program> m_program;
};

}  // namespace lomlisp::embedded
