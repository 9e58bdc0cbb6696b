// Reads the JSON description of a database (docs/odb_json.md) and writes the database.
//
// Errors in the description throw odb::JsonError whose message names the place of the
// first error: line and column for a syntax error, the JSON pointer of the value (for
// example /instances/0/elements/3/nodes) for a value of the wrong kind or a bad reference.
// Nothing is written unless the whole description is valid.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "odb/model_data.h"

namespace odb {

class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Parses and checks text, a whole description (model and results, see results_json.h),
// then writes it to outputPath. Throws JsonError for a bad description, and
// std::runtime_error when outputPath cannot be written or names one of inputs (the
// files the description came from), in which case nothing is written.
void buildDatabaseFromJson(const std::string& text, const std::string& outputPath,
                           const std::vector<std::string>& inputs = {});

}  // namespace odb
