#include "tools/ccx/model_import.h"

#include <cmath>
#include <map>
#include <optional>

#include "tools/ccx/label_index.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {

const char* const kInstanceName = "PART-1-1";
const char* const kExpandedInstanceName = "PART-1-1-EXPANDED";

namespace {

constexpr double kPi = 3.14159265358979323846;

int sectionKindCode(const Section& s) {
  switch (s.kind) {
    case SectionKind::Solid:
      return kseO_HOMOGENEOUS_SOLID;
    case SectionKind::Shell:
      return kseO_HOMOGENEOUS_SHELL;
    case SectionKind::CompositeShell:
      return kseO_COMPOSITE_SHELL;
    case SectionKind::Membrane:
      return kseO_MEMBRANE;
    case SectionKind::Truss:
      return kseO_TRUSS;
    case SectionKind::Beam:
      return kseO_BEAM;
    case SectionKind::Mass:
      return kseO_POINT;
    default:
      return kseO_OTHER_SECTION;
  }
}

int faceCode(const std::string& face) {
  if (face.size() == 2 && face[0] == 'S' && face[1] >= '1' && face[1] <= '6') {
    return odb_Enum::FACE1 + (face[1] - '1');
  }
  if (face == "SPOS") return odb_Enum::SIDE1;
  if (face == "SNEG") return odb_Enum::SIDE2;
  return odb_Enum::FACE_UNKNOWN;
}

std::string elasticTypeName(const std::string& type) {
  if (type.empty() || type == "ISO" || type == "ISOTROPIC") return "ISOTROPIC";
  if (type == "ORTHO" || type == "ORTHOTROPIC") return "ORTHOTROPIC";
  if (type == "ENGINEERING CONSTANTS") return "ENGINEERING_CONSTANTS";
  if (type == "ANISO" || type == "ANISOTROPIC") return "ANISOTROPIC";
  return type;
}

odb::TableData toFloats(const MaterialTable& table) {
  odb::TableData out;
  for (const auto& row : table.rows) out.emplace_back(row.begin(), row.end());
  return out;
}

struct Axes {
  double a[3], n[3];
};

// The 1-direction and normal of a rectangular orientation (global X and Z for none).
bool orientationAxes(const Deck& deck, const std::string& name, Axes* axes) {
  *axes = Axes{{1, 0, 0}, {0, 0, 1}};
  if (name.empty()) return true;
  for (const Orientation& o : deck.orientations) {
    if (o.name != name) continue;
    if (o.system != "RECTANGULAR" || o.values.size() < 6) return false;
    const double* a = o.values.data();
    const double* b = a + 3;
    double n[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    double la = std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]);
    double ln = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (la == 0 || ln == 0) return false;
    for (int i = 0; i < 3; ++i) axes->a[i] = a[i] / la, axes->n[i] = n[i] / ln;
    return true;
  }
  return false;
}

// The angle of a layer's orientation about the section's normal, in degrees; the name of
// the layer's orientation when it is not a rectangular system.
odb_Union layerAngle(const Deck& deck, const Section& section, const Layer& layer) {
  if (layer.orientation.empty()) return odb_Union::ofFloat(0.f);
  Axes base, own;
  if (!orientationAxes(deck, section.orientation, &base) ||
      !orientationAxes(deck, layer.orientation, &own)) {
    return odb_Union::ofString(layer.orientation);
  }
  const double* a = base.a;
  const double* b = own.a;
  double cross[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                     a[0] * b[1] - a[1] * b[0]};
  double sine = cross[0] * base.n[0] + cross[1] * base.n[1] + cross[2] * base.n[2];
  double cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  return odb_Union::ofFloat(static_cast<float>(std::atan2(sine, cosine) * 180.0 / kPi));
}

