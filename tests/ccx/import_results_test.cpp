// The databases made from the example decks, read back through the database's read API:
// steps, frames, field outputs (with the database's names, component order and field order)
// and history agree with what the solver wrote into its own .frd and .dat files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "odb/h5.h"
#include "odb/odb.h"
#include "tests/ccx/test_files.h"
#include "tools/ccx/dat_parser.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/importer.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using test::exampleFile;
using ::testing::ElementsAre;

class ImportedDatabase : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { odb_initializeAPI(); }
  void TearDown() override {
    if (odb_) closeOdb(*odb_);
  }

  // Imports an example with its prints and results.
  void open(const std::string& name) {
    ImportRequest request{exampleFile(name + ".inp"), dataFile(name + ".frd"),
                          dataFile(name + ".dat"), dir_.path() + "/" + name + ".odb"};
    importCalculix(request, warnings_);
    // Every printed table found its frame.
    EXPECT_EQ(warnings_.count("dat-unplaced"), 0);
    path_ = request.output;
    odb_ = &openOdb(path_);
    Warnings again;
    prints_ = readDat(dataFile(name + ".dat"), again);
    results_ = readFrdFile(request.results, again);
  }
  const odb_Step& step(int i) const { return odb_->steps().at(i); }

  // The field names of a frame in the order the importer stored them.
  std::vector<std::string> storedFieldNames(int s, int f) const {
    odb::h5::File file = odb::h5::File::open(path_, true);
    return file.root()
        .open("steps/" + std::to_string(s) + "/frames/" + std::to_string(f))
        .readStrings("field_names");
  }
  // The nodal rows of field on instance in frame by node label, real or imaginary part.
  static std::map<int, std::vector<float>> nodalRows(const odb_Frame& frame,
                                                     const std::string& field, bool imaginary,
                                                     const std::string& instance = "PART-1-1") {
    std::map<int, std::vector<float>> rows;
    odb_SequenceFieldBulkData blocks =
        frame.fieldOutputs()[field].getSubset(odb_Enum::NODAL).bulkDataBlocks();
    for (int b = 0; b < blocks.size(); ++b) {
      const odb_FieldBulkData& block = blocks[b];
      if (block.instance().name() != instance) continue;
      const float* data = imaginary ? block.conjugateData() : block.data();
      if (data == nullptr) continue;
      for (int r = 0; r < block.length(); ++r) {
        rows[block.nodeLabels()[r]].assign(data + r * block.width(),
                                           data + (r + 1) * block.width());
      }
    }
    return rows;
  }

  // The frame whose total time (or frequency) is value, searching every step.
  const odb_Frame* frameAt(double value) const {
    for (int s = 0; s < odb_->steps().size(); ++s) {
      const odb_Step& st = step(s);
      for (int f = 0; f < st.frames().size(); ++f) {
        const odb_Frame& frame = st.frames()[f];
        double v = st.domain() == odb_Enum::TIME ? st.totalTime() + frame.frameValue()
                                                 : frame.frameValue();
        if (frame.mode() == 0 && std::fabs(v - value) <= 1e-6 * std::max(1.0, value)) return &frame;
      }
    }
    return nullptr;
  }

  // Every row of a printed node table equals the nodal values of field in frame, real or
  // imaginary part; tolerance relative to the row's largest value (or, with tableScale, to
  // the table's largest value: values that are zero up to round-off).
  void expectNodalMatches(const odb_Frame& frame, const std::string& field, const DatBlock& table,
                          double relative, bool tableScale = false) {
    std::map<int, std::vector<float>> rows = nodalRows(frame, field, table.imaginary);
    const size_t width = table.components.size();
    double largest = 0;
    for (double v : table.values) largest = std::max(largest, std::fabs(v));
    for (size_t r = 0; r < table.rows(); ++r) {
      ASSERT_TRUE(rows.count(table.labels[r])) << table.labels[r];
      const std::vector<float>& got = rows[table.labels[r]];
      ASSERT_EQ(got.size(), width);
      double scale = tableScale ? largest : 0;
      for (size_t c = 0; c < width && !tableScale; ++c)
        scale = std::max(scale, std::fabs(table.values[r * width + c]));
      for (size_t c = 0; c < width; ++c) {
        EXPECT_NEAR(got[c], table.values[r * width + c], relative * scale + 1e-30)
            << field << " node " << table.labels[r] << " component " << c;
      }
    }
  }

  test::ScratchDir dir_;
  std::string path_;
  odb_Odb* odb_ = nullptr;
  Warnings warnings_;
  DatFile prints_;
  FrdFile results_;
};

