#include "tests/odb/legacy_v1_writer.h"

#include <algorithm>
#include <functional>

#include "odb/format.h"
#include "odb/model_store.h"
#include "odb/names.h"
#include "odb/results_store.h"

namespace odbtest {
namespace {

namespace name = odb::name;
using odb::h5::Group;

void padConnectivity(const Group& entity, const odb::ElementData& e) {
  Group g = entity.open(name::kElements);
  g.remove(name::kOffsets);
  g.remove(name::kConnectivity);
  size_t width = 1;
  for (size_t i = 0; i < e.size(); ++i)
    width = std::max(width, size_t(e.offsets[i + 1] - e.offsets[i]));
  std::vector<int32_t> table(e.size() * width, -1);
  for (size_t i = 0; i < e.size(); ++i)
    std::copy(e.connectivity.begin() + e.offsets[i], e.connectivity.begin() + e.offsets[i + 1],
              table.begin() + long(i * width));
  g.write(name::kConnectivity, table.data(), {e.size(), width});
}

// Set lists as numbered set groups.
void storeSetGroups(const Group& entity, const odb::EntityData& e) {
  for (auto [list, sets] : {std::make_pair(name::kNodeSets, &e.nodeSets),
                            std::make_pair(name::kElementSets, &e.elementSets),
                            std::make_pair(name::kSurfaces, &e.surfaces)}) {
    entity.remove(list);
    Group g = entity.create(list);
    std::vector<std::string> names;
    for (size_t i = 0; i < sets->size(); ++i) {
      names.push_back((*sets)[i].name);
      odb::storeSet(g.create(std::to_string(i)), (*sets)[i]);
    }
    g.writeStrings(name::kNames, names);
  }
}

void storeRegion(const Group& g, const odb::HistoryRegionData& r) {
  const odb::HistoryPointData& p = r.point;
  g.setString(name::kName, r.name);
  g.setString(name::kDescription, r.description);
  g.setInt(name::kPosition, p.position);
  g.setInt(name::kNodeLabel, p.nodeLabel);
  g.setInt(name::kElementLabel, p.elementLabel);
  g.setString(name::kElementType, p.elementType);
  g.setInt(name::kIntegrationPoint, p.integrationPoint);
  g.setInt(name::kSectionPoint, p.sectionPoint.number);
  g.setString(name::kSectionPointDescription, p.sectionPoint.description);
  g.setString(name::kInstance, p.instance);
  odb::storeSet(g.create(name::kRegion), p.region);
  std::vector<std::string> names;
  Group outputs = g.create(name::kOutputs);
  for (size_t i = 0; i < r.outputs.size(); ++i) {
    const odb::HistoryOutputData& o = r.outputs[i];
    names.push_back(o.name);
    Group x = outputs.create(std::to_string(i));
    x.setString(name::kDescription, o.description);
    x.setInt(name::kType, o.type);
    const hsize_t w = static_cast<hsize_t>(o.width);
    x.write(name::kData, o.data.data(), {o.data.size() / w, w});
    x.write(name::kConjugateData, o.conjugateData.data(), {o.conjugateData.size() / w, w});
  }
  g.writeStrings(name::kOutputNames, names);
}

// The current model layout under the given format version.
Group writeModel(odb::h5::File& f, const odb::ModelData& m, int version) {
  Group root = f.root();
  root.setString(name::kFormat, odb::kFormatTag);
  root.setInt(name::kFormatVersion, version);
  odb::storeModel(root, m);
  return root;
}

// Runs change on the group and data of the assembly, then of each instance.
void eachEntity(const Group& root, const odb::ModelData& m,
                const std::function<void(const Group&, const odb::EntityData&)>& change) {
  Group a = root.open(name::kAssembly);
  change(a, m.assembly);
  for (size_t i = 0; i < m.instances.size(); ++i)
    change(a.open(std::string(name::kInstances) + "/" + std::to_string(i)), m.instances[i]);
}

}  // namespace

void writeVersion3(const std::string& path, const odb::ModelData& m) {
  odb::h5::File f = odb::h5::File::create(path);
  eachEntity(writeModel(f, m, 3), m, [](const Group& g, const odb::EntityData&) {
    Group assignments = g.open(name::kSectionAssignments);
    for (const char* placement : {name::kPlacementFlags, name::kOffsets, name::kThicknesses})
      assignments.remove(placement);
  });
  f.close();
}

void writeVersion1(const std::string& path, const odb::ModelData& m) {
  odb::h5::File f = odb::h5::File::create(path);
  eachEntity(writeModel(f, m, 1), m, [](const Group& g, const odb::EntityData& e) {
    storeSetGroups(g, e);
    padConnectivity(g, e.elements);
  });
  f.close();
}

void writeVersion2(const std::string& path, const odb::ModelData& m, const odb::StepData& step,
                   const std::vector<odb::HistoryRegionData>& history) {
  odb::h5::File f = odb::h5::File::create(path);
  Group root = writeModel(f, m, 2);
  eachEntity(root, m, storeSetGroups);
  Group steps = root.create(name::kSteps);
  Group s = steps.create("0");
  odb::storeStepHeader(s, step);
  odb::storeFrameCatalogue(s, {});
  s.create(name::kFrames);
  Group h = s.create(name::kHistory);
  std::vector<std::string> names;
  for (size_t i = 0; i < history.size(); ++i) {
    names.push_back(history[i].name);
    storeRegion(h.create(std::to_string(i)), history[i]);
  }
  h.writeStrings(name::kNames, names);
  steps.writeStrings(name::kNames, {step.name});
  f.close();
}

}  // namespace odbtest
