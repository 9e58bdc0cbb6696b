#include "tools/cli/history_command.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <ostream>

#include "tools/cli/database_command.h"
#include <CLI/CLI.hpp>
#include <memory>

#include "tools/cli/cli_app.h"
#include "tools/common/json_values.h"
#include "tools/common/number_text.h"
#include "tools/cli/svg_plot.h"

namespace odbs::cli {

using tools::formatNumber;

namespace {

const char* const kDomains[] = {"time", "frequency", "modal", "arc length"};

// Steps whose frame values continue the total time (time and arc length): their samples
// also get the total time, the step's start plus the frame value.
bool timeLike(const client::HistoryStepRecord& step) {
  return step.domain == 0 || step.domain == 3;
}

std::string domainName(uint32_t d) {
  return d < 4 ? kDomains[d] : "domain " + std::to_string(d);
}

// CSV field: quoted when it holds a separator, a quote or a line break.
std::string csvField(const std::string& s) {
  if (s.find_first_of(",\"\r\n") == std::string::npos) return s;
  std::string q = "\"";
  for (char c : s) q += c == '"' ? std::string("\"\"") : std::string(1, c);
  return q + "\"";
}

std::string pointText(const client::HistoryRegionRecord& g) {
  std::string s = client::historyPositionName(g.positionCode);
  switch (g.positionCode) {
    case 1:
      return s + " " + std::to_string(g.values[0]);
    case 2:
      return s + " " + std::to_string(g.values[0]) + " of element " + std::to_string(g.values[1]);
    case 3:
    case 5:
    case 6:
      return s + " element " + std::to_string(g.values[0]) + " point " +
             std::to_string(g.values[1]) + " section point " + std::to_string(g.values[2]);
    default:
      return s;
  }
}

void printCatalogueText(const client::HistoryCollector& c, std::ostream& out) {
  std::map<std::pair<uint32_t, std::string>, std::vector<const client::HistorySeries*>> outputs;
  for (const auto& s : c.series()) outputs[{s.step.number, s.region.name}].push_back(&s);
  out << c.steps().size() << " steps, " << c.regions().size() << " history regions\n";
  for (const auto& step : c.steps()) {
    out << "step " << step.number << "  " << step.name << "  " << domainName(step.domain)
        << "  total time " << formatNumber(step.totalTime) << "\n";
    for (const auto& [st, region] : c.regions()) {
      if (st.number != step.number) continue;
      out << "  " << region.name << "  (" << pointText(region);
      if (!region.setName.empty()) out << ", set " << region.setName;
      out << ")\n";
      for (const auto* s : outputs[{step.number, region.name}]) {
        out << "    " << s->output.name;
        if (!s->output.description.empty()) out << "  " << s->output.description;
        if (s->output.conjugate) out << "  (complex)";
        out << "\n";
      }
    }
  }
}

void printCatalogueJson(const client::HistoryCollector& c, std::ostream& out) {
  using tools::Json;
  Json steps = Json::array();
  for (const auto& step : c.steps()) {
    Json regions = Json::array();
    for (const auto& [st, region] : c.regions()) {
      if (st.number != step.number) continue;
      Json outputs = Json::array();
      for (const auto& s : c.series()) {
        if (s.step.number != step.number || s.region.name != region.name) continue;
        outputs.push_back({{"name", s.output.name},
                           {"description", s.output.description},
                           {"type", s.output.type},
                           {"conjugate", s.output.conjugate}});
      }
      regions.push_back({{"name", region.name},
                         {"set", region.setName},
                         {"position", std::string(client::historyPositionName(region.positionCode))},
                         {"values", region.values},
                         {"outputs", std::move(outputs)}});
    }
    steps.push_back({{"number", step.number},
                     {"name", step.name},
                     {"description", step.description},
                     {"domain", domainName(step.domain)},
                     {"totalTime", tools::jsonNumber(step.totalTime)},
                     {"regions", std::move(regions)}});
  }
  tools::printJson(Json{{"steps", std::move(steps)}}, out);
}

bool writePlot(const std::vector<client::HistorySeries>& series, const std::string& database,
               const std::string& path, std::ostream& err) {
  // Over total time the steps of one region and output continue each other: one line.
  std::vector<PlotSeries> plot;
  std::map<std::string, size_t> lineOf;
  for (const auto& s : series) {
    std::string label = s.region.name + "  " + s.output.name;
    if (!timeLike(s.step)) label = "step " + std::to_string(s.step.number) + "  " + label;
    auto [it, added] = lineOf.emplace(label, plot.size());
    if (added || !timeLike(s.step)) {
      it->second = plot.size();
      plot.push_back({label, {}, {}});
    }
    PlotSeries& p = plot[it->second];
    for (const auto& sample : s.samples) {
      p.x.push_back(timeLike(s.step) ? s.step.totalTime + sample.frameValue : sample.frameValue);
      p.y.push_back(sample.value);
    }
  }
  PlotOptions o;
  o.title = "history output of " + database;
  o.xLabel = "total time (frequency or mode for those steps)";
  o.yLabel = "value";
  std::ofstream file(path);
  file << renderSvgPlot(plot, o);
  file.close();
  if (!file) {
    err << "odb_cli: cannot write the plot to " << path << "\n";
    return false;
  }
  return true;
}

}  // namespace

std::vector<std::string> historyLines(const std::string& database,
                                      const std::vector<std::string>& regions, int step) {
  std::vector<std::string> lines;
  lines.push_back("ho " + std::to_string(regions.size()));
  for (const auto& r : regions) lines.push_back("hb " + r);
  lines.push_back("hr " + std::to_string(step) + " " + database);
  return lines;
}

void writeHistoryCsv(const std::vector<client::HistorySeries>& series, std::ostream& out) {
  out << "step,region,output,frame_value,total_time,value,conjugate\n";
  for (const auto& s : series) {
    std::string prefix = std::to_string(s.step.number) + "," + csvField(s.region.name) + "," +
                         csvField(s.output.name) + ",";
    for (const auto& sample : s.samples) {
      out << prefix << formatNumber(sample.frameValue) << ",";
      if (timeLike(s.step)) out << formatNumber(s.step.totalTime + sample.frameValue);
      out << "," << formatNumber(sample.value) << ",";
      if (s.output.conjugate) out << formatNumber(sample.conjugate);
      out << "\n";
    }
  }
}

int runHistory(const CliOptions& options, const std::string& serverPath,
               const HistoryRequest& req, std::ostream& out, std::ostream& err) {
  const std::string& plotPath = req.plot;
  const std::vector<std::string>& outputs = req.outputs;
  if (req.names.empty() && !plotPath.empty()) {
    err << "odb_cli: --plot needs the regions to draw (--named REGION...)\n";
    return 2;
  }
  std::vector<std::string> lines = req.names.empty()
                                       ? std::vector<std::string>{"hi " + req.database}
                                       : historyLines(req.database, req.names, req.step);
  if (req.records) return printRecords(options, serverPath, lines, out);

  client::HistoryCollector collector;
  int code = exchange(
      options, serverPath, lines, [&](const client::RecordView& rec) { collector.add(rec); }, err);
  if (code != 0) return code;
  if (req.names.empty()) {
    if (options.format == OutputFormat::kJson)
      printCatalogueJson(collector, out);
    else
      printCatalogueText(collector, out);
    return 0;
  }
  std::vector<client::HistorySeries> series;
  for (const auto& s : collector.series()) {
    bool wanted = outputs.empty();
    for (const auto& o : outputs) wanted = wanted || s.output.name == o;
    if (wanted) series.push_back(s);
  }
  writeHistoryCsv(series, out);
  if (!plotPath.empty() && !writePlot(series, req.database, plotPath, err)) return 1;
  return 0;
}

void addHistoryCommand(CLI::App& app, CliContext& ctx) {
  auto req = std::make_shared<HistoryRequest>();
  CLI::App* sub = app.add_subcommand("history", "History regions and outputs of a database");
  sub->add_option("database", req->database, "The database")->required();
  sub->add_flag("--records", req->records, "Print the reply records as they came");
  sub->add_option("--step", req->step, "Only the N-th step (default 0: every step)")
      ->option_text("N")
      ->check(CLI::NonNegativeNumber);
  sub->add_option("--output", req->outputs, "Only outputs of this name (repeatable)")
      ->option_text("NAME")
      ->allow_extra_args(false);
  sub->add_option("--plot", req->plot, "Draw the series into an SVG file")->option_text("FILE");
  sub->add_option("--named", req->names, "Time series of these regions, as CSV")
      ->option_text("REGION...");
  sub->callback([&ctx, req] {
    ctx.exitCode = runHistory(ctx.options, ctx.serverPath(), *req, *ctx.out, *ctx.err);
  });
}

}  // namespace odbs::cli
