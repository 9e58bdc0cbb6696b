// sendSets (S, s) and sendNamedSets (irs): blocks of 30, filtered names, assembly sets per
// instance, instance blocks, the set error record.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "client/model_records.h"
#include "model/named_sets.h"
#include "model/send_sets.h"
#include "odb/h5.h"
#include "tests/model/model_fixture.h"

namespace odbs::test {
namespace {

using odb_Enum::ELEMENT_SET;
using odb_Enum::NODE_SET;
using odb_Enum::SURFACE_SET;

odb::ModelData singleInstanceSets() {
  odb::ModelData m;
  m.title = "sets";
  odb::EntityData part;
  part.name = "PART-1";
  part.nodes = nodeLine(61);
  std::vector<int32_t> all(61);
  for (int i = 0; i < 61; ++i) all[size_t(i)] = i + 1;
  part.nodeSets = {setOf(" ALL NODES", NODE_SET, "PART-1", {1, 2}),
                   setOf("COUPLING_X", NODE_SET, "PART-1", {4}),
                   setOf("N61", NODE_SET, "PART-1", all), setOf("ZZ", NODE_SET, "PART-1", {5})};
  part.elementSets = {setOf(" ALL ELEMENTS", ELEMENT_SET, "PART-1", {1}),
                      setOf("COUPLING_E", ELEMENT_SET, "PART-1", {2}),
                      setOf("E", ELEMENT_SET, "PART-1", {1, 2, 3})};
  part.surfaces = {
      setOf("SURF", SURFACE_SET, "PART-1", {1, 2}, {odb_Enum::FACE1, odb_Enum::SIDE2})};
  m.instances.push_back(part);
  m.assembly.nodeSets = {setOf("AN", NODE_SET, "PART-1", {7, 8})};
  m.assembly.elementSets = {setOf("E", ELEMENT_SET, "PART-1", {3})};
  m.assembly.surfaces = {setOf("AS", SURFACE_SET, "PART-1", {3}, {odb_Enum::FACE2})};
  return m;
}

// The expected reply: the opening records, then per set() a set header, its labels in
// blocks of 30 and the set's end record.
class Expected : public Frames {
 public:
  Expected() { begin(1).text("sets").begin(2).i32(0); }
  Expected& set(uint8_t header, const std::string& name, const std::vector<int32_t>& labels) {
    begin(header).text(name);
    for (size_t k = 0; k < labels.size(); ++k) {
      if (k % 30 == 0) begin(header + 3);
      i32(labels[k]);
    }
    begin(11);
    return *this;
  }
};

Bytes setsReply(TestDatabase& db, int mode, bool coupling) {
  return capture([&](ReplyChannel& out) { sendSets(db.context(), mode, coupling, out); });
}

TEST(SendSets, SingleInstanceBlocksOf30AndFilteredNames) {
  TestDatabase db(singleInstanceSets());
  std::vector<int32_t> all(61);
  for (int i = 0; i < 61; ++i) all[size_t(i)] = i + 1;
  Expected e;
  e.set(5, "AN", {7, 8}).set(5, "N61", all).set(5, "ZZ", {5});
  e.set(6, "E", {3}).set(6, "COUPLING_E", {2}).set(6, "E", {1, 2, 3});
  EXPECT_EQ(frameLines(setsReply(db, 0, false)), frameLines(e.bytes()));
}

TEST(SendSets, CouplingFlagAndSurfaces) {
  TestDatabase db(singleInstanceSets());
  std::vector<client::Record> recs = splitRecords(setsReply(db, 1, true));
  std::vector<std::string> names;
  for (const auto& r : recs) {
    if (r.type >= 5 && r.type <= 7) names.push_back(client::decodeSetHeader(r).name);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"AN", "COUPLING_X", "N61", "ZZ", "E", "COUPLING_E",
                                             "E", "AS", "SURF"}));
  ASSERT_EQ(recs[recs.size() - 2].type, 10);
  EXPECT_EQ(client::decodeFaceBlock(recs[recs.size() - 2]),
            (std::vector<std::pair<int32_t, int32_t>>{{1, odb_Enum::FACE1}, {2, odb_Enum::SIDE2}}));
  EXPECT_EQ(recs.back().type, 11);
}

