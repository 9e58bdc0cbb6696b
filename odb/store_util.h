// Helpers shared by the store and load functions of every table: the damaged-file error,
// checked sums of member counts and the ragged lists of section points (a count per
// entry, then the numbers and descriptions of all entries one after the other).
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "odb/h5.h"
#include "odb/model_data.h"
#include "odb/names.h"

namespace odb {

// Throws std::runtime_error naming the damaged object g.
[[noreturn]] void damaged(const h5::Group& g, const std::string& what);

// The sum of counts read from g; throws when one is negative or impossibly large.
int64_t sumCounts(const h5::Group& g, const std::vector<int64_t>& counts);
int64_t sumCounts(const h5::Group& g, const std::vector<int32_t>& counts);

// Tables kept one dataset per member (a column). storeColumn writes member of every row as
// the dataset name of g (a string dataset for a std::string member); loadColumn reads that
// dataset, which must hold rows.size() values, into member of every row.
template <typename Row, typename T>
void storeColumn(const h5::Group& g, const std::string& name, const std::vector<Row>& rows,
                 T Row::*member) {
  std::vector<T> column;
  column.reserve(rows.size());
  for (const Row& r : rows) column.push_back(r.*member);
  if constexpr (std::is_same_v<T, std::string>)
    g.writeStrings(name, column);
  else
    g.write(name, column);
}

template <typename Row, typename T>
void loadColumn(const h5::Group& g, const std::string& name, std::vector<Row>& rows,
                T Row::*member) {
  const auto n = static_cast<int64_t>(rows.size());
  std::vector<T> column;
  if constexpr (std::is_same_v<T, std::string>)
    column = g.readStrings(name, n);
  else
    column = g.read<T>(name, n);
  for (size_t i = 0; i < rows.size(); ++i) rows[i].*member = std::move(column[i]);
}

// A whole table: the numeric column firstName (member first) gives the row count, and
// columns(column) calls column(name, member) for every other column, in the order they are
// stored. Store and load share that list, so they cannot drift apart.
template <typename Row, typename T, typename Columns>
void storeTable(const h5::Group& g, const std::vector<Row>& rows, const std::string& firstName,
                T Row::*first, Columns columns) {
  storeColumn(g, firstName, rows, first);
  columns([&](const char* name, auto member) { storeColumn(g, name, rows, member); });
}

template <typename Row, typename T, typename Columns>
std::vector<Row> loadTable(const h5::Group& g, const std::string& firstName, T Row::*first,
                           Columns columns) {
  std::vector<T> head = g.read<T>(firstName);
  std::vector<Row> rows(head.size());
  for (size_t i = 0; i < rows.size(); ++i) rows[i].*first = head[i];
  columns([&](const char* name, auto member) { loadColumn(g, name, rows, member); });
  return rows;
}

// Stores the section point list of each item (points(item) gives it) as the datasets
// <prefix>_counts, <prefix>_numbers and <prefix>_descriptions of g.
template <typename T, typename Points>
void storeSectionPointLists(const h5::Group& g, const std::string& prefix,
                            const std::vector<T>& items, Points points) {
  std::vector<int32_t> counts, numbers;
  std::vector<std::string> descriptions;
  for (const T& item : items) {
    const std::vector<SectionPointData>& list = points(item);
    counts.push_back(static_cast<int32_t>(list.size()));
    for (const SectionPointData& p : list) {
      numbers.push_back(p.number);
      descriptions.push_back(p.description);
    }
  }
  g.write(prefix + name::kCountsSuffix, counts);
  g.write(prefix + name::kNumbersSuffix, numbers);
  g.writeStrings(prefix + name::kDescriptionsSuffix, descriptions);
}

// Loads what storeSectionPointLists stored for n items.
std::vector<std::vector<SectionPointData>> loadSectionPointLists(const h5::Group& g,
                                                                 const std::string& prefix,
                                                                 int64_t n);

}  // namespace odb
