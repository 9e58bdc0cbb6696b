// Label tables of the import: dense labels in the table, others beside it, one answer.
#include "tools/ccx/label_index.h"

#include <gtest/gtest.h>

namespace odbs::ccx {
namespace {

TEST(LabelTables, DenseSparseAndNegativeLabelsOfOneSet) {
  LabelBits bits;
  // Far beyond what an empty set keeps in its bitmap: goes beside it.
  EXPECT_TRUE(bits.insert(100000));
  EXPECT_TRUE(bits.insert(-5));
  EXPECT_TRUE(bits.insert(2147483647));
  for (int32_t l = 1; l <= 2000; ++l) EXPECT_TRUE(bits.insert(l));
  // The bitmap now reaches 100000, which it holds beside: still a duplicate.
  EXPECT_FALSE(bits.insert(100000));
  EXPECT_FALSE(bits.insert(-5));
  EXPECT_FALSE(bits.insert(1000));
  EXPECT_EQ(bits.size(), 2003u);
  for (int32_t l : {1, 2000, 100000, -5, 2147483647}) EXPECT_TRUE(bits.contains(l)) << l;
  for (int32_t l : {0, 2001, 99999, -4, -2147483647 - 1, 2147483646}) {
    EXPECT_FALSE(bits.contains(l)) << l;
  }
}

TEST(LabelTables, IndexOfDenseAndSparseLabels) {
  LabelIndex index;
  index.reserve(3);
  EXPECT_TRUE(index.emplace(7, 0));
  EXPECT_TRUE(index.emplace(1000000000, 1));
  EXPECT_TRUE(index.emplace(-3, 2));
  EXPECT_FALSE(index.emplace(7, 9));  // the first mapping stays
  EXPECT_EQ(index.find(7), 0u);
  EXPECT_EQ(index.find(1000000000), 1u);
  EXPECT_EQ(index.find(-3), 2u);
  EXPECT_EQ(index.find(8), LabelIndex::kNone);
  EXPECT_EQ(index.find(-2147483647 - 1), LabelIndex::kNone);
  EXPECT_EQ(index.size(), 3u);
}

}  // namespace
}  // namespace odbs::ccx
