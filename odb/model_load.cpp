// Loads the model side of a database, checking every count, index and offset it reads so
// that a damaged file gives an exception and never a wild read.
#include <algorithm>

#include "odb/model_store.h"

namespace odb {
namespace {

[[noreturn]] void damaged(const h5::Group& g, const std::string& what) {
  h5::fail("damaged database: " + g.path() + ": " + what);
}

size_t sum(const h5::Group& g, const std::vector<int64_t>& counts) {
  uint64_t s = 0;
  for (int64_t c : counts) {
    if (c < 0 || c > (int64_t(1) << 40)) damaged(g, "negative or huge count");
    s += static_cast<uint64_t>(c);
  }
  return static_cast<size_t>(s);
}

size_t sum32(const h5::Group& g, const std::vector<int32_t>& counts) {
  return sum(g, std::vector<int64_t>(counts.begin(), counts.end()));
}

TableData loadTable(const h5::Group& g, const std::string& name) {
  std::vector<int32_t> lengths = g.read<int32_t>(name + "_row_lengths");
  std::vector<float> values =
      g.read<float>(name + "_values", static_cast<int64_t>(sum32(g, lengths)));
  TableData t;
  size_t at = 0;
  for (int32_t n : lengths) {
    t.emplace_back(values.begin() + static_cast<long>(at),
                   values.begin() + static_cast<long>(at + n));
    at += static_cast<size_t>(n);
  }
  return t;
}

odb_SetRepository lazySetList(const SourcePtr& src, const std::string& path,
                              odb_Enum::odb_SetTypeEnum type) {
  odb_SetRepository repo;
  if (!src->file.root().has(path)) return repo;  // version 1 files may lack a set kind
  h5::Group g = src->group(path);
  std::vector<std::string> names = g.readStrings("names");
  for (size_t i = 0; i < names.size(); ++i) {
    std::string setPath = path + "/" + std::to_string(i);
    odb::Lazy<SetData> members(std::function<SetData()>([src, setPath, type] {
      SetData d = loadSet(src->group(setPath));
      if (d.type != type) damaged(src->group(setPath), "set of the wrong kind");
      return d;
    }));
    repo.insert(names[i], odb_Set(names[i], type, std::move(members)));
  }
  return repo;
}

}  // namespace

SetData loadSet(const h5::Group& g) {
  SetData s;
  s.name = g.getString("name");
  int64_t type = g.getInt("type");
  if (type < odb_Enum::NODE_SET || type > odb_Enum::SURFACE_SET) damaged(g, "unknown set type");
  s.type = static_cast<odb_Enum::odb_SetTypeEnum>(type);
  s.instanceNames = g.readStrings("instance_names");
  s.counts = g.read<int64_t>("counts", static_cast<int64_t>(s.instanceNames.size()));
  s.labels = g.read<int32_t>("labels", static_cast<int64_t>(sum(g, s.counts)));
  if (s.type == odb_Enum::SURFACE_SET)
    s.faces = g.read<int32_t>("faces", static_cast<int64_t>(s.labels.size()));
  return s;
}

NodeData loadNodes(const h5::Group& entity) {
  h5::Group g = entity.open("nodes");
  NodeData n;
  std::vector<hsize_t> dims = g.dims("coordinates");
  if (dims.size() != 2 || dims[1] < 1 || dims[1] > 3) damaged(g, "coordinates are not n by 1 to 3");
  n.dimension = static_cast<int>(dims[1]);
  n.labels = g.read<int32_t>("labels", static_cast<int64_t>(dims[0]));
  n.coordinates = g.read<float>("coordinates");
  return n;
}

ElementData loadElements(const h5::Group& entity, int version, size_t categoryCount) {
  h5::Group g = entity.open("elements");
  ElementData e;
  e.labels = g.read<int32_t>("labels");
  auto n = static_cast<int64_t>(e.labels.size());
  e.typeNames = g.readStrings("type_names");
  e.typeIndex = g.read<int32_t>("type_index", n);
  for (int32_t t : e.typeIndex)
    if (t < 0 || static_cast<size_t>(t) >= e.typeNames.size())
      damaged(g, "element type index out of range");
  if (version >= 2) {
    e.offsets = g.read<int64_t>("offsets", n + 1);
    e.connectivity = g.read<int32_t>("connectivity");
    if (e.offsets[0] != 0 || e.offsets.back() != static_cast<int64_t>(e.connectivity.size()))
      damaged(g, "connectivity offsets do not match the connectivity");
    for (int64_t i = 0; i < n; ++i)
      if (e.offsets[i + 1] < e.offsets[i]) damaged(g, "connectivity offsets decrease");
  } else {
    // Version 1: a padded n by w table, unused places -1.
    std::vector<hsize_t> dims = g.dims("connectivity");
    if (dims.size() != 2 || static_cast<int64_t>(dims[0]) != n)
      damaged(g, "bad connectivity table");
    std::vector<int32_t> table = g.read<int32_t>("connectivity");
    e.offsets.assign(1, 0);
    for (int64_t i = 0; i < n; ++i) {
      for (hsize_t j = 0; j < dims[1]; ++j)
        if (table[i * dims[1] + j] != -1) e.connectivity.push_back(table[i * dims[1] + j]);
      e.offsets.push_back(static_cast<int64_t>(e.connectivity.size()));
    }
  }
  if (g.isDataset("section_category")) {
    e.categoryIndex = g.read<int32_t>("section_category", n);
    for (int32_t c : e.categoryIndex)
      if (c < -1 || (c >= 0 && static_cast<size_t>(c) >= categoryCount))
        damaged(g, "section category index out of range");
  } else {
    e.categoryIndex.assign(static_cast<size_t>(n), -1);
  }
  return e;
}

std::vector<SectionCategoryData> loadSectionCategories(const h5::Group& root) {
  if (!root.has("section_categories")) return {};
  h5::Group g = root.open("section_categories");
  std::vector<std::string> names = g.readStrings("names");
  auto n = static_cast<int64_t>(names.size());
  std::vector<std::string> descriptions = g.readStrings("descriptions", n);
  std::vector<int32_t> counts = g.read<int32_t>("point_counts", n);
  auto total = static_cast<int64_t>(sum32(g, counts));
  std::vector<int32_t> numbers = g.read<int32_t>("point_numbers", total);
  std::vector<std::string> pointDescriptions = g.readStrings("point_descriptions", total);
  std::vector<SectionCategoryData> out(names.size());
  size_t at = 0;
  for (size_t i = 0; i < names.size(); ++i) {
    out[i].name = names[i];
    out[i].description = descriptions[i];
    for (int32_t k = 0; k < counts[i]; ++k, ++at)
      out[i].sectionPoints.push_back({numbers[at], pointDescriptions[at]});
  }
  return out;
}

std::vector<SectionData> loadSections(const h5::Group& root) {
  h5::Group g = root.open("sections");
  std::vector<std::string> names = g.readStrings("names");
  auto n = static_cast<int64_t>(names.size());
  std::vector<int32_t> kinds = g.read<int32_t>("kinds", n);
  std::vector<std::string> materials = g.readStrings("materials", n);
  std::vector<float> thickness = g.read<float>("thickness", n);
  std::vector<float> mass = g.read<float>("mass", n);
  std::vector<int32_t> layerCounts = g.read<int32_t>("layer_counts", n);
  auto total = static_cast<int64_t>(sum32(g, layerCounts));
  std::vector<std::string> layerMaterials = g.readStrings("layer_materials", total);
  std::vector<float> layerThickness = g.read<float>("layer_thickness", total);
  std::vector<int32_t> angleTypes = g.read<int32_t>("layer_angle_types", total);
  std::vector<double> angleValues = g.read<double>("layer_angle_values", total);
  std::vector<std::string> angleTexts = g.readStrings("layer_angle_texts", total);
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

std::vector<MaterialData> loadMaterials(const h5::Group& root) {
  h5::Group g = root.open("materials");
  std::vector<std::string> names = g.readStrings("names");
  std::vector<MaterialData> out(names.size());
  for (size_t i = 0; i < names.size(); ++i) {
    h5::Group mg = g.open(std::to_string(i));
    MaterialData& m = out[i];
    m.name = names[i];
    if ((m.hasDensity = mg.isDataset("density_values"))) m.density = loadTable(mg, "density");
    if ((m.hasElastic = mg.isDataset("elastic_values"))) {
      m.elasticType = mg.getString("elastic_type");
      m.elastic = loadTable(mg, "elastic");
      if ((m.hasFailStrain = mg.isDataset("fail_strain_values")))
        m.failStrain = loadTable(mg, "fail_strain");
      if ((m.hasFailStress = mg.isDataset("fail_stress_values")))
        m.failStress = loadTable(mg, "fail_stress");
    }
    if ((m.hasAcousticMedium = mg.isDataset("acoustic_medium_values")))
      m.acousticMedium = loadTable(mg, "acoustic_medium");
  }
  return out;
}

std::vector<ConnectorOrientationData> loadConnectorOrientations(const h5::Group& assembly) {
  if (!assembly.has("connector_orientations")) return {};
  h5::Group g = assembly.open("connector_orientations");
  int64_t count = g.getInt("count");
  if (count < 0 || count > 100000000) damaged(g, "bad count");
  std::vector<ConnectorOrientationData> out(static_cast<size_t>(count));
  for (int64_t i = 0; i < count; ++i) {
    h5::Group o = g.open(std::to_string(i));
    ConnectorOrientationData& c = out[static_cast<size_t>(i)];
    c.hasCsys1 = o.getInt("has_csys1") != 0;
    c.csys1 = o.getString("csys1");
    c.hasCsys2 = o.getInt("has_csys2") != 0;
    c.csys2 = o.getString("csys2");
    c.region = loadSet(o.open("region"));
  }
  return out;
}

odb_EntityParts lazyEntityParts(const SourcePtr& src, const std::string& path,
                                std::shared_ptr<const std::vector<odb_SectionCategory>> cats) {
  odb_EntityParts p;
  size_t ncat = cats ? cats->size() : 0;
  p.nodes = Lazy<NodeData>(
      std::function<NodeData()>([src, path] { return loadNodes(src->group(path)); }));
  p.elements = Lazy<ElementData>(std::function<ElementData()>(
      [src, path, ncat] { return loadElements(src->group(path), src->version, ncat); }));
  p.nodeSets = Lazy<odb_SetRepository>(std::function<odb_SetRepository()>(
      [src, path] { return lazySetList(src, path + "/node_sets", odb_Enum::NODE_SET); }));
  p.elementSets = Lazy<odb_SetRepository>(std::function<odb_SetRepository()>(
      [src, path] { return lazySetList(src, path + "/element_sets", odb_Enum::ELEMENT_SET); }));
  p.surfaces = Lazy<odb_SetRepository>(std::function<odb_SetRepository()>(
      [src, path] { return lazySetList(src, path + "/surfaces", odb_Enum::SURFACE_SET); }));
  p.sectionAssignments = Lazy<odb_SequenceSectionAssignment>(
      std::function<odb_SequenceSectionAssignment()>([src, path] {
        odb_SequenceSectionAssignment seq;
        if (!src->file.root().has(path + "/section_assignments")) return seq;
        h5::Group g = src->group(path + "/section_assignments");
        std::vector<std::string> names = g.readStrings("section_names");
        for (size_t i = 0; i < names.size(); ++i)
          seq.append(odb_SectionAssignment({names[i], loadSet(g.open(std::to_string(i)))}));
        return seq;
      }));
  p.categories = std::move(cats);
  return p;
}

}  // namespace odb
