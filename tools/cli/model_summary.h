// What a person wants to know of a model reply (g or G): title, annotation, sections with
// their owners, materials, and per instance its node and element counts by type and
// section, built record by record.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "client/model_records.h"
#include "tools/cli/cli_options.h"

namespace odbs::cli {

struct MeshBlock {
  std::string name;  // "" for the one instance of a single-instance model
  uint64_t nodes = 0;
  uint64_t elements = 0;
  size_t dimension = 0;                   // coordinates per node
  std::vector<float> low, high;           // bounding box of the nodes
  std::map<std::string, uint64_t> types;  // element type -> count
  std::map<int32_t, uint64_t> sections;   // section number -> element count
};

struct SectionEntry {
  client::SectionRecord record;
  std::string owner;  // the instance header before it; "" in a single-instance model
};

struct ModelSummary {
  std::string title;
  int32_t analysisCode = 0;  // as stored: the record's value plus 1
  std::vector<std::string> annotation;
  std::vector<SectionEntry> sections;
  std::vector<client::MaterialRecord> materials;
  std::vector<MeshBlock> blocks;
  std::vector<std::string> messages;  // '|' records
};

// Feeds the records of one model reply, in order; throws DecodeError for a bad body.
class ModelSummaryBuilder {
 public:
  void add(const client::RecordView& rec);
  // The summary; call once after the last record.
  ModelSummary finish();

 private:
  MeshBlock& currentBlock();
  ModelSummary s_;
  std::optional<std::string> header_;  // an instance header not yet followed by its records
  bool inBlock_ = false;
};

// Prints the summary for people (text) or as one JSON object.
void printModelSummary(const ModelSummary& s, OutputFormat format, std::ostream& out);

}  // namespace odbs::cli
