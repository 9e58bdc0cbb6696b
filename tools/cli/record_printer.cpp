#include "tools/cli/record_printer.h"

#include <cmath>
#include <cstdio>
#include <ostream>
#include <sstream>

#include "client/client_error.h"

namespace odbs::cli {

using client::DescribedRecord;
using client::FieldData;
using client::RecordView;

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c >= 0x20 && c < 0x7F) {
      out += static_cast<char>(c);
    } else {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\u%04x", c);
      out += buf;
    }
  }
  return out + "\"";
}

namespace {

// Non-finite values print as quoted strings so that the JSON output stays valid.
std::string formatReal(double v) {
  if (!std::isfinite(v)) return jsonString(std::isnan(v) ? "nan" : v > 0 ? "inf" : "-inf");
  std::ostringstream s;
  s.precision(9);
  s << v;
  return s.str();
}

// A field's value; texts quoted as JSON strings in both formats so that spaces and
// control characters stay visible.
std::string formatValue(const FieldData& v) {
  struct Visitor {
    std::string operator()(int64_t i) const { return std::to_string(i); }
    std::string operator()(double d) const { return formatReal(d); }
    std::string operator()(const std::string& s) const { return jsonString(s); }
    std::string operator()(const std::vector<int64_t>& a) const {
      std::string out = "[";
      for (size_t i = 0; i < a.size(); ++i) out += (i ? ", " : "") + std::to_string(a[i]);
      return out + "]";
    }
    std::string operator()(const std::vector<double>& a) const {
      std::string out = "[";
      for (size_t i = 0; i < a.size(); ++i) out += (i ? ", " : "") + formatReal(a[i]);
      return out + "]";
    }
  };
  return std::visit(Visitor{}, v);
}

// The record described by the catalog, or nothing with the reason when it is unknown or
// its body does not decode.
std::optional<DescribedRecord> describe(const client::RecordCatalog& catalog,
                                        const std::string& line, const RecordView& rec,
                                        std::string* problem) {
  const client::Describer* d = catalog.find(line, rec.type);
  if (d == nullptr) return std::nullopt;
  try {
    return (*d)(rec);
  } catch (const client::DecodeError& e) {
    *problem = e.what();
    return std::nullopt;
  }
}

const char* replyKindName(client::ReplyKind kind) {
  switch (kind) {
    case client::ReplyKind::kNone:
      return "none";
    case client::ReplyKind::kUntilEnd:
      return "records";
    case client::ReplyKind::kUpgradeCheck:
      return "upgrade-check";
    case client::ReplyKind::kExit:
      return "exit";
    case client::ReplyKind::kRawThenEnd:
      return "raw-then-records";
  }
  return "records";
}

class TextPrinter : public RecordPrinter {
 public:
  TextPrinter(std::ostream& out, const client::RecordCatalog& catalog)
      : out_(out), catalog_(catalog) {}

  void beginReply(std::string_view line, client::ReplyShape shape) override {
    line_ = std::string(line);
    out_ << "> " << line_;
    if (shape.kind == client::ReplyKind::kNone) out_ << "    (no reply)";
    out_ << '\n';
    if (shape.rawBytes != 0) out_ << "  unframed  " << shape.rawBytes << " bytes\n";
  }

  void record(const RecordView& rec) override {
    out_ << "  " << client::typeName(rec.type) << "  count " << rec.count();
    std::string problem;
    if (auto d = describe(catalog_, line_, rec, &problem)) {
      out_ << "  " << d->kind;
      for (const auto& f : d->fields) out_ << "  " << f.name << '=' << formatValue(f.value);
    } else {
      if (!problem.empty()) out_ << "  (" << problem << ")";
      if (rec.size != 0) out_ << "  hex: " << client::hexBytes(rec.body, rec.size);
    }
    out_ << '\n';
  }

  void endReply(std::optional<int> exitStatus) override {
    if (exitStatus) out_ << "  server exited with status " << *exitStatus << '\n';
  }

  void error(std::string_view message) override { out_ << "  error: " << message << '\n'; }

  void finish() override { out_.flush(); }

 private:
  std::ostream& out_;
  const client::RecordCatalog& catalog_;
  std::string line_;
};

// [{"command": ..., "reply": ..., "rawBytes"?: n, "records": [{"type", "count", "kind", "fields"}
// or
// {"type", "count", "hex"}], "exitStatus"?: n}, ..., {"error": ...}?]
class JsonPrinter : public RecordPrinter {
 public:
  JsonPrinter(std::ostream& out, const client::RecordCatalog& catalog)
      : out_(out), catalog_(catalog) {
    out_ << "[";
  }

  void beginReply(std::string_view line, client::ReplyShape shape) override {
    line_ = std::string(line);
    out_ << (firstReply_ ? "\n" : ",\n") << "  {\"command\": " << jsonString(line)
         << ", \"reply\": " << jsonString(replyKindName(shape.kind));
    if (shape.kind == client::ReplyKind::kRawThenEnd) out_ << ", \"rawBytes\": " << shape.rawBytes;
    out_ << ", \"records\": [";
    firstReply_ = false;
    firstRecord_ = true;
  }

  void record(const RecordView& rec) override {
    out_ << (firstRecord_ ? "\n" : ",\n") << "    {\"type\": " << int{rec.type}
         << ", \"count\": " << rec.count();
    firstRecord_ = false;
    std::string problem;
    if (auto d = describe(catalog_, line_, rec, &problem)) {
      out_ << ", \"kind\": " << jsonString(d->kind) << ", \"fields\": {";
      for (size_t i = 0; i < d->fields.size(); ++i) {
        out_ << (i ? ", " : "") << jsonString(d->fields[i].name) << ": "
             << formatValue(d->fields[i].value);
      }
      out_ << "}";
    } else {
      if (!problem.empty()) out_ << ", \"decodeError\": " << jsonString(problem);
      out_ << ", \"hex\": " << jsonString(client::hexBytes(rec.body, rec.size));
    }
    out_ << "}";
  }

  void endReply(std::optional<int> exitStatus) override {
    out_ << (firstRecord_ ? "]" : "\n  ]");
    if (exitStatus) out_ << ", \"exitStatus\": " << *exitStatus;
    out_ << "}";
  }

  void error(std::string_view message) override {
    out_ << (firstReply_ ? "\n" : ",\n") << "  {\"error\": " << jsonString(message) << "}";
    firstReply_ = false;
  }

  void finish() override {
    out_ << "\n]\n";
    out_.flush();
  }

 private:
  std::ostream& out_;
  const client::RecordCatalog& catalog_;
  std::string line_;
  bool firstReply_ = true;
  bool firstRecord_ = true;
};

}  // namespace

std::unique_ptr<RecordPrinter> makePrinter(OutputFormat format, std::ostream& out,
                                           const client::RecordCatalog& catalog) {
  if (format == OutputFormat::kJson) return std::make_unique<JsonPrinter>(out, catalog);
  return std::make_unique<TextPrinter>(out, catalog);
}

}  // namespace odbs::cli
