// What the printed tables of the print file (.dat) become in the database:
// - integration point tables (*EL PRINT) become field outputs at integration points of
//   the frame they were printed for; on shells, whose points the solver numbers through
//   the expanded thickness, they carry section points (one per layer bottom and top);
// - node tables (*NODE PRINT) become history output of one history region per printed
//   node ("Node PART-1-1.<label>"), totals that of the set ("Node set <NAME>"); energy
//   totals (*EL PRINT, TOTALS=ONLY) that of the element set ("Element set <NAME>");
// - contact tables (*CONTACT PRINT) become history output of one region per slave node
//   ("Node PART-1-1.<label>", node-to-surface contact) or per slave face ("Element
//   PART-1-1.<label> Face <f>", surface-to-surface contact: the mean of the face's printed
//   points, their sum for energies, and their count CPOINTS); a point that is not printed in
//   a frame (not in contact) reads 0 there, so every series has a sample in every frame
//   that printed the table;
// - the count of contact elements becomes history output CNUM of region "Assembly".
// Tables of other quantities are skipped with one warning per quantity.
#pragma once

#include <map>
#include <set>
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

// The region of the history of one node: "Node PART-1-1.<label>".
HistoryRegionData nodeRegion(int32_t node);

// Values of one point in one frame: the point (name and position as a region without
// outputs) and one value per output.
struct PointSample {
  HistoryRegionData region;
  std::vector<double> values;
};

// Collects the history of one step, table by table, frame by frame.
class HistoryCollector {
 public:
  // Adds one frame of a quantity whose points come and go (contact points): a point gets
  // a sample in every frame that the quantity was added for in this step, 0 in the frames
  // where it is not among points (before it was first given, and when it is left out).
  void addPoints(const std::string& quantity, const std::vector<std::string>& outputs,
                 const std::string& description, double frameValue,
                 std::vector<PointSample>&& points);
  // Adds the values of a node, total or contact table printed for a frame of frameValue.
  // Returns false for integration point tables (pointFieldsOf takes those) and, with one
  // warning per quantity, for whole-element tables and quantities it does not know.
  bool add(const DatBlock& table, double frameValue, Warnings& warnings);
  bool empty() const { return regions_.empty(); }
  // Regions in the order they were first printed.
  const std::vector<HistoryRegionData>& regions() const { return regions_; }

 private:
  HistoryRegionData& region(const std::string& name);
  // The index of the region named as point is, made from it (without its outputs) when new.
  size_t regionLike(const HistoryRegionData& point);
  void addFaces(const DatBlock& table, const std::vector<std::string>& outputs,
                const std::string& description, bool additive, double frameValue);
  void sample(HistoryRegionData& r, const std::string& output, const std::string& description,
              double frameValue, double value, bool imaginary);

  struct PointSeries {
    std::vector<double> frames;  // the frames the quantity was added for, in order
    std::set<size_t> members;    // the regions that have its outputs
  };

  std::vector<HistoryRegionData> regions_;
  std::map<std::string, size_t> index_;
  std::map<std::string, PointSeries> points_;  // by quantity
};

}  // namespace odbs::ccx
