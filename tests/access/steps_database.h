// A database of two steps and five frames (a static step of two increments, a frequency
// step of three modes), for the catalogue tests and the steps command of the client.
#pragma once

#include <string>

#include "odb/writer.h"

namespace odbs::test {

inline void writeStepsDatabase(const std::string& path, const std::string& title) {
  odb::Writer w(path);
  w.setTitle(title);
  w.setAnalysisCode(odb_Enum::IMPLICIT);
  w.addInstance("PART-1-1").addNodes({1}, {0.f, 0.f, 0.f}, 3);
  w.addStep({"Step-1", "first load", "*STATIC", odb_Enum::TIME, 0.0});
  w.addFrame({0, odb_Enum::TIME, 0, 0.0, 0.0, "Increment 0"});
  w.addFrame({1, odb_Enum::TIME, 0, 0.1, 0.0, "Increment 1"});
  w.addStep({"Step-2", "modes", "*FREQUENCY", odb_Enum::MODAL, 1.0});
  for (int m = 1; m <= 3; ++m)
    w.addFrame({m, odb_Enum::MODAL, m, 10.0 * m, 10.0 * m, "Mode " + std::to_string(m)});
  w.close();
}

}  // namespace odbs::test
