#include <shell/Batch.h>

#include <nlohmann/json.hpp>

namespace lomlisp::shell {

std::string BatchLine(const BatchResult& result, const Report& report) {
  nlohmann::ordered_json line;
  line["file"] = result.file;
  line["functions"] = report.calls;
  line["entities_before"] = result.entitiesBefore;
  line["entities_after"] = result.entitiesAfter;
  line["errors"] = report.errors;
  line["memory"] = {{"blocks", result.memory.blocks}, {"bytes", result.memory.bytes}};
  line["seconds"] = result.seconds;
  line["status"] = result.status;
  // Names of files may be any bytes.
  return line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace lomlisp::shell
