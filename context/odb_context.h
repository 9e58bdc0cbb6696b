// The database context: what look-up-or-open hands to every database handler, with the
// per-database tables that handler families build when a database is opened and read in
// later commands.
//
// The registry makes one context per open database and drops it whole when the database is
// closed or re-opened, so nothing built from an old file survives into the new one. Handler
// families that keep per-database tables register a set-up at start-up; the registry runs
// every set-up after each open without knowing what they build.
#pragma once

#include <map>
#include <memory>
#include <typeindex>

class odb_Odb;

namespace odbs {

// Per-database tables, one slot per table type. A handler family defines its own table type
// and is the only one to read or write it.
class DatabaseTables {
 public:
  // The table of type T, or nullptr when none was made for this database.
  template <typename T>
  T* find() const {
    auto it = slots_.find(std::type_index(typeid(T)));
    return it == slots_.end() ? nullptr : static_cast<T*>(it->second.get());
  }
  // The table of type T, made empty (value-initialised) on first use.
  template <typename T>
  T& get() {
    std::shared_ptr<void>& slot = slots_[std::type_index(typeid(T))];
    if (!slot) slot = std::make_shared<T>();
    return *static_cast<T*>(slot.get());
  }

 private:
  std::map<std::type_index, std::shared_ptr<void>> slots_;
};

// What every database handler receives for the database of its command. Valid for the
// current command only.
struct OdbContext {
  odb_Odb* odb = nullptr;  // owned by the database library's repository
  bool setOption = false;  // stored by S, s and irs before their handler runs
  DatabaseTables tables;   // filled by the set-ups at open
};

// A per-database set-up: builds the tables of one handler family for a database that has
// just been opened (or re-opened after its file changed). May throw; the open then fails.
using OpenSetUp = void (*)(OdbContext& ctx);

// Adds a set-up, run after every later open in the order of registration. Registering the
// same function again does nothing. Called at start-up, before the first command.
void registerOpenSetUp(OpenSetUp setUp);

// Runs every registered set-up on ctx, in order; what a set-up throws passes through.
void runOpenSetUps(OdbContext& ctx);

}  // namespace odbs
