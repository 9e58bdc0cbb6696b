#include "tools/cli/model_command.h"

#include <algorithm>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "client/client_error.h"
#include "client/server_process.h"
#include "tools/cli/model_summary.h"
#include "tools/cli/raw_command.h"
#include "tools/cli/set_summary.h"

namespace odbs::cli {

namespace {

struct Request {
  std::string database;
  std::vector<std::string> flags;
  std::vector<std::string> names;  // after --named

  bool has(const std::string& flag) const {
    for (const auto& f : flags) {
      if (f == flag) return true;
    }
    return false;
  }
};

// Splits the arguments into the database path, known flags and --named names. Returns
// false (with a message on err) on anything else.
bool parseRequest(const CliOptions& options, const std::vector<std::string>& known, Request* req,
                  std::ostream& err) {
  bool naming = false;
  for (const std::string& a : options.args) {
    if (naming) {
      req->names.push_back(a);
    } else if (a == "--named" && std::find(known.begin(), known.end(), a) != known.end()) {
      naming = true;
    } else if (a.compare(0, 2, "--") == 0) {
      if (std::find(known.begin(), known.end(), a) == known.end()) {
        err << "odb_cli: unknown flag " << a << "\n";
        return false;
      }
      req->flags.push_back(a);
    } else if (req->database.empty()) {
      req->database = a;
    } else {
      err << "odb_cli: more than one database given\n";
      return false;
    }
  }
  if (req->database.empty()) {
    err << "odb_cli: a database path is needed\n";
    return false;
  }
  if (naming && req->names.empty()) {
    err << "odb_cli: --named needs at least one set name\n";
    return false;
  }
  return true;
}

// Sends lines (all but the last are silent) and feeds the last one's records to onRecord.
int exchange(const CliOptions& options, const std::string& serverPath,
             const std::vector<std::string>& lines,
             const std::function<void(const client::RecordView&)>& onRecord, std::ostream& err) {
  try {
    client::ServerProcess server({serverPath, 0, options.timeoutMs});
    for (size_t i = 0; i + 1 < lines.size(); ++i) server.send(lines[i]);
    server.send(lines.back());
    server.readReplyEach(client::replyShapeOf(lines.back()), onRecord);
    server.closeCommands();
    server.waitExit(options.timeoutMs);
  } catch (const client::ClientError& e) {
    err << "odb_cli: " << e.what() << "\n";
    return 1;
  }
  return 0;
}

// Every record of every line, through the raw printer.
int printRecords(const CliOptions& options, const std::string& serverPath,
                 const std::vector<std::string>& lines, std::ostream& out) {
  CliOptions raw = options;
  raw.args = lines;
  std::istringstream none;
  return runRaw(raw, serverPath, none, out);
}

}  // namespace

int runModel(const CliOptions& options, const std::string& serverPath, std::ostream& out,
             std::ostream& err) {
  Request req;
  if (!parseRequest(options, {"--records", "--nodes-only"}, &req, err)) return 2;
  std::vector<std::string> lines = {(req.has("--nodes-only") ? "G " : "g ") + req.database};
  if (req.has("--records")) return printRecords(options, serverPath, lines, out);
  ModelSummaryBuilder builder;
  int code = exchange(
      options, serverPath, lines, [&](const client::RecordView& rec) { builder.add(rec); }, err);
  if (code == 0) printModelSummary(builder.finish(), options.format, out);
  return code;
}

int runSets(const CliOptions& options, const std::string& serverPath, std::ostream& out,
            std::ostream& err) {
  Request req;
  if (!parseRequest(options, {"--records", "--surfaces", "--coupling", "--named"}, &req, err)) {
    return 2;
  }
  std::vector<std::string> lines;
  if (!req.names.empty()) {
    for (const auto& name : req.names) lines.push_back("irc 7 0 " + name);
    lines.push_back("irs 0 " + req.database);
  } else {
    lines.push_back(std::string(req.has("--surfaces") ? "s" : "S") + " 0 " +
                    (req.has("--coupling") ? "1 " : "0 ") + req.database);
  }
  if (req.has("--records")) return printRecords(options, serverPath, lines, out);
  SetSummaryBuilder builder;
  int code = exchange(
      options, serverPath, lines, [&](const client::RecordView& rec) { builder.add(rec); }, err);
  if (code == 0) printSetSummary(builder.finish(), options.format, out);
  return code;
}

}  // namespace odbs::cli
