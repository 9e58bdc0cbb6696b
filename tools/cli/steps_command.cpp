#include "tools/cli/steps_command.h"

#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "client/catalogue_records.h"
#include "client/model_records.h"
#include "tools/cli/database_command.h"
#include "tools/cli/json_text.h"
#include "wire/frame.h"

namespace odbs::cli {

namespace {

constexpr int kFramesShown = 4;  // frames shown at each end of a long step

struct StepSummary {
  client::StepRecord step;
  std::string procedure, domain;
  std::vector<client::FrameRecord> frames;
};

struct Catalogue {
  std::string title;
  int32_t analysisCode = 0;
  std::vector<StepSummary> steps;

  // Records 12 to 15 come once per frame; a new step number starts a new step.
  void add(const client::RecordView& rec) {
    switch (rec.type) {
      case kRecTitle:
        title = client::decodeTitle(rec);
        break;
      case kRecAnalysisCode:
        analysisCode = client::decodeAnalysisCode(rec);
        break;
      case kRecStep: {
        client::StepRecord s = client::decodeStep(rec);
        if (steps.empty() || steps.back().step.number != s.number) steps.push_back({s, "", "", {}});
        break;
      }
      case kRecProcedure:
        steps.back().procedure = client::decodeProcedure(rec);
        break;
      case kRecStepTexts:
        steps.back().domain = client::decodeStepTexts(rec).domain;
        break;
      case kRecFrame:
        steps.back().frames.push_back(client::decodeFrame(rec));
        break;
      default:
        break;
    }
  }
};

void printFrame(const client::FrameRecord& f, std::ostream& out) {
  char line[160];
  // Single precision is plenty to read by eye; JSON keeps every digit.
  std::snprintf(line, sizeof line, "    frame %4d  value %-12s", f.frameIndex,
                formatNumber(static_cast<float>(f.frameValue)).c_str());
  out << line;
  if (f.mode != 0) {
    out << "  mode " << f.mode << "  frequency " << formatNumber(static_cast<float>(f.frequency));
  }
  if (!f.description.empty()) out << "  " << f.description;
  out << "\n";
}

void printText(const Catalogue& c, bool allFrames, std::ostream& out) {
  size_t frames = 0;
  for (const auto& s : c.steps) frames += s.frames.size();
  out << "title: " << c.title << "\n";
  out << c.steps.size() << " steps, " << frames << " frames\n";
  for (const auto& s : c.steps) {
    out << "step " << s.step.number << "  " << s.step.name << "  " << s.procedure << "  "
        << s.domain << "  total time " << formatNumber(static_cast<float>(s.step.totalTime)) << "  "
        << s.frames.size() << " frames";
    if (!s.step.description.empty()) out << "  (" << s.step.description << ")";
    out << "\n";
    size_t n = s.frames.size();
    for (size_t i = 0; i < n; ++i) {
      bool shown = allFrames || n <= 2 * kFramesShown || i < kFramesShown || i >= n - kFramesShown;
      if (shown) printFrame(s.frames[i], out);
      if (!shown && i == kFramesShown) out << "    ... " << n - 2 * kFramesShown << " more\n";
    }
  }
}

void printJson(const Catalogue& c, std::ostream& out) {
  JsonWriter j(out);
  j.beginObject().key("title").value(c.title).key("analysisCode").value(int64_t{c.analysisCode});
  j.key("steps").beginArray();
  for (const auto& s : c.steps) {
    j.beginObject()
        .key("number")
        .value(int64_t{s.step.number})
        .key("name")
        .value(s.step.name)
        .key("description")
        .value(s.step.description)
        .key("procedure")
        .value(s.procedure)
        .key("domain")
        .value(s.domain)
        .key("totalTime")
        .value(s.step.totalTime);
    j.key("frames").beginArray();
    for (const auto& f : s.frames) {
      j.beginObject()
          .key("index")
          .value(int64_t{f.frameIndex})
          .key("domain")
          .value(int64_t{f.domain})
          .key("mode")
          .value(int64_t{f.mode})
          .key("value")
          .value(f.frameValue)
          .key("frequency")
          .value(f.frequency)
          .key("description")
          .value(f.description)
          .endObject();
    }
    j.endArray().endObject();
  }
  j.endArray().endObject();
  out << "\n";
}

}  // namespace

int runSteps(const CliOptions& options, const std::string& serverPath, std::ostream& out,
             std::ostream& err) {
  Request req;
  CliOptions rest = options;
  std::string cache;
  rest.args.clear();
  for (size_t i = 0; i < options.args.size(); ++i) {
    if (options.args[i] == "--cache" && i + 1 < options.args.size()) {
      cache = options.args[++i];
    } else {
      rest.args.push_back(options.args[i]);
    }
  }
  if (!parseRequest(rest, {"--records", "--all-frames"}, &req, err)) return 2;
  std::vector<std::string> lines;
  if (!cache.empty()) lines.push_back("T " + cache);
  lines.push_back("fd " + req.database);
  if (req.has("--records")) return printRecords(options, serverPath, lines, out);

  Catalogue catalogue;
  int code = exchange(
      options, serverPath, lines, [&](const client::RecordView& rec) { catalogue.add(rec); }, err);
  if (code != 0) return code;
  if (catalogue.steps.empty() && catalogue.title.empty()) {
    err << "odb_cli: " << req.database << " could not be opened\n";
    return 1;
  }
  if (options.format == OutputFormat::kJson)
    printJson(catalogue, out);
  else
    printText(catalogue, req.has("--all-frames"), out);
  return 0;
}

}  // namespace odbs::cli
