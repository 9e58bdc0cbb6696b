#include "model/section_record.h"

#include <string>

#include "model/layer_runs.h"

namespace odbs {

namespace {

constexpr int32_t kConnectorCode = -3;
constexpr int32_t kPointCode = -4;
constexpr int32_t kShellCode = -5;
constexpr char kAssemblyPrefix[] = "ASSEMBLY_";

void putCsys(RecordBuilder& rec, bool present, const odb_DatumCsys& csys) {
  if (present) {
    rec.text(csys.name());
  } else {
    rec.u32(0);
  }
}

// The first connector orientation whose region is named after the section (directly or
// with the assembly prefix): region name and the two coordinate system names; else u32 0.
void putConnectorOrientation(RecordBuilder& rec, const std::string& sectionName,
                             const odb_Assembly& assembly) {
  const odb_SequenceConnectorOrientation& all = assembly.connectorOrientations();
  for (const odb_ConnectorOrientation& o : all) {
    const std::string& region = o.region().name();
    if (region != sectionName && kAssemblyPrefix + region != sectionName) continue;
    rec.text(region);
    putCsys(rec, o.hasCsys1(), o.csys1());
    putCsys(rec, o.hasCsys2(), o.csys2());
    return;
  }
  rec.u32(0);
}

float angleOf(const kseO_SectionLayer& layer) {
  const odb_Union& a = layer.orientAngle();
  return a.type() == odb_Union::FLOAT ? a.getFloat() : 0.f;
}

void putLayerRuns(RecordBuilder& rec, const kseO_CompositeShellSection& section,
                  const SectionRecordContext& ctx) {
  auto category = ctx.tables.categoryOf.find(section.name());
  const odb_SectionCategory* cat =
      category == ctx.tables.categoryOf.end() ? nullptr : ctx.categories.find(category->second);
  if (cat == nullptr) {
    rec.i32(0);
    return;
  }
  kseO_SequenceSectionLayer layup = section.layup();
  std::vector<LayerRun> runs = layerRuns(cat->sectionPoints(), layup.size());
  rec.i32(static_cast<int32_t>(runs.size()));
  for (const LayerRun& run : runs) {
    const kseO_SectionLayer& props = layup[run.properties - 1];
    rec.i32(run.layer).i32(run.points).text(props.material()).u32(0);
    rec.f32(props.thickness()).f32(angleOf(props));
  }
}

// Classes whose kind data is the material name alone, with their codes.
template <typename T>
bool putMaterialOnly(RecordBuilder& rec, const odb_Section& s, int32_t code) {
  if (s.subTypeIdentifier() != T::typeIdentifier()) return false;
  rec.i32(code).text(T::cast(s).material()).u32(0);
  return true;
}

}  // namespace

void queueSectionRecord(const odb_Section& section, int32_t number, const SectionRecordContext& ctx,
                        ReplyChannel& out) {
  RecordBuilder rec(kRecSection);
  rec.u32(static_cast<uint32_t>(number)).text(shortSectionName(section.name()));
  int kind = section.subTypeIdentifier();
  if (kind == kseO_CompositeShellSection::typeIdentifier()) {
    putLayerRuns(rec, kseO_CompositeShellSection::cast(section), ctx);
  } else if (kind == kseO_ConnectorSection::typeIdentifier()) {
    kseO_ConnectorSection::cast(section);
    rec.i32(kConnectorCode);
    putConnectorOrientation(rec, section.name(), ctx.assembly);
    rec.u32(0);
  } else if (kind == kseO_PointSection::typeIdentifier()) {
    rec.i32(kPointCode).f32(kseO_PointSection::cast(section).mass()).u32(0);
  } else if (kind == kseO_HomogeneousShellSection::typeIdentifier()) {
    const auto& shell = kseO_HomogeneousShellSection::cast(section);
    rec.i32(kShellCode).f32(shell.thickness()).text(shell.material()).u32(0);
  } else if (!putMaterialOnly<kseO_HomogeneousSolidSection>(rec, section, -6) &&
             !putMaterialOnly<kseO_TrussSection>(rec, section, -7) &&
             !putMaterialOnly<kseO_PEGSection>(rec, section, -8) &&
             !putMaterialOnly<kseO_MembraneSection>(rec, section, -9) &&
             !putMaterialOnly<kseO_GasketSection>(rec, section, -10) &&
             !putMaterialOnly<kseO_CohesiveSection>(rec, section, -11)) {
    rec.i32(0);
  }
  out.queue(rec);
}

}  // namespace odbs
