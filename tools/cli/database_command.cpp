#include "tools/cli/database_command.h"

#include <algorithm>
#include <ostream>
#include <sstream>

#include "client/client_error.h"
#include "client/server_process.h"
#include "tools/cli/raw_command.h"

namespace odbs::cli {

bool Request::has(const std::string& flag) const {
  return std::find(flags.begin(), flags.end(), flag) != flags.end();
}

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

int exchange(const CliOptions& options, const std::string& serverPath,
             const std::vector<std::string>& lines,
             const std::function<void(const client::RecordView&)>& onRecord, std::ostream& err) {
  try {
    client::ServerProcess server({serverPath, 0, options.timeoutMs});
    for (size_t i = 0; i + 1 < lines.size(); ++i) server.request(lines[i]);
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

int printRecords(const CliOptions& options, const std::string& serverPath,
                 const std::vector<std::string>& lines, std::ostream& out) {
  CliOptions raw = options;
  raw.args = lines;
  std::istringstream none;
  return runRaw(raw, serverPath, none, out);
}

}  // namespace odbs::cli
