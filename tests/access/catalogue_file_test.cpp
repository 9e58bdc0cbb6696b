#include "access/catalogue_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "tests/support/scratch_dir.h"

namespace odbs {
namespace {

class CatalogueFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    base_ = scratch_.path("job.cat");
    db_.size = 12345;
    db_.mtimeSec = 1700000000;
    db_.mtimeNsec = 250;
  }
  void writeSample(int mode) {
    CatalogueWriter w(base_);
    ASSERT_TRUE(w.active());
    EXPECT_TRUE(platform::fileReadable(base_ + "_lock"));
    w.header(mode, "/data/job.odb", db_);
    w.integer(-7);
    w.real(0.1);
    w.text("Step-1\x01line one\nline two \\ end\r");
    w.finish();
    EXPECT_FALSE(platform::fileReadable(base_ + "_lock"));
    EXPECT_FALSE(platform::fileReadable(base_ + "_tmp"));
  }
  test::ScratchDir scratch_;
  std::string base_;
  platform::FileStat db_;
};

TEST_F(CatalogueFileTest, ValuesRoundTripExactly) {
  writeSample(0);
  CatalogueReader r;
  ASSERT_TRUE(r.open(base_, 0, db_));
  int64_t i = 0;
  double d = 0;
  std::string t;
  ASSERT_TRUE(r.integer(&i));
  ASSERT_TRUE(r.real(&d));
  ASSERT_TRUE(r.text(&t));
  EXPECT_EQ(i, -7);
  EXPECT_EQ(d, 0.1);  // bit-exact after "%.20E"
  EXPECT_EQ(t, "Step-1\x01line one\nline two \\ end\r");
  EXPECT_TRUE(r.atEnd());
  EXPECT_FALSE(r.integer(&i));
}

TEST_F(CatalogueFileTest, ExtendedVersionServesBothModesPlainOnlyMode0) {
  writeSample(1);
  {
    CatalogueReader r;
    EXPECT_TRUE(r.open(base_, 0, db_));
  }
  {
    CatalogueReader r;
    EXPECT_TRUE(r.open(base_, 1, db_));
  }
  writeSample(0);
  CatalogueReader r;
  EXPECT_FALSE(r.open(base_, 1, db_));
  EXPECT_FALSE(platform::fileReadable(base_));  // refused files are deleted
}

TEST_F(CatalogueFileTest, ChangedDatabaseOrDamagedFileIsRefusedAndDeleted) {
  writeSample(0);
  platform::FileStat touched = db_;
  touched.mtimeNsec += 1;
  CatalogueReader r1;
  EXPECT_FALSE(r1.open(base_, 0, touched));
  EXPECT_FALSE(platform::fileReadable(base_));

  gzFile f = gzopen(base_.c_str(), "wb");
  gzputs(f, "1.0\r1.0\n/p\nnot a number\n");
  gzclose(f);
  CatalogueReader r2;
  EXPECT_FALSE(r2.open(base_, 0, db_));
  EXPECT_FALSE(platform::fileReadable(base_));

  CatalogueReader r3;
  EXPECT_FALSE(r3.open(base_, 0, db_));  // missing file
}

TEST_F(CatalogueFileTest, WriterWithoutFinishLeavesNothing) {
  {
    CatalogueWriter w(base_);
    w.header(0, "/x", db_);
  }
  EXPECT_FALSE(platform::fileReadable(base_));
  EXPECT_FALSE(platform::fileReadable(base_ + "_tmp"));
  EXPECT_FALSE(platform::fileReadable(base_ + "_lock"));
}

TEST_F(CatalogueFileTest, LockOfAnotherWriterMeansNoFile) {
  ASSERT_TRUE(platform::createEmptyFile(base_ + "_lock"));
  {
    CatalogueWriter w(base_);
    EXPECT_FALSE(w.active());
    w.header(0, "/x", db_);
    w.integer(1);
  }
  EXPECT_FALSE(platform::fileReadable(base_));
  EXPECT_FALSE(platform::fileReadable(base_ + "_tmp"));
  EXPECT_TRUE(platform::fileReadable(base_ + "_lock"));  // not ours to remove
}

TEST_F(CatalogueFileTest, SpecialValuesAndLongTexts) {
  {
    CatalogueWriter w(base_);
    w.header(0, "/x", db_);
    w.real(std::numeric_limits<double>::infinity());
    w.real(-0.0);
    w.text(std::string(5000, 'a'));
    w.finish();
  }
  CatalogueReader r;
  ASSERT_TRUE(r.open(base_, 0, db_));
  double a = 0, b = 1;
  std::string t;
  ASSERT_TRUE(r.real(&a));
  ASSERT_TRUE(r.real(&b));
  ASSERT_TRUE(r.text(&t));
  EXPECT_TRUE(std::isinf(a));
  EXPECT_TRUE(std::signbit(b));
  EXPECT_EQ(t.size(), 5000u);
}

}  // namespace
}  // namespace odbs
