#include "tools/cli/database_command.h"

#include <ostream>
#include <sstream>

#include "client/client_error.h"
#include "client/server_process.h"
#include "tools/cli/raw_command.h"

namespace odbs::cli {

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
  std::istringstream none;
  return runRaw(options, serverPath, lines, none, out);
}

}  // namespace odbs::cli
