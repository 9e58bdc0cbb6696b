// exportModel: the model commands G (nodes only) and g (the whole model).
//
// Record order: title, analysis code, [annotation lines], [per assigned section (H) $ (I)],
// [one 17 per material], per instance (H) 3... [4...], and in a multi-instance model the
// root assembly block H 3... [4...]. Brackets: g only; H and I only in a multi-instance
// model. Everything after the annotation goes through the pending buffer, flushed at the
// end of each phase.
#include "model/export_model.h"

#include "model/material_record.h"
#include "model/mesh_records.h"
#include "model/model_header.h"
#include "model/section_export.h"

namespace odbs {

namespace {

// One block of nodes and, unless nodesOnly, elements, behind a header when named.
void sendMesh(const odb_DiscreteEntity& entity, bool header, bool nodesOnly,
              const ElementSectionMap& sections, const SectionTables& tables, ReplyChannel& out) {
  out.discardPending();
  if (header) out.queueText(entity.name(), kRecInstanceHeader);
  queueNodeRecords(entity.nodes(), out);
  if (!nodesOnly) queueElementRecords(entity.elements(), sections, tables, out);
  out.flush();
}

}  // namespace

void exportModel(OdbContext& ctx, bool nodesOnly, ReplyChannel& out) {
  odb_Odb& odb = *ctx.odb;
  sendModelHeader(odb, out);
  if (!nodesOnly) sendAnnotationLines(odb, out);

  const odb_Assembly& assembly = odb.rootAssembly();
  const odb_InstanceRepository& instances = assembly.instances();
  const bool multi = instances.size() > 1;

  static const ModelSections kNoSections;  // G reads no section numbers
  const ModelSections* sections = &kNoSections;
  if (!nodesOnly) {
    sections = &sendSections(ctx, multi, out);
    sendMaterials(odb, out);
  }
  for (odb_InstanceRepositoryIT it(instances); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    sendMesh(instance, multi, nodesOnly, sections->forInstance(instance.name(), multi),
             sections->tables, out);
  }
  if (multi) sendMesh(assembly, true, nodesOnly, sections->assembly, sections->tables, out);
}

}  // namespace odbs