TEST_F(ImportedDatabase, CantileverStepsFramesFieldsAndHistory) {
  open("beam_steps");
  ASSERT_EQ(odb_->steps().size(), 3);
  for (int s = 0; s < 3; ++s) EXPECT_EQ(step(s).domain(), odb_Enum::TIME);
  EXPECT_EQ(step(2).procedure(), "*DYNAMIC");
  EXPECT_DOUBLE_EQ(step(1).totalTime(), 1.0);
  EXPECT_DOUBLE_EQ(step(2).totalTime(), 2.0);
  ASSERT_EQ(step(2).frames().size(), 4);
  // Step times as the solver printed the total times: 2.000100000 - 2 is 0.0001.
  EXPECT_EQ(step(2).frames()[0].frameValue(), 0.0001);
  EXPECT_NEAR(step(2).frames()[3].frameValue(), 4e-4, 1e-9);
  EXPECT_EQ(step(2).frames()[0].description(), "Increment 1: Step Time = 0.0001");

  // The fields in the result file's order; stress components in the database's order:
  // S13 is the solver's SZX, S23 its SYZ.
  const odb_Frame& first = step(0).frames()[0];
  EXPECT_THAT(storedFieldNames(0, 0), ElementsAre("U", "S", "E", "RF", "ENER", "ERROR"));
  EXPECT_THAT(first.fieldOutputs()["S"].componentLabels().values(),
              ElementsAre("S11", "S22", "S33", "S12", "S13", "S23"));
  const FrdBlock& stress = results_.blocks[1];
  ASSERT_EQ(stress.name, "STRESS");
  std::vector<float> row = nodalRows(first, "S", false)[stress.nodes[7]];
  ASSERT_EQ(row.size(), 6u);
  EXPECT_EQ(row[3], stress.values[7 * 6 + 3]);
  EXPECT_EQ(row[4], stress.values[7 * 6 + 5]);
  EXPECT_EQ(row[5], stress.values[7 * 6 + 4]);
  int checked = 0;
  for (const DatBlock& table : prints_.blocks) {
    SCOPED_TRACE(table.quantity + " at " + std::to_string(table.time));
    const odb_Frame* frame = frameAt(table.time);
    ASSERT_NE(frame, nullptr);
    if (table.quantity == "displacements") {
      expectNodalMatches(*frame, "U", table, 2e-6);
      ++checked;
    } else if (table.quantity == "stresses") {
      // The printed integration point stresses are the field's integration point values.
      odb_FieldOutput ip = frame->fieldOutputs()["S"].getSubset(odb_Enum::INTEGRATION_POINT);
      const odb_FieldBulkData& block = ip.bulkDataBlocks()[0];
      ASSERT_EQ(block.length(), static_cast<int>(table.rows()));
      EXPECT_EQ(block.sectionPoint().number(), -1);  // solid elements: no section point
      EXPECT_EQ(block.baseElementType(), "C3D8");
      for (size_t r = 0; r < table.rows(); ++r) {
        EXPECT_EQ(block.elementLabels()[r], table.labels[r]);
        EXPECT_EQ(block.integrationPoints()[r], table.labels2[r]);
        EXPECT_FLOAT_EQ(block.data()[r * 6 + 4], static_cast<float>(table.values[r * 6 + 4]));
      }
      ++checked;
    }
  }
  EXPECT_EQ(checked, 20);

  const odb_HistoryRegion& tip = step(0).historyRegions()["Node PART-1-1.99"];
  EXPECT_EQ(tip.historyPoint().position(), odb_Enum::NODAL);
  EXPECT_EQ(tip.historyPoint().node().label(), 99);
  EXPECT_EQ(tip.historyOutputs()["U3"].frameValues(), (std::vector<double>{0.25, 0.5, 0.75, 1.0}));
  const odb_SequenceSequenceFloat& u3 = tip.historyOutputs()["U3"].data();
  ASSERT_EQ(u3.size(), 4);
  EXPECT_FLOAT_EQ(u3[3][0], 1.0f);
  EXPECT_FLOAT_EQ(u3[3][1], static_cast<float>(prints_.blocks[9].values[8 * 3 + 2]));
  const odb_HistoryRegion& fix = step(0).historyRegions()["Node set FIX"];
  EXPECT_EQ(fix.historyPoint().region().name(), "FIX");
  EXPECT_EQ(fix.historyPoint().position(), odb_Enum::WHOLE_REGION);
  EXPECT_NEAR(fix.historyOutputs()["RF3"].data()[3][1], 90.0, 1e-3);
  // History times in double precision, as the solver printed them: 2.0001 - 2 is 0.0001,
  // which a float holds only as 9.99999974738e-05.
  const odb_HistoryOutput& dynamicU3 =
      step(2).historyRegions()["Node PART-1-1.99"].historyOutputs()["U3"];
  ASSERT_EQ(dynamicU3.frameValues().size(), 4u);
  EXPECT_EQ(dynamicU3.frameValues()[0], 0.0001);
  EXPECT_EQ(dynamicU3.frameValues()[3], 0.0004);
}

