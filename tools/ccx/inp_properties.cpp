// Property keywords of the deck parser: *MATERIAL and its behaviours, *ORIENTATION, the
// section keywords and *CONTACT PAIR.
#include <set>

#include "tools/ccx/inp_builder.h"
#include "tools/ccx/parse_error.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

const std::set<std::string>& materialKeywords() {
  static const std::set<std::string> keywords = {"DENSITY",
                                                 "ELASTIC",
                                                 "EXPANSION",
                                                 "CONDUCTIVITY",
                                                 "SPECIFIC HEAT",
                                                 "PLASTIC",
                                                 "CYCLIC HARDENING",
                                                 "CREEP",
                                                 "HYPERELASTIC",
                                                 "HYPERFOAM",
                                                 "DEFORMATION PLASTICITY",
                                                 "USER MATERIAL",
                                                 "DEPVAR",
                                                 "DAMPING",
                                                 "ELECTRICAL CONDUCTIVITY",
                                                 "FLUID CONSTANTS",
                                                 "SPECIFIC GAS CONSTANT",
                                                 "MAGNETIC PERMEABILITY",
                                                 "ANISOTROPIC HYPERELASTIC"};
  return keywords;
}

// Values of one row of an elastic table by its TYPE (without the optional temperature).
size_t elasticRowLength(const std::string& type) {
  if (type == "ORTHO" || type == "ORTHOTROPIC" || type == "ENGINEERING CONSTANTS") return 9;
  if (type == "ANISO" || type == "ANISOTROPIC") return 21;
  return 2;
}

struct SectionKeyword {
  const char* keyword;
  SectionKind kind;
  bool needsMaterial;
};

const SectionKeyword kSectionKeywords[] = {
    {"SOLID SECTION", SectionKind::Solid, true},
    {"SHELL SECTION", SectionKind::Shell, true},
    {"MEMBRANE SECTION", SectionKind::Membrane, true},
    {"BEAM SECTION", SectionKind::Beam, true},
    {"FLUID SECTION", SectionKind::Fluid, false},
    {"GAP", SectionKind::Gap, false},
    {"SPRING", SectionKind::Spring, false},
    {"DASHPOT", SectionKind::Dashpot, false},
    {"MASS", SectionKind::Mass, false},
    {"USER SECTION", SectionKind::User, true},
};

}  // namespace

const char* sectionKindName(SectionKind kind) {
  switch (kind) {
    case SectionKind::Solid:
      return "solid";
    case SectionKind::Shell:
      return "shell";
    case SectionKind::CompositeShell:
      return "composite shell";
    case SectionKind::Membrane:
      return "membrane";
    case SectionKind::Beam:
      return "beam";
    case SectionKind::Truss:
      return "truss";
    case SectionKind::Fluid:
      return "fluid";
    case SectionKind::Gap:
      return "gap";
    case SectionKind::Spring:
      return "spring";
    case SectionKind::Dashpot:
      return "dashpot";
    case SectionKind::Mass:
      return "mass";
    case SectionKind::User:
      return "user";
  }
  return "unknown";
}

void DeckBuilder::readMaterial(const Card& card) {
  Material material;
  material.name = upper(required(card, "NAME"));
  material.where = card.where;
  currentMaterial_ = static_cast<int>(deck_.materials.size());
  deck_.materials.push_back(std::move(material));
}

void DeckBuilder::readMaterialTable(const Card& card) {
  if (currentMaterial_ < 0) {
    throw ParseError(card.where.file, card.where.line, "*MATERIAL before *" + card.keyword);
  }
  MaterialTable table;
  table.type = upper(card.get("TYPE"));
  size_t rowLength = card.keyword == "ELASTIC"   ? elasticRowLength(table.type)
                     : card.keyword == "DENSITY" ? 1
                                                 : 0;
  DataLine line;
  std::vector<double> row;
  while (reader_.nextData(line)) {
    std::vector<double> values = numbers(line);
    row.insert(row.end(), values.begin(), values.end());
    // A row goes on in the next line while it is shorter than the behaviour needs, or, for
    // behaviours of unknown row length, while the line ends with a comma.
    bool more = rowLength ? row.size() < rowLength : line.endsWithComma;
    if (!more) table.rows.push_back(std::move(row)), row.clear();
  }
  if (!row.empty()) {
    throw ParseError(line.where.file, line.where.line,
                     std::to_string(rowLength) + " values in a row of *" + card.keyword,
                     std::to_string(row.size()) + " values");
  }
  Material& material = deck_.materials[currentMaterial_];
  if (card.keyword == "DENSITY") {
    material.density = std::move(table);
  } else if (card.keyword == "ELASTIC") {
    material.elastic = std::move(table);
  } else {
    material.others[card.keyword] = std::move(table);
  }
}

