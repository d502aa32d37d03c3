// The line that tells a batch's result.
#pragma once

#include <shell/Report.h>

#include <embedded/Ledger.h>

#include <cstdint>
#include <string>

namespace lomlisp::shell {

struct BatchResult {
  std::string file;  // of the drawing; empty for a new one
  uint64_t entitiesBefore = 0;
  uint64_t entitiesAfter = 0;
  embedded::Balance memory;  // what modules have not released
  double seconds = 0.0;
  int status = 0;
};

// A line of JSON with its end:
// {"file":"a.dxf","functions":{"BOM":1},"entities_before":4,"entities_after":5,"errors":[],
//  "memory":{"blocks":0,"bytes":0},"seconds":0.2,"status":0}
std::string BatchLine(const BatchResult& result, const Report& report);

}  // namespace lomlisp::shell
