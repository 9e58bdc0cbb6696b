// Commands hi and hr over the database of the command.
#include "odb/odb.h"
#include "results/history_walk.h"
#include "results/results.h"

namespace odbs {

void sendHistory(OdbContext& ctx, int form, int number, HistoryNameList& names, ReplyChannel& out) {
  walkHistory(*ctx.odb, form == 1, form == 1 ? number : 0, names, out);
}

}  // namespace odbs
