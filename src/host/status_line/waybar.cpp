#include <nlohmann/json.hpp>

#include "host/status_line/status_line.hpp"

namespace host {

std::string toWaybarJson(const StatusLine& line) {
  const nlohmann::ordered_json object{{"text", line.text}, {"tooltip", line.tooltip}, {"class", line.cssClass}};
  using json = nlohmann::ordered_json;
  return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace host
