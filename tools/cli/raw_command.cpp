#include "tools/cli/raw_command.h"

#include <CLI/CLI.hpp>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include "client/client_error.h"
#include "client/command_lines.h"
#include "client/server_process.h"
#include "tools/cli/cli_app.h"
#include "tools/cli/record_printer.h"

namespace odbs::cli {

namespace {

// Sends one text and prints the reply to each command line that the server makes of it
// (one, unless the text is overlong or holds newlines). Returns false once the server has
// exited.
bool exchange(client::ServerProcess& server, const std::string& text, RecordPrinter& printer) {
  server.send(text);
  for (const std::string& line : client::serverLines(text)) {
    client::ReplyShape shape = client::replyShapeOf(line);
    printer.beginReply(line, shape);
    try {
      server.readReplyEach(shape, [&](const client::RecordView& rec) { printer.record(rec); });
    } catch (...) {
      printer.endReply(std::nullopt);
      throw;
    }
    if (shape.kind == client::ReplyKind::kExit) {
      printer.endReply(server.waitExit(server.options().timeoutMs));
      return false;
    }
    printer.endReply(std::nullopt);
  }
  return true;
}

}  // namespace

int runRaw(const CliOptions& options, const std::string& serverPath,
           const std::vector<std::string>& lines, std::istream& in, std::ostream& out) {
  auto printer = makePrinter(options.format, out, client::standardCatalog());
  int code = 0;
  try {
    client::ServerProcess server({serverPath, 0, options.timeoutMs});
    bool running = true;
    if (!lines.empty()) {
      for (size_t i = 0; running && i < lines.size(); ++i) {
        running = exchange(server, lines[i], *printer);
      }
    } else {
      std::string line;
      while (running && std::getline(in, line)) running = exchange(server, line, *printer);
    }
    if (running) {
      server.closeCommands();
      if (!server.waitExit(options.timeoutMs)) {
        printer->error("the server did not exit at the end of its input");
        code = 1;
      }
    }
  } catch (const client::ClientError& e) {
    printer->error(e.what());
    code = 1;
  }
  printer->finish();
  return code;
}

void addRawCommand(CLI::App& app, CliContext& ctx) {
  auto lines = std::make_shared<std::vector<std::string>>();
  CLI::App* sub = app.add_subcommand(
      "raw",
      "Send command lines (the arguments, else one per line of standard input) and print "
      "every reply record");
  sub->add_option("line", *lines, "A command line for the server");
  sub->callback([&ctx, lines] {
    ctx.exitCode = runRaw(ctx.options, ctx.serverPath(), *lines, *ctx.in, *ctx.out);
  });
}

}  // namespace odbs::cli