// The offset and thickness that a section card gives its element set: OFFSET of a shell or
// membrane (in thicknesses from the mid-surface), OFFSET1 and OFFSET2 of a beam, and the
// thickness of shells, membranes and plane solids (the sum of the layers for a composite).
odb::SectionPlacement placementOf(const Section& s) {
  odb::SectionPlacement p;
  auto parameter = [&s](const char* name) -> std::optional<double> {
    auto it = s.parameters.find(name);
    return it == s.parameters.end() ? std::nullopt : toDouble(it->second);
  };
  if (s.kind == SectionKind::Beam) {
    auto o1 = parameter("OFFSET1"), o2 = parameter("OFFSET2");
    p.hasOffset = o1 || o2;
    p.offset1 = static_cast<float>(o1.value_or(0.0));
    p.offset2 = static_cast<float>(o2.value_or(0.0));
  } else if (s.kind == SectionKind::Shell || s.kind == SectionKind::CompositeShell ||
             s.kind == SectionKind::Membrane) {
    auto o = parameter("OFFSET");
    p.hasOffset = o.has_value();
    p.offset1 = static_cast<float>(o.value_or(0.0));
  }
  p.hasThickness = s.thickness.has_value();
  p.thickness = static_cast<float>(s.thickness.value_or(0.0));
  return p;
}

odb::SectionCategoryData categoryOf(const Section& s) {
  odb::SectionCategoryData c;
  c.name = std::string(sectionKindName(s.kind)) + " < elset = " + s.elset + " >";
  c.description = "*" + s.keyword + ", ELSET=" + s.elset;
  int layers = s.kind == SectionKind::CompositeShell ? static_cast<int>(s.layers.size())
               : s.kind == SectionKind::Shell        ? 1
                                                     : 0;
  for (int k = 1; k <= layers; ++k) {
    std::string layer = "Layer = " + std::to_string(k);
    c.sectionPoints.push_back({2 * k - 1, layer + ", bottom"});
    c.sectionPoints.push_back({2 * k, layer + ", top"});
  }
  return c;
}

odb::SetData makeSet(const std::string& name, odb_Enum::odb_SetTypeEnum type,
                     const std::vector<int32_t>& labels) {
  odb::SetData set;
  set.name = name;
  set.type = type;
  set.addMembers(kInstanceName, labels);
  return set;
}

}  // namespace

int shellSectionPoint(int integrationPoint, int layers) {
  if (integrationPoint < 1 || integrationPoint > 8 * layers) return 0;
  int layer = (integrationPoint - 1) / 8 + 1;
  bool top = (integrationPoint - 1) % 8 >= 4;
  return 2 * layer - 1 + (top ? 1 : 0);
}

// Contact pairs and ties become region pairs of their slave and master surfaces. A contact
// pair is named after its interaction, a tie by its NAME; a name that comes again gets
// "-2", "-3", ... so that every pair keeps a name of its own.
void addRegionPairs(const Deck& deck, odb::Writer& writer) {
  std::map<std::string, int> uses;
  for (const ContactPair& p : deck.contactPairs) {
    std::string name = p.tie ? p.name : p.interaction;
    int use = ++uses[name];
    if (use > 1) name += "-" + std::to_string(use);
    writer.addRegionPair({name, p.tie ? odb::kTie : odb::kContactPair, p.slave, p.master});
  }
}

