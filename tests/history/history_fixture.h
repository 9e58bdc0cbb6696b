// The history points of the tests' databases.
#pragma once

#include <string>

#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/support/frames.h"
#include "tests/support/written_database.h"

namespace odbs::test {

inline odb::HistoryPointData pointAt(int position, int node = -1, int element = -1, int ip = 0,
                                     int sectionPoint = -1, const std::string& set = "") {
  odb::HistoryPointData p;
  p.position = position;
  p.nodeLabel = node;
  p.elementLabel = element;
  p.integrationPoint = ip;
  p.sectionPoint = {sectionPoint, ""};
  p.region.name = set;
  return p;
}

}  // namespace odbs::test
