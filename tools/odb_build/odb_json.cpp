#include "tools/odb_build/odb_json.h"

#include "odb/writer.h"
#include "tools/odb_build/model_json.h"
#include "tools/odb_build/results_json.h"

namespace odb {

void buildDatabaseFromJson(const std::string& text, const std::string& outputPath,
                           const std::vector<std::string>& inputs) {
  nlohmann::json doc;
  try {
    doc = nlohmann::json::parse(text);
  } catch (const nlohmann::json::parse_error& e) {
    // e.byte is the 1-based offset of the first bad byte; turn it into line and column.
    size_t line = 1, column = 1;
    for (size_t i = 0; i + 1 < e.byte && i < text.size(); ++i) {
      if (text[i] == '\n') {
        ++line;
        column = 1;
      } else {
        ++column;
      }
    }
    std::string what = e.what();
    size_t colon = what.find("syntax error");
    throw JsonError("at line " + std::to_string(line) + ", column " + std::to_string(column) +
                    ": " + (colon == std::string::npos ? what : what.substr(colon)));
  }
  JsonAt root(doc, "");
  ModelData m = readModelJson(root);
  std::vector<JsonStep> steps = readResultsJson(root, m);
  try {
    validateModel(m);
  } catch (const std::invalid_argument& e) {
    throw JsonError(e.what());
  }
  // Results are checked as they are added; an error leaves no file (the writer removes
  // its temporary file when it is destroyed without close).
  Writer w(outputPath, inputs);
  addModel(w, m);
  writeResultsJson(steps, w);
  w.close();
}

}  // namespace odb
