// Damaged, foreign and wrong-version files make openOdb (or the first read of the part
// that is damaged) throw; they never crash or hang.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "odb/h5.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/sample_model.h"

namespace {

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void writeAll(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// The message of the exception that opening the file throws, or "" when it opens.
std::string openError(const std::string& path) {
  try {
    closeOdb(openOdb(path, true));
    return "";
  } catch (const std::exception& e) {
    return e.what();
  }
}

class DamagedFile : public ::testing::Test {
 protected:
  void SetUp() override {
    odb_initializeAPI();
    good_ = odbtest::tempPath("good.odb");
    bad_ = odbtest::tempPath("bad.odb");
    odbtest::writeSampleDatabase(good_);
    bytes_ = readAll(good_);
  }
  void TearDown() override {
    std::remove(good_.c_str());
    std::remove(bad_.c_str());
  }
  std::string good_, bad_, bytes_;
};

// Cuts at other places, and overwritten bytes, go through the damaged corpus.
TEST_F(DamagedFile, TruncatedFileThrowsWithTheFileLibrarysMessage) {
  writeAll(bad_, bytes_.substr(0, bytes_.size() / 2));
  std::string what = openError(bad_);
  EXPECT_NE(what.find("truncated or damaged"), std::string::npos) << what;
  // The innermost cause, as the file library reports it.
  EXPECT_NE(what.find("truncated file: eof = " + std::to_string(bytes_.size() / 2)),
            std::string::npos)
      << what;
}

TEST_F(DamagedFile, ForeignNewerAndMissingFilesSayWhatIsWrong) {
  writeAll(bad_, "this is not a database\n");
  EXPECT_NE(openError(bad_).find("not a results database"), std::string::npos);
  EXPECT_THROW(isUpgradeRequiredForOdb(bad_), std::runtime_error);

  EXPECT_NE(openError(bad_ + ".missing").find("no such file"), std::string::npos);

  {  // An HDF5 file of someone else.
    odb::h5::File f = odb::h5::File::create(bad_);
    f.root().setInt("answer", 42);
  }
  EXPECT_NE(openError(bad_).find("no format tag"), std::string::npos);

  {  // A database from a newer library.
    odb::h5::File f = odb::h5::File::open(good_, false);
    f.root().setInt("format_version", 99);
  }
  EXPECT_NE(openError(good_).find("newer"), std::string::npos);
  EXPECT_THROW(isUpgradeRequiredForOdb(good_), std::runtime_error);
}

TEST_F(DamagedFile, BadBlockCatalogueIsReportedWhenBlocksLoad) {
  {
    odb::h5::File f = odb::h5::File::open(good_, false);
    odb::h5::Group field = f.root().open("steps/0/frames/0/1");  // field "S"
    field.remove("block_rows");
    field.write("block_rows", std::vector<int64_t>{2, 1000000});
  }
  odb_Odb& odb = openOdb(good_, true);
  const odb_FieldOutput& s = odb.steps()["Step-B"].frames()[0].fieldOutputs()["S"];
  EXPECT_THROW(s.bulkDataBlocks().size(), std::runtime_error);
  EXPECT_EQ(s.getSubset(odb_Enum::INTEGRATION_POINT).bulkDataBlocks().size(), 1);
  closeOdb(odb);
}

TEST_F(DamagedFile, InconsistentArraysAreReportedOnFirstUse) {
  {
    odb::h5::File f = odb::h5::File::open(good_, false);
    odb::h5::Group el = f.root().open("assembly/instances/1/elements");
    el.remove("offsets");
    el.write("offsets", std::vector<int64_t>{0, 8, 4});  // decreasing
  }
  odb_Odb& odb = openOdb(good_, true);
  const odb_Instance& p1 = odb.rootAssembly().instances()["PART-1-1"];
  EXPECT_EQ(p1.nodes().size(), 12);
  try {
    p1.elements();
    ADD_FAILURE() << "no exception";
  } catch (const std::runtime_error& e) {
    EXPECT_NE(std::string(e.what()).find("offsets"), std::string::npos) << e.what();
  }
  closeOdb(odb);
}

}  // namespace
