// The step and frame catalogue of command f and its gzip cache file.
#pragma once

#include <string>

#include "access/registry.h"
#include "context/reply_channel.h"

namespace odbs {

// Command T: the cache base name for the next f (an empty name counts as set).
void setCatalogueBaseName(const std::string& base);

// Commands fd / fD: sends the title, analysis code and every step and frame of the
// database, replaying them from the cache file when it is current and (re)writing it when
// not. mode is the catalogue mode flag (1 for the upper-case form).
void sendCatalogue(OdbContext& ctx, int mode, ReplyChannel& out);

// Which count of a step chooses the steps that fs and fv send.
enum class StepCountChoice { kFieldFrames, kHistorySamples };

// Commands fs / fS (kFieldFrames) and fv / fV (kHistorySamples): the title, the analysis
// code, then for every step whose chosen count is above 0 the step counts record (16) and
// the records of each of its frames as fd sends them. Neither reads nor writes the cache
// file; clears the cache base name as every f does. The counts are worked out once per
// open database and kept in its tables.
void sendStepCounts(OdbContext& ctx, StepCountChoice choice, ReplyChannel& out);

// Parent exit: closes an open cache file and removes the base name's "_tmp" and "_lock"
// companions. Safe to call from the watchdog thread.
void removeCatalogueTemp();

}  // namespace odbs
