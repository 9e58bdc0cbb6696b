// What the printed tables of the print file (.dat) become in the database:
// - integration point tables (*EL PRINT) become field outputs at integration points of
//   the frame they were printed for; on shells, whose points the solver numbers through
//   the expanded thickness, they carry section points (one per layer bottom and top);
// - node tables (*NODE PRINT) become history output of one history region per printed
//   node ("Node PART-1-1.<label>"), totals that of the set ("Node set <NAME>"); energy
//   totals (*EL PRINT, TOTALS=ONLY) that of the element set ("Element set <NAME>");
// - contact tables (*CONTACT PRINT) become history output of one region per slave face
//   point ("Element PART-1-1.<label> Face <f> Int Point <k>").
// Tables of other quantities are skipped with one warning per quantity.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "odb/enums.h"
#include "tools/ccx/dat_model.h"
#include "tools/ccx/inp_model.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

// Layers of the shell elements of a deck (1 for a homogeneous shell); solids are absent.
using ShellLayers = std::unordered_map<int32_t, int>;
ShellLayers shellLayersOf(const Deck& deck);

struct PointField {
  std::string name, description;
  odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR;
  std::vector<std::string> labels;  // component labels; empty for scalars
  std::vector<int32_t> elements, integrationPoints;
  std::vector<int32_t> sectionPoints;  // 0 where the element has none
  std::vector<float> values;           // rows of max(1, labels.size()) components
  std::vector<float> imaginary;        // same shape when the frame is complex, else empty
};

// The integration point field outputs of the tables printed for one frame (real and
// imaginary tables of a steady-state point are joined).
std::vector<PointField> pointFieldsOf(const std::vector<const DatBlock*>& tables,
                                      const ShellLayers& shells, Warnings& warnings);

struct HistoryOutputData {
  std::string description;
  std::vector<double> frameValues;
  std::vector<float> values;
  std::vector<float> imaginary;  // empty unless the step printed imaginary parts
};

struct HistoryRegionData {
  std::string name;
  odb_Enum::odb_ResultPositionEnum position = odb_Enum::NODAL;
  int32_t node = -1, element = -1, integrationPoint = 0, face = 0;
  std::string set;          // for totals over a set
  bool elementSet = false;  // the set is an element set (energies), else a node set
  std::map<std::string, HistoryOutputData> outputs;  // by output name
};

// Collects the history of one step, table by table, frame by frame.
class HistoryCollector {
 public:
  // Adds the values of a node, total or contact table printed for a frame of frameValue.
  // Returns false for integration point tables (pointFieldsOf takes those) and, with one
  // warning per quantity, for whole-element tables and quantities it does not know.
  bool add(const DatBlock& table, double frameValue, Warnings& warnings);
  bool empty() const { return regions_.empty(); }
  // Regions in the order they were first printed.
  const std::vector<HistoryRegionData>& regions() const { return regions_; }

 private:
  HistoryRegionData& region(const std::string& name);
  void sample(HistoryRegionData& r, const std::string& output, const std::string& description,
              double frameValue, double value, bool imaginary);

  std::vector<HistoryRegionData> regions_;
  std::map<std::string, size_t> index_;
};

}  // namespace odbs::ccx
