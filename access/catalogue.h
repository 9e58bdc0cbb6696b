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

// Parent exit: closes an open cache file and removes the base name's "_tmp" and "_lock"
// companions. Safe to call from the watchdog thread.
void removeCatalogueTemp();

}  // namespace odbs
