// Prints replies record by record, as text for people or as one JSON document for programs.
// Each record is shown with its type byte, its count and its body: decoded into named fields
// when the record catalog knows the type for the command that was answered, else as hex.
//
// Call order: beginReply, record for each record, endReply; repeated per command line;
// finish once at the end. Output goes to the stream given at construction.
#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "client/record.h"
#include "client/record_catalog.h"
#include "client/reply_reader.h"
#include "tools/cli/cli_options.h"

namespace odbs::cli {

class RecordPrinter {
 public:
  virtual ~RecordPrinter() = default;
  virtual void beginReply(std::string_view line, client::ReplyShape shape) = 0;
  virtual void record(const client::RecordView& rec) = 0;
  // exitStatus is set when the command ended the server.
  virtual void endReply(std::optional<int> exitStatus) = 0;
  // An error that stopped the session (time-out, stream end), after the last record.
  virtual void error(std::string_view message) = 0;
  virtual void finish() = 0;
};

// A printer of the given format writing to out, describing records with catalog.
std::unique_ptr<RecordPrinter> makePrinter(OutputFormat format, std::ostream& out,
                                           const client::RecordCatalog& catalog);

// JSON string literal of text, quotes included; bytes outside printable ASCII are escaped
// as \u00XX so that any body text gives valid JSON.
std::string jsonString(std::string_view text);

}  // namespace odbs::cli
