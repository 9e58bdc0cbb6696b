// Result handlers for a server built without a database library. They are never reached
// (every look-up fails first) but keep the dispatcher's table complete.
#include "results/results.h"

namespace odbs {

void sendContactStatus(OdbContext&, const RequestParams&, const SelectionList&, ReplyChannel&) {}
void sendHistory(OdbContext&, int, int, const std::vector<std::string>&, ReplyChannel&) {}
void sendRegionField(OdbContext&, const RequestParams&, bool, const RegionRequest&, ReplyChannel&) {
}

}  // namespace odbs
