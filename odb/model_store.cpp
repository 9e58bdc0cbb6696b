// Writes the model side of a database (layout in docs/format.md).
#include "odb/model_store.h"

namespace odb {
namespace {

void storeTable(const h5::Group& g, const std::string& name, const TableData& t) {
  std::vector<float> values;
  std::vector<int32_t> lengths;
  for (const auto& row : t) {
    values.insert(values.end(), row.begin(), row.end());
    lengths.push_back(static_cast<int32_t>(row.size()));
  }
  g.write(name + "_values", values);
  g.write(name + "_row_lengths", lengths);
}

void storeSetList(const h5::Group& parent, const std::string& name,
                  const std::vector<SetData>& sets) {
  h5::Group g = parent.create(name);
  std::vector<std::string> names;
  for (size_t i = 0; i < sets.size(); ++i) {
    names.push_back(sets[i].name);
    storeSet(g.create(std::to_string(i)), sets[i]);
  }
  g.writeStrings("names", names);
}

void storeEntity(const h5::Group& g, const EntityData& e) {
  g.setString("name", e.name);
  h5::Group n = g.create("nodes");
  n.write("labels", e.nodes.labels);
  n.write("coordinates", e.nodes.coordinates.data(),
          {e.nodes.labels.size(), static_cast<hsize_t>(e.nodes.dimension)});
  h5::Group el = g.create("elements");
  el.write("labels", e.elements.labels);
  el.writeStrings("type_names", e.elements.typeNames);
  el.write("type_index", e.elements.typeIndex);
  el.write("offsets", e.elements.offsets);
  el.write("connectivity", e.elements.connectivity);
  el.write("section_category", e.elements.categoryIndex);
  storeSetList(g, "node_sets", e.nodeSets);
  storeSetList(g, "element_sets", e.elementSets);
  storeSetList(g, "surfaces", e.surfaces);
  h5::Group a = g.create("section_assignments");
  std::vector<std::string> names;
  for (size_t i = 0; i < e.sectionAssignments.size(); ++i) {
    names.push_back(e.sectionAssignments[i].sectionName);
    storeSet(a.create(std::to_string(i)), e.sectionAssignments[i].region);
  }
  a.writeStrings("section_names", names);
}

void storeCategories(const h5::Group& root, const std::vector<SectionCategoryData>& cats) {
  h5::Group g = root.create("section_categories");
  std::vector<std::string> names, descriptions, pointDescriptions;
  std::vector<int32_t> counts, numbers;
  for (const auto& c : cats) {
    names.push_back(c.name);
    descriptions.push_back(c.description);
    counts.push_back(static_cast<int32_t>(c.sectionPoints.size()));
    for (const auto& p : c.sectionPoints) {
      numbers.push_back(p.number);
      pointDescriptions.push_back(p.description);
    }
  }
  g.writeStrings("names", names);
  g.writeStrings("descriptions", descriptions);
  g.write("point_counts", counts);
  g.write("point_numbers", numbers);
  g.writeStrings("point_descriptions", pointDescriptions);
}

void storeSections(const h5::Group& root, const std::vector<SectionData>& sections) {
  h5::Group g = root.create("sections");
  std::vector<std::string> names, materials, layerMaterials, angleTexts;
  std::vector<int32_t> kinds, layerCounts, angleTypes;
  std::vector<float> thickness, mass, layerThickness;
  std::vector<double> angleValues;
  for (const auto& s : sections) {
    names.push_back(s.name);
    kinds.push_back(s.kind);
    materials.push_back(s.material);
    thickness.push_back(s.thickness);
    mass.push_back(s.mass);
    layerCounts.push_back(static_cast<int32_t>(s.layers.size()));
    for (const auto& l : s.layers) {
      layerMaterials.push_back(l.material);
      layerThickness.push_back(l.thickness);
      angleTypes.push_back(l.orientAngle.type());
      angleValues.push_back(l.orientAngle.type() == odb_Union::INT ? l.orientAngle.getInt()
                                                                   : l.orientAngle.getFloat());
      angleTexts.push_back(l.orientAngle.getString());
    }
  }
  g.writeStrings("names", names);
  g.write("kinds", kinds);
  g.writeStrings("materials", materials);
  g.write("thickness", thickness);
  g.write("mass", mass);
  g.write("layer_counts", layerCounts);
  g.writeStrings("layer_materials", layerMaterials);
  g.write("layer_thickness", layerThickness);
  g.write("layer_angle_types", angleTypes);
  g.write("layer_angle_values", angleValues);
  g.writeStrings("layer_angle_texts", angleTexts);
}

void storeMaterials(const h5::Group& root, const std::vector<MaterialData>& materials) {
  h5::Group g = root.create("materials");
  std::vector<std::string> names;
  for (size_t i = 0; i < materials.size(); ++i) {
    const MaterialData& m = materials[i];
    names.push_back(m.name);
    h5::Group mg = g.create(std::to_string(i));
    if (m.hasDensity) storeTable(mg, "density", m.density);
    if (m.hasElastic) {
      mg.setString("elastic_type", m.elasticType);
      storeTable(mg, "elastic", m.elastic);
      if (m.hasFailStrain) storeTable(mg, "fail_strain", m.failStrain);
      if (m.hasFailStress) storeTable(mg, "fail_stress", m.failStress);
    }
    if (m.hasAcousticMedium) storeTable(mg, "acoustic_medium", m.acousticMedium);
  }
  g.writeStrings("names", names);
}

void storeOrientations(const h5::Group& assembly, const std::vector<ConnectorOrientationData>& v) {
  h5::Group g = assembly.create("connector_orientations");
  g.setInt("count", static_cast<int64_t>(v.size()));
  for (size_t i = 0; i < v.size(); ++i) {
    h5::Group o = g.create(std::to_string(i));
    o.setInt("has_csys1", v[i].hasCsys1);
    o.setString("csys1", v[i].csys1);
    o.setInt("has_csys2", v[i].hasCsys2);
    o.setString("csys2", v[i].csys2);
    storeSet(o.create("region"), v[i].region);
  }
}

}  // namespace

void storeSet(const h5::Group& g, const SetData& s) {
  g.setString("name", s.name);
  g.setInt("type", s.type);
  g.writeStrings("instance_names", s.instanceNames);
  g.write("counts", s.counts);
  g.write("labels", s.labels);
  if (s.type == odb_Enum::SURFACE_SET) g.write("faces", s.faces);
}

void storeModel(const h5::Group& root, const ModelData& m) {
  root.setString("name", m.name);
  root.setString("title", m.title);
  root.setString("description", m.description);
  root.setInt("analysis_code", m.analysisCode);
  h5::Group ann = root.create("annotations");
  std::vector<std::string> keys, texts;
  for (const auto& [k, t] : m.annotations) {
    keys.push_back(k);
    texts.push_back(t);
  }
  ann.writeStrings("keys", keys);
  ann.writeStrings("texts", texts);
  storeCategories(root, m.sectionCategories);
  storeSections(root, m.sections);
  storeMaterials(root, m.materials);
  h5::Group a = root.create("assembly");
  storeEntity(a, m.assembly);
  storeOrientations(a, m.connectorOrientations);
  h5::Group inst = a.create("instances");
  std::vector<std::string> names;
  for (size_t i = 0; i < m.instances.size(); ++i) {
    names.push_back(m.instances[i].name);
    storeEntity(inst.create(std::to_string(i)), m.instances[i]);
  }
  inst.writeStrings("names", names);
}

}  // namespace odb