TEST_F(ImportedDatabase, ModesAndComplexSteadyState) {
  open("strip_modes");
  ASSERT_EQ(odb_->steps().size(), 2);
  const odb_Step& modes = step(0);
  EXPECT_EQ(modes.domain(), odb_Enum::FREQUENCY);
  EXPECT_EQ(modes.historyRegions().size(), 0);
  ASSERT_EQ(modes.frames().size(), 6);
  EXPECT_EQ(modes.frames()[0].description().substr(0, 19), "Mode 1: Frequency =");
  for (int i = 0; i < 6; ++i) {
    const odb_Frame& frame = modes.frames()[i];
    EXPECT_EQ(frame.mode(), i + 1);
    EXPECT_NEAR(frame.frequency(), prints_.eigenvalues[i].cyclesPerTime,
                1e-5 * prints_.eigenvalues[i].cyclesPerTime);
    // Each mode carries its printed stresses.
    odb_SequenceFieldBulkData s =
        frame.fieldOutputs()["S"].getSubset(odb_Enum::INTEGRATION_POINT).bulkDataBlocks();
    ASSERT_EQ(s.size(), 1);
    EXPECT_EQ(s[0].length(), 8);
  }
  // The sweep from 10 to 400: complex fields whose real and imaginary parts are the prints.
  const odb_Step& sweep = step(1);
  EXPECT_EQ(sweep.domain(), odb_Enum::FREQUENCY);
  ASSERT_GE(sweep.frames().size(), 4);
  EXPECT_DOUBLE_EQ(sweep.frames()[0].frameValue(), 10.0);
  EXPECT_DOUBLE_EQ(sweep.frames()[sweep.frames().size() - 1].frameValue(), 400.0);
  for (const odb_Frame& f : sweep.frames()) EXPECT_TRUE(f.fieldOutputs()["S"].isComplex());
  int checked = 0;
  for (const DatBlock& table : prints_.blocks) {
    if (table.quantity != "displacements") continue;
    SCOPED_TRACE(std::to_string(table.time) + (table.imaginary ? " imaginary" : " real"));
    const odb_Frame* frame = frameAt(table.time);
    ASSERT_NE(frame, nullptr);
    EXPECT_TRUE(frame->fieldOutputs()["U"].isComplex());
    expectNodalMatches(*frame, "U", table, 6e-6);
    ++checked;
  }
  EXPECT_GE(checked, 8);
  const odb_HistoryOutput& u3 = sweep.historyRegions()["Node PART-1-1.34"].historyOutputs()["U3"];
  EXPECT_EQ(u3.data().size(), sweep.frames().size());
  EXPECT_EQ(u3.conjugateData().size(), sweep.frames().size());
}

