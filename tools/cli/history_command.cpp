#include "tools/cli/history_command.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <ostream>

#include "tools/cli/database_command.h"
#include "tools/cli/json_text.h"
#include "tools/cli/svg_plot.h"

namespace odbs::cli {

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
  JsonWriter j(out);
  j.beginObject().key("steps").beginArray();
  for (const auto& step : c.steps()) {
    j.beginObject()
        .key("number")
        .value(int64_t{step.number})
        .key("name")
        .value(step.name)
        .key("description")
        .value(step.description)
        .key("domain")
        .value(domainName(step.domain))
        .key("totalTime")
        .value(step.totalTime)
        .key("regions")
        .beginArray();
    for (const auto& [st, region] : c.regions()) {
      if (st.number != step.number) continue;
      j.beginObject()
          .key("name")
          .value(region.name)
          .key("set")
          .value(region.setName)
          .key("position")
          .value(std::string(client::historyPositionName(region.positionCode)))
          .key("values")
          .beginArray();
      for (int32_t v : region.values) j.value(int64_t{v});
      j.endArray().key("outputs").beginArray();
      for (const auto& s : c.series()) {
        if (s.step.number != step.number || s.region.name != region.name) continue;
        j.beginObject()
            .key("name")
            .value(s.output.name)
            .key("description")
            .value(s.output.description)
            .key("type")
            .value(int64_t{s.output.type})
            .key("conjugate")
            .value(s.output.conjugate)
            .endObject();
      }
      j.endArray().endObject();
    }
    j.endArray().endObject();
  }
  j.endArray().endObject();
  out << "\n";
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

int runHistory(const CliOptions& options, const std::string& serverPath, std::ostream& out,
               std::ostream& err) {
  CliOptions rest = options;
  rest.args.clear();
  int step = 0;
  std::string plotPath;
  std::vector<std::string> outputs;
  for (size_t i = 0; i < options.args.size(); ++i) {
    const std::string& a = options.args[i];
    bool hasValue = i + 1 < options.args.size();
    if (a == "--step" && hasValue) {
      step = std::atoi(options.args[++i].c_str());
    } else if (a == "--plot" && hasValue) {
      plotPath = options.args[++i];
    } else if (a == "--output" && hasValue) {
      outputs.push_back(options.args[++i]);
    } else {
      rest.args.push_back(a);
    }
  }
  Request req;
  if (!parseRequest(rest, {"--records", "--named"}, &req, err)) return 2;
  if (req.names.empty() && !plotPath.empty()) {
    err << "odb_cli: --plot needs the regions to draw (--named REGION...)\n";
    return 2;
  }
  std::vector<std::string> lines = req.names.empty()
                                       ? std::vector<std::string>{"hi " + req.database}
                                       : historyLines(req.database, req.names, step);
  if (req.has("--records")) return printRecords(options, serverPath, lines, out);

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

}  // namespace odbs::cli
