// Command rd over the database of the command, with the database's connector failure
// table.
#include <map>
#include <string>

#include "odb/odb.h"
#include "results/contact_output.h"
#include "results/results.h"

namespace odbs {

void sendContactStatus(OdbContext& ctx, const RequestParams& request,
                       const SelectionList& selection, ReplyChannel& out) {
  // Built once per database from the step of the first request that needs it.
  static std::map<std::string, ConnectorFailureTable> tables;
  const std::string key = ctx.odb->name();
  ConnectorFailureSource failures = [&](const odb_Step& step) -> const ConnectorFailureTable& {
    auto it = tables.find(key);
    if (it == tables.end()) it = tables.emplace(key, buildConnectorFailures(step)).first;
    return it->second;
  };
  sendContactOutput(*ctx.odb, request, selection, failures, out);
}

}  // namespace odbs
