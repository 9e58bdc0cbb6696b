// Storing and loading the results side of a database (steps, frames, field output,
// history) in the layout of docs/format.md. Loaders check what they read and throw
// std::runtime_error naming the damaged object.
#pragma once

#include "odb/format.h"
#include "odb/results.h"

namespace odb {

// The step catalogue; empty when the file holds no steps.
odb_StepRepository loadSteps(const SourcePtr& src);

}  // namespace odb