odb::ModelData multiInstanceSets() {
  odb::ModelData m;
  m.title = "multi";
  for (const char* name : {"B-1", "A-1"}) {
    odb::EntityData part;
    part.name = name;
    part.nodes = nodeLine(2);
    m.instances.push_back(part);
  }
  m.instances[1].nodeSets = {setOf("NA", NODE_SET, "A-1", {1})};
  m.instances[1].elementSets = {setOf("EA", ELEMENT_SET, "A-1", {1}),
                                setOf("AE", ELEMENT_SET, "A-1", {2})};
  odb::SetData an = setOf("AN", NODE_SET, "A-1", {1});
  an.addMembers("B-1", {2});
  odb::SetData ae = setOf("AE", ELEMENT_SET, "B-1", {5});
  ae.addMembers("A-1", {4});
  m.assembly.name = "ROOT";
  m.assembly.nodeSets = {an};
  m.assembly.elementSets = {ae, setOf("AONLY", ELEMENT_SET, "A-1", {1})};
  return m;
}

TEST(SendSets, MultiInstanceAssemblySetsPerInstanceBeforeOwnSets) {
  TestDatabase db(multiInstanceSets());
  std::vector<client::Record> recs = splitRecords(setsReply(db, 0, false));
  EXPECT_EQ(typeSequence(recs),
            "1 2 "
            "5 H 8 11 I H 5 8 11 I 6 H 9 11 I 6 H 9 11 I H 6 9 11 6 9 11 I "
            "5 H 8 11 I H I 6 H 9 11 I 6 H 11 I H I");                        // B-1
  EXPECT_EQ(client::decodeInstanceHeader(recs[3]), "A-1");
  EXPECT_EQ(client::decodeLabelBlock(recs[4]), std::vector<int32_t>{1});
  EXPECT_EQ(client::decodeLabelBlock(recs[32]), std::vector<int32_t>{2});
  EXPECT_EQ(client::decodeInstanceHeader(recs[31]), "B-1");
}

// Damage that makes the first set of a set list unreadable: its member count runs past the
// end of the list's members, while the other sets of the list stay readable.
std::function<void(const std::string&)> firstSetUnreadable(const std::string& list) {
  return [list](const std::string& path) {
    odb::h5::File f = odb::h5::File::open(path, false);
    odb::h5::Group sets = f.root().open(list);
    std::vector<int64_t> counts = sets.read<int64_t>("member_counts");
    counts.at(0) = 1000000;
    sets.remove("member_counts");
    sets.write("member_counts", counts);
  };
}

TEST(SendSets, UnreadableInstanceSetSendsHeaderAndEndAndTheWalkGoesOn) {
  odb::ModelData m = singleInstanceSets();
  m.assembly = odb::EntityData();
  m.instances[0].nodeSets = {setOf("BAD", NODE_SET, "PART-1", {1}),
                             setOf("GOOD", NODE_SET, "PART-1", {2})};
  m.instances[0].elementSets.clear();
  TestDatabase db(m, firstSetUnreadable("assembly/instances/0/node_sets"));  // BAD
  Expected e;
  e.set(5, "BAD", {}).set(5, "GOOD", {2});
  EXPECT_EQ(frameLines(setsReply(db, 0, false)), frameLines(e.bytes()));
}

