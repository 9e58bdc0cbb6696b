#include "client/core_records.h"

#include <gtest/gtest.h>

#include "client/client_error.h"
#include "client/record_catalog.h"
#include "tests/support/bytes.h"

namespace odbs::client {
namespace {

using test::Bytes;

Record rec(uint8_t type, Bytes body) {
  return Record{type, std::move(body)};
}

TEST(DecodeMessage, CountedText) {
  Record r = rec('|', test::textBody("Found upgraded odb: a.odb"));
  EXPECT_EQ(r.count(), 30u);
  MessageRecord m = decodeMessage(r);
  EXPECT_EQ(m.text, "Found upgraded odb: a.odb");
  EXPECT_FALSE(m.upgradeNeeded);
  EXPECT_EQ(decodeMessage(rec('|', test::textBody(""))).text, "");
}

TEST(DecodeMessage, UpgradeNeededHasACountOfOneAndNoText) {
  MessageRecord m = decodeMessage(rec('|', {1, 0, 0, 0}));
  EXPECT_TRUE(m.upgradeNeeded);
  EXPECT_TRUE(m.text.empty());
  // One text byte present: an ordinary one-character message.
  EXPECT_FALSE(decodeMessage(rec('|', {1, 0, 0, 0, 'x'})).upgradeNeeded);
}

TEST(DecodeMessage, RejectsBadBodies) {
  EXPECT_THROW(decodeMessage(rec('|', {5, 0, 0, 0, 'a'})), DecodeError);    // count past end
  EXPECT_THROW(decodeMessage(rec('|', {0, 0, 0})), DecodeError);            // no full count
  EXPECT_THROW(decodeMessage(rec('|', {0, 0, 0, 0, 'z'})), DecodeError);    // trailing byte
  EXPECT_THROW(decodeMessage(rec('}', test::textBody("a"))), DecodeError);  // wrong type
}

TEST(DecodeProcessId, LittleEndianAndExactSize) {
  EXPECT_EQ(decodeProcessId(rec('}', {0x39, 0x30, 0x00, 0x00})), 12345);
  EXPECT_EQ(decodeProcessId(rec('}', {0x00, 0x00, 0x00, 0x80})), INT32_MIN);
  EXPECT_THROW(decodeProcessId(rec('}', {1, 2, 3})), DecodeError);
  EXPECT_THROW(decodeProcessId(rec('}', {1, 2, 3, 4, 5})), DecodeError);
}

TEST(DecodeTestRecord, SequenceThenIntegers) {
  TestRecord t =
      decodeTestRecord(rec('"', {7, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(t.sequence, 7u);
  EXPECT_EQ(t.values, (std::vector<int32_t>{0, 1, -1}));
  EXPECT_TRUE(decodeTestRecord(rec('"', {0, 0, 0, 0})).values.empty());
  EXPECT_THROW(decodeTestRecord(rec('"', {0, 0, 0})), DecodeError);
  EXPECT_THROW(decodeTestRecord(rec('"', {0, 0, 0, 0, 1})), DecodeError);
}

TEST(RecordCatalog, LongestCommandPrefixWins) {
  RecordCatalog c;
  c.add("", 17, [](const RecordView&) { return DescribedRecord{"any", {}}; });
  c.add("r", 17, [](const RecordView&) { return DescribedRecord{"r", {}}; });
  c.add("rd", 17, [](const RecordView&) { return DescribedRecord{"rd", {}}; });
  Record r = rec(17, {});
  EXPECT_EQ((*c.find("rd /x", 17))(r).kind, "rd");
  EXPECT_EQ((*c.find("rs /x", 17))(r).kind, "r");
  EXPECT_EQ((*c.find("g /x", 17))(r).kind, "any");
  EXPECT_EQ(c.find("g /x", 18), nullptr);
}

TEST(RecordCatalog, StandardCatalogKnowsTheTestRecordOnlyForM) {
  const RecordCatalog& c = standardCatalog();
  ASSERT_NE(c.find("m 3 2", '"'), nullptr);
  EXPECT_EQ(c.find("g /x.odb", '"'), nullptr);
  DescribedRecord d = (*c.find("p", '|'))(rec('|', {1, 0, 0, 0}));
  EXPECT_EQ(d.kind, "upgrade-needed");
}

}  // namespace
}  // namespace odbs::client
