// The database registry: turns a path from a command line into an open database, keeps
// the per-database bookkeeping beside the database library's repository, and closes
// databases again.
#pragma once

#include <string>

#include "context/odb_context.h"
#include "context/reply_channel.h"

namespace odbs {

// Initialises the database library once, before the first command.
void initializeDatabases();

// Returns the open database for path, opening it on first use (after an upgrade when the
// file needs one, telling the client through '|' records on out) and re-opening it when
// the file changed on disk; every registered set-up runs after each open. The context stays
// valid for the current command only.
// Throws std::runtime_error("Error openOdb") on any failure.
OdbContext& lookupOrOpen(const std::string& path, ReplyChannel& out);

// Command c: closes the database named by name, or its upgraded copy when the file needs
// an upgrade (telling the client which through a '|' record). Writes no end record.
void closeDatabase(const std::string& name, ReplyChannel& out);

// Command u: true when name needs an upgrade and its upgraded copy is missing, older than
// name, or itself in need of an upgrade.
bool upgradeOutstanding(const std::string& name);

// Command l: fetches every open database from the repository; sends nothing.
void visitOpenDatabases();

// Closes every open database, in the repository's key order (command q, parent exit).
void shutdownAll();

// Releases the database library (command q only).
void finalizeDatabases();

}  // namespace odbs
