#include "tools/cli/steps_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "client/catalogue_records.h"
#include "client/model_records.h"
#include "tools/cli/cli_app.h"
#include "tools/cli/database_command.h"
#include "tools/cli/open_failure.h"
#include "tools/common/json_values.h"
#include "tools/common/number_text.h"
#include "tools/common/table_writer.h"
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
        // The record carries the stored code minus 1; shown as stored, as `model` does.
        analysisCode = client::decodeAnalysisCode(rec) + 1;
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
                tools::formatNumber(static_cast<float>(f.frameValue)).c_str());
  out << line;
  if (f.mode != 0) {
    out << "  mode " << f.mode << "  frequency "
        << tools::formatNumber(static_cast<float>(f.frequency));
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
        << s.domain << "  total time " << tools::formatNumber(static_cast<float>(s.step.totalTime))
        << "  " << s.frames.size() << " frames";
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
  using tools::Json;
  using tools::jsonNumber;
  Json steps = Json::array();
  for (const auto& s : c.steps) {
    Json frames = Json::array();
    for (const auto& f : s.frames) {
      frames.push_back({{"index", f.frameIndex},
                        {"domain", f.domain},
                        {"mode", f.mode},
                        {"value", jsonNumber(f.frameValue)},
                        {"frequency", jsonNumber(f.frequency)},
                        {"description", f.description}});
    }
    steps.push_back({{"number", s.step.number},
                     {"name", s.step.name},
                     {"description", s.step.description},
                     {"procedure", s.procedure},
                     {"domain", s.domain},
                     {"totalTime", jsonNumber(s.step.totalTime)},
                     {"frames", std::move(frames)}});
  }
  tools::printJson(
      {{"title", c.title}, {"analysisCode", c.analysisCode}, {"steps", std::move(steps)}}, out);
}

// One row per frame, with its step.
void printCsv(const Catalogue& c, std::ostream& out) {
  tools::TableWriter t(out, tools::TableFormat::kCsv,
                       {"step", "step_name", "procedure", "step_domain", "total_time", "frame",
                        "frame_domain", "mode", "value", "frequency", "description"});
  for (const auto& s : c.steps) {
    for (const auto& f : s.frames) {
      t.cell(s.step.number).cell(s.step.name).cell(s.procedure).cell(s.domain);
      t.cell(s.step.totalTime).cell(f.frameIndex).cell(f.domain).cell(f.mode);
      t.cell(f.frameValue).cell(f.frequency).cell(f.description).endRow();
    }
  }
}

}  // namespace

// steps --counts: the records 16 of fs (steps with field output) and fv (steps with history
// output), merged into one row per step that either lists.
int runStepCounts(const CliOptions& options, const std::string& serverPath, const StepsRequest& req,
                  std::ostream& out, std::ostream& err) {
  std::vector<std::string> lines = {"fs " + req.database, "fv " + req.database};
  if (req.records) return printRecords(options, serverPath, lines, out);
  std::map<int32_t, client::StepCountsRecord> steps;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) {
        if (rec.type != kRecStepCounts) return;
        client::StepCountsRecord c = client::decodeStepCounts(rec);
        steps[c.stepNumber] = c;
      },
      err);
  if (code != 0) return code;
  std::vector<std::string> columns = {"step", "frames", "field_frames", "history_samples"};
  if (options.format == OutputFormat::kText) {
    char line[96];
    std::snprintf(line, sizeof line, "%6s %8s %13s %16s\n", "step", "frames", "field frames",
                  "history samples");
    out << line;
    for (const auto& [number, c] : steps) {
      std::snprintf(line, sizeof line, "%6d %8d %13d %16d\n", number, c.frames, c.fieldFrames,
                    c.historySamples);
      out << line;
    }
    return 0;
  }
  tools::TableWriter t(
      out,
      options.format == OutputFormat::kJson ? tools::TableFormat::kJson : tools::TableFormat::kCsv,
      columns);
  for (const auto& [number, c] : steps) {
    t.cell(number).cell(c.frames).cell(c.fieldFrames).cell(c.historySamples);
    t.endRow();
  }
  t.finish();
  return 0;
}

int runSteps(const CliOptions& options, const std::string& serverPath, const StepsRequest& req,
             std::ostream& out, std::ostream& err) {
  if (req.counts) return runStepCounts(options, serverPath, req, out, err);
  std::vector<std::string> lines;
  if (!req.cache.empty()) lines.push_back("T " + req.cache);
  lines.push_back("fd " + req.database);
  if (req.records) return printRecords(options, serverPath, lines, out);

  Catalogue catalogue;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { catalogue.add(rec); }, err);
  if (code != 0) return code;
  if (options.format == OutputFormat::kJson)
    printJson(catalogue, out);
  else if (options.format == OutputFormat::kCsv)
    printCsv(catalogue, out);
  else
    printText(catalogue, req.allFrames, out);
  return 0;
}

void addStepsCommand(CLI::App& app, CliContext& ctx) {
  auto req = std::make_shared<StepsRequest>();
  CLI::App* sub = app.add_subcommand("steps", "Steps and frames of a database");
  sub->add_option("database", req->database, "The database")->required();
  sub->add_flag("--records", req->records, "Print the reply records as they came");
  sub->add_flag("--all-frames", req->allFrames, "List every frame of a long step");
  sub->add_flag("--counts", req->counts,
                "Per step: frames, frames with field output and history samples (fs, fv)");
  sub->add_option("--cache", req->cache, "Keep the step and frame catalogue in FILE")
      ->option_text("FILE");
  sub->callback([&ctx, req] {
    ctx.exitCode = runSteps(ctx.options, ctx.serverPath(), *req, *ctx.out, *ctx.err);
  });
}

}  // namespace odbs::cli
