#include "tools/export/mesh_grid.h"

#include <map>
#include <set>
#include <stdexcept>

#include "odb/odb.h"
#include "tools/export/vtk_cells.h"

namespace odbs::exporter {

int MeshIndex::entityOf(const std::string& instance) const {
  if (instance.empty() || instance == assemblyName) {
    for (size_t e = 0; e < entities.size(); ++e)
      if (entities[e] == assemblyName) return static_cast<int>(e);
    return -1;
  }
  for (size_t e = 0; e < entities.size(); ++e)
    if (entities[e] == instance) return static_cast<int>(e);
  return -1;
}

int64_t MeshIndex::point(int entity, int32_t label) const {
  if (entity < 0) return -1;
  auto it = points[entity].find(label);
  return it == points[entity].end() ? -1 : it->second;
}

int64_t MeshIndex::cell(int entity, int32_t label) const {
  if (entity < 0) return -1;
  auto it = cells[entity].find(label);
  return it == cells[entity].end() ? -1 : it->second;
}

namespace {

DataArray intArray(const std::string& name) {
  return DataArray(name, DataArray::Kind::kInt32);
}

void addEntity(const odb_DiscreteEntity& entity, int e, Mesh& m, std::set<std::string>& unknown) {
  VtuGrid& g = m.grid;
  const odb_SequenceNode nodes = entity.nodes();
  const std::vector<int32_t>& labels = nodes.labels();
  const std::vector<float>& xyz = nodes.coordinateData();
  const size_t dim = static_cast<size_t>(nodes.dimension());
  auto& pointOf = m.index.points[e];
  auto& cellOf = m.index.cells[e];
  for (size_t i = 0; i < labels.size(); ++i) {
    for (size_t c = 0; c < 3; ++c) g.points.f32.push_back(c < dim ? xyz[i * dim + c] : 0.f);
    pointOf[labels[i]] = static_cast<int64_t>(g.pointCount() - 1);
    g.pointData[0].i32.push_back(e);
    g.pointData[1].i32.push_back(labels[i]);
  }
  const odb::ElementData& el = entity.elements().data();
  std::map<std::pair<int32_t, int64_t>, VtkCell> cellTypes;  // (type index, node count)
  for (size_t i = 0; i < el.labels.size(); ++i) {
    int64_t first = el.offsets[i], count = el.offsets[i + 1] - el.offsets[i];
    auto key = std::make_pair(el.typeIndex[i], count);
    auto it = cellTypes.find(key);
    if (it == cellTypes.end()) {
      const std::string& name = el.typeNames[el.typeIndex[i]];
      it = cellTypes.emplace(key, vtkCellOf(name, static_cast<int>(count))).first;
      if (!it->second.known) unknown.insert(name);
    }
    const VtkCell& cell = it->second;
    for (int64_t k = 0; k < count; ++k) {
      int64_t node = cell.order.empty() ? k : cell.order[k];
      int32_t label = el.connectivity[first + node];
      auto p = pointOf.find(label);
      if (p == pointOf.end()) {
        throw std::runtime_error("element " + std::to_string(el.labels[i]) + " of " +
                                 m.index.entities[e] + " names node " + std::to_string(label) +
                                 ", which " + m.index.entities[e] + " does not have");
      }
      g.connectivity.i64.push_back(p->second);
    }
    g.offsets.i64.push_back(static_cast<int64_t>(g.connectivity.i64.size()));
    g.types.u8.push_back(cell.type);
    cellOf[el.labels[i]] = static_cast<int64_t>(g.cellCount() - 1);
    g.cellData[0].i32.push_back(e);
    g.cellData[1].i32.push_back(el.labels[i]);
  }
}

// Marks the members of one set in the 0/1 array named prefix + set name.
void addSet(const odb_Set& set, bool nodes, Mesh& m, std::map<std::string, size_t>& arrays) {
  std::vector<DataArray>& target = nodes ? m.grid.pointData : m.grid.cellData;
  std::string name = (nodes ? "nset " : "elset ") + set.name();
  auto it = arrays.find(name);
  if (it == arrays.end()) {
    DataArray a(name, DataArray::Kind::kUInt8);
    a.u8.assign(nodes ? m.grid.pointCount() : m.grid.cellCount(), 0);
    target.push_back(std::move(a));
    it = arrays.emplace(name, target.size() - 1).first;
  }
  const odb::SetData& d = set.data();
  size_t next = 0;
  for (size_t g = 0; g < d.instanceNames.size(); ++g) {
    int e = m.index.entityOf(d.instanceNames[g]);
    for (int64_t k = 0; k < d.counts[g]; ++k, ++next) {
      int64_t i = nodes ? m.index.point(e, d.labels[next]) : m.index.cell(e, d.labels[next]);
      if (i >= 0) target[it->second].u8[i] = 1;
    }
  }
}

}  // namespace

Mesh buildMesh(const odb_Odb& odb, const MeshOptions& options) {
  Mesh m;
  const odb_Assembly& assembly = odb.rootAssembly();
  m.index.assemblyName = assembly.name();
  std::vector<const odb_DiscreteEntity*> entities;
  for (odb_InstanceRepositoryIT it(assembly.instances()); !it.isDone(); it.next()) {
    entities.push_back(&it.currentValue());
  }
  if (assembly.nodes().size() > 0) entities.push_back(&assembly);
  for (const auto* e : entities) m.index.entities.push_back(e->name());
  m.index.points.resize(entities.size());
  m.index.cells.resize(entities.size());

  m.grid.pointData = {intArray("instance"), intArray("node_label")};
  m.grid.cellData = {intArray("instance"), intArray("element_label")};
  std::set<std::string> unknown;
  for (size_t e = 0; e < entities.size(); ++e) addEntity(*entities[e], int(e), m, unknown);
  m.unknownTypes.assign(unknown.begin(), unknown.end());

  if (options.sets) {
    std::map<std::string, size_t> arrays;
    std::vector<const odb_DiscreteEntity*> owners = entities;
    if (assembly.nodes().size() == 0) owners.push_back(&assembly);  // assembly-level sets
    for (const auto* owner : owners) {
      for (odb_RepositoryIterator<odb_Set> it(owner->nodeSets()); !it.isDone(); it.next())
        addSet(it.currentValue(), true, m, arrays);
      for (odb_RepositoryIterator<odb_Set> it(owner->elementSets()); !it.isDone(); it.next())
        addSet(it.currentValue(), false, m, arrays);
    }
  }
  return m;
}

}  // namespace odbs::exporter