TEST_F(ImportedDatabase, CompositeStressesPerLayerSectionPoint) {
  open("plate_composite");
  ASSERT_EQ(step(0).frames().size(), 2);
  const odb_Frame& last = step(0).frames()[1];
  // The deck's nodes (the solver wrote them with OUTPUT=2D), and the expanded composite
  // layers' nodes apart.
  EXPECT_EQ(nodalRows(last, "U", false).size(),
            static_cast<size_t>(odb_->rootAssembly().instances()["PART-1-1"].nodes().size()));
  EXPECT_EQ(nodalRows(last, "U", false, "PART-1-1-EXPANDED").size(), 465u);
  EXPECT_EQ(warnings_.count("frd-nodes"), 0);
  int checked = 0;
  for (const DatBlock& table : prints_.blocks) {
    if (table.quantity != "displacements") continue;
    const odb_Frame* frame = frameAt(table.time);
    ASSERT_NE(frame, nullptr);
    expectNodalMatches(*frame, "U", table, 6e-6);
    ++checked;
  }
  EXPECT_EQ(checked, 2);
  const odb_FieldOutput& s = last.fieldOutputs()["S"];
  odb_FieldOutput ip = s.getSubset(odb_Enum::INTEGRATION_POINT);
  odb_SequenceFieldBulkData blocks = ip.bulkDataBlocks();
  ASSERT_EQ(blocks.size(), 6);  // one per section point: three layers, bottom and top
  for (int b = 0; b < 6; ++b) {
    EXPECT_EQ(blocks[b].sectionPoint().number(), b + 1);
    EXPECT_EQ(blocks[b].length(), 16);  // four elements, four points each
    EXPECT_EQ(blocks[b].integrationPoints()[3], 4);
  }
  EXPECT_EQ(blocks[3].sectionPoint().description(), "Layer = 2, top");
  // The first printed row of element 6 (point 1, bottom of layer 1).
  const DatBlock& table = prints_.blocks[3];
  EXPECT_FLOAT_EQ(blocks[0].data()[0], static_cast<float>(table.values[0]));
  EXPECT_EQ(s.getSubset(odb_Enum::NODAL).bulkDataBlocks()[0].length(), 65);
}

TEST_F(ImportedDatabase, ContactFieldsAndHistory) {
  open("punch_contact");
  ASSERT_EQ(step(0).frames().size(), 3);
  EXPECT_THAT(storedFieldNames(0, 2), ElementsAre("U", "S", "COPEN", "CSLIP1", "CSLIP2", "CPRESS",
                                                  "CSHEAR1", "CSHEAR2", "ERROR"));
  const odb_HistoryRegion& point = step(0).historyRegions()["Element PART-1-1.101 Face 1"];
  EXPECT_EQ(point.historyPoint().position(), odb_Enum::ELEMENT_FACE);
  EXPECT_EQ(point.historyPoint().element().label(), 101);
  EXPECT_EQ(point.historyOutputs()["CPRESS"].data().size(), 3);
}

