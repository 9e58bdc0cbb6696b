#include "access/catalogue_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

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
    w.real(std::numeric_limits<double>::infinity());
    w.real(-0.0);
    w.text(std::string(5000, 'a'));
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
  ASSERT_TRUE(r.real(&d));
  EXPECT_TRUE(std::isinf(d));
  ASSERT_TRUE(r.real(&d));
  EXPECT_TRUE(d == 0 && std::signbit(d));
  ASSERT_TRUE(r.text(&t));
  EXPECT_EQ(t, std::string(5000, 'a'));
  EXPECT_TRUE(r.atEnd());
  EXPECT_FALSE(r.integer(&i));
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

// Sets a file's modification time seconds into the past.
void age(const std::string& path, int64_t seconds) {
  namespace fs = std::filesystem;
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(seconds));
}

TEST_F(CatalogueFileTest, StaleLockIsTakenOverFreshOneIsNot) {
  // What a server killed half-way through writing leaves behind: a partial file and the lock.
  ASSERT_TRUE(platform::createEmptyFile(base_ + "_lock"));
  gzFile f = gzopen((base_ + "_tmp").c_str(), "wb");
  gzputs(f, "1.0\r1.0A\n/old\n");
  gzclose(f);
  age(base_ + "_lock", kStaleLockSeconds + 5);
  {
    // The temporary file still changes: its writer is alive.
    CatalogueWriter w(base_);
    EXPECT_FALSE(w.active());
  }
  age(base_ + "_tmp", kStaleLockSeconds - 60);
  EXPECT_FALSE(CatalogueWriter(base_).active());

  age(base_ + "_tmp", kStaleLockSeconds + 5);
  writeSample(1);  // takes the lock over, writes and publishes
  CatalogueReader r;
  ASSERT_TRUE(r.open(base_, 1, db_));
  int64_t v = 0;
  ASSERT_TRUE(r.integer(&v));
  EXPECT_EQ(v, -7);
}

// The values written are the bytes that printf's "%.20E" and "%lld" give for them: special
// values and extremes; the fast exact path of reals (1e-7 to about 1e47) and around it: its
// edges, exact ties between two 21-digit decimals (odd multiples of 1/256 near 1e13 round
// to even), values that round up to the next power of ten, and bit patterns over every
// exponent. They fill several blocks of the compressing thread, which must keep the order.
TEST_F(CatalogueFileTest, NumbersAreWrittenAsPrintfWritesThem) {
  std::vector<double> reals = {0.0,
                               -0.0,
                               -2.5e-300,
                               4.9e-324,
                               1e308,
                               std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN(),
                               1e13 + 1.0 / 256,
                               1e13 + 3.0 / 256,
                               -(1e13 + 5.0 / 256),
                               9.999999999999999e20,
                               99999999999999991611392.0,
                               std::numeric_limits<double>::min(),
                               std::numeric_limits<double>::denorm_min() * 12345};
  for (int k = -9; k <= 49; ++k) {
    double p = std::pow(10.0, k);
    for (double v : {p, std::nextafter(p, 0.0), std::nextafter(p, 1e300), -p}) reals.push_back(v);
  }
  uint64_t bits = 12345;
  for (int i = 0; i < 20000; ++i) {
    bits = bits * 6364136223846793005ULL + 1442695040888963407ULL;
    double v;
    std::memcpy(&v, &bits, sizeof v);
    reals.push_back(v);
    reals.push_back(i / 1000.0);
  }
  std::string expected = "1.0\r1.0\n/x\n" +
                         std::to_string(db_.mtimeSec * 1000000000LL + db_.mtimeNsec) + "\n" +
                         std::to_string(db_.size) + "\n";
  {
    CatalogueWriter w(base_);
    w.header(0, "/x", db_);
    char buf[64];
    for (double v : reals) {
      w.real(v);
      std::snprintf(buf, sizeof buf, "%.20E\n", v);
      expected += buf;
    }
    for (int64_t v : {int64_t(0), int64_t(-1), int64_t(2147483647), INT64_MIN, INT64_MAX}) {
      w.integer(v);
      std::snprintf(buf, sizeof buf, "%lld\n", static_cast<long long>(v));
      expected += buf;
    }
    w.finish();
  }
  gzFile f = gzopen(base_.c_str(), "rb");
  ASSERT_NE(f, nullptr);
  std::string text(expected.size() + 100, '\0');
  text.resize(size_t(std::max(0, gzread(f, text.data(), unsigned(text.size())))));
  gzclose(f);
  // The first line that differs, not a diff of a megabyte.
  size_t n = std::min(text.size(), expected.size());
  size_t at =
      size_t(std::mismatch(text.begin(), text.begin() + n, expected.begin()).first - text.begin());
  size_t line = expected.rfind('\n', at == 0 ? 0 : at - 1);
  line = line == std::string::npos ? 0 : line + 1;
  EXPECT_EQ(text.substr(line, 30), expected.substr(line, 30));
  EXPECT_EQ(text.size(), expected.size());
}

// A writer dropped with blocks still queued for its compressing thread stops the thread
// before removing its files.
TEST_F(CatalogueFileTest, WriterDroppedWithQueuedValuesLeavesNothing) {
  {
    CatalogueWriter w(base_);
    w.header(0, "/x", db_);
    for (int i = 0; i < 100000; ++i) w.text("Increment " + std::to_string(i));
  }
  EXPECT_FALSE(platform::fileReadable(base_));
  EXPECT_FALSE(platform::fileReadable(base_ + "_tmp"));
  EXPECT_FALSE(platform::fileReadable(base_ + "_lock"));
}

// A file cut inside its compressed stream is refused even when the cut falls after a
// whole line, and deleted.
TEST_F(CatalogueFileTest, CutCompressedStreamIsNotAnEnd) {
  {
    CatalogueWriter w(base_);
    w.header(1, "/x", db_);
    for (int i = 0; i < 20000; ++i) w.integer(i * 7919LL % 100003);
    w.finish();
  }
  std::string whole;
  {
    std::ifstream in(base_, std::ios::binary);
    whole.assign(std::istreambuf_iterator<char>(in), {});
  }
  std::ofstream(base_, std::ios::binary | std::ios::trunc) << whole.substr(0, whole.size() / 2);
  CatalogueReader r;
  ASSERT_TRUE(r.open(base_, 1, db_));
  int64_t v = 0;
  int read = 0;
  while (!r.atEnd() && r.integer(&v)) ++read;
  EXPECT_LT(read, 20000);
  EXPECT_FALSE(r.atEnd());
}
}  // namespace
}  // namespace odbs
