// The section assignments of an is reply, one entry per assignment record with the region
// that follows it, built record by record; printed as text, CSV or JSON.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "client/model_records.h"
#include "tools/cli/cli_options.h"

namespace odbs::cli {

struct AssignmentEntry {
  std::string instance;  // the block it came in; "" outside any block (root assembly, or a
                         // single-instance model)
  client::SectionAssignmentRecord record;
  client::SetKind regionKind = client::SetKind::kElement;
  std::string region;              // the region's set name
  std::vector<std::string> spans;  // instances of the region's per-instance forms
  uint64_t members = 0;            // over all its forms
};

class AssignmentSummaryBuilder {
 public:
  // Feeds one record of the reply, in order; throws DecodeError for a bad body.
  void add(const client::RecordView& rec);
  std::vector<AssignmentEntry> finish() { return std::move(entries_); }

 private:
  std::vector<AssignmentEntry> entries_;
  std::string block_;
  bool headerLast_ = false;  // the previous record was a set header
  bool perInstance_ = false;
};

void printAssignments(const std::vector<AssignmentEntry>& entries, OutputFormat format,
                      std::ostream& out);

}  // namespace odbs::cli