// Shells and beams with the solver's default output: the result file holds the expanded
// 3D elements only. The values mapped back to the deck's nodes equal what the solver printed
// at those nodes, and the expanded instance keeps every value as written. The beams' binary
// result file gives the same database (BinaryAndAscii).
TEST_F(ImportedDatabase, ExpandedShellsAndBeamsAtTheDeckNodes) {
  for (const char* name : {"plate_shell", "frame_beams"}) {
    SCOPED_TRACE(name);
    open(name);
    const odb_Frame& last = step(0).frames()[step(0).frames().size() - 1];
    int checked = 0;
    for (const DatBlock& table : prints_.blocks) {
      if (table.quantity == "displacements") {
        expectNodalMatches(last, "U", table, 2e-5, true);
        ++checked;
      } else if (table.quantity == "forces") {
        expectNodalMatches(last, "RF", table, 2e-5, true);
        ++checked;
      }
    }
    EXPECT_EQ(checked, 2);
    const odb_Instance& expanded = odb_->rootAssembly().instances()["PART-1-1-EXPANDED"];
    EXPECT_EQ(expanded.elements().size(),
              odb_->rootAssembly().instances()["PART-1-1"].elements().size());
    int onExpanded = 0;
    odb_SequenceFieldBulkData blocks = last.fieldOutputs()["S"].bulkDataBlocks();
    for (int b = 0; b < blocks.size(); ++b) {
      if (blocks[b].instance().name() == "PART-1-1-EXPANDED") onExpanded += blocks[b].length();
    }
    EXPECT_EQ(onExpanded, expanded.nodes().size());
    closeOdb(*odb_);
    odb_ = nullptr;
  }
}

// A step whose element output asks for SECTION FORCES: the stress block at the beam nodes
// holds forces and moments, which become SF and SM. A cantilever of length 40 along x,
// section 1-direction z, loaded at the tip by (4, 10, 7): normal force 4, shear 7 along
// the 1-direction and -10 along the 2-direction (-y), moments 10 (40 - x) about 1 and
// 7 (40 - x) about 2, no torque.
TEST_F(ImportedDatabase, BeamSectionForcesAreTheirOwnFieldOutputs) {
  open("beam_forces");
  const odb_Frame& last = step(0).frames()[0];
  EXPECT_FALSE(last.fieldOutputs().isMember("S"));
  const odb_FieldOutput& sf = last.fieldOutputs()["SF"];
  const odb_FieldOutput& sm = last.fieldOutputs()["SM"];
  EXPECT_EQ(sm.componentLabels()[2], "SM3");
  const odb_FieldBulkData& forces = sf.bulkDataBlocks()[0];
  const odb_FieldBulkData& moments = sm.bulkDataBlocks()[0];
  ASSERT_EQ(forces.length(), 9);
  ASSERT_EQ(moments.length(), 9);
  for (int r = 0; r < 9; ++r) {
    int node = forces.nodeLabels()[r];
    ASSERT_EQ(moments.nodeLabels()[r], node);
    const double arm = 40.0 - 5.0 * (node - 1), force[] = {4, 7, -10},
                 moment[] = {10 * arm, 7 * arm, 0};
    for (int c = 0; c < 3; ++c) {
      EXPECT_NEAR(forces.data()[3 * r + c], force[c], 1e-3) << node << " " << c;
      EXPECT_NEAR(moments.data()[3 * r + c], moment[c], 1e-2) << node << " " << c;
    }
  }
}

