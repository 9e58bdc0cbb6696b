// What the history region record says about where a region's values were taken: the
// history position code and three numbers chosen by the point's position.
#pragma once

#include <cstdint>

class odb_HistoryPoint;

namespace odbs {

// The history position code of a result position value p: p itself for 0 to 5; positions
// 6 and 7 (face and surface integration points) are reported as integration points (3);
// from position 8 (whole element, code 6) on the code is p - 2. Values outside 0..15 give
// 0. Clients read the codes by this table, gaps included.
uint32_t historyPositionCode(int32_t p);

struct HistoryPointFields {
  uint32_t code = 0;
  int32_t values[3] = {0, 0, 0};
};

// The numbers of a history point, chosen by its raw position p (not by the code):
//   1 (node):            node label, 0, 0
//   2 (element node):    node label, element label, 0
//   3, 5, 8 (element):   element label, integration point, section point number
//   anything else:       0, 0, 0
// A negative label and a section point number below 1 are sent as 0.
HistoryPointFields historyPointFields(int32_t p, int32_t nodeLabel, int32_t elementLabel,
                                      int32_t integrationPoint, int32_t sectionPoint);

// The same for a point of the database.
HistoryPointFields historyPointFields(const odb_HistoryPoint& point);

}  // namespace odbs
