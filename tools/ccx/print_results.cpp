#include "tools/ccx/print_results.h"

#include <algorithm>

#include "tools/ccx/model_import.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

struct PointQuantity {
  const char* name;
  const char* description;
  odb_Enum::odb_DataTypeEnum type;
  std::vector<std::string> labels;
};

// Integration point tables by their printed quantity; the solver prints tensors as
// xx, yy, zz, xy, xz, yz, which is the database's 11, 22, 33, 12, 13, 23 already.
const std::map<std::string, PointQuantity>& pointQuantities() {
  static const std::map<std::string, PointQuantity> known = {
      {"stresses",
       {"S",
        "Stress components",
        odb_Enum::TENSOR_3D_FULL,
        {"S11", "S22", "S33", "S12", "S13", "S23"}}},
      {"strains",
       {"E",
        "Strain components",
        odb_Enum::TENSOR_3D_FULL,
        {"E11", "E22", "E33", "E12", "E13", "E23"}}},
      {"mechanical strains",
       {"ME",
        "Mechanical strain components",
        odb_Enum::TENSOR_3D_FULL,
        {"ME11", "ME22", "ME33", "ME12", "ME13", "ME23"}}},
      {"equivalent plastic strain", {"PEEQ", "Equivalent plastic strain", odb_Enum::SCALAR, {}}},
      {"internal energy density", {"ENER", "Strain energy density", odb_Enum::SCALAR, {}}},
  };
  return known;
}

struct HistoryQuantity {
  std::vector<std::string> outputs;  // one per printed column
  const char* description;
  bool elementSet = false;  // a total over an element set (else over a node set)
  bool additive = false;    // a face's points add up (energies); else they are averaged
};

const std::map<std::string, HistoryQuantity>& historyQuantities() {
  static const std::map<std::string, HistoryQuantity> known = {
      {"displacements", {{"U1", "U2", "U3"}, "Spatial displacement"}},
      {"velocities", {{"V1", "V2", "V3"}, "Spatial velocity"}},
      {"forces", {{"RF1", "RF2", "RF3"}, "Reaction force"}},
      {"total force", {{"RF1", "RF2", "RF3"}, "Total reaction force of the set"}},
      {"total internal energy", {{"ALLIE"}, "Internal energy of the set", true}},
      {"total kinetic energy", {{"ALLKE"}, "Kinetic energy of the set", true}},
      {"temperatures", {{"NT11"}, "Nodal temperature"}},
      {"relative contact displacement",
       {{"COPEN", "CSLIP1", "CSLIP2"}, "Contact opening and relative tangential motion"}},
      {"contact stress",
       {{"CPRESS", "CSHEAR1", "CSHEAR2"}, "Contact pressure and frictional shear stress"}},
      {"contact print energy", {{"CELS"}, "Contact spring energy", false, true}},
      {"total number of contact elements", {{"CNUM"}, "Number of contact elements"}},
  };
  return known;
}

bool isShell(const std::string& type) {
  return (type.size() >= 2 && type[0] == 'S' && type[1] >= '3' && type[1] <= '8') ||
         startsWith(type, "M3D");
}

}  // namespace

ShellLayers shellLayersOf(const Deck& deck) {
  ShellLayers layers;
  // Shell types decided once per type, not per element.
  const ElementList& elements = deck.elements;
  std::vector<char> shell;
  for (const std::string& type : elements.typeNames()) shell.push_back(isShell(type));
  if (std::find(shell.begin(), shell.end(), 1) != shell.end()) {
    for (size_t i = 0; i < elements.size(); ++i)
      if (shell[elements.typeNumbers()[i]]) layers[elements.labels()[i]] = 1;
  }
  for (const Section& s : deck.sections) {
    if (s.kind != SectionKind::CompositeShell) continue;
    const LabelSet* set = deck.elementSet(s.elset);
    if (!set) continue;
    for (int32_t label : set->labels) {
      auto it = layers.find(label);
      if (it != layers.end()) it->second = static_cast<int>(s.layers.size());
    }
  }
  return layers;
}

