// walkField: the field-output forms of command r.
#include <exception>

#include "odb/odb.h"
#include "results/field_classify.h"
#include "results/field_values.h"
#include "results/field_walk.h"
#include "results/modal_stress.h"
#include "results/result_header.h"
#include "results/results.h"

namespace odbs {

namespace {

// Resolves step, frame and field and sends the values; the title and analysis-code
// records are already out.
void sendFieldOfFrame(const odb_Odb& odb, const FieldRequest& request, ResultCache& cache,
                      ReplyChannel& out) {
  if (request.param1 < 1) return;
  const odb_StepRepository& steps = odb.steps();
  const odb_Step& step = steps[steps.stepNames()[request.param1 - 1]];
  // The frame index is unsigned on the wire: a negative number is out of range.
  uint32_t frameIndex = static_cast<uint32_t>(request.param2);
  if (frameIndex > uint32_t(INT32_MAX)) throw std::out_of_range("frame index out of range");
  const odb_Frame& frame = step.frames()[static_cast<int>(frameIndex)];
  const odb_FieldOutputRepository& fields = frame.fieldOutputs();
  if (!fields.isMember(request.text)) return;
  const odb_FieldOutput& field = fields.get(request.text);
  if (isMatrixFieldName(request.text)) {
    sendModalStress(odb, field, request.param1, request.positionCode, cache, out);
    return;
  }
  InstanceNumbering instances(odb);
  if (request.resultMode == 1)
    sendFieldValues(instances, field, out, request.upperCase, request.requestDefined);
  else
    sendFieldPath(instances, field, request, out);
}

}  // namespace

void walkField(OdbContext& ctx, const FieldRequest& request, ResultCache& cache,
               ReplyChannel& out) {
  sendResultHeader(*ctx.odb, out);
  try {
    sendFieldOfFrame(*ctx.odb, request, cache, out);
  } catch (...) {
    // Records of a walk that failed half way are not sent: the reply ends with the end
    // record alone behind the two header records.
    out.discardPending();
    throw;
  }
  out.flush();
}

}  // namespace odbs