void DeckBuilder::readOrientation(const Card& card) {
  Orientation orientation;
  orientation.name = upper(required(card, "NAME"));
  orientation.system = upper(card.get("SYSTEM", "RECTANGULAR"));
  DataLine line;
  while (reader_.nextData(line)) {
    std::vector<double> values = numbers(line);
    orientation.values.insert(orientation.values.end(), values.begin(), values.end());
  }
  deck_.orientations.push_back(std::move(orientation));
}

void DeckBuilder::readSection(const Card& card) {
  const SectionKeyword* info = nullptr;
  for (const SectionKeyword& s : kSectionKeywords) {
    if (card.keyword == s.keyword) info = &s;
  }
  Section section;
  section.keyword = card.keyword;
  section.kind = info->kind;
  section.where = card.where;
  section.elset = upper(required(card, "ELSET"));
  section.orientation = upper(card.get("ORIENTATION"));
  for (const auto& [name, value] : card.parameters) section.parameters[name] = value;
  bool composite = card.keyword == "SHELL SECTION" && card.has("COMPOSITE");
  if (composite) {
    section.kind = SectionKind::CompositeShell;
  } else if (info->needsMaterial) {
    section.material = upper(required(card, "MATERIAL"));
  } else {
    section.material = upper(card.get("MATERIAL"));
  }
  DataLine line;
  while (reader_.nextData(line)) {
    section.data.emplace_back(line.fields.begin(), line.fields.end());
    if (composite) {
      // thickness, number of integration points (unused by the solver), material, orientation
      Layer layer;
      layer.thickness = number(line, 0, "the thickness of a layer");
      if (line.fields.size() < 3 || line.fields[2].empty()) {
        throw ParseError(line.where.file, line.where.line, "the material of a layer in field 3");
      }
      layer.material = upper(line.fields[2]);
      if (line.fields.size() > 3) layer.orientation = upper(line.fields[3]);
      section.layers.push_back(std::move(layer));
    } else if (section.data.size() == 1 && !line.fields.empty() && !line.fields[0].empty() &&
               (section.kind == SectionKind::Shell || section.kind == SectionKind::Membrane ||
                section.kind == SectionKind::Solid)) {
      section.thickness = number(line, 0, "a thickness");
    }
  }
  if (composite && section.layers.empty()) {
    throw ParseError(card.where.file, card.where.line,
                     "at least one layer line under *SHELL SECTION, COMPOSITE");
  }
  if (composite) {
    double total = 0;
    for (const Layer& layer : section.layers) total += layer.thickness;
    section.thickness = total;
  }
  deck_.sections.push_back(std::move(section));
}

void DeckBuilder::readContactPair(const Card& card) {
  ContactPair pair;
  if (card.keyword == "TIE") {
    pair.tie = true;
    pair.name = upper(required(card, "NAME"));
  } else {
    pair.interaction = upper(required(card, "INTERACTION"));
    pair.type = upper(card.get("TYPE", "NODE TO SURFACE"));
  }
  DataLine line;
  while (reader_.nextData(line)) {
    if (line.fields.size() < 2 || line.fields[0].empty() || line.fields[1].empty()) {
      throw ParseError(line.where.file, line.where.line, "a slave and a master surface name");
    }
    ContactPair p = pair;
    p.slave = upper(line.fields[0]);
    p.master = upper(line.fields[1]);
    deck_.contactPairs.push_back(std::move(p));
  }
}

bool DeckBuilder::propertyCard(const Card& card) {
  const std::string& k = card.keyword;
  if (k == "MATERIAL") {
    readMaterial(card);
    return true;
  }
  if (materialKeywords().count(k)) {
    readMaterialTable(card);
    return true;
  }
  currentMaterial_ = -1;
  if (k == "ORIENTATION") {
    readOrientation(card);
  } else if (k == "CONTACT PAIR" || k == "TIE") {
    readContactPair(card);
  } else {
    for (const SectionKeyword& s : kSectionKeywords) {
      if (k == s.keyword) {
        readSection(card);
        return true;
      }
    }
    return false;
  }
  return true;
}

}  // namespace odbs::ccx
