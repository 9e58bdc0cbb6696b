#include "context/odb_context.h"

#include <gtest/gtest.h>

#include <vector>

namespace odbs {
namespace {

struct CountTable {
  int builds = 0;
};

struct OrderTable {
  std::vector<int> steps;
};

void countSetUp(OdbContext& ctx) {
  ++ctx.tables.get<CountTable>().builds;
}
void firstSetUp(OdbContext& ctx) {
  ctx.tables.get<OrderTable>().steps.push_back(1);
}
void secondSetUp(OdbContext& ctx) {
  ctx.tables.get<OrderTable>().steps.push_back(2);
}

TEST(DatabaseTables, SlotsAreMadeOnFirstUseAndKeptApartByType) {
  DatabaseTables tables;
  EXPECT_EQ(tables.find<CountTable>(), nullptr);
  tables.get<CountTable>().builds = 5;
  ASSERT_NE(tables.find<CountTable>(), nullptr);
  EXPECT_EQ(tables.find<CountTable>()->builds, 5);
  EXPECT_EQ(tables.find<OrderTable>(), nullptr);
  EXPECT_EQ(&tables.get<CountTable>(), tables.find<CountTable>());
}

TEST(OpenSetUps, RunInRegistrationOrderAndOnceEach) {
  registerOpenSetUp(firstSetUp);
  registerOpenSetUp(secondSetUp);
  registerOpenSetUp(countSetUp);
  registerOpenSetUp(countSetUp);
  OdbContext ctx;
  runOpenSetUps(ctx);
  EXPECT_EQ(ctx.tables.get<OrderTable>().steps, (std::vector<int>{1, 2}));
  EXPECT_EQ(ctx.tables.get<CountTable>().builds, 1);
  // A fresh context (a re-opened database) starts without the old tables.
  OdbContext reopened;
  EXPECT_EQ(reopened.tables.find<OrderTable>(), nullptr);
}

}  // namespace
}  // namespace odbs
