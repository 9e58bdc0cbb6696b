// Files crafted with valid checksums but types and extents the format does not allow: every
// one is refused with a message before anything is read or allocated. Also FIFOs and other
// non-regular files, which must be refused before they are opened.
#include <gtest/gtest.h>
#include <hdf5.h>

#include <chrono>
#include <cstdio>
#include <functional>

#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/sample_model.h"

namespace {

class HostileFile : public ::testing::Test {
 protected:
  void SetUp() override {
    odb_initializeAPI();
    path_ = odbtest::tempPath("hostile.odb");
    odb::Writer w(path_);
    odb::addModel(w, odbtest::sampleModel());
    odbtest::writeSampleResults(w);
    w.close();
  }
  void TearDown() override { std::remove(path_.c_str()); }

  // Replaces the attribute or dataset name of the object at group by one made by make.
  void replace(const char* group, const char* name, const std::function<void(hid_t)>& make) {
    hid_t f = H5Fopen(path_.c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
    ASSERT_GE(f, 0);
    hid_t g = H5Oopen(f, group, H5P_DEFAULT);
    ASSERT_GE(g, 0);
    if (H5Aexists(g, name) > 0) H5Adelete(g, name);
    if (H5Lexists(g, name, H5P_DEFAULT) > 0) H5Ldelete(g, name, H5P_DEFAULT);
    make(g);
    H5Oclose(g);
    ASSERT_GE(H5Fclose(f), 0);
  }

  // Opens the database and reads the step catalogue; the exception's message or "".
  std::string openAndReadSteps() {
    try {
      odb_Odb& odb = openOdb(path_, true);
      std::string what;
      try {
        odb.steps();
      } catch (const std::exception& e) {
        what = e.what();
      }
      closeOdb(odb);
      return what;
    } catch (const std::exception& e) {
      return e.what();
    }
  }

  std::string path_;
};

void attribute(hid_t g, const char* name, hid_t type, std::vector<hsize_t> dims, const void* v) {
  hid_t space = dims.empty() ? H5Screate(H5S_SCALAR)
                             : H5Screate_simple(int(dims.size()), dims.data(), nullptr);
  hid_t a = H5Acreate2(g, name, type, space, H5P_DEFAULT, H5P_DEFAULT);
  ASSERT_GE(a, 0);
  ASSERT_GE(H5Awrite(a, type, v), 0);
  H5Aclose(a);
  H5Sclose(space);
}

// A dataset of the given type and extent whose values are never written: the file holds
// no storage for them.
void emptyDataset(hid_t g, const char* name, hid_t type, hsize_t n) {
  hid_t space = H5Screate_simple(1, &n, nullptr);
  hid_t d = H5Dcreate2(g, name, type, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
  ASSERT_GE(d, 0);
  H5Dclose(d);
  H5Sclose(space);
}

TEST_F(HostileFile, IntegerAttributeWithSeveralValuesIsRefusedBeforeTheRead) {
  // A read of an 8-byte value from this attribute would write 32 bytes.
  int64_t four[4] = {0, 1, 2, 3};
  replace("steps/0", "domain", [&](hid_t g) { attribute(g, "domain", H5T_STD_I64LE, {4}, four); });
  EXPECT_NE(openAndReadSteps().find("attribute /steps/0/domain is not one value"),
            std::string::npos)
      << openAndReadSteps();
}

TEST_F(HostileFile, AttributesOfTheWrongClassOrSizeAreRefused) {
  replace("/", "format_version", [&](hid_t g) {
    hid_t t = H5Tcopy(H5T_STD_I64LE);
    H5Tset_size(t, 16);
    unsigned char v[16] = {3};
    attribute(g, "format_version", t, {}, v);
    H5Tclose(t);
  });
  EXPECT_NE(openAndReadSteps().find("attribute /format_version is not an integer"),
            std::string::npos)
      << openAndReadSteps();

  SetUp();
  double half = 0.5;
  replace("steps/0", "domain", [&](hid_t g) { attribute(g, "domain", H5T_IEEE_F64LE, {}, &half); });
  EXPECT_NE(openAndReadSteps().find("attribute /steps/0/domain is not an integer"),
            std::string::npos);
}

TEST_F(HostileFile, DatasetWithAHugeElementSizeIsRefusedBeforeAllocating) {
  replace("steps/0", "frame_index", [&](hid_t g) {
    hid_t t = H5Tcopy(H5T_STD_I32LE);
    H5Tset_size(t, 0xfffffff0u);
    emptyDataset(g, "frame_index", t, 1);
    H5Tclose(t);
  });
  EXPECT_NE(openAndReadSteps().find("dataset /steps/0/frame_index has a bad element size"),
            std::string::npos)
      << openAndReadSteps();
}

TEST_F(HostileFile, ExtentBeyondTheFileIsRefusedBeforeAllocating) {
  // 2^28 values of 4 bytes: a gigabyte that a file of some kilobytes cannot hold.
  replace("steps/0", "frame_index",
          [&](hid_t g) { emptyDataset(g, "frame_index", H5T_STD_I32LE, hsize_t(1) << 28); });
  auto start = std::chrono::steady_clock::now();
  EXPECT_NE(openAndReadSteps().find("dataset /steps/0/frame_index is larger than the file"),
            std::string::npos)
      << openAndReadSteps();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));

  SetUp();  // within the file's size, but never stored
  replace("steps/0", "frame_index",
          [&](hid_t g) { emptyDataset(g, "frame_index", H5T_STD_I32LE, 2); });
  EXPECT_NE(openAndReadSteps().find("frame_index has no stored values"), std::string::npos)
      << openAndReadSteps();
}

TEST_F(HostileFile, NumbersWhereTextsBelongAndTextsWhereNumbersBelong) {
  replace("steps/0", "frame_description",
          [&](hid_t g) { emptyDataset(g, "frame_description", H5T_STD_I32LE, 2); });
  EXPECT_NE(openAndReadSteps().find("frame_description does not hold fixed-length texts"),
            std::string::npos)
      << openAndReadSteps();
  SetUp();
  replace("steps/0", "frame_value", [&](hid_t g) {
    hid_t t = H5Tcopy(H5T_C_S1);
    H5Tset_size(t, 8);
    emptyDataset(g, "frame_value", t, 2);
    H5Tclose(t);
  });
  EXPECT_NE(openAndReadSteps().find("frame_value does not hold numbers"), std::string::npos)
      << openAndReadSteps();
}

}  // namespace
