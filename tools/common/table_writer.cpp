#include "tools/common/table_writer.h"

#include <ostream>
#include <stdexcept>

#include "tools/common/json_values.h"
#include "tools/common/number_text.h"

namespace odbs::tools {

// The cells of the row being built: CSV texts, or the JSON object.
struct TableWriter::Row {
  std::vector<std::string> csv;
  Json json = Json::object();
  size_t next = 0;
};

bool parseTableFormat(std::string_view text, TableFormat* format) {
  if (text == "csv") {
    *format = TableFormat::kCsv;
  } else if (text == "json") {
    *format = TableFormat::kJson;
  } else {
    return false;
  }
  return true;
}

std::string csvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

TableWriter::TableWriter(std::ostream& out, TableFormat format, std::vector<std::string> columns)
    : out_(out), format_(format), columns_(std::move(columns)), row_(std::make_unique<Row>()) {}

TableWriter::~TableWriter() {
  try {
    finish();
  } catch (...) {
    // A destructor must not throw; the stream's state tells the caller about failures.
  }
}

void TableWriter::begin() {
  if (begun_) return;
  begun_ = true;
  if (format_ == TableFormat::kCsv) {
    for (size_t i = 0; i < columns_.size(); ++i) out_ << (i ? "," : "") << csvField(columns_[i]);
    out_ << "\n";
  } else {
    out_ << "[";
  }
}

TableWriter::Row& TableWriter::row() {
  if (row_->next >= columns_.size()) {
    throw std::logic_error("table row has more cells than the " + std::to_string(columns_.size()) +
                           " columns");
  }
  return *row_;
}

TableWriter& TableWriter::cell(int64_t v) {
  Row& r = row();
  if (format_ == TableFormat::kCsv)
    r.csv.push_back(std::to_string(v));
  else
    r.json[columns_[r.next]] = v;
  ++r.next;
  return *this;
}

template <typename T>
TableWriter& TableWriter::number(T v) {
  Row& r = row();
  if (format_ == TableFormat::kCsv)
    r.csv.push_back(formatNumber(v));
  else
    r.json[columns_[r.next]] = jsonNumber(v);
  ++r.next;
  return *this;
}

TableWriter& TableWriter::cell(float v) { return number(v); }

TableWriter& TableWriter::cell(double v) { return number(v); }

TableWriter& TableWriter::cell(std::string_view text) {
  Row& r = row();
  if (format_ == TableFormat::kCsv)
    r.csv.push_back(csvField(text));
  else
    r.json[columns_[r.next]] = std::string(text);
  ++r.next;
  return *this;
}

TableWriter& TableWriter::empty() {
  Row& r = row();
  if (format_ == TableFormat::kCsv)
    r.csv.emplace_back();
  else
    r.json[columns_[r.next]] = nullptr;
  ++r.next;
  return *this;
}

TableWriter& TableWriter::endRow() {
  while (row_->next < columns_.size()) empty();
  begin();
  if (format_ == TableFormat::kCsv) {
    for (size_t i = 0; i < row_->csv.size(); ++i) out_ << (i ? "," : "") << row_->csv[i];
    out_ << "\n";
  } else {
    // Texts from a database may hold bytes that are not UTF-8: replaced, never thrown on.
    out_ << (rows_ ? ",\n" : "\n") << jsonText(row_->json);
  }
  ++rows_;
  row_->csv.clear();
  row_->json = Json::object();
  row_->next = 0;
  return *this;
}

void TableWriter::finish() {
  if (finished_) return;
  finished_ = true;
  begin();
  if (format_ == TableFormat::kJson) out_ << (rows_ ? "\n]\n" : "]\n");
}

}  // namespace odbs::tools
