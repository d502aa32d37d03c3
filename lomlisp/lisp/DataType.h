// The kinds of value that Type tells apart.
#pragma once

namespace lomlisp {

// In the order of the tests: a value is of the first type that holds.
enum datatype_t {
  dtReal = 0,  // RTREAL, RTLONG, RTINT64
  dtInt = 1,   // RTSHORT
  dtString = 2,
  dtList = 3,  // also nil
  dtPickSet = 4,
  dtEName = 5,
  dtUnknown = 6,
};

}  // namespace lomlisp
