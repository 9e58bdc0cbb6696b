// The model of a CalculiX input deck as plain data: what the deck defines, in the order it
// defines it, with names upper-cased the way the solver itself treats them. Filled by
// parseDeck (inp_parser.h); read by the importer.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/ccx/element_list.h"

namespace odbs::ccx {

// Where a card of the deck begins, for messages about it.
struct SourceRef {
  std::string file;
  int64_t line = 0;
};

struct Node {
  int32_t label = 0;
  double x = 0, y = 0, z = 0;
};

// A node or element set: its members in the order the deck lists them, each once.
struct LabelSet {
  std::string name;
  std::vector<int32_t> labels;
  SourceRef where;
};

// *SURFACE: element faces (TYPE=ELEMENT, the default) or nodes (TYPE=NODE).
struct Surface {
  std::string name;
  bool nodeBased = false;
  struct Face {
    int32_t element = 0;
    std::string face;  // "S1" ... "S6", "SPOS", "SNEG", ...
  };
  std::vector<Face> faces;     // element-based surfaces
  std::vector<int32_t> nodes;  // node-based surfaces
  SourceRef where;
};

// One table of a material behaviour: rows of numbers as the deck gives them; rows that the
// solver reads across several lines (orthotropic constants) are joined into one row.
struct MaterialTable {
  std::string type;  // the TYPE= parameter, upper case, "" when absent
  std::vector<std::vector<double>> rows;
};

struct Material {
  std::string name;
  std::optional<MaterialTable> density;
  std::optional<MaterialTable> elastic;
  // Every other behaviour of the material keyed by its keyword ("EXPANSION", "PLASTIC").
  std::map<std::string, MaterialTable> others;
  SourceRef where;
};

struct Orientation {
  std::string name;
  std::string system;  // "RECTANGULAR" (default) or "CYLINDRICAL"
  std::vector<double> values;
};

enum class SectionKind {
  Solid,
  Shell,
  CompositeShell,
  Membrane,
  Beam,
  Truss,  // a *SOLID SECTION assigned to truss elements (T2D2, T3D2, T3D3)
  Fluid,
  Gap,
  Spring,
  Dashpot,
  Mass,
  User,
};
const char* sectionKindName(SectionKind kind);

struct Layer {
  double thickness = 0;
  std::string material;
  std::string orientation;  // "" when the layer has none
};

struct Section {
  SectionKind kind = SectionKind::Solid;
  std::string keyword;  // "SOLID SECTION", "SHELL SECTION", ...
  std::string elset;
  std::string material;             // "" for kinds without a material (mass, spring, ...)
  std::string orientation;          // "" when none
  std::optional<double> thickness;  // shells, membranes, plane solids
  std::vector<Layer> layers;        // composite shells, bottom to top
  std::map<std::string, std::string> parameters;  // every parameter of the keyword line
  std::vector<std::vector<std::string>> data;     // its data lines, fields as written
  SourceRef where;
};

// A *CONTACT PAIR data line, or a *TIE data line (tie true, name its NAME).
struct ContactPair {
  bool tie = false;
  std::string name;         // *TIE only
  std::string interaction;  // *CONTACT PAIR only
  std::string type;         // "NODE TO SURFACE" (default), "SURFACE TO SURFACE", ...
  std::string slave, master;
};

// A print or file output request of a step (*NODE PRINT, *EL FILE, *CONTACT PRINT, ...).
struct OutputRequest {
  std::string keyword;
  std::string set;  // NSET= or ELSET= value, "" when the request covers everything
  std::vector<std::string> variables;
  std::map<std::string, std::string> parameters;
};

enum class StepDomain { Time, Frequency, Modal };

struct Step {
  int number = 0;           // 1-based, in deck order
  std::string name;         // NAME= of *STEP, else "Step-<number>"
  std::string description;  // a data line under *STEP, else the procedure keyword
  std::string procedure;    // "STATIC", "FREQUENCY", "DYNAMIC", "STEADY STATE DYNAMICS", ...
  std::map<std::string, std::string> procedureParameters;
  std::vector<double> procedureData;  // the procedure's first data line
  bool nlgeom = false;
  // Time for static, dynamic and heat steps; frequency for eigenvalue, steady-state and
  // complex-frequency steps; buckling steps count load factors and are Modal.
  StepDomain domain = StepDomain::Time;
  double timePeriod = 1.0;  // step time of time-domain steps
  std::vector<OutputRequest> outputs;
  SourceRef where;
};

struct Deck {
  std::string path;     // the top deck file
  std::string title;    // *HEADING, its first line
  std::string heading;  // all *HEADING lines joined with '\n'
  std::vector<Node> nodes;
  ElementList elements;
  std::vector<LabelSet> nodeSets;     // in order of first definition
  std::vector<LabelSet> elementSets;  // in order of first definition
  std::vector<Surface> surfaces;
  std::vector<Material> materials;
  std::vector<Orientation> orientations;
  std::vector<Section> sections;
  std::vector<ContactPair> contactPairs;  // contact pairs and ties, in deck order
  std::vector<Step> steps;

  const LabelSet* nodeSet(const std::string& name) const;
  const LabelSet* elementSet(const std::string& name) const;
  const Material* material(const std::string& name) const;
};

}  // namespace odbs::ccx
