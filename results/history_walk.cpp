#include "results/history_walk.h"

#include <stdexcept>
#include <string>

#include "odb/odb.h"
#include "results/history_point_fields.h"
#include "results/history_records.h"

namespace odbs {

namespace {

bool hasConjugateDomain(const odb_Step& step) {
  return step.domain() == odb_Enum::FREQUENCY || step.domain() == odb_Enum::MODAL;
}

// The listed regions of hr, in list order. Slots past the filled ones hold the empty
// name: they are all looked up as one, since they find the same region or none.
void walkListedRegions(const odb_Step& step, const HistoryNameList& names, ReplyChannel& out) {
  const odb_HistoryRegionRepository& regions = step.historyRegions();
  auto walkOne = [&](const std::string& name) {
    const odb_HistoryRegion* region = regions.find(name);
    if (!region) return;
    try {
      walkHistoryRegion(step, *region, true, out);
    } catch (const std::exception&) {
      // The region is abandoned; values queued for it are dropped, as the next output
      // would start its batch afresh.
      out.discardPending();
    }
  };
  int64_t filled = static_cast<int64_t>(names.filled().size());
  for (const std::string& name : names.filled()) walkOne(name);
  if (names.capacity() > filled && regions.find(std::string())) {
    for (int64_t i = filled; i < names.capacity(); ++i) walkOne(std::string());
  }
}

}  // namespace

void walkHistoryOutput(const odb_Step& step, const odb_HistoryOutput& output, bool withValues,
                       ReplyChannel& out) {
  if (!withValues && !hasConjugateDomain(step)) {
    sendHistoryOutput(output, false, out);
    return;
  }
  // The flat arrays: a sequence per sample would cost a heap block per sample.
  const odb::HistoryOutputData& d = output.flatData();
  const size_t w = d.width > 0 ? static_cast<size_t>(d.width) : 1;
  const size_t samples = d.data.size() / w, conjugates = d.conjugateData.size() / w;
  bool withConjugate = conjugates > 0;
  sendHistoryOutput(output, withConjugate, out);
  if (!withValues) return;

  out.discardPending();
  for (size_t i = 0; i < samples; ++i) {
    for (size_t k = 0; k < w; ++k) queueHistoryValue(d.data[i * w + k], out);
    if (withConjugate) {
      // The conjugate sample's value (element 1); the reader keeps both arrays one shape.
      if (i >= conjugates || w < 2) throw std::out_of_range("odb: no conjugate value");
      queueHistoryValue(d.conjugateData[i * w + 1], out);
    }
  }
  out.flush();
}

void walkHistoryRegion(const odb_Step& step, const odb_HistoryRegion& region, bool withValues,
                       ReplyChannel& out) {
  odb_HistoryPoint point = region.historyPoint();
  const odb_HistoryOutputRepository& outputs = region.historyOutputs();
  sendHistoryRegion(region.name(), point.region().name(), historyPointFields(point), out);
  for (const auto& entry : outputs.members())
    walkHistoryOutput(step, entry.second, withValues, out);
}

void walkHistoryStep(const odb_Step& step, uint32_t number, bool withValues,
                     const HistoryNameList& names, ReplyChannel& out) {
  sendHistoryStep(step, number, out);
  if (withValues) {
    walkListedRegions(step, names, out);
    return;
  }
  for (const auto& entry : step.historyRegions().members())
    walkHistoryRegion(step, entry.second, false, out);
}

void walkHistory(const odb_Odb& odb, bool withValues, int32_t stepFilter, HistoryNameList& names,
                 ReplyChannel& out) {
  const odb_StepRepository& steps = odb.steps();
  odb_StepRepositoryIT it(steps);
  uint32_t number = 0;
  for (it.first(); !it.isDone(); it.next()) {
    ++number;
    if (stepFilter != 0 && static_cast<int64_t>(number) != stepFilter) continue;
    walkHistoryStep(steps[it.currentKey()], number, withValues, names, out);
  }
  names.clear();
}

}  // namespace odbs
