// Files crafted with valid checksums but types and extents the format does not allow: every
// one is refused with a message before anything is read or allocated (a hang is ended by
// the test's timeout).
#include <gtest/gtest.h>
#include <hdf5.h>

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
    odbtest::writeSampleDatabase(path_);
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

// A type of size bytes derived from base, for make functions; closed with the case.
hid_t sized(hid_t base, size_t size) {
  hid_t t = H5Tcopy(base);
  H5Tset_size(t, size);
  return t;
}

TEST_F(HostileFile, EachHostileObjectIsRefusedWithWhatIsWrong) {
  static const int64_t four[4] = {0, 1, 2, 3};
  static const unsigned char wide[16] = {3};
  static const double half = 0.5;
  struct Case {
    const char* group;
    const char* name;
    std::function<void(hid_t)> make;  // makes the object name in the group
    const char* expected;             // text the message must contain
  };
  const Case cases[] = {
      // A read of an 8-byte value from this attribute would write 32 bytes.
      {"steps/0", "domain", [](hid_t g) { attribute(g, "domain", H5T_STD_I64LE, {4}, four); },
       "attribute /steps/0/domain is not one value"},
      {"/", "format_version",
       [](hid_t g) {
         hid_t t = sized(H5T_STD_I64LE, 16);
         attribute(g, "format_version", t, {}, wide);
         H5Tclose(t);
       },
       "attribute /format_version is not an integer"},
      {"steps/0", "domain", [](hid_t g) { attribute(g, "domain", H5T_IEEE_F64LE, {}, &half); },
       "attribute /steps/0/domain is not an integer"},
      // Refused before allocating.
      {"steps/0", "frame_index",
       [](hid_t g) {
         hid_t t = sized(H5T_STD_I32LE, 0xfffffff0u);
         emptyDataset(g, "frame_index", t, 1);
         H5Tclose(t);
       },
       "dataset /steps/0/frame_index has a bad element size"},
      // 2^28 values of 4 bytes: a gigabyte that a file of some kilobytes cannot hold.
      {"steps/0", "frame_index",
       [](hid_t g) { emptyDataset(g, "frame_index", H5T_STD_I32LE, hsize_t(1) << 28); },
       "dataset /steps/0/frame_index is larger than the file"},
      // Within the file's size, but never stored.
      {"steps/0", "frame_index", [](hid_t g) { emptyDataset(g, "frame_index", H5T_STD_I32LE, 2); },
       "frame_index has no stored values"},
      // Numbers where texts belong and texts where numbers belong.
      {"steps/0", "frame_description",
       [](hid_t g) { emptyDataset(g, "frame_description", H5T_STD_I32LE, 2); },
       "frame_description does not hold fixed-length texts"},
      {"steps/0", "frame_value",
       [](hid_t g) {
         hid_t t = sized(H5T_C_S1, 8);
         emptyDataset(g, "frame_value", t, 2);
         H5Tclose(t);
       },
       "frame_value does not hold numbers"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    SetUp();
    replace(c.group, c.name, c.make);
    std::string what = openAndReadSteps();
    EXPECT_NE(what.find(c.expected), std::string::npos) << what;
  }
}

}  // namespace