TEST(SendSets, SetsGoInNameOrderWithTheirGroupsInStoredOrder) {
  odb::ModelData m = singleInstanceSets();
  m.assembly = odb::EntityData();
  m.instances[0].nodeSets = {setOf("ZB", NODE_SET, "PART-1", {3, 1}),
                             setOf("AA", NODE_SET, "PART-1", {2})};
  m.instances[0].elementSets.clear();
  TestDatabase db(m, [](const std::string& path) {
    odb::h5::File f = odb::h5::File::open(path, false);
    odb::h5::Group sets = f.root().open("assembly/instances/0/node_sets");
    // ZB in two groups that lie apart and out of order: [3] from 2, then [1] from 0.
    for (const char* name :
         {"group_offsets", "group_instances", "member_starts", "member_counts", "labels"})
      sets.remove(name);
    sets.write("group_offsets", std::vector<int64_t>{0, 2, 3});
    sets.writeStrings("group_instances", {"PART-1", "PART-1", "PART-1"});
    sets.write("member_starts", std::vector<int64_t>{2, 0, 1});
    sets.write("member_counts", std::vector<int64_t>{1, 1, 1});
    sets.write("labels", std::vector<int32_t>{1, 2, 3});
  });
  Expected e;
  e.set(5, "AA", {2}).set(5, "ZB", {3, 1});
  EXPECT_EQ(frameLines(setsReply(db, 0, false)), frameLines(e.bytes()));
}

TEST(SendSets, UnreadableAssemblySetKeepsEverySetOfTheReply) {
  TestDatabase db(multiInstanceSets(), firstSetUnreadable("assembly/node_sets"));  // AN
  std::vector<client::Record> recs = splitRecords(setsReply(db, 0, false));
  // As the undamaged reply, with AN's label blocks gone in both instances.
  EXPECT_EQ(typeSequence(recs),
            "1 2 "
            "5 H 11 I H 5 8 11 I 6 H 9 11 I 6 H 9 11 I H 6 9 11 6 9 11 I "
            "5 H 11 I H I 6 H 9 11 I 6 H 11 I H I");                        // B-1
  EXPECT_EQ(client::decodeSetHeader(recs[2]).name, "AN");
}

Bytes namedSets(TestDatabase& db, const std::vector<Criterion>& criteria) {
  return capture([&](ReplyChannel& out) { sendNamedSets(db.context(), criteria, out); });
}

TEST(SendNamedSets, MultiInstanceNamesDottedNamesAndUnknownOnes) {
  TestDatabase db(multiInstanceSets());
  std::vector<client::Record> recs = splitRecords(namedSets(db, {{7, 0, "AE"},
                                                                 {1, 0, "EA"},
                                                                 {7, 0, "A-1.EA"},
                                                                 {7, 0, "ROOT.AONLY"},
                                                                 {7, 0, "X-1.EA"},
                                                                 {7, 0, "A-1.NOPE"},
                                                                 {7, 0, "NOPE"}}));
  // AE: the root's set once per instance it spans, in its own order; never A-1's own AE.
  EXPECT_EQ(typeSequence(recs), "1 2 6 H 9 11 I 6 H 9 11 I H 6 9 11 I 6 H 9 11 I");
  EXPECT_EQ(client::decodeInstanceHeader(recs[3]), "B-1");
  EXPECT_EQ(client::decodeLabelBlock(recs[4]), std::vector<int32_t>{5});
  EXPECT_EQ(client::decodeInstanceHeader(recs[12]), "A-1");
  EXPECT_EQ(client::decodeSetHeader(recs[13]).name, "EA");
  EXPECT_TRUE(namedSets(db, {}).empty());  // an empty list sends nothing
}

TEST(SendNamedSets, UnreadableRootSetIsLeftOutAndTheListGoesOn) {
  TestDatabase db(multiInstanceSets(), firstSetUnreadable("assembly/element_sets"));  // AE
  std::vector<client::Record> recs =
      splitRecords(namedSets(db, {{7, 0, "AE"}, {7, 0, "A-1.EA"}, {7, 0, "AONLY"}}));
  EXPECT_EQ(typeSequence(recs), "1 2 H 6 9 11 I 6 H 9 11 I");
}

TEST(SendNamedSets, SingleInstanceAddsTheInstancesOwnSet) {
  TestDatabase db(singleInstanceSets());
  Expected e;
  e.set(6, "E", {3}).set(6, "E", {1, 2, 3});
  EXPECT_EQ(frameLines(namedSets(db, {{7, 0, "E"}})), frameLines(e.bytes()));
}

}  // namespace
}  // namespace odbs::test
