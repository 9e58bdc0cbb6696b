// Reads every part of a database's model into plain data: the input of copies and of the
// version upgrade. Loads all arrays; throws std::runtime_error on a damaged file.
#pragma once

#include "odb/model_data.h"
#include "odb/odb.h"

namespace odb {

ModelData readModel(const odb_Odb& odb);

}  // namespace odb
