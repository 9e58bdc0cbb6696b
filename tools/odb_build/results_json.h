// The results part of a JSON database description (docs/odb_json.md): steps with frames,
// field outputs and their blocks, and history regions.
#pragma once

#include <string>
#include <vector>

#include "odb/results_data.h"
#include "odb/writer.h"
#include "tools/odb_build/json_reader.h"

namespace odb {

struct JsonField {
  std::string path;  // JSON pointer, for messages
  FieldOutputData header;
  std::vector<FieldBlockData> blocks;
};

struct JsonFrame {
  std::string path;
  FrameData frame;
  std::vector<JsonField> fields;
};

struct JsonStep {
  std::string path;
  StepData step;
  std::vector<JsonFrame> frames;
  std::vector<HistoryRegionData> history;
};

// Reads the "steps" member of the root object (none: no steps) of the model m (history
// points name its sets). Throws odb::JsonError.
std::vector<JsonStep> readResultsJson(const JsonAt& root, const ModelData& m);

// Adds the steps to w in order. A rejected item throws odb::JsonError naming its place.
void writeResultsJson(const std::vector<JsonStep>& steps, Writer& w);

}  // namespace odb
