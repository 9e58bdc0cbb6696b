// Command rd: the values of one field output of one frame with the treatment that contact
// variables, element status and connector failure need.
//
// Sends the title and analysis code, then (when the step number of the request is 1 or
// more and the frame holds the field) one value record per row, 17 or 18 when the field is
// complex, behind instance headers in a multi-instance model. Contact outputs that mark
// missing values with the most negative float ("PHILSM...", "CSTATUS...") get -1e-30 in
// its place. A request for "U" or "UT" adds the element status ('"') from "STATUS", the
// connector status from "CFAILST" for connector elements or, without it and at position
// code 4, the connectors failed by the frame's time; and, when the selection list is not
// empty, the rotations "UR" (19/20) or "UR1", "UR2", "UR3" (38/40, 57/60, 76/80).
// A bad step or frame index throws std::out_of_range after the first two records.
#pragma once

#include <functional>

#include "context/command_state.h"
#include "context/reply_channel.h"
#include "results/connector_failures.h"

class odb_Odb;
class odb_Step;

namespace odbs {

// Gives the connector failure table of the database, building it from step on first use
// and keeping it for later requests (whatever step they name).
using ConnectorFailureSource = std::function<const ConnectorFailureTable&(const odb_Step& step)>;

void sendContactOutput(const odb_Odb& odb, const RequestParams& request,
                       const SelectionList& selection, const ConnectorFailureSource& failures,
                       ReplyChannel& out);

}  // namespace odbs
