// What a person wants to know of a set reply (S, s or irs): every set with its kind, the
// instance its members lie in and their count, built record by record.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "client/model_records.h"
#include "tools/cli/cli_options.h"

namespace odbs::cli {

struct SetEntry {
  client::SetKind kind = client::SetKind::kNode;
  std::string name;
  std::string instance;   // "" when the reply does not say (single-instance model)
  bool assembly = false;  // an assembly-level set, sent with its members in `instance`
  uint64_t members = 0;
  bool error = false;  // the server reported "Error in Sets definition" for it
};

struct SetSummary {
  std::string title;
  std::vector<SetEntry> sets;
  std::vector<std::string> messages;  // '|' records outside a set
};

// Feeds the records of one set reply, in order; throws DecodeError for a bad body.
class SetSummaryBuilder {
 public:
  void add(const client::RecordView& rec);
  SetSummary finish();

 private:
  void close();
  SetSummary s_;
  bool open_ = false;         // a set header without its end yet
  bool headerLast_ = false;   // the previous record was a set header
  bool perInstance_ = false;  // the open set, or the one just ended, named its instance
  std::string block_;         // the instance whose own sets follow (multi-instance model)
};

void printSetSummary(const SetSummary& s, OutputFormat format, std::ostream& out);

}  // namespace odbs::cli
