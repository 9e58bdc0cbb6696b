// Nodes and elements of an entity (the root assembly or a part instance), the entity
// group as a whole and the model's root: store and load side by side.
#include "odb/model_store.h"
#include "odb/store_util.h"

namespace odb {

void storeNodes(const h5::Group& entity, const NodeData& n) {
  h5::Group g = entity.create(name::kNodes);
  g.write(name::kLabels, n.labels);
  g.write(name::kCoordinates, n.coordinates.data(),
          {n.labels.size(), static_cast<hsize_t>(n.dimension)});
}

NodeData loadNodes(const h5::Group& entity) {
  h5::Group g = entity.open(name::kNodes);
  NodeData n;
  std::vector<hsize_t> dims = g.dims(name::kCoordinates);
  if (dims.size() != 2 || dims[1] < 1 || dims[1] > 3) damaged(g, "coordinates are not n by 1 to 3");
  n.dimension = static_cast<int>(dims[1]);
  n.labels = g.read<int32_t>(name::kLabels, static_cast<int64_t>(dims[0]));
  n.coordinates = g.read<float>(name::kCoordinates);
  return n;
}

void storeElements(const h5::Group& entity, const ElementData& e) {
  h5::Group g = entity.create(name::kElements);
  g.write(name::kLabels, e.labels);
  g.writeStrings(name::kTypeNames, e.typeNames);
  g.write(name::kTypeIndex, e.typeIndex);
  g.write(name::kOffsets, e.offsets);
  g.write(name::kConnectivity, e.connectivity);
  g.write(name::kSectionCategory, e.categoryIndex);
}

namespace {

// Version 1: a padded n by w table, unused places -1.
void loadPaddedConnectivity(const h5::Group& g, ElementData& e) {
  auto n = static_cast<int64_t>(e.labels.size());
  std::vector<hsize_t> dims = g.dims(name::kConnectivity);
  if (dims.size() != 2 || static_cast<int64_t>(dims[0]) != n) damaged(g, "bad connectivity table");
  std::vector<int32_t> table = g.read<int32_t>(name::kConnectivity);
  e.offsets.assign(1, 0);
  for (int64_t i = 0; i < n; ++i) {
    for (hsize_t j = 0; j < dims[1]; ++j)
      if (table[i * dims[1] + j] != -1) e.connectivity.push_back(table[i * dims[1] + j]);
    e.offsets.push_back(static_cast<int64_t>(e.connectivity.size()));
  }
}

}  // namespace

ElementData loadElements(const h5::Group& entity, int version, size_t categoryCount) {
  h5::Group g = entity.open(name::kElements);
  ElementData e;
  e.labels = g.read<int32_t>(name::kLabels);
  auto n = static_cast<int64_t>(e.labels.size());
  e.typeNames = g.readStrings(name::kTypeNames);
  e.typeIndex = g.read<int32_t>(name::kTypeIndex, n);
  for (int32_t t : e.typeIndex)
    if (t < 0 || static_cast<size_t>(t) >= e.typeNames.size())
      damaged(g, "element type index out of range");
  if (version >= 2) {
    e.offsets = g.read<int64_t>(name::kOffsets, n + 1);
    e.connectivity = g.read<int32_t>(name::kConnectivity);
    if (e.offsets[0] != 0 || e.offsets.back() != static_cast<int64_t>(e.connectivity.size()))
      damaged(g, "connectivity offsets do not match the connectivity");
    for (int64_t i = 0; i < n; ++i)
      if (e.offsets[i + 1] < e.offsets[i]) damaged(g, "connectivity offsets decrease");
  } else {
    loadPaddedConnectivity(g, e);
  }
  if (g.isDataset(name::kSectionCategory)) {
    e.categoryIndex = g.read<int32_t>(name::kSectionCategory, n);
    for (int32_t c : e.categoryIndex)
      if (c < -1 || (c >= 0 && static_cast<size_t>(c) >= categoryCount))
        damaged(g, "section category index out of range");
  } else {
    e.categoryIndex.assign(static_cast<size_t>(n), -1);
  }
  return e;
}

void storeEntity(const h5::Group& g, const EntityData& e) {
  g.setString(name::kName, e.name);
  storeNodes(g, e.nodes);
  storeElements(g, e.elements);
  storeSetList(g, name::kNodeSets, e.nodeSets);
  storeSetList(g, name::kElementSets, e.elementSets);
  storeSetList(g, name::kSurfaces, e.surfaces);
  storeSectionAssignments(g, e.sectionAssignments);
}

odb_EntityParts lazyEntityParts(const SourcePtr& src, const std::string& path,
                                std::shared_ptr<const std::vector<odb_SectionCategory>> cats) {
  odb_EntityParts p;
  size_t ncat = cats ? cats->size() : 0;
  std::string prefix = path + "/";
  p.nodes = Lazy<NodeData>(
      std::function<NodeData()>([src, path] { return loadNodes(src->group(path)); }));
  p.elements = Lazy<ElementData>(std::function<ElementData()>(
      [src, path, ncat] { return loadElements(src->group(path), src->version, ncat); }));
  p.nodeSetList = lazySetListData(src, prefix + name::kNodeSets, odb_Enum::NODE_SET);
  p.elementSetList = lazySetListData(src, prefix + name::kElementSets, odb_Enum::ELEMENT_SET);
  p.surfaceList = lazySetListData(src, prefix + name::kSurfaces, odb_Enum::SURFACE_SET);
  p.nodeSets = Lazy<odb_SetRepository>(
      std::function<odb_SetRepository()>([src, prefix, list = p.nodeSetList] {
        return lazySetList(src, prefix + name::kNodeSets, odb_Enum::NODE_SET, list);
      }));
  p.elementSets = Lazy<odb_SetRepository>(
      std::function<odb_SetRepository()>([src, prefix, list = p.elementSetList] {
        return lazySetList(src, prefix + name::kElementSets, odb_Enum::ELEMENT_SET, list);
      }));
  p.surfaces = Lazy<odb_SetRepository>(
      std::function<odb_SetRepository()>([src, prefix, list = p.surfaceList] {
        return lazySetList(src, prefix + name::kSurfaces, odb_Enum::SURFACE_SET, list);
      }));
  p.sectionAssignments =
      Lazy<odb_SequenceSectionAssignment>(std::function<odb_SequenceSectionAssignment()>(
          [src, path] { return loadSectionAssignments(src, path); }));
  p.categories = std::move(cats);
  return p;
}

void storeModel(const h5::Group& root, const ModelData& m) {
  root.setString(name::kName, m.name);
  root.setString(name::kTitle, m.title);
  root.setString(name::kDescription, m.description);
  root.setInt(name::kAnalysisCode, m.analysisCode);
  storeAnnotations(root, m.annotations);
  storeSectionCategories(root, m.sectionCategories);
  storeSections(root, m.sections);
  storeMaterials(root, m.materials);
  h5::Group a = root.create(name::kAssembly);
  storeEntity(a, m.assembly);
  storeConnectorOrientations(a, m.connectorOrientations);
  storeRegionPairs(a, m.regionPairs);
  h5::Group inst = a.create(name::kInstances);
  std::vector<std::string> names;
  for (size_t i = 0; i < m.instances.size(); ++i) {
    names.push_back(m.instances[i].name);
    storeEntity(inst.create(std::to_string(i)), m.instances[i]);
  }
  inst.writeStrings(name::kNames, names);
}

}  // namespace odb
