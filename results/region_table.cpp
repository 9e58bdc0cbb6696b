#include "results/region_table.h"

#include <algorithm>

#include "odb/odb.h"

namespace odbs {

namespace {

void sortUnique(std::vector<int32_t>& v) {
  std::sort(v.begin(), v.end());
  v.erase(std::unique(v.begin(), v.end()), v.end());
}

// The entity whose mesh holds the members named after instance.
const odb_DiscreteEntity* entityNamed(const odb_Odb& odb, const std::string& instance) {
  const odb_Assembly& a = odb.rootAssembly();
  if (a.instances().isMember(instance)) return &a.instances().get(instance);
  if (instance.empty() || instance == a.name()) return &a;
  return nullptr;
}

// Every node of the elements of p, from the connectivity of entity.
void addElementNodes(const odb_DiscreteEntity* entity, RegionPlaces& p) {
  if (entity == nullptr) return;
  const odb::ElementData& e = entity->elements().data();
  for (size_t i = 0; i < e.size(); ++i) {
    if (!p.hasElement(e.labels[i])) continue;
    for (int64_t k = e.offsets[i]; k < e.offsets[i + 1]; ++k)
      p.nodes.push_back(e.connectivity[static_cast<size_t>(k)]);
  }
}

Region regionOf(const odb_Odb& odb, const odb_Set& set, int32_t kind, const std::string& owner) {
  Region r;
  r.kind = kind;
  r.name = set.name();
  r.instance = owner;
  const odb::SetData& d = set.data();
  size_t at = 0;
  for (size_t g = 0; g < d.instanceNames.size() && g < d.counts.size(); ++g) {
    size_t end =
        std::min(d.labels.size(), at + static_cast<size_t>(std::max<int64_t>(0, d.counts[g])));
    RegionPlaces& p = r.places[d.instanceNames[g]];
    std::vector<int32_t>& into = kind == kRegionNodeSet ? p.nodes : p.elements;
    into.insert(into.end(), d.labels.begin() + static_cast<std::ptrdiff_t>(at),
                d.labels.begin() + static_cast<std::ptrdiff_t>(end));
    at = end;
  }
  for (auto& [instance, p] : r.places) {
    sortUnique(p.elements);
    if (kind != kRegionNodeSet) addElementNodes(entityNamed(odb, instance), p);
    sortUnique(p.nodes);
  }
  return r;
}

std::optional<Region> findIn(const odb_Odb& odb, const odb_DiscreteEntity& e,
                             const std::string& owner, const std::string& name) {
  if (e.surfaces().isMember(name))
    return regionOf(odb, e.surfaces().get(name), kRegionSurface, owner);
  if (e.elementSets().isMember(name))
    return regionOf(odb, e.elementSets().get(name), kRegionElementSet, owner);
  if (e.nodeSets().isMember(name))
    return regionOf(odb, e.nodeSets().get(name), kRegionNodeSet, owner);
  return std::nullopt;
}

}  // namespace

const RegionPairTable& regionPairTable(OdbContext& ctx) {
  RegionPairTable& table = ctx.tables.get<RegionPairTable>();
  if (!table.built) {
    table.pairs = ctx.odb->regionPairs();
    table.built = true;
  }
  return table;
}

const odb::RegionPairData* pairNamed(const RegionPairTable& table, const std::string& name) {
  for (const odb::RegionPairData& p : table.pairs)
    if (p.name == name) return &p;
  return nullptr;
}

bool RegionPlaces::hasElement(int32_t label) const {
  return std::binary_search(elements.begin(), elements.end(), label);
}

bool RegionPlaces::hasNode(int32_t label) const {
  return std::binary_search(nodes.begin(), nodes.end(), label);
}

std::optional<Region> findRegion(const odb_Odb& odb, const std::string& name) {
  const odb_Assembly& a = odb.rootAssembly();
  if (auto r = findIn(odb, a, "", name)) return r;
  for (const auto& [instanceName, instance] : a.instances().members())
    if (auto r = findIn(odb, instance, instanceName, name)) return r;
  return std::nullopt;
}

}  // namespace odbs
