#include "results/history_point_fields.h"

#include "odb/results.h"

namespace odbs {

uint32_t historyPositionCode(int32_t p) {
  // Indexed by position; 6 and 7 share code 3 and code 6 moves to position 8 on purpose:
  // clients read the codes by this table.
  static const uint32_t kCodes[16] = {0, 1, 2, 3, 4, 5, 3, 3, 6, 7, 8, 9, 10, 11, 12, 13};
  return p >= 0 && p < 16 ? kCodes[p] : 0;
}

HistoryPointFields historyPointFields(int32_t p, int32_t nodeLabel, int32_t elementLabel,
                                      int32_t integrationPoint, int32_t sectionPoint) {
  HistoryPointFields f;
  f.code = historyPositionCode(p);
  auto nonNegative = [](int32_t v) { return v >= 0 ? v : 0; };
  switch (p) {
    case 1:
      f.values[0] = nonNegative(nodeLabel);
      break;
    case 2:
      f.values[0] = nonNegative(nodeLabel);
      f.values[1] = nonNegative(elementLabel);
      break;
    case 3:
    case 5:
    case 8:
      f.values[0] = nonNegative(elementLabel);
      f.values[1] = integrationPoint;
      f.values[2] = sectionPoint > 0 ? sectionPoint : 0;
      break;
    default:
      break;
  }
  return f;
}

HistoryPointFields historyPointFields(const odb_HistoryPoint& point) {
  return historyPointFields(point.position(), point.node().label(), point.element().label(),
                            point.ipNumber(), point.sectionPoint().number());
}

}  // namespace odbs
