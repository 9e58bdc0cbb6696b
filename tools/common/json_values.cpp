#include "tools/common/json_values.h"

#include <cmath>
#include <ostream>

#include "tools/common/number_text.h"

namespace odbs::tools {

Json jsonNumber(float v) {
  return std::isfinite(v) ? Json(shortestDouble(v)) : Json(nullptr);
}

Json jsonNumber(double v) {
  return std::isfinite(v) ? Json(v) : Json(nullptr);
}

Json jsonNumbers(const std::vector<float>& v) {
  Json a = Json::array();
  for (float f : v) a.push_back(jsonNumber(f));
  return a;
}

std::string jsonText(const Json& j) {
  return j.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void printJson(const Json& j, std::ostream& out) {
  out << jsonText(j) << "\n";
}

}  // namespace odbs::tools
