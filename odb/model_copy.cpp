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
    d.sectionAssignments.push_back({a.sectionName(), a.region().data()});
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
  m.sectionCategories = odb::loadSectionCategories(odb.source()->file.root());
  auto& sections = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  for (kseO_SectionContainerIT it(sections.sections()); !it.isDone(); it.next())
    m.sections.push_back(it.currentValue().data());
  auto& materials = static_cast<kmaO_ApiExtension&>(odb.extendApi(odb_Enum::MATERIAL_API));
  for (kmaO_MaterialContainerIT it(materials.materials()); !it.isDone(); it.next())
    m.materials.push_back(it.currentValue().data());
  return m;
}

}  // namespace odb
