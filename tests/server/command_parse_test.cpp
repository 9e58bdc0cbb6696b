#include "server/command_parse.h"

#include <gtest/gtest.h>

namespace odbs {
namespace {

TEST(RequestParams, RemapsPositionCodeAndRestoresSpaces) {
  RequestParams r = parseRequest("D 0 1 0 a^b", true);
  EXPECT_EQ(r.param1, 0);
  EXPECT_EQ(r.param2, 1);
  EXPECT_EQ(r.positionCode, 4);
  EXPECT_EQ(r.text, "a b");
  EXPECT_TRUE(r.defined);

  EXPECT_EQ(parseRequest("D 1 1 1 x", true).positionCode, 2);
  EXPECT_EQ(parseRequest("D 1 1 2 x", true).positionCode, 3);
  EXPECT_EQ(parseRequest("D 1 1 7 x", true).positionCode, 7);
  EXPECT_FALSE(parseRequest("d 1 1 7 x", false).defined);
}

TEST(RequestParams, BadFieldsStayZeroAndTextIsBounded) {
  RequestParams r = parseRequest("D x", true);
  EXPECT_EQ(r.param1, 0);
  EXPECT_EQ(r.param2, 0);
  EXPECT_EQ(r.positionCode, 4);  // a missing third number is 0, remapped
  EXPECT_EQ(r.text, "");

  std::string line = "D 1 2 3 " + std::string(500, 'q');
  EXPECT_EQ(parseRequest(line.c_str(), true).text.size(), 199u);
}

TEST(Selection, FillsUpToCapacityAcrossLines) {
  SelectionList list;
  resetSelection("a 3", &list);
  appendSelection("b 10 20", &list);
  appendSelection("b 30 40", &list);
  EXPECT_EQ(list.labels, (std::vector<int32_t>{10, 20, 30}));

  resetSelection("a 4", &list);
  appendSelection("b  -5  7 x", &list);  // empty tokens skipped, a bad number becomes 0
  EXPECT_EQ(list.labels, (std::vector<int32_t>{-5, 7, 0}));
}

TEST(Selection, NonPositiveSizeLeavesNoList) {
  SelectionList list;
  resetSelection("a 2", &list);
  appendSelection("b 1", &list);
  resetSelection("a 0", &list);
  appendSelection("b 1 2", &list);
  EXPECT_TRUE(list.labels.empty());
  resetSelection("a -3", &list);
  appendSelection("b 1", &list);
  EXPECT_TRUE(list.labels.empty());
}

TEST(Criteria, KeepsSpacesAndRejectsBadKinds) {
  auto c = parseCriterion("irc 1 2 Name With Spaces");
  ASSERT_TRUE(c);
  EXPECT_EQ(c->kind, 1);
  EXPECT_EQ(c->value, 2);
  EXPECT_EQ(c->text, "Name With Spaces");

  EXPECT_FALSE(parseCriterion("irc 9 1 X"));
  EXPECT_FALSE(parseCriterion("irc 0 1 X"));
  EXPECT_FALSE(parseCriterion("irc 3 1"));
  // The text starts at the word's first occurrence, which may lie in the numbers.
  EXPECT_EQ(parseCriterion("irc 8 2 2 rest")->text, "2 2 rest");
}

TEST(SectionPoints, ReadsPairAndNameAfterComma) {
  SectionPointPair pair;
  auto name = parseSectionPointRequest("rl 3 5,/data/job.odb", &pair);
  ASSERT_TRUE(name);
  EXPECT_EQ(*name, "/data/job.odb");
  EXPECT_EQ(pair.first, 3);
  EXPECT_EQ(pair.second, 5);

  SectionPointPair other;
  EXPECT_FALSE(parseSectionPointRequest("rl 1 2 job.odb", &other));
}

TEST(RegionWord, SuffixCodes) {
  auto r = parseRegionWord("rn A.INNER:B.7:job.odb", true);
  ASSERT_TRUE(r);
  EXPECT_EQ(r->nameA, "A");
  EXPECT_EQ(r->codeA, -1);
  EXPECT_EQ(r->nameB, "B");
  EXPECT_EQ(r->codeB, 7);
  EXPECT_EQ(r->database, "job.odb");

  EXPECT_EQ(parseRegionWord("rn X.MAXIMUM:Y.MINIMUM:d", true)->codeA, -3);
  EXPECT_EQ(parseRegionWord("rn X.MAXIMUM:Y.MINIMUM:d", true)->codeB, -3);
  EXPECT_EQ(parseRegionWord("rn X.-4:Y:d", true)->codeA, 4);
  EXPECT_EQ(parseRegionWord("rn X.-4:Y:d", true)->codeB, 0);
}

TEST(RegionWord, NumbersAndMissingParts) {
  auto r = parseRegionWord("rg -12.OUTER:3:job", false);
  ASSERT_TRUE(r);
  EXPECT_EQ(r->numberA, 12);
  EXPECT_EQ(r->codeA, -2);
  EXPECT_EQ(r->numberB, 3);
  EXPECT_TRUE(r->nameA.empty());

  auto one = parseRegionWord("rg 5:job", false);
  ASSERT_TRUE(one);
  EXPECT_EQ(one->numberB, 0);
  EXPECT_EQ(one->codeB, 0);
  EXPECT_EQ(one->database, "job");

  EXPECT_FALSE(parseRegionWord("rn A", true));
  EXPECT_FALSE(parseRegionWord("rn", true));
}

TEST(HistoryRegion, NumberThenNameAfterSpace) {
  int n = -1;
  std::string name;
  parseHistoryRegion("hr 12 /a b/job.odb", &n, &name);
  EXPECT_EQ(n, 12);
  EXPECT_EQ(name, "/a b/job.odb");
  parseHistoryRegion("hr 7", &n, &name);
  EXPECT_EQ(n, 7);
  EXPECT_EQ(name, "");
  parseHistoryRegion("hr x /d.odb", &n, &name);  // a bad number is 0: every step
  EXPECT_EQ(n, 0);
  EXPECT_EQ(name, "/d.odb");
}

TEST(LineFrom, ShortLinesGiveEmptyText) {
  EXPECT_STREQ(lineFrom("g", 2), "");
  EXPECT_STREQ(lineFrom("g x", 2), "x");
}

}  // namespace
}  // namespace odbs