void addModel(const Deck& deck, odb::Writer& writer, Warnings& warnings) {
  writer.setTitle(deck.title);
  writer.setDescription(deck.heading);
  writer.setAnalysisCode(odb_Enum::IMPLICIT);
  odb::EntityWriter part = writer.addInstance(kInstanceName);

  // Sections and their categories; the first section that names an element wins.
  LabelIndex categoryOfElement;  // element label -> section category
  if (!deck.sections.empty()) categoryOfElement.reserve(deck.elements.size());
  std::map<std::string, int> sectionUses;  // a second section on one set gets "-2"
  for (const Section& s : deck.sections) {
    odb::SectionData section;
    int uses = ++sectionUses[s.elset];
    section.name = "Section-" + s.elset + (uses > 1 ? "-" + std::to_string(uses) : "");
    section.kind = sectionKindCode(s);
    section.material = s.material;
    section.thickness = s.thickness ? static_cast<float>(*s.thickness) : 0.f;
    if (s.kind == SectionKind::Mass && !s.data.empty() && !s.data[0].empty()) {
      auto mass = toDouble(s.data[0][0]);
      section.mass = mass ? static_cast<float>(*mass) : 0.f;
    }
    for (const Layer& l : s.layers) {
      section.layers.push_back(
          odb::LayerData{l.material, static_cast<float>(l.thickness), layerAngle(deck, s, l)});
    }
    writer.addSection(section);
    odb::SectionCategoryData category = categoryOf(s);
    if (uses > 1) category.name += " " + std::to_string(uses);
    int32_t index = writer.addSectionCategory(category);
    const LabelSet* set = deck.elementSet(s.elset);
    for (int32_t label : set->labels) categoryOfElement.emplace(label, index);
    part.addSectionAssignment(section.name, makeSet(s.elset, odb_Enum::ELEMENT_SET, set->labels),
                              placementOf(s));
  }

  addRegionPairs(deck, writer);
  for (const Material& m : deck.materials) {
    for (const auto& [behaviour, table] : m.others) {
      warnings.warn("material:" + behaviour,
                    m.where.file + ":" + std::to_string(m.where.line) + ": *" + behaviour +
                        " of material " + m.name +
                        " is not imported: the database's materials hold density and "
                        "elasticity only");
    }
    odb::MaterialData material;
    material.name = m.name;
    if (m.density) {
      material.hasDensity = true;
      material.density = toFloats(*m.density);
    }
    if (m.elastic) {
      material.hasElastic = true;
      material.elasticType = elasticTypeName(m.elastic->type);
      material.elastic = toFloats(*m.elastic);
    }
    writer.addMaterial(material);
  }

  odb::NodeData& nodes = part.data()->nodes;
  nodes.dimension = 3;
  nodes.labels.reserve(deck.nodes.size());
  nodes.coordinates.reserve(deck.nodes.size() * 3);
  for (const Node& n : deck.nodes) {
    nodes.labels.push_back(n.label);
    nodes.coordinates.push_back(static_cast<float>(n.x));
    nodes.coordinates.push_back(static_cast<float>(n.y));
    nodes.coordinates.push_back(static_cast<float>(n.z));
  }
  // The deck's element store has the database's layout: copied whole, the type numbers
  // renumbered in the order of first use (a type whose elements all went has none).
  odb::ElementData& elements = part.data()->elements;
  const ElementList& deckElements = deck.elements;
  elements.labels = deckElements.labels();
  elements.offsets = deckElements.offsets();
  elements.connectivity = deckElements.nodeLabels();
  std::vector<int32_t> renumbered(deckElements.typeNames().size(), -1);
  elements.typeIndex.resize(deckElements.size());
  elements.categoryIndex.resize(deckElements.size());
  for (size_t i = 0; i < deckElements.size(); ++i) {
    int32_t& type = renumbered[deckElements.typeNumbers()[i]];
    if (type < 0) {
      type = static_cast<int32_t>(elements.typeNames.size());
      elements.typeNames.push_back(deckElements.typeNames()[deckElements.typeNumbers()[i]]);
    }
    elements.typeIndex[i] = type;
    uint32_t category = categoryOfElement.find(elements.labels[i]);
    elements.categoryIndex[i] = category == LabelIndex::kNone ? -1 : static_cast<int32_t>(category);
  }

  for (const LabelSet& s : deck.nodeSets)
    part.addSet(makeSet(s.name, odb_Enum::NODE_SET, s.labels));
  for (const LabelSet& s : deck.elementSets) {
    part.addSet(makeSet(s.name, odb_Enum::ELEMENT_SET, s.labels));
  }
  for (const Surface& s : deck.surfaces) {
    if (s.nodeBased) {
      if (deck.nodeSet(s.name)) {
        warnings.warn("surface:" + s.name,
                      "node-based surface " + s.name + " has the name of a node set; not imported");
      } else {
        warnings.warn("surface:" + s.name,
                      "node-based surface " + s.name + " imported as a node set");
        part.addSet(makeSet(s.name, odb_Enum::NODE_SET, s.nodes));
      }
      continue;
    }
    std::vector<int32_t> labels, faces;
    for (const Surface::Face& f : s.faces) {
      labels.push_back(f.element);
      faces.push_back(faceCode(f.face));
    }
    odb::SetData set = makeSet(s.name, odb_Enum::SURFACE_SET, labels);
    set.faces = faces;
    part.addSet(std::move(set));
  }
}

}  // namespace odbs::ccx
