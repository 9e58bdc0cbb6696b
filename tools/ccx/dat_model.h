// The values that CalculiX printed into its print file (.dat): one DatBlock per printed
// table ("displacements (vx,vy,vz) for set TIP and time 0.25"), in file order, and the
// eigenvalue table of frequency steps.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace odbs::ccx {

enum class DatRowKind {
  Node,              // node label, values            (*NODE PRINT)
  Total,             // values only                   (*NODE PRINT, TOTALS=YES/ONLY)
  IntegrationPoint,  // element, integration point, values   (*EL PRINT)
  Element,           // element, values               (*EL PRINT of whole-element values)
  ContactFace,       // slave element, face, values   (*CONTACT PRINT)
  ContactNode,       // slave node, values            (*CONTACT PRINT, node-to-surface)
};

struct DatBlock {
  std::string quantity;  // "displacements", "stresses", "contact stress", "total force"
  std::vector<std::string> components;  // value columns: "vx", "sxx", "press", ...
  std::string set;                      // upper case; "" for "all contact elements"
  double time = 0;                      // step time, or the frequency of a steady-state point
  int mode = 0;                         // eigenmode the table belongs to (frequency steps), else 0
  bool imaginary = false;               // second table of a steady-state point: the imaginary parts
  DatRowKind kind = DatRowKind::Node;
  int64_t line = 0;              // line of the table's title
  std::string location;          // "<file>:<line>" of the title, for messages
  std::vector<int32_t> labels;   // first label of each row (node or element); empty for Total
  std::vector<int32_t> labels2;  // second label (integration point or face); may be empty
  std::vector<double> values;    // rows of components.size() values
  size_t rows() const { return components.empty() ? 0 : values.size() / components.size(); }
};

struct DatEigenvalue {
  int mode = 0;
  double eigenvalue = 0;
  double radiansPerTime = 0;
  double cyclesPerTime = 0;  // the frequency
  double imaginary = 0;
};

struct DatFile {
  std::vector<DatEigenvalue> eigenvalues;  // of every frequency step, in file order
  std::vector<DatBlock> blocks;
};

}  // namespace odbs::ccx
