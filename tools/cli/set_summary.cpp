#include "tools/cli/set_summary.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "client/core_records.h"
#include "tools/common/json_values.h"
#include "tools/common/table_writer.h"
#include "wire/frame.h"

namespace odbs::cli {

void SetSummaryBuilder::close() {
  open_ = false;
}

void SetSummaryBuilder::add(const client::RecordView& rec) {
  bool header = false;
  switch (rec.type) {
    case kRecTitle:
      s_.title = client::decodeTitle(rec);
      break;
    case kRecNodeSetHeader:
    case kRecElementSetHeader:
    case kRecSurfaceHeader: {
      client::SetHeaderRecord h = client::decodeSetHeader(rec);
      s_.sets.push_back(SetEntry{h.kind, h.name, block_, false, 0, false});
      open_ = true;
      perInstance_ = false;
      header = true;
      break;
    }
    case kRecInstanceHeader: {
      std::string name = client::decodeInstanceHeader(rec);
      if (headerLast_) {
        s_.sets.back().instance = name;
        s_.sets.back().assembly = true;
        perInstance_ = true;
      } else {
        block_ = name;
      }
      break;
    }
    case kRecNodeLabels:
    case kRecElementLabels:
      if (open_) s_.sets.back().members += client::decodeLabelBlock(rec).size();
      break;
    case kRecFaceLabels:
      if (open_) s_.sets.back().members += client::decodeFaceBlock(rec).size();
      break;
    case kRecSetEnd:
      client::decodeSetEnd(rec);
      close();
      break;
    case kRecBlockEnd:
      client::decodeBlockEnd(rec);
      if (perInstance_) {
        perInstance_ = false;
      } else {
        block_.clear();
      }
      break;
    case kRecMessage: {
      std::string text = client::decodeMessage(rec).text;
      if (open_) {
        s_.sets.back().error = true;
        close();
      } else {
        s_.messages.push_back(text);
      }
      break;
    }
    default:
      break;
  }
  headerLast_ = header;
}

SetSummary SetSummaryBuilder::finish() {
  return std::move(s_);
}

void printSetSummary(const SetSummary& s, OutputFormat format, std::ostream& out) {
  if (format == OutputFormat::kJson) {
    tools::Json sets = tools::Json::array();
    for (const SetEntry& e : s.sets) {
      sets.push_back({{"kind", client::setKindName(e.kind)},
                      {"name", e.name},
                      {"instance", e.instance},
                      {"assembly", e.assembly},
                      {"members", e.members},
                      {"error", e.error}});
    }
    tools::printJson({{"title", s.title}, {"messages", s.messages}, {"sets", std::move(sets)}},
                     out);
    return;
  }
  if (format == OutputFormat::kCsv) {
    tools::TableWriter t(out, tools::TableFormat::kCsv,
                         {"kind", "name", "instance", "assembly", "members", "error"});
    for (const SetEntry& e : s.sets) {
      t.cell(client::setKindName(e.kind)).cell(e.name).cell(e.instance);
      t.cell(int64_t{e.assembly}).cell(int64_t(e.members)).cell(int64_t{e.error}).endRow();
    }
    return;
  }
  size_t counts[3] = {0, 0, 0};
  size_t width = 4;
  for (const SetEntry& e : s.sets) {
    ++counts[static_cast<int>(e.kind)];
    width = std::max(width, e.name.size());
  }
  out << "title  " << s.title << "\n";
  for (const auto& m : s.messages) out << "message  " << m << "\n";
  out << counts[0] << " node sets, " << counts[1] << " element sets, " << counts[2]
      << " surfaces\n";
  for (const SetEntry& e : s.sets) {
    out << "  " << std::left << std::setw(12) << client::setKindName(e.kind)
        << std::setw(int(width)) << e.name << "  " << std::right << std::setw(8) << e.members
        << " members";
    if (!e.instance.empty()) out << "  in " << e.instance;
    if (e.assembly) out << " (assembly set)";
    if (e.error) out << "  ERROR: Error in Sets definition";
    out << "\n";
  }
}

}  // namespace odbs::cli
