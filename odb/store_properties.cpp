// Annotations, section categories, sections and materials: each table's store and load
// side by side (layout in docs/format.md).
#include "odb/model_store.h"
#include "odb/store_util.h"

namespace odb {

void storeAnnotations(const h5::Group& root,
                      const std::vector<std::pair<std::string, std::string>>& annotations) {
  h5::Group g = root.create(name::kAnnotations);
  std::vector<std::string> keys, texts;
  for (const auto& [k, t] : annotations) {
    keys.push_back(k);
    texts.push_back(t);
  }
  g.writeStrings(name::kAnnotationKeys, keys);
  g.writeStrings(name::kAnnotationTexts, texts);
}

std::vector<std::pair<std::string, std::string>> loadAnnotations(const h5::Group& root) {
  std::vector<std::pair<std::string, std::string>> out;
  if (!root.has(name::kAnnotations)) return out;
  h5::Group g = root.open(name::kAnnotations);
  std::vector<std::string> keys = g.readStrings(name::kAnnotationKeys);
  std::vector<std::string> texts =
      g.readStrings(name::kAnnotationTexts, static_cast<int64_t>(keys.size()));
  for (size_t i = 0; i < keys.size(); ++i) out.emplace_back(keys[i], texts[i]);
  return out;
}

void storeSectionCategories(const h5::Group& root, const std::vector<SectionCategoryData>& cats) {
  h5::Group g = root.create(name::kSectionCategories);
  std::vector<std::string> names, descriptions;
  for (const auto& c : cats) {
    names.push_back(c.name);
    descriptions.push_back(c.description);
  }
  g.writeStrings(name::kNames, names);
  g.writeStrings(name::kDescriptions, descriptions);
  storeSectionPointLists(
      g, name::kPoint, cats, [](const SectionCategoryData& c) -> auto& { return c.sectionPoints; });
}

std::vector<SectionCategoryData> loadSectionCategories(const h5::Group& root) {
  if (!root.has(name::kSectionCategories)) return {};
  h5::Group g = root.open(name::kSectionCategories);
  std::vector<std::string> names = g.readStrings(name::kNames);
  auto n = static_cast<int64_t>(names.size());
  std::vector<std::string> descriptions = g.readStrings(name::kDescriptions, n);
  std::vector<std::vector<SectionPointData>> points = loadSectionPointLists(g, name::kPoint, n);
  std::vector<SectionCategoryData> out(names.size());
  for (size_t i = 0; i < names.size(); ++i)
    out[i] = {names[i], descriptions[i], std::move(points[i])};
  return out;
}

void storeSections(const h5::Group& root, const std::vector<SectionData>& sections) {
  h5::Group g = root.create(name::kSections);
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
  g.writeStrings(name::kNames, names);
  g.write(name::kKinds, kinds);
  g.writeStrings(name::kSectionMaterials, materials);
  g.write(name::kThickness, thickness);
  g.write(name::kMass, mass);
  g.write(name::kLayerCounts, layerCounts);
  g.writeStrings(name::kLayerMaterials, layerMaterials);
  g.write(name::kLayerThickness, layerThickness);
  g.write(name::kLayerAngleTypes, angleTypes);
  g.write(name::kLayerAngleValues, angleValues);
  g.writeStrings(name::kLayerAngleTexts, angleTexts);
}

std::vector<SectionData> loadSections(const h5::Group& root) {
  h5::Group g = root.open(name::kSections);
  std::vector<std::string> names = g.readStrings(name::kNames);
  auto n = static_cast<int64_t>(names.size());
  std::vector<int32_t> kinds = g.read<int32_t>(name::kKinds, n);
  std::vector<std::string> materials = g.readStrings(name::kSectionMaterials, n);
  std::vector<float> thickness = g.read<float>(name::kThickness, n);
  std::vector<float> mass = g.read<float>(name::kMass, n);
  std::vector<int32_t> layerCounts = g.read<int32_t>(name::kLayerCounts, n);
  int64_t total = sumCounts(g, layerCounts);
  std::vector<std::string> layerMaterials = g.readStrings(name::kLayerMaterials, total);
  std::vector<float> layerThickness = g.read<float>(name::kLayerThickness, total);
  std::vector<int32_t> angleTypes = g.read<int32_t>(name::kLayerAngleTypes, total);
  std::vector<double> angleValues = g.read<double>(name::kLayerAngleValues, total);
  std::vector<std::string> angleTexts = g.readStrings(name::kLayerAngleTexts, total);
  std::vector<SectionData> out(names.size());
  size_t at = 0;
  for (size_t i = 0; i < names.size(); ++i) {
    SectionData& s = out[i];
    s.name = names[i];
    s.kind = kinds[i];
    s.material = materials[i];
    s.thickness = thickness[i];
    s.mass = mass[i];
    for (int32_t k = 0; k < layerCounts[i]; ++k, ++at) {
      LayerData l;
      l.material = layerMaterials[at];
      l.thickness = layerThickness[at];
      switch (angleTypes[at]) {
        case odb_Union::INT:
          l.orientAngle = odb_Union::ofInt(static_cast<int>(angleValues[at]));
          break;
        case odb_Union::FLOAT:
          l.orientAngle = odb_Union::ofFloat(static_cast<float>(angleValues[at]));
          break;
        case odb_Union::STRING:
          l.orientAngle = odb_Union::ofString(angleTexts[at]);
          break;
        default:
          break;
      }
      s.layers.push_back(std::move(l));
    }
  }
  return out;
}

namespace {

// A material table: its rows one after the other in <table>_values, and their lengths.
void storeTable(const h5::Group& g, const std::string& table, const TableData& t) {
  std::vector<float> values;
  std::vector<int32_t> lengths;
  for (const auto& row : t) {
    values.insert(values.end(), row.begin(), row.end());
    lengths.push_back(static_cast<int32_t>(row.size()));
  }
  g.write(table + name::kValuesSuffix, values);
  g.write(table + name::kRowLengthsSuffix, lengths);
}

bool hasTable(const h5::Group& g, const std::string& table) {
  return g.isDataset(table + name::kValuesSuffix);
}

TableData loadTable(const h5::Group& g, const std::string& table) {
  std::vector<int32_t> lengths = g.read<int32_t>(table + name::kRowLengthsSuffix);
  std::vector<float> values = g.read<float>(table + name::kValuesSuffix, sumCounts(g, lengths));
  TableData t;
  size_t at = 0;
  for (int32_t n : lengths) {
    t.emplace_back(values.begin() + static_cast<long>(at),
                   values.begin() + static_cast<long>(at + n));
    at += static_cast<size_t>(n);
  }
  return t;
}

}  // namespace

void storeMaterials(const h5::Group& root, const std::vector<MaterialData>& materials) {
  h5::Group g = root.create(name::kMaterials);
  std::vector<std::string> names;
  for (size_t i = 0; i < materials.size(); ++i) {
    const MaterialData& m = materials[i];
    names.push_back(m.name);
    h5::Group mg = g.create(std::to_string(i));
    if (m.hasDensity) storeTable(mg, name::kDensity, m.density);
    if (m.hasElastic) {
      mg.setString(name::kElasticType, m.elasticType);
      storeTable(mg, name::kElastic, m.elastic);
      if (m.hasFailStrain) storeTable(mg, name::kFailStrain, m.failStrain);
      if (m.hasFailStress) storeTable(mg, name::kFailStress, m.failStress);
    }
    if (m.hasAcousticMedium) storeTable(mg, name::kAcousticMedium, m.acousticMedium);
  }
  g.writeStrings(name::kNames, names);
}

std::vector<MaterialData> loadMaterials(const h5::Group& root) {
  h5::Group g = root.open(name::kMaterials);
  std::vector<std::string> names = g.readStrings(name::kNames);
  std::vector<MaterialData> out(names.size());
  for (size_t i = 0; i < names.size(); ++i) {
    h5::Group mg = g.open(std::to_string(i));
    MaterialData& m = out[i];
    m.name = names[i];
    if ((m.hasDensity = hasTable(mg, name::kDensity))) m.density = loadTable(mg, name::kDensity);
    if ((m.hasElastic = hasTable(mg, name::kElastic))) {
      m.elasticType = mg.getString(name::kElasticType);
      m.elastic = loadTable(mg, name::kElastic);
      if ((m.hasFailStrain = hasTable(mg, name::kFailStrain)))
        m.failStrain = loadTable(mg, name::kFailStrain);
      if ((m.hasFailStress = hasTable(mg, name::kFailStress)))
        m.failStress = loadTable(mg, name::kFailStress);
    }
    if ((m.hasAcousticMedium = hasTable(mg, name::kAcousticMedium)))
      m.acousticMedium = loadTable(mg, name::kAcousticMedium);
  }
  return out;
}

}  // namespace odb
