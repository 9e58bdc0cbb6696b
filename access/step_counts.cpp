// The step counts of commands fs and fv: which steps hold field output and which hold
// history output, with the frames of each such step.
#include <algorithm>
#include <vector>

#include "access/catalogue.h"
#include "access/catalogue_base.h"
#include "access/frame_records.h"
#include "odb/odb.h"

namespace odbs {

namespace {

// Per step, the two counts of record 16.
struct StepCountEntry {
  int32_t frames = 0;
  int32_t fieldFrames = 0;     // frames holding at least one field output
  int32_t historySamples = 0;  // the most samples of one history output of the step
};

// Kept among the database's tables: worked out on the first fs or fv, dropped with the
// database when it is closed or its file changes.
struct StepCountTable {
  bool built = false;
  std::vector<StepCountEntry> steps;
};

StepCountEntry countStep(const odb_Step& step) {
  StepCountEntry e;
  const odb_SequenceFrame& frames = step.frames();
  e.frames = frames.size();
  for (int i = 0; i < frames.size(); ++i) {
    if (frames[i].fieldOutputs().size() > 0) ++e.fieldFrames;
    frames[i].releaseFieldOutputs();  // a catalogue of many frames need not stay loaded
  }
  for (const auto& [name, region] : step.historyRegions().members())
    for (const auto& [outputName, output] : region.historyOutputs().members())
      e.historySamples = std::max(e.historySamples, static_cast<int32_t>(output.data().size()));
  return e;
}

const std::vector<StepCountEntry>& stepCounts(OdbContext& ctx) {
  StepCountTable& table = ctx.tables.get<StepCountTable>();
  if (!table.built) {
    const odb_StepRepository& steps = ctx.odb->steps();
    std::vector<StepCountEntry> counts;
    for (int s = 0; s < steps.size(); ++s) counts.push_back(countStep(steps.at(s)));
    table.steps = std::move(counts);
    table.built = true;
  }
  return table.steps;
}

}  // namespace

void sendStepCounts(OdbContext& ctx, StepCountChoice choice, ReplyChannel& out) {
  BaseNameClearer clearer;
  const odb_Odb& odb = *ctx.odb;
  out.send(RecordBuilder(kRecTitle).text(catalogueTitle(odb)));
  out.send(RecordBuilder(kRecAnalysisCode).i32(odb.jobData().analysisCode() - 1));
  const std::vector<StepCountEntry>& counts = stepCounts(ctx);
  const odb_StepRepository& steps = odb.steps();
  out.discardPending();
  for (size_t s = 0; s < counts.size(); ++s) {
    const StepCountEntry& e = counts[s];
    int32_t chosen = choice == StepCountChoice::kFieldFrames ? e.fieldFrames : e.historySamples;
    if (chosen == 0) continue;
    const auto number = static_cast<int32_t>(s + 1);
    out.queue(RecordBuilder(kRecStepCounts)
                  .i32(number)
                  .i32(e.frames)
                  .i32(e.fieldFrames)
                  .i32(e.historySamples)
                  .i32(chosen));
    const odb_Step& step = steps.at(static_cast<int>(s));
    const odb_SequenceFrame& frames = step.frames();
    FrameRecords f;
    setStepFields(step, number, frames.size(), &f);
    for (int i = 0; i < frames.size(); ++i) {
      setFrameFields(frames[i], &f);
      queueFrame(f, out);
    }
  }
  out.flush();
}

}  // namespace odbs