std::vector<PointField> pointFieldsOf(const std::vector<const DatBlock*>& tables,
                                      const ShellLayers& shells, Warnings& warnings) {
  std::vector<PointField> fields;
  std::map<std::string, size_t> byName;
  for (const DatBlock* table : tables) {
    if (table->kind != DatRowKind::IntegrationPoint) continue;
    auto known = pointQuantities().find(table->quantity);
    if (known == pointQuantities().end() ||
        table->components.size() != std::max<size_t>(1, known->second.labels.size())) {
      warnings.warn("dat-quantity:" + table->quantity,
                    table->location + ": printed " + table->quantity +
                        " at integration points are not imported");
      continue;
    }
    const PointQuantity& q = known->second;
    auto [it, inserted] = byName.emplace(q.name, fields.size());
    if (inserted) {
      PointField f;
      f.name = q.name;
      f.description = q.description;
      f.type = q.type;
      f.labels = q.labels;
      fields.push_back(std::move(f));
    }
    PointField& f = fields[it->second];
    std::vector<float> values(table->values.begin(), table->values.end());
    if (table->imaginary) {
      // The imaginary parts of the rows already added from the real table.
      f.imaginary.insert(f.imaginary.end(), values.begin(), values.end());
      continue;
    }
    for (size_t r = 0; r < table->rows(); ++r) {
      int32_t element = table->labels[r];
      int32_t point = table->labels2[r];
      auto shell = shells.find(element);
      int32_t section = 0;
      if (shell != shells.end()) {
        section = shellSectionPoint(point, shell->second);
        point = (point - 1) % 4 + 1;  // the point within the shell's surface
      }
      f.elements.push_back(element);
      f.integrationPoints.push_back(point);
      f.sectionPoints.push_back(section);
    }
    f.values.insert(f.values.end(), values.begin(), values.end());
  }
  for (PointField& f : fields) {
    if (!f.imaginary.empty() && f.imaginary.size() != f.values.size()) f.imaginary.clear();
  }
  return fields;
}

HistoryRegionData& HistoryCollector::region(const std::string& name) {
  auto [it, inserted] = index_.emplace(name, regions_.size());
  if (inserted) {
    regions_.emplace_back();
    regions_.back().name = name;
  }
  return regions_[it->second];
}

size_t HistoryCollector::regionLike(const HistoryRegionData& point) {
  auto [it, inserted] = index_.emplace(point.name, regions_.size());
  if (inserted) {
    regions_.push_back(point);
    regions_.back().outputs.clear();
  }
  return it->second;
}

void HistoryCollector::sample(HistoryRegionData& r, const std::string& output,
                              const std::string& description, double frameValue, double value,
                              bool imaginary) {
  HistoryOutputData& o = r.outputs[output];
  o.description = description;
  if (imaginary) {
    // The real part of this sample came first; pad outputs that never had imaginary parts.
    if (o.values.empty()) return;
    o.imaginary.resize(o.values.size() - 1, 0.f);
    o.imaginary.push_back(static_cast<float>(value));
    return;
  }
  o.frameValues.push_back(frameValue);
  o.values.push_back(static_cast<float>(value));
}

void HistoryCollector::addPoints(const std::string& quantity,
                                 const std::vector<std::string>& outputs,
                                 const std::string& description, double frameValue,
                                 std::vector<PointSample>&& points) {
  PointSeries& series = points_[quantity];
  const size_t width = outputs.size();
  std::vector<char> present(regions_.size(), 0);
  for (PointSample& p : points) {
    const size_t index = regionLike(p.region);
    HistoryRegionData& r = regions_[index];
    if (index >= present.size()) present.resize(index + 1, 0);
    if (present[index]) continue;  // one sample per point and frame
    present[index] = 1;
    if (series.members.insert(index).second) {
      // A point new to the quantity: open before this frame.
      for (double earlier : series.frames) {
        for (size_t c = 0; c < width; ++c) sample(r, outputs[c], description, earlier, 0, false);
      }
    }
    for (size_t c = 0; c < width; ++c) {
      sample(r, outputs[c], description, frameValue, c < p.values.size() ? p.values[c] : 0, false);
    }
  }
  for (size_t index : series.members) {
    if (index < present.size() && present[index]) continue;
    for (size_t c = 0; c < width; ++c) {
      sample(regions_[index], outputs[c], description, frameValue, 0, false);
    }
  }
  series.frames.push_back(frameValue);
}

