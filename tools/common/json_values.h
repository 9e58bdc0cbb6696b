// JSON output of the tools through nlohmann-json: numbers with every digit that matters and
// texts that never make the writer throw.
#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace odbs::tools {

// Objects keep their keys in the order they were added.
using Json = nlohmann::ordered_json;

// A float as the JSON number of its shortest text (0.1f is 0.1); null when not finite.
Json jsonNumber(float v);
// A double as a JSON number; null when not finite.
Json jsonNumber(double v);
Json jsonNumbers(const std::vector<float>& v);

// The compact text of j; bytes of texts that are not UTF-8 become U+FFFD.
std::string jsonText(const Json& j);

// jsonText(j) and a newline on out.
void printJson(const Json& j, std::ostream& out);

}  // namespace odbs::tools
