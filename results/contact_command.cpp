// Command rd over the database of the command, with the database's connector failure
// table kept among its per-database tables.
#include "odb/odb.h"
#include "results/contact_output.h"
#include "results/results.h"

namespace odbs {

namespace {

// Built once per database, from the step of the first request that needs it, and kept
// until the database is closed or re-opened.
struct ConnectorFailures {
  bool built = false;
  ConnectorFailureTable table;
};

}  // namespace

void sendContactStatus(OdbContext& ctx, const RequestParams& request,
                       const SelectionList& selection, ReplyChannel& out) {
  ConnectorFailures& kept = ctx.tables.get<ConnectorFailures>();
  ConnectorFailureSource failures = [&](const odb_Step& step) -> const ConnectorFailureTable& {
    if (!kept.built) {
      kept.table = buildConnectorFailures(step);
      kept.built = true;
    }
    return kept.table;
  };
  sendContactOutput(*ctx.odb, request, selection, failures, out);
}

}  // namespace odbs
