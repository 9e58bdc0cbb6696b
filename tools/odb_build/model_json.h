// The model part of a JSON database description (docs/odb_json.md).
#pragma once

#include "odb/model_data.h"
#include "tools/odb_build/json_reader.h"

namespace odb {

// Reads the model members of the description's root object. Throws odb::JsonError at the
// first value of the wrong kind or a reference to something not defined.
ModelData readModelJson(const JsonAt& root);

}  // namespace odb
