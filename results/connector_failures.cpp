#include "results/connector_failures.h"

#include <algorithm>
#include <cfloat>
#include <string>

#include "odb/results.h"

namespace odbs {

namespace {

bool startsWith(const std::string& s, const char* prefix) {
  return s.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

// The earliest failure time that the CFAILST outputs of one region give, or FLT_MAX.
float regionFailureTime(const odb_HistoryRegion& region) {
  float failure = FLT_MAX;
  for (const auto& entry : region.historyOutputs().members()) {
    if (!startsWith(entry.first, "CFAILST")) continue;
    // The flat samples (time, value): a sequence per sample would cost a heap block per
    // sample, kept with the output.
    const odb::HistoryOutputData& d = entry.second.flatData();
    if (d.width != 2) continue;
    for (size_t i = 0; i + 2 <= d.data.size(); i += 2) {
      if (d.data[i + 1] > 0.f && d.data[i] < failure) {
        failure = d.data[i];
        break;
      }
    }
  }
  return failure;
}

}  // namespace

ConnectorFailureTable buildConnectorFailures(const odb_Step& step) {
  ConnectorFailureTable table;
  for (const auto& entry : step.historyRegions().members()) {
    const odb_HistoryRegion& region = entry.second;
    odb_HistoryPoint point = region.historyPoint();
    if (point.position() != odb_Enum::WHOLE_ELEMENT || point.element().label() <= 0 ||
        point.element().type() != "CONN3D2")
      continue;
    float failure = regionFailureTime(region);
    if (failure < FLT_MAX) table.push_back({point.element().label(), failure});
  }
  table.shrink_to_fit();
  std::stable_sort(
      table.begin(), table.end(),
      [](const ConnectorFailure& a, const ConnectorFailure& b) { return a.element < b.element; });
  return table;
}

void queueFailedConnectors(const ConnectorFailureTable& table, double t, ReplyChannel& out) {
  float now = static_cast<float>(t);
  for (const ConnectorFailure& f : table) {
    if (now >= f.time) putF32(putI32(out.queueFixed(kRecElementStatus, 8), f.element), 0.f);
  }
}

}  // namespace odbs