// The same deck written once as an ASCII and once as a binary result file: the two
// databases are the same, up to the five or six significant digits of the ASCII file's
// values.
TEST(BinaryAndAscii, SameModelSameDatabase) {
  odb_initializeAPI();
  test::ScratchDir dir;
  auto import = [&](const std::string& frd, const std::string& output) -> odb_Odb& {
    ImportRequest request{exampleFile("frame_beams.inp"), dataFile(frd),
                          dataFile("frame_beams.dat"), dir.path() + "/" + output};
    Warnings warnings;
    importCalculix(request, warnings);
    return openOdb(request.output);
  };
  odb_Odb& ascii = import("frame_beams.frd", "ascii.odb");
  odb_Odb& binary = import("frame_beams.binary.frd", "binary.odb");

  const odb_InstanceRepository& ia = ascii.rootAssembly().instances();
  const odb_InstanceRepository& ib = binary.rootAssembly().instances();
  ASSERT_EQ(ia.keys(), ib.keys());
  for (const std::string& name : ia.keys()) {
    SCOPED_TRACE(name);
    const odb_SequenceNode &na = ia[name].nodes(), &nb = ib[name].nodes();
    ASSERT_EQ(na.size(), nb.size());
    for (int i = 0; i < na.size(); ++i) {
      EXPECT_EQ(na[i].label(), nb[i].label());
      for (int c = 0; c < 3; ++c) EXPECT_NEAR(na[i].coordinates()[c], nb[i].coordinates()[c], 1e-4);
    }
    const odb_SequenceElement &ea = ia[name].elements(), &eb = ib[name].elements();
    ASSERT_EQ(ea.size(), eb.size());
    for (int i = 0; i < ea.size(); ++i) {
      EXPECT_EQ(ea[i].type(), eb[i].type());
      odb_View<int> ca = ea[i].connectivity(), cb = eb[i].connectivity();
      EXPECT_TRUE(std::equal(ca.begin(), ca.end(), cb.begin(), cb.end())) << ea[i].label();
    }
  }
  ASSERT_EQ(ascii.steps().size(), binary.steps().size());
  for (int s = 0; s < ascii.steps().size(); ++s) {
    const odb_Step& sa = ascii.steps().at(s);
    const odb_Step& sb = binary.steps().at(s);
    EXPECT_EQ(sa.name(), sb.name());
    EXPECT_EQ(sa.historyRegions().keys(), sb.historyRegions().keys());
    ASSERT_EQ(sa.frames().size(), sb.frames().size());
    for (int f = 0; f < sa.frames().size(); ++f) {
      const odb_Frame& fa = sa.frames()[f];
      const odb_Frame& fb = sb.frames()[f];
      EXPECT_EQ(fa.frameValue(), fb.frameValue());
      EXPECT_EQ(fa.description(), fb.description());
      ASSERT_EQ(fa.fieldOutputs().keys(), fb.fieldOutputs().keys());
      for (const std::string& name : fa.fieldOutputs().keys()) {
        SCOPED_TRACE(name);
        odb_SequenceFieldBulkData ba = fa.fieldOutputs()[name].bulkDataBlocks();
        odb_SequenceFieldBulkData bb = fb.fieldOutputs()[name].bulkDataBlocks();
        ASSERT_EQ(ba.size(), bb.size());
        // Values at deck nodes mapped from expanded ones are sums of several rounded
        // values: their error scales with the field's largest value.
        float largest = 0;
        for (int b = 0; b < bb.size(); ++b) {
          for (int i = 0; i < bb[b].length() * bb[b].width(); ++i) {
            largest = std::max(largest, std::fabs(bb[b].data()[i]));
          }
        }
        for (int b = 0; b < ba.size(); ++b) {
          EXPECT_EQ(ba[b].instance().name(), bb[b].instance().name());
          ASSERT_EQ(ba[b].length(), bb[b].length());
          ASSERT_EQ(ba[b].width(), bb[b].width());
          for (int r = 0; r < ba[b].length(); ++r) {
            ASSERT_EQ(ba[b].nodeLabels()[r], bb[b].nodeLabels()[r]);
            for (int c = 0; c < ba[b].width(); ++c) {
              int i = r * ba[b].width() + c;
              EXPECT_NEAR(ba[b].data()[i], bb[b].data()[i],
                          6e-6 * std::fabs(bb[b].data()[i]) + 1e-5 * largest)
                  << "node " << ba[b].nodeLabels()[r] << " component " << c;
            }
          }
        }
      }
    }
  }
  closeOdb(ascii);
  closeOdb(binary);
}

}  // namespace
}  // namespace odbs::ccx
