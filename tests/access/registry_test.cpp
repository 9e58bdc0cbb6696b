// The registry in-process: opening, the open counter, one file under several spellings,
// re-opening a changed file, upgrades and closing.
#include "access/registry.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "access/database_book.h"
#include "odb/odb.h"
#include "odb/repository.h"
#include "odb/writer.h"
#include "platform/platform.h"
#include "tests/odb/legacy_v1_writer.h"
#include "tests/odb/sample_model.h"

namespace odbs {
namespace {

void writeCurrent(const std::string& path, const std::string& title) {
  odb::Writer w(path);
  w.setTitle(title);
  w.addInstance("PART-1-1").addNodes({1, 2}, {0.f, 0.f, 0.f, 1.f, 0.f, 0.f}, 3);
  w.close();
}

// Collects the '|' texts that the registry sends.
class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(platform::makePipe(fds_));
    out_ = std::make_unique<ReplyChannel>(fds_[1]);
  }
  void TearDown() override {
    shutdownAll();
    databaseBook().records.clear();
    out_.reset();
    platform::closeFd(fds_[0]);
    platform::closeFd(fds_[1]);
    for (const auto& p : files_) platform::removeFile(p);
  }
  std::string file(const std::string& name) {
    files_.push_back(odbtest::tempPath(name));
    return files_.back();
  }
  std::vector<std::string> messages() {
    std::vector<std::string> texts;
    uint8_t buf[65536];
    std::vector<uint8_t> got;
    while (platform::waitReadable(fds_[0], 0)) {
      long n = platform::readSome(fds_[0], buf, sizeof buf);
      if (n <= 0) break;
      got.insert(got.end(), buf, buf + n);
    }
    ByteReader r(got.data(), got.size());
    uint16_t count;
    uint8_t type;
    std::string text;
    while (r.getU16(&count) && r.getU8(&type) && r.getText(&text)) texts.push_back(text);
    return texts;
  }
  int fds_[2];
  std::unique_ptr<ReplyChannel> out_;
  std::vector<std::string> files_;
};

TEST_F(RegistryTest, OpensOnceAndCountsSerialNumbers) {
  std::string a = file("a.odb"), b = file("b.odb");
  writeCurrent(a, "A");
  writeCurrent(b, "B");
  int32_t before = databaseBook().openCounter;
  OdbContext& ca = lookupOrOpen(a, *out_);
  EXPECT_EQ(ca.odb->analysisTitle(), "A");
  EXPECT_EQ(databaseSerial(a), before + 1);
  EXPECT_EQ(lookupOrOpen(a, *out_).odb, ca.odb);
  lookupOrOpen(b, *out_);
  EXPECT_EQ(databaseSerial(b), before + 2);
  EXPECT_EQ(odb_OdbRepository::instance().size(), 2);
  EXPECT_TRUE(messages().empty());

  closeDatabase(a, *out_);
  EXPECT_FALSE(odb_OdbRepository::instance().isMember(a));
  EXPECT_EQ(databaseSerial(a), 0);
}

TEST_F(RegistryTest, OneFileUnderSeveralSpellingsIsOneDatabase) {
  std::string abs = file("spell.odb"), link = file("spell-link.odb");
  writeCurrent(abs, "S");
  ASSERT_EQ(::symlink(abs.c_str(), link.c_str()), 0);
  char cwd[4096];
  ASSERT_NE(::getcwd(cwd, sizeof cwd), nullptr);
  ASSERT_EQ(::chdir("/tmp"), 0);
  std::string relative = abs.substr(std::string("/tmp/").size());

  odb_Odb* first = lookupOrOpen(link, *out_).odb;
  EXPECT_EQ(lookupOrOpen(abs, *out_).odb, first);
  EXPECT_EQ(lookupOrOpen(relative, *out_).odb, first);
  EXPECT_EQ(lookupOrOpen("./" + relative, *out_).odb, first);
  ASSERT_EQ(::chdir(cwd), 0);
  EXPECT_EQ(odb_OdbRepository::instance().size(), 1);
  EXPECT_TRUE(odb_OdbRepository::instance().isMember(link));  // the spelling used first
}

TEST_F(RegistryTest, ChangedFileIsReopened) {
  std::string a = file("changing.odb");
  writeCurrent(a, "old");
  int32_t serial = (lookupOrOpen(a, *out_), databaseSerial(a));
  writeCurrent(a, "new title");  // new size and modification time
  OdbContext& again = lookupOrOpen(a, *out_);
  EXPECT_EQ(again.odb->analysisTitle(), "new title");
  EXPECT_GT(databaseSerial(a), serial);
  EXPECT_EQ(odb_OdbRepository::instance().size(), 1);

  platform::removeFile(a);
  EXPECT_THROW(lookupOrOpen(a, *out_), std::runtime_error);
  EXPECT_EQ(odb_OdbRepository::instance().size(), 0);
}

TEST_F(RegistryTest, MissingOrForeignFileRaisesErrorOpenOdb) {
  std::string junk = file("junk.odb");
  FILE* f = std::fopen(junk.c_str(), "w");
  std::fputs("not a database", f);
  std::fclose(f);
  for (const std::string& p : {junk, std::string("/nonexistent/x.odb")}) {
    try {
      lookupOrOpen(p, *out_);
      ADD_FAILURE() << p;
    } catch (const std::runtime_error& e) {
      EXPECT_STREQ(e.what(), "Error openOdb");
    }
  }
  EXPECT_FALSE(upgradeOutstanding(junk));
}

TEST_F(RegistryTest, UpgradeMadeFoundAndStale) {
  std::string old = file("old.odb");
  std::string copy = old + ".odb";
  files_.push_back(copy);
  odbtest::writeVersion1(old, odbtest::sampleModel());
  OdbContext& ctx = lookupOrOpen(old, *out_);
  EXPECT_EQ(messages(), std::vector<std::string>{"odb upgrade to: " + copy});
  EXPECT_EQ(ctx.odb->path(), copy);
  EXPECT_TRUE(odb_OdbRepository::instance().isMember(copy));

  lookupOrOpen(old, *out_);
  EXPECT_EQ(messages(), std::vector<std::string>{"Found upgraded odb: " + copy});

  // A source newer than its copy is upgraded again; the open copy is replaced.
  ::usleep(20000);
  odbtest::writeVersion1(old, odbtest::sampleModel());
  EXPECT_TRUE(upgradeOutstanding(old));
  lookupOrOpen(old, *out_);
  EXPECT_EQ(messages(), std::vector<std::string>{"odb upgrade to: " + copy});
  EXPECT_EQ(odb_OdbRepository::instance().size(), 1);

  closeDatabase(old, *out_);
  EXPECT_EQ(messages(), std::vector<std::string>{"Found upgraded odb: " + copy});
  EXPECT_EQ(odb_OdbRepository::instance().size(), 0);
}

}  // namespace
}  // namespace odbs
