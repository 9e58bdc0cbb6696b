// The database registry: look-up-or-open with upgrade and re-validation, close, and the
// upgrade check, over the database library's process-wide repository.
#include "access/registry.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "access/database_book.h"
#include "odb/odb.h"
#include "odb/repository.h"
#include "platform/platform.h"

namespace odbs {

namespace {

odb_OdbRepository& repository() {
  return odb_OdbRepository::instance();
}

// Holds the repository's global lock for a scope.
struct RepositoryLock {
  RepositoryLock() { odb_OdbRepository::LockBase(); }
  ~RepositoryLock() { odb_OdbRepository::UnlockBase(); }
  RepositoryLock(const RepositoryLock&) = delete;
  RepositoryLock& operator=(const RepositoryLock&) = delete;
};

bool newerThan(const platform::FileStat& a, const platform::FileStat& b) {
  return a.mtimeSec != b.mtimeSec ? a.mtimeSec > b.mtimeSec : a.mtimeNsec > b.mtimeNsec;
}

bool sameState(const platform::FileStat& a, const platform::FileStat& b) {
  return a.size == b.size && a.mtimeSec == b.mtimeSec && a.mtimeNsec == b.mtimeNsec;
}

std::string upgradedName(const std::string& path) {
  return path + ".odb";
}

// Whether path needs an upgrade, answered from the book while the file is unchanged.
// A file that is not a readable database needs none (opening it fails later instead).
bool upgradeRequired(const std::string& path) {
  platform::FileStat st;
  if (!platform::statFile(path, &st)) return false;
  auto& checks = databaseBook().upgradeChecks;
  auto it = checks.find(path);
  if (it != checks.end() && sameState(it->second.stat, st)) return it->second.required;
  bool required = false;
  try {
    required = isUpgradeRequiredForOdb(path);
  } catch (const std::exception&) {
    required = false;
  }
  checks[path] = UpgradeCheck{st, required};
  return required;
}

// Closes the database under key and forgets it (repository entry and book record).
void closeEntry(const std::string& key) {
  databaseBook().records.erase(key);
  RepositoryLock lock;
  odb_Odb& odb = repository().get(key);
  repository().remove(key);
  closeOdb(odb);
}

void forget(const std::string& key) {
  if (repository().isMember(key)) closeEntry(key);
}

void upgrade(const std::string& path, const std::string& copy) {
  forget(copy);
  upgradeOdb(path, copy);
  databaseBook().upgradeChecks.erase(copy);
}

// Opens path, enters it in the repository under path and records its file state.
OdbContext& openAndRecord(const std::string& path) {
  odb_Odb* odb = nullptr;
  {
    RepositoryLock lock;
    odb = &openOdb(path, true);
    repository().insert(path, *odb);
  }
  DatabaseBook& book = databaseBook();
  DatabaseRecord record;
  platform::statFile(path, &record.openedStat);
  record.serial = ++book.openCounter;
  record.context.odb = odb;
  OdbContext& ctx = (book.records[path] = std::move(record)).context;
  runOpenSetUps(ctx);
  return ctx;
}

// The database under key, re-opened when its file changed since it was opened.
OdbContext& revalidate(const std::string& key) {
  DatabaseBook& book = databaseBook();
  auto it = book.records.find(key);
  if (it == book.records.end()) {
    // Entered in the repository by someone else than the registry: hand it out as it is,
    // watching its file from now on.
    DatabaseRecord& r = book.records[key];
    r.context.odb = &repository().get(key);
    r.serial = book.openCounter;
    platform::statFile(key, &r.openedStat);
    runOpenSetUps(r.context);
    return r.context;
  }
  platform::FileStat now;
  bool readable = platform::statFile(key, &now);
  if (readable && sameState(now, it->second.openedStat)) {
    if (it->second.serial != book.openCounter) ++book.openCounter;
    return it->second.context;
  }
  // The file changed on disk: close, forget everything derived from it, open again.
  closeEntry(key);
  book.upgradeChecks.erase(key);
  return openAndRecord(key);
}

OdbContext& lookupOrOpenUnguarded(std::string path, ReplyChannel& out) {
  if (upgradeRequired(path)) {
    std::string copy = upgradedName(path);
    platform::FileStat src, dst;
    platform::statFile(path, &src);
    if (!platform::statFile(copy, &dst) || newerThan(src, dst)) {
      out.sendText("odb upgrade to: " + copy);
      upgrade(path, copy);
    } else {
      out.sendText("Found upgraded odb: " + copy);
    }
    path = copy;
  }
  if (repository().isMember(path)) return revalidate(path);

  // One file under another spelling (relative, through a link, another mount) is the
  // database already open under the spelling used first.
  for (odb_OdbRepositoryIT it(repository()); !it.isDone(); it.next()) {
    if (platform::sameFile(path, it.currentKey())) return revalidate(it.currentKey());
  }
  return openAndRecord(path);
}

}  // namespace

DatabaseBook& databaseBook() {
  static DatabaseBook book;
  return book;
}

void initializeDatabases() {
  odb_initializeAPI();
}

OdbContext& lookupOrOpen(const std::string& path, ReplyChannel& out) {
  try {
    return lookupOrOpenUnguarded(path, out);
  } catch (...) {
    throw std::runtime_error("Error openOdb");
  }
}

void closeDatabase(const std::string& name, ReplyChannel& out) {
  std::string path = name;
  if (upgradeRequired(name)) {
    std::string copy = upgradedName(name);
    platform::FileStat src, dst;
    platform::statFile(name, &src);
    if (!platform::statFile(copy, &dst) || newerThan(src, dst))
      out.sendText("odb upgrade to: " + copy);
    else
      out.sendText("Found upgraded odb: " + copy);
    path = copy;
  }
  forget(path);
}

bool upgradeOutstanding(const std::string& name) {
  if (!upgradeRequired(name)) return false;
  std::string copy = upgradedName(name);
  platform::FileStat src, dst;
  platform::statFile(name, &src);
  return !platform::statFile(copy, &dst) || newerThan(src, dst) || upgradeRequired(copy);
}

void visitOpenDatabases() {
  for (odb_OdbRepositoryIT it(repository()); !it.isDone(); it.next())
    repository().get(it.currentKey());
}

void shutdownAll() {
  if (repository().size() == 0) return;
  // Collect the keys first: closing while walking the repository is not done.
  std::vector<std::string> keys;
  for (odb_OdbRepositoryIT it(repository()); !it.isDone(); it.next())
    keys.push_back(it.currentKey());
  for (const std::string& key : keys) {
    odb_Odb& odb = repository().get(key);
    repository().remove(key);
    closeOdb(odb);
  }
}

void finalizeDatabases() {
  odb_finalizeAPI();
}

int32_t databaseSerial(const std::string& key) {
  auto& records = databaseBook().records;
  auto it = records.find(key);
  return it == records.end() ? 0 : it->second.serial;
}

}  // namespace odbs
