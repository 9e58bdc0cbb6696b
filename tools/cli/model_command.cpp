#include "tools/cli/model_command.h"

#include <algorithm>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "client/client_error.h"
#include "client/server_process.h"
#include "tools/cli/database_command.h"
#include "tools/cli/model_summary.h"
#include "tools/cli/open_failure.h"
#include "tools/cli/raw_command.h"
#include "tools/cli/set_summary.h"

namespace odbs::cli {

int runModel(const CliOptions& options, const std::string& serverPath, std::ostream& out,
             std::ostream& err) {
  Request req;
  if (!parseRequest(options, {"--records", "--nodes-only"}, &req, err)) return 2;
  std::vector<std::string> lines = {(req.has("--nodes-only") ? "G " : "g ") + req.database};
  if (req.has("--records")) return printRecords(options, serverPath, lines, out);
  ModelSummaryBuilder builder;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { builder.add(rec); }, err);
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
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { builder.add(rec); }, err);
  if (code == 0) printSetSummary(builder.finish(), options.format, out);
  return code;
}

}  // namespace odbs::cli
