#include "tools/cli/model_command.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tools/cli/assignment_summary.h"
#include "tools/cli/cli_app.h"
#include "tools/cli/database_command.h"
#include "tools/cli/model_filter_option.h"
#include "tools/cli/model_summary.h"
#include "tools/cli/open_failure.h"
#include "tools/cli/set_summary.h"

namespace odbs::cli {

int runModel(const CliOptions& options, const std::string& serverPath, const ModelRequest& req,
             std::ostream& out, std::ostream& err) {
  std::vector<std::string> lines;
  for (const std::string& filter : req.filters) {
    std::string error, line = criterionLine(filter, &error);
    if (line.empty()) {
      err << "odb_cli: " << error << "\n";
      return 2;
    }
    lines.push_back(line);
  }
  if (req.filters.empty()) {
    lines.push_back((req.nodesOnly ? "G " : "g ") + req.database);
  } else {
    lines.push_back("irf " + req.database);
  }
  if (req.records) return printRecords(options, serverPath, lines, out);
  ModelSummaryBuilder builder;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { builder.add(rec); }, err);
  if (code == 0) printModelSummary(builder.finish(), options.format, out);
  return code;
}

int runSets(const CliOptions& options, const std::string& serverPath, const SetsRequest& req,
            std::ostream& out, std::ostream& err) {
  std::vector<std::string> lines;
  if (!req.named.empty()) {
    for (const auto& name : req.named) lines.push_back("irc 7 0 " + name);
    lines.push_back("irs 0 " + req.database);
  } else {
    lines.push_back(std::string(req.surfaces ? "s" : "S") + " 0 " + (req.coupling ? "1 " : "0 ") +
                    req.database);
  }
  if (req.records) return printRecords(options, serverPath, lines, out);
  SetSummaryBuilder builder;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { builder.add(rec); }, err);
  if (code == 0) printSetSummary(builder.finish(), options.format, out);
  return code;
}

int runSections(const CliOptions& options, const std::string& serverPath,
                const SectionsRequest& req, std::ostream& out, std::ostream& err) {
  std::vector<std::string> lines = {"is 0 " + req.database};  // the name from position 5
  if (req.records) return printRecords(options, serverPath, lines, out);
  AssignmentSummaryBuilder builder;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { builder.add(rec); }, err);
  if (code == 0) printAssignments(builder.finish(), options.format, out);
  return code;
}

void addModelCommands(CLI::App& app, CliContext& ctx) {
  auto model = std::make_shared<ModelRequest>();
  CLI::App* m = app.add_subcommand(
      "model", "The model: sections, materials, nodes and elements per instance");
  m->add_option("database", model->database, "The database")->required();
  m->add_flag("--records", model->records, "Print the reply records as they came");
  m->add_flag("--nodes-only", model->nodesOnly, "Nodes without elements (command G)");
  m->add_option("--filter", model->filters,
                "Only what these criteria select (command irf): instance=, nset=, section=, "
                "material=, type=, elements=, elset=, nodes=; one kind narrows another")
      ->excludes("--nodes-only");
  m->callback([&ctx, model] {
    ctx.exitCode = runModel(ctx.options, ctx.serverPath(), *model, *ctx.out, *ctx.err);
  });

  auto sets = std::make_shared<SetsRequest>();
  CLI::App* s =
      app.add_subcommand("sets", "Node sets, element sets and surfaces with their member counts");
  s->add_option("database", sets->database, "The database")->required();
  s->add_flag("--records", sets->records, "Print the reply records as they came");
  s->add_flag("--surfaces", sets->surfaces, "Surfaces instead of node and element sets");
  s->add_flag("--coupling", sets->coupling, "Include the coupling sets");
  s->add_option("--named", sets->named, "Only the sets of these names")->expected(1, -1);
  s->callback([&ctx, sets] {
    ctx.exitCode = runSets(ctx.options, ctx.serverPath(), *sets, *ctx.out, *ctx.err);
  });

  auto sections = std::make_shared<SectionsRequest>();
  CLI::App* a = app.add_subcommand(
      "sections", "Section assignments: which region carries which section (command is)");
  a->add_option("database", sections->database, "The database")->required();
  a->add_flag("--records", sections->records, "Print the reply records as they came");
  a->callback([&ctx, sections] {
    ctx.exitCode = runSections(ctx.options, ctx.serverPath(), *sections, *ctx.out, *ctx.err);
  });
}

}  // namespace odbs::cli
