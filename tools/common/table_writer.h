// Tables of values for programs: CSV (RFC 4180, a header line of column names) or JSON (an
// array with one object per row, keys in column order), written row by row so that a table
// of millions of rows never sits in memory. Numbers are written with every digit that
// matters (number_text.h); a value that is not finite is "nan"/"inf"/"-inf" in CSV and
// null in JSON; an empty cell is an empty CSV field and null in JSON.
//
//   TableWriter t(std::cout, TableFormat::kCsv, {"node", "U1", "U2"});
//   t.cell(int64_t{7}).cell(0.5f).cell(1.25f).endRow();
//   t.finish();
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace odbs::tools {

enum class TableFormat { kCsv, kJson };

// Parses "csv" or "json"; returns false for anything else.
bool parseTableFormat(std::string_view text, TableFormat* format);

class TableWriter {
 public:
  // columns: the column names, in order. Nothing is written before the first row (CSV
  // writes its header then) or finish().
  TableWriter(std::ostream& out, TableFormat format, std::vector<std::string> columns);
  ~TableWriter();
  TableWriter(const TableWriter&) = delete;
  TableWriter& operator=(const TableWriter&) = delete;

  // The next cell of the current row. Throws std::logic_error past the last column.
  TableWriter& cell(int64_t v);
  TableWriter& cell(int v) { return cell(int64_t{v}); }
  TableWriter& cell(float v);
  TableWriter& cell(double v);
  TableWriter& cell(std::string_view text);
  TableWriter& cell(const char* text) { return cell(std::string_view(text)); }
  TableWriter& cell(const std::string& text) { return cell(std::string_view(text)); }
  TableWriter& empty();
  // Ends the row; cells not given are empty.
  TableWriter& endRow();
  // Ends the table (the closing bracket of JSON); called by the destructor if not before.
  void finish();

  const std::vector<std::string>& columns() const { return columns_; }

 private:
  struct Row;
  void begin();
  template <typename T>
  TableWriter& number(T v);  // a float or double cell
  Row& row();

  std::ostream& out_;
  TableFormat format_;
  std::vector<std::string> columns_;
  std::unique_ptr<Row> row_;
  bool begun_ = false;
  bool finished_ = false;
  uint64_t rows_ = 0;
};

// A CSV field: quoted (with doubled quotes) when it holds a comma, quote or line break.
std::string csvField(std::string_view text);

}  // namespace odbs::tools
