#include "tools/cli/assignment_summary.h"

#include <ostream>

#include "tools/common/table_writer.h"
#include "wire/record_types.h"

namespace odbs::cli {

void AssignmentSummaryBuilder::add(const client::RecordView& rec) {
  bool header = false;
  switch (rec.type) {
    case kRecSectionAssignment:
      entries_.push_back({block_, client::decodeSectionAssignment(rec), {}, {}, {}, 0});
      break;
    case kRecNodeSetHeader:
    case kRecElementSetHeader:
    case kRecSurfaceHeader: {
      client::SetHeaderRecord h = client::decodeSetHeader(rec);
      if (!entries_.empty() && entries_.back().region.empty()) {
        entries_.back().region = h.name;
        entries_.back().regionKind = h.kind;
      }
      header = true;
      break;
    }
    case kRecInstanceHeader: {
      std::string name = client::decodeInstanceHeader(rec);
      if (headerLast_) {
        if (!entries_.empty()) entries_.back().spans.push_back(name);
        perInstance_ = true;
      } else {
        block_ = name;
      }
      break;
    }
    case kRecNodeLabels:
    case kRecElementLabels:
      if (!entries_.empty()) entries_.back().members += client::decodeLabelBlock(rec).size();
      break;
    case kRecFaceLabels:
      if (!entries_.empty()) entries_.back().members += client::decodeFaceBlock(rec).size();
      break;
    case kRecBlockEnd:
      if (perInstance_) {
        perInstance_ = false;
      } else {
        block_.clear();
      }
      break;
    default:
      break;
  }
  headerLast_ = header;
}

void printAssignments(const std::vector<AssignmentEntry>& entries, OutputFormat format,
                      std::ostream& out) {
  if (format == OutputFormat::kText) {
    out << entries.size() << " section assignments\n";
    for (const AssignmentEntry& e : entries) {
      out << "  section " << e.record.number << " " << e.record.name << " on "
          << client::setKindName(e.regionKind) << " " << e.region << " (" << e.members
          << " members)";
      if (!e.instance.empty()) out << " in " << e.instance;
      for (const std::string& s : e.spans)
        out << (&s == &e.spans.front() ? " spanning " : ", ") << s;
      if (e.record.hasOffset) out << "  offset " << e.record.offset1 << " " << e.record.offset2;
      if (e.record.hasThickness) out << "  thickness " << e.record.thickness;
      out << "\n";
    }
    return;
  }
  tools::TableWriter t(
      out, format == OutputFormat::kJson ? tools::TableFormat::kJson : tools::TableFormat::kCsv,
      {"instance", "number", "section", "regionKind", "region", "members", "offset1", "offset2",
       "thickness"});
  for (const AssignmentEntry& e : entries) {
    t.cell(e.instance).cell(int64_t{e.record.number}).cell(e.record.name);
    t.cell(client::setKindName(e.regionKind)).cell(e.region).cell(int64_t(e.members));
    if (e.record.hasOffset) {
      t.cell(e.record.offset1).cell(e.record.offset2);
    } else {
      t.empty().empty();
    }
    if (e.record.hasThickness) {
      t.cell(e.record.thickness);
    } else {
      t.empty();
    }
    t.endRow();
  }
  t.finish();
}

}  // namespace odbs::cli
