#include "tools/cli/raw_command.h"

#include <istream>
#include <ostream>
#include <string>

#include "client/client_error.h"
#include "client/server_process.h"
#include "tools/cli/record_printer.h"

namespace odbs::cli {

namespace {

// Sends one line and prints its reply. Returns false when the server has exited.
bool exchange(client::ServerProcess& server, const std::string& line, RecordPrinter& printer) {
  client::ReplyShape shape = client::replyShapeOf(line);
  client::ReplyKind kind = shape.kind;
  printer.beginReply(line, shape);
  server.send(line);
  try {
    server.readReplyEach(shape, [&](const client::RecordView& rec) { printer.record(rec); });
  } catch (...) {
    printer.endReply(std::nullopt);
    throw;
  }
  std::optional<int> status;
  if (kind == client::ReplyKind::kExit) status = server.waitExit(server.options().timeoutMs);
  printer.endReply(status);
  return kind != client::ReplyKind::kExit;
}

}  // namespace

int runRaw(const CliOptions& options, const std::string& serverPath, std::istream& in,
           std::ostream& out) {
  auto printer = makePrinter(options.format, out, client::standardCatalog());
  int code = 0;
  try {
    client::ServerProcess server({serverPath, 0, options.timeoutMs});
    bool running = true;
    if (!options.args.empty()) {
      for (size_t i = 0; running && i < options.args.size(); ++i) {
        running = exchange(server, options.args[i], *printer);
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

}  // namespace odbs::cli
