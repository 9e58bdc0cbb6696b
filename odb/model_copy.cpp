#include "odb/model_copy.h"

#include "odb/model_store.h"

namespace odb {
namespace {

std::vector<SetData> readSets(const odb_SetRepository& repo) {
  std::vector<SetData> out;
  for (odb_SetRepositoryIT it(repo); !it.isDone(); it.next())
    out.push_back(it.currentValue().data());
  return out;
}

EntityData readEntity(const odb_DiscreteEntity& e) {
  EntityData d;
  d.name = e.name();
  odb_SequenceNode nodes = e.nodes();
  d.nodes.labels = nodes.labels();
  d.nodes.coordinates = nodes.coordinateData();
  d.nodes.dimension = nodes.dimension();
  d.elements = e.elements().data();
  d.nodeSets = readSets(e.nodeSets());
  d.elementSets = readSets(e.elementSets());
  d.surfaces = readSets(e.surfaces());
  for (const auto& a : e.sectionAssignments())
    d.sectionAssignments.push_back({a.sectionName(), a.region().data(), a.placement()});
  return d;
}

}  // namespace

ModelData readModel(const odb_Odb& odbc) {
  odb_Odb& odb = const_cast<odb_Odb&>(odbc);  // extendApi loads and caches
  ModelData m;
  m.name = odb.name();
  m.title = odb.analysisTitle();
  m.description = odb.description();
  m.analysisCode = odb.jobData().analysisCode();
  for (const auto& [k, t] : odb.userData().annotationObjects().members())
    m.annotations.emplace_back(k, t.text());
  const odb_Assembly& a = odb.rootAssembly();
  m.assembly = readEntity(a);
  for (odb_InstanceRepositoryIT it(a.instances()); !it.isDone(); it.next())
    m.instances.push_back(readEntity(it.currentValue()));
  for (const auto& c : a.connectorOrientations()) {
    ConnectorOrientationData d;
    d.region = c.region().data();
    d.hasCsys1 = c.hasCsys1();
    d.csys1 = c.csys1().name();
    d.hasCsys2 = c.hasCsys2();
    d.csys2 = c.csys2().name();
    m.connectorOrientations.push_back(d);
  }
  m.regionPairs = odb.regionPairs();
  m.sectionCategories = odb::loadSectionCategories(odb.source()->file.root());
  auto& sections = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  for (kseO_SectionContainerIT it(sections.sections()); !it.isDone(); it.next())
    m.sections.push_back(it.currentValue().data());
  auto& materials = static_cast<kmaO_ApiExtension&>(odb.extendApi(odb_Enum::MATERIAL_API));
  for (kmaO_MaterialContainerIT it(materials.materials()); !it.isDone(); it.next())
    m.materials.push_back(it.currentValue().data());
  return m;
}

void copyResults(const odb_Odb& odb, Writer& w) {
  const odb_StepRepository& steps = odb.steps();
  for (odb_StepRepositoryIT it(steps); !it.isDone(); it.next()) {
    const odb_Step& s = it.currentValue();
    w.addStep({s.name(), s.description(), s.procedure(), s.domain(), s.totalTime()});
    for (const odb_Frame& f : s.frames()) {
      w.addFrame(
          {f.frameIndex(), f.domain(), f.mode(), f.frameValue(), f.frequency(), f.description()});
      for (odb_FieldOutputRepositoryIT fi(f.fieldOutputs()); !fi.isDone(); fi.next()) {
        const odb_FieldOutput& fo = fi.currentValue();
        FieldOutputData h{
            fo.name(),      fo.description(), fo.type(), fo.componentLabels().values(),
            fo.isComplex(), fo.matrixOrder(), {}};
        for (const auto& l : fo.locations()) {
          FieldLocationData ld{l.position(), {}};
          for (const auto& p : l.sectionPoints())
            ld.sectionPoints.push_back({p.number(), p.description()});
          h.locations.push_back(ld);
        }
        w.addFieldOutput(h);
        odb_SequenceFieldBulkData blocks = fo.bulkDataBlocks();
        for (int b = 0; b < blocks.size(); ++b) w.addFieldBlock(blocks[b].blockData());
        blocks.clearAll();
      }
    }
    for (odb_HistoryRegionRepositoryIT hi(s.historyRegions()); !hi.isDone(); hi.next()) {
      const odb_HistoryRegion& r = hi.currentValue();
      odb_HistoryPoint p = r.historyPoint();
      HistoryRegionData d{r.name(), r.description(), {}, {}};
      d.point = {p.position(),        p.node().label(),
                 p.element().label(), p.element().type(),
                 p.ipNumber(),        {p.sectionPoint().number(), p.sectionPoint().description()},
                 p.instance().name(), p.region().data()};
      for (odb_HistoryOutputRepositoryIT oi(r.historyOutputs()); !oi.isDone(); oi.next()) {
        const odb_HistoryOutput& o = oi.currentValue();
        HistoryOutputData od{o.name(), o.description(), o.type(), 2, {}, {}};
        if (o.data().size() > 0) od.width = o.data()[0].size();
        for (const auto& sample : o.data())
          od.data.insert(od.data.end(), sample.begin(), sample.end());
        for (const auto& sample : o.conjugateData())
          od.conjugateData.insert(od.conjugateData.end(), sample.begin(), sample.end());
        d.outputs.push_back(std::move(od));
      }
      w.addHistoryRegion(d);
    }
  }
}

}  // namespace odb
