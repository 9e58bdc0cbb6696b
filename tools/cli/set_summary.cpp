#include "tools/cli/set_summary.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "client/core_records.h"
#include "tools/cli/json_text.h"
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
    JsonWriter j(out);
    j.beginObject();
    j.key("title").value(s.title);
    j.key("messages").strings(s.messages);
    j.key("sets").beginArray();
    for (const SetEntry& e : s.sets) {
      j.beginObject();
      j.key("kind").value(client::setKindName(e.kind));
      j.key("name").value(e.name);
      j.key("instance").value(e.instance);
      j.key("assembly").value(e.assembly);
      j.key("members").value(int64_t(e.members));
      j.key("error").value(e.error);
      j.endObject();
    }
    j.endArray();
    j.endObject();
    out << "\n";
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
