#include "results/contact_output.h"

#include <cstring>
#include <string>

#include "odb/odb.h"
#include "results/contact_rows.h"
#include "results/instance_names.h"
#include "results/requested_frame.h"
#include "results/result_header.h"

namespace odbs {

namespace {

bool startsWith(const std::string& s, const char* prefix) {
  return s.compare(0, std::strlen(prefix), prefix) == 0;
}

// Instance headers are sent only for a model of more than one instance.
bool severalInstances(const odb_Odb& odb) {
  return odb.rootAssembly().instances().size() > 1;
}

// Every block of field as value rows of the given types; a block without instance is
// announced with the root assembly's name.
void queueField(const odb_Odb& odb, const odb_FieldOutput& field, RowTypes types, bool sentinel,
                ReplyChannel& out) {
  const odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
  InstanceHeaders headers(severalInstances(odb));
  for (int b = 0; b < blocks.size(); ++b) {
    const std::string& instance = blocks[b].instance().name();
    headers.enter(instance, instance.empty() ? odb.rootAssembly().name() : instance, out);
    queueValueRows(blocks[b], field.isComplex(), types, sentinel, out);
  }
  blocks.clearAll();
}

// One status record per element; connectorStatus: CFAILST of connector blocks only. A
// block without instance is announced with its own (empty) name.
void queueStatus(const odb_Odb& odb, const odb_FieldOutput& field, bool connectorStatus,
                 ReplyChannel& out) {
  const odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
  InstanceHeaders headers(severalInstances(odb));
  for (int b = 0; b < blocks.size(); ++b) {
    if (connectorStatus && blocks[b].baseElementType() != "CONN3D2") continue;
    headers.enter(blocks[b].instance().name(), out);
    queueStatusRows(blocks[b], connectorStatus, out);
  }
  blocks.clearAll();
}

void queueRotations(const odb_Odb& odb, const odb_FieldOutputRepository& fields,
                    ReplyChannel& out) {
  if (const odb_FieldOutput* ur = fields.find("UR")) {
    queueField(odb, *ur, {kRecRotationReal, kRecRotationComplex}, false, out);
    return;
  }
  static const struct {
    const char* name;
    RowTypes types;
  } kComponents[] = {{"UR1", {kRecRotation1Real, kRecRotation1Complex}},
                     {"UR2", {kRecRotation2Real, kRecRotation2Complex}},
                     {"UR3", {kRecRotation3Real, kRecRotation3Complex}}};
  for (const auto& c : kComponents) {
    if (const odb_FieldOutput* f = fields.find(c.name)) queueField(odb, *f, c.types, false, out);
  }
}

}  // namespace

void sendContactOutput(const odb_Odb& odb, const RequestParams& request,
                       const SelectionList& selection, const ConnectorFailureSource& failures,
                       ReplyChannel& out) {
  sendResultHeader(odb, out);
  if (request.param1 < 1) return;
  const std::string& name = request.text;
  bool sentinel = startsWith(name, "PHILSM") || startsWith(name, "CSTATUS");

  const RequestedFrame at = requestedFrame(odb, request.param1, request.param2);
  const odb_Step& step = at.step;
  const odb_Frame& frame = at.frame;
  const odb_FieldOutputRepository& fields = frame.fieldOutputs();
  const odb_FieldOutput* field = fields.find(name);
  if (!field) {
    out.flush();
    return;
  }
  out.discardPending();
  queueField(odb, *field, {kRecRealValue, kRecComplexValue}, sentinel, out);

  bool displacement = name == "U" || name == "UT";
  if (displacement) {
    if (const odb_FieldOutput* status = fields.find("STATUS"))
      queueStatus(odb, *status, false, out);
    if (const odb_FieldOutput* cfailst = fields.find("CFAILST")) {
      queueStatus(odb, *cfailst, true, out);
    } else if (request.positionCode == 4) {
      queueFailedConnectors(failures(step), frame.frameValue() + step.totalTime(), out);
    }
  }
  if (displacement && !selection.labels.empty()) queueRotations(odb, fields, out);
  out.flush();
}

}  // namespace odbs
