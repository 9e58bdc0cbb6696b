// walkField: the field-output forms of command r.
#include <exception>

#include "odb/odb.h"
#include "results/field_classify.h"
#include "results/field_values.h"
#include "results/field_walk.h"
#include "results/modal_stress.h"
#include "results/requested_frame.h"
#include "results/result_header.h"
#include "results/results.h"

namespace odbs {

namespace {

// Resolves step, frame and field and sends the values; the title and analysis-code
// records are already out.
void sendFieldOfFrame(const odb_Odb& odb, const FieldRequest& request, ResultCache& cache,
                      ReplyChannel& out) {
  if (request.param1 < 1) return;
  const odb_FieldOutput* found =
      requestedFrame(odb, request.param1, request.param2).frame.fieldOutputs().find(request.text);
  if (!found) return;
  const odb_FieldOutput& field = *found;
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