void HistoryCollector::addFaces(const DatBlock& table, const std::vector<std::string>& outputs,
                                const std::string& description, bool additive, double frameValue) {
  // The points of a face are the solver's integration points of the face's contact
  // elements: their number and place change as the contact zone changes, so a face is the
  // smallest part that stays the same from frame to frame.
  const size_t width = table.components.size();
  std::map<std::pair<int32_t, int32_t>, size_t> faceIndex;
  std::vector<PointSample> faces;
  std::vector<int> count;
  for (size_t r = 0; r < table.rows(); ++r) {
    int32_t element = table.labels[r], face = table.labels2[r];
    auto [it, inserted] = faceIndex.emplace(std::make_pair(element, face), faces.size());
    if (inserted) {
      PointSample s;
      s.region.name = std::string("Element ") + kInstanceName + "." + std::to_string(element) +
                      " Face " + std::to_string(face);
      s.region.position = odb_Enum::ELEMENT_FACE;
      s.region.element = element;
      s.region.face = face;
      s.values.assign(width, 0.0);
      faces.push_back(std::move(s));
      count.push_back(0);
    }
    PointSample& f = faces[it->second];
    for (size_t c = 0; c < width; ++c) f.values[c] += table.values[r * width + c];
    ++count[it->second];
  }
  std::vector<PointSample> counts;
  for (size_t i = 0; i < faces.size(); ++i) {
    if (!additive) {
      for (double& v : faces[i].values) v /= count[i];
    }
    PointSample c;
    c.region = faces[i].region;
    c.values = {static_cast<double>(count[i])};
    counts.push_back(std::move(c));
  }
  addPoints(table.quantity, outputs, description, frameValue, std::move(faces));
  // How many points the face had in contact: 0 marks a frame without contact. Counted once
  // per frame, from whichever contact table comes first.
  PointSeries& marked = points_["contact points"];
  if (marked.frames.empty() || marked.frames.back() != frameValue) {
    addPoints("contact points", {"CPOINTS"}, "Contact points of the face", frameValue,
              std::move(counts));
  }
}

bool HistoryCollector::add(const DatBlock& table, double frameValue, Warnings& warnings) {
  if (table.kind == DatRowKind::IntegrationPoint) return false;
  if (table.kind == DatRowKind::Element) {
    warnings.warn("dat-quantity:" + table.quantity,
                  table.location + ": printed " + table.quantity + " per element are not imported");
    return false;
  }
  auto known = historyQuantities().find(table.quantity);
  if (known == historyQuantities().end() ||
      known->second.outputs.size() != table.components.size()) {
    warnings.warn("dat-quantity:" + table.quantity,
                  table.location + ": printed " + table.quantity + " are not imported");
    return false;
  }
  const HistoryQuantity& q = known->second;
  const size_t width = table.components.size();
  if (table.kind == DatRowKind::ContactFace) {
    if (!table.imaginary) addFaces(table, q.outputs, q.description, q.additive, frameValue);
    return true;
  }
  if (table.kind == DatRowKind::ContactNode) {
    // Only the slave nodes in contact are printed: the others read 0 in that frame.
    if (table.imaginary) return true;
    std::vector<PointSample> nodes;
    for (size_t r = 0; r < table.rows(); ++r) {
      PointSample p;
      p.region = nodeRegion(table.labels[r]);
      p.values.assign(table.values.begin() + r * width, table.values.begin() + (r + 1) * width);
      nodes.push_back(std::move(p));
    }
    addPoints(table.quantity, q.outputs, q.description, frameValue, std::move(nodes));
    return true;
  }
  for (size_t r = 0; r < table.rows(); ++r) {
    HistoryRegionData* target;
    if (table.kind == DatRowKind::Total && table.set.empty()) {
      target = &region("Assembly");  // a count over the whole model
      target->position = odb_Enum::WHOLE_MODEL;
    } else if (table.kind == DatRowKind::Total) {
      target = &region((q.elementSet ? "Element set " : "Node set ") + table.set);
      target->position = odb_Enum::WHOLE_REGION;
      target->set = table.set;
      target->elementSet = q.elementSet;
    } else {
      HistoryRegionData point = nodeRegion(table.labels[r]);
      target = &region(point.name);
      target->position = point.position;
      target->node = point.node;
    }
    for (size_t c = 0; c < width; ++c) {
      sample(*target, q.outputs[c], q.description, frameValue, table.values[r * width + c],
             table.imaginary);
    }
  }
  return true;
}

HistoryRegionData nodeRegion(int32_t node) {
  HistoryRegionData r;
  r.name = std::string("Node ") + kInstanceName + "." + std::to_string(node);
  r.position = odb_Enum::NODAL;
  r.node = node;
  return r;
}

}  // namespace odbs::ccx
