// Result handlers not written yet: the dispatcher opens the named database first, then each
// of these sends nothing, so the client receives the end record alone.
#include "results/results.h"

namespace odbs {

void walkField(OdbContext&, const FieldRequest&, ResultCache&, ReplyChannel&) {}
void sendContactStatus(OdbContext&, const RequestParams&, const SelectionList&, ReplyChannel&) {}
void sendHistory(OdbContext&, int, int, const std::vector<std::string>&, ReplyChannel&) {}
void sendRegionField(OdbContext&, const RequestParams&, bool, const RegionRequest&, ReplyChannel&) {
}

}  // namespace odbs
