// The upgrade path on a real version-1 file, and the process-wide repository.
#include <gtest/gtest.h>

#include <cstdio>

#include "odb/format.h"
#include "odb/model_copy.h"
#include "odb/odb.h"
#include "odb/repository.h"
#include "odb/writer.h"
#include "tests/odb/legacy_v1_writer.h"
#include "tests/odb/sample_model.h"

namespace {

TEST(Upgrade, Version1FileNeedsUpgradeAndCopyReadsTheSame) {
  odb_initializeAPI();
  std::string old = odbtest::tempPath("old.odb"), copy = old + ".odb";
  odb::ModelData m = odbtest::sampleModel();
  odbtest::writeVersion1(old, m);

  EXPECT_TRUE(isUpgradeRequiredForOdb(old));
  try {
    openOdb(old, true);
    ADD_FAILURE() << "opened a version-1 file";
  } catch (const std::runtime_error& e) {
    EXPECT_NE(std::string(e.what()).find("needs an upgrade"), std::string::npos);
  }
  upgradeOdb(old, copy);
  EXPECT_FALSE(isUpgradeRequiredForOdb(copy));
  odb_Odb& odb = openOdb(copy, true);
  EXPECT_EQ(odb.formatVersion(), odb::kFormatVersion);
  odb::ModelData back = odb::readModel(odb);
  for (size_t i = 0; i < m.instances.size(); ++i) {
    // readModel lists instances in key order; the sample stores them in reverse.
    const odb::EntityData& want = m.instances[m.instances.size() - 1 - i];
    EXPECT_EQ(back.instances[i].name, want.name);
    EXPECT_EQ(back.instances[i].elements.connectivity, want.elements.connectivity);
    EXPECT_EQ(back.instances[i].elements.offsets, want.elements.offsets);
    EXPECT_EQ(back.instances[i].nodes.coordinates, want.nodes.coordinates);
  }
  EXPECT_EQ(back.sections.size(), m.sections.size());
  ASSERT_EQ(back.regionPairs.size(), 2u);
  EXPECT_EQ(back.regionPairs[1].name, "CP-A");
  closeOdb(odb);
  std::remove(old.c_str());
  std::remove(copy.c_str());
}

// A version-3 file stores no placements of section assignments: its upgraded copy has none,
// and its assignments are otherwise the same.
TEST(Upgrade, Version3CopiesHaveNoSectionPlacements) {
  odb_initializeAPI();
  std::string old = odbtest::tempPath("v3.odb"), copy = old + ".odb";
  odb::ModelData m = odbtest::sampleModel();
  m.instances[0].sectionAssignments[0].placement = {true, -0.5f, 0.25f, true, 2.5f};
  odbtest::writeVersion3(old, m);

  EXPECT_TRUE(isUpgradeRequiredForOdb(old));
  upgradeOdb(old, copy);
  odb_Odb& u = openOdb(copy, true);
  EXPECT_EQ(u.formatVersion(), odb::kFormatVersion);
  const odb_Instance& copied = u.rootAssembly().instances()[m.instances[0].name];
  const odb_SectionAssignment& a = copied.sectionAssignments()[0];
  EXPECT_EQ(a.sectionName(), m.instances[0].sectionAssignments[0].sectionName);
  EXPECT_EQ(a.region().name(), m.instances[0].sectionAssignments[0].region.name);
  EXPECT_FALSE(a.placement().hasOffset);
  EXPECT_FALSE(a.placement().hasThickness);
  closeOdb(u);
  for (const std::string& f : {old, copy}) std::remove(f.c_str());
}

TEST(Repository, KeyedByPathInKeyOrderWithLock) {
  odb_initializeAPI();
  std::string a = odbtest::tempPath("b.odb"), b = odbtest::tempPath("a.odb");
  odb::writeModel(a, odbtest::sampleModel());
  odb::writeModel(b, odbtest::sampleModel());
  odb_OdbRepository& repo = odb_OdbRepository::instance();

  odb_OdbRepository::LockBase();
  odb_OdbRepository::LockBase();  // recursive: the same thread may nest
  odb_Odb& oa = openOdb(a, true);
  repo.insert(a, oa);
  odb_OdbRepository::UnlockBase();
  odb_Odb& ob = openOdb(b, true);
  repo.insert(b, ob);
  odb_OdbRepository::UnlockBase();

  EXPECT_EQ(repo.size(), 2);
  EXPECT_TRUE(repo.isMember(a));
  EXPECT_EQ(&repo.get(a), &oa);
  EXPECT_EQ(odbtest::keysOf<odb_OdbRepositoryIT>(repo), (std::vector<std::string>{b, a}));

  repo.remove(a);
  EXPECT_FALSE(repo.isMember(a));
  EXPECT_THROW(repo.get(a), std::out_of_range);
  closeOdb(oa);
  closeOdb(ob);  // closing takes the database out of the repository too
  EXPECT_EQ(repo.size(), 0);

  openOdb(a, true);  // left open: finalize closes it
  odb_finalizeAPI();
  std::remove(a.c_str());
  std::remove(b.c_str());
}

}  // namespace
