#include "tools/cli/cli_app.h"

#include <CLI/CLI.hpp>
#include <map>

#include "tools/cli/fields_command.h"
#include "tools/cli/history_command.h"
#include "tools/cli/model_command.h"
#include "tools/cli/raw_command.h"
#include "tools/cli/steps_command.h"
#include "tools/common/program.h"

namespace odbs::cli {

int runCli(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
           std::ostream& err) {
  CliContext ctx;
  ctx.argv0 = args.empty() ? "odb_cli" : args[0];
  ctx.in = &in;
  ctx.out = &out;
  ctx.err = &err;

  CLI::App app{
      "The command-line client of odb_server: starts a server, sends it command lines "
      "and prints the replies.",
      "odb_cli"};
  tools::setUpProgram(app);
  app.add_option("--server", ctx.options.serverPath,
                 "The odb_server program (default: odb_server beside odb_cli)")
      ->option_text("PATH");
  const std::map<std::string, OutputFormat> formats = {
      {"text", OutputFormat::kText}, {"json", OutputFormat::kJson}, {"csv", OutputFormat::kCsv}};
  app.add_option_function<std::string>(
         "--format", [&ctx, formats](const std::string& f) { ctx.options.format = formats.at(f); },
         "Output: text (default), json, or csv (tables: model, sets, steps, fields)")
      ->option_text("text|json|csv")
      ->check(CLI::IsMember({"text", "json", "csv"}));
  app.add_option("--timeout", ctx.options.timeoutMs,
                 "Time limit for one reply in milliseconds (default 30000)")
      ->option_text("MS")
      ->check(CLI::Range(1, 1 << 30));
  app.require_subcommand(1);
  // Subcommands inherit this: the shared options may follow a subcommand's arguments.
  app.fallthrough();

  addRawCommand(app, ctx);
  addModelCommands(app, ctx);
  addStepsCommand(app, ctx);
  addHistoryCommand(app, ctx);
  addFieldsCommand(app, ctx);

  int code = tools::parseCommandLine(app, args, out, err);
  return code >= 0 ? code : ctx.exitCode;
}

}  // namespace odbs::cli
