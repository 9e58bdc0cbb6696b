// exportFilteredModel: command irf, the model export restricted by the criteria list.
#include <set>
#include <string>

#include "model/export_model.h"
#include "model/material_record.h"
#include "model/model_filter.h"
#include "model/model_header.h"
#include "model/other_exports.h"
#include "model/section_export.h"

namespace odbs {

namespace {

// One mesh block of the reply with what the filter keeps of it.
struct Block {
  const odb_DiscreteEntity* entity;
  const ElementSectionMap* sections;
  EntitySelection selection;
};

// The materials that the sections carried by sent elements name.
std::set<std::string> materialsOf(const ModelSections& sections, const std::set<int32_t>& sent) {
  std::set<std::string> names;
  for (const AssignedSection& a : sections.assigned) {
    if (!sent.count(a.number)) continue;
    const odb::SectionData& d = a.section->data();
    if (!d.material.empty()) names.insert(d.material);
    for (const odb::LayerData& l : d.layers) names.insert(l.material);
  }
  return names;
}

}  // namespace

void exportFilteredModel(OdbContext& ctx, const std::vector<Criterion>& criteria,
                         ReplyChannel& out) {
  if (criteria.empty()) {
    exportModel(ctx, false, out);
    return;
  }
  odb_Odb& odb = *ctx.odb;
  sendModelHeader(odb, out);
  sendAnnotationLines(odb, out);

  const odb_Assembly& assembly = odb.rootAssembly();
  const odb_InstanceRepository& instances = assembly.instances();
  const bool multi = instances.size() > 1;
  const ModelSections& sections = collectedSections(ctx);
  ModelFilter filter(criteria, odb, sections.tables);

  std::vector<Block> blocks;
  for (odb_InstanceRepositoryIT it(instances); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    const ElementSectionMap& map = sections.forInstance(instance.name(), multi);
    blocks.push_back({&instance, &map, filter.select(instance, map)});
  }
  if (multi)
    blocks.push_back({&assembly, &sections.assembly, filter.select(assembly, sections.assembly)});

  std::set<int32_t> carried;
  for (const Block& b : blocks)
    carried.insert(b.selection.sectionsUsed.begin(), b.selection.sectionsUsed.end());
  queueSections(
      odb, sections, multi, [&](const AssignedSection& a) { return carried.count(a.number) > 0; },
      out);
  std::set<std::string> materials = materialsOf(sections, carried);
  sendMaterials(odb, out, &materials);

  for (const Block& b : blocks) {
    out.discardPending();
    if (multi) out.queueText(b.entity->name(), kRecInstanceHeader);
    queueNodeRecords(b.entity->nodes(), out, &b.selection.nodes);
    queueElementRecords(b.entity->elements(), *b.sections, sections.tables, out,
                        &b.selection.elements);
    out.flush();
  }
}

}  // namespace odbs
