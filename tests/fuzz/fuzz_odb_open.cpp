// Fuzz target: damages a small valid database as the input says, then opens it and reads
// it whole. The input is a list of edits: its first byte chooses whether the file is cut
// (odd: cut at the length given by bytes 1-2), then each 3 bytes set the byte at a 16-bit
// position to a value. Every outcome but an exception or a clean read is a bug.
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include "odb/model_copy.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/ccx/fuzz_input_file.h"

// HDF5 leaks on some error paths of damaged files; those leaks are the library's.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libhdf5\n";
}

namespace {

// The bytes of a small database with every kind of object; its file is removed at once.
std::string validDatabase() {
  odbs::fuzz::ScratchFile file(".valid.odb");
  const std::string& path = file.path();
  {
    odb::Writer w(path);
    w.setTitle("fuzz");
    w.setAnnotation("xml", "line\n");
    int32_t cat =
        w.addSectionCategory({"shell < elset = S", "", {{1, "Layer = 1"}, {2, "Layer = 1"}}});
    w.addSection(
        {"Section-S", kseO_COMPOSITE_SHELL, "", 0, 0, {{"M", 1.f, odb_Union::ofFloat(30)}}});
    odb::MaterialData m;
    m.name = "M";
    m.hasElastic = true;
    m.elastic = {{1.f, 0.3f}};
    w.addMaterial(m);
    odb::EntityWriter p = w.addInstance("P");
    p.addNodes({1, 2, 3, 4}, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    p.addElements("S4R", {1}, 4, {1, 2, 3, 4}, cat);
    p.addNodeSet("N", {1, 2});
    p.addSurface("F", {1}, {1});
    odb::SetData s{"S", odb_Enum::ELEMENT_SET, {}, {}, {}, {}};
    s.addMembers("P", {1});
    p.addSet(s);
    p.addSectionAssignment("Section-S", s);
    w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
    w.addFrame({});
    w.addFieldOutput({"S", "", odb_Enum::SCALAR, {"S"}, true, 0, {}});
    odb::FieldBlockData b;
    b.instance = "P";
    b.position = odb_Enum::INTEGRATION_POINT;
    b.sectionPoint = {1, "Layer = 1"};
    b.doublePrecision = true;
    b.dataDouble = {1.0, 2.0};
    b.conjugateDataDouble = {0.5, 0.5};
    b.elementLabels = {1, 1};
    b.integrationPoints = {1, 2};
    b.numberOfElements = 1;
    w.addFieldBlock(b);
    odb::HistoryRegionData h{"Node P.1", "", {}, {{"U1", "", odb_Enum::SCALAR, 2, {0.f, 1.f}, {}}}};
    h.point.nodeLabel = 1;
    w.addHistoryRegion(h);
    w.close();
  }
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  odb_initializeAPI();
  static const std::string good = validDatabase();
  std::string bytes = good;
  size_t at = 1;
  if (size >= 3 && (data[0] & 1)) {
    bytes.resize(std::min(bytes.size(), size_t(data[1] | data[2] << 8) % (bytes.size() + 1)));
    at = 3;
  }
  for (; at + 3 <= size && !bytes.empty(); at += 3)
    bytes[size_t(data[at] | data[at + 1] << 8) % bytes.size()] = char(data[at + 2]);
  std::string path = odbs::fuzz::writeInputFile(reinterpret_cast<const uint8_t*>(bytes.data()),
                                                bytes.size(), ".odb");
  try {
    odb_Odb& odb = openOdb(path, true);
    try {
      odb::readModel(odb);
      for (odb_StepRepositoryIT st(odb.steps()); !st.isDone(); st.next()) {
        for (const odb_Frame& f : st.currentValue().frames())
          for (odb_FieldOutputRepositoryIT it(f.fieldOutputs()); !it.isDone(); it.next())
            it.currentValue().bulkDataBlocks().size();
        for (odb_HistoryRegionRepositoryIT r(st.currentValue().historyRegions()); !r.isDone();
             r.next())
          for (odb_HistoryOutputRepositoryIT o(r.currentValue().historyOutputs()); !o.isDone();
               o.next())
            o.currentValue().conjugateData();
      }
    } catch (const std::exception&) {
    }
    closeOdb(odb);
  } catch (const std::exception&) {
  }
  return 0;
}
