// Result handlers for a server built without a database library. They are never reached
// (every look-up fails first) but keep the dispatcher's table complete.
#include "results/results.h"

namespace odbs {

void walkField(OdbContext&, const FieldRequest&, ResultCache&, ReplyChannel&) {}
void sendRegionField(OdbContext&, const RequestParams&, bool, const RegionRequest&, ReplyChannel&) {
}

}  // namespace odbs
