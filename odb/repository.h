// The process-wide repository of open databases, keyed by the path text they were opened
// under, and the global lock that callers take around opening and inserting:
//
//   odb_OdbRepository::LockBase();
//   odb_Odb& odb = openOdb(path, true);
//   odb_OdbRepository::instance().insert(path, odb);
//   odb_OdbRepository::UnlockBase();
//
// The repository refers to databases; it does not own them (closeOdb deletes a database
// and takes it out of the repository). Keys iterate in byte-wise order. The member
// functions are safe to call from several threads.
#pragma once

#include <map>
#include <mutex>
#include <string>

class odb_Odb;

// Base of process-wide singletons: one global recursive lock for all of them.
class thr_GlobalSingletonBase {
 public:
  static void LockBase();
  static void UnlockBase();
  // Takes the lock if it becomes free within milliseconds; true when it was taken.
  static bool TryLockBaseFor(int milliseconds);
};

class odb_OdbRepository : public thr_GlobalSingletonBase {
 public:
  static odb_OdbRepository& instance();
  static odb_OdbRepository& getInstance() { return instance(); }

  // Enters odb under key, replacing an earlier entry of that key.
  void insert(const std::string& key, odb_Odb& odb);
  void insert(const std::string& key, odb_Odb* odb) { insert(key, *odb); }
  // The database under key; throws std::out_of_range when there is none.
  odb_Odb& get(const std::string& key) const;
  odb_Odb& operator[](const std::string& key) const { return get(key); }
  // Takes key out (the database stays open); no effect when absent.
  void remove(const std::string& key);
  bool isMember(const std::string& key) const;
  int size() const;
  // Removes every entry that refers to odb, and all entries.
  void forget(const odb_Odb* odb);
  void clear();
  // A copy of the entries, for iteration.
  std::map<std::string, odb_Odb*> entries() const;

 private:
  odb_OdbRepository() = default;
  mutable std::mutex m_;
  std::map<std::string, odb_Odb*> map_;
};

// Walks a snapshot of the repository's keys taken by the constructor and by first().
class odb_OdbRepositoryIT {
 public:
  explicit odb_OdbRepositoryIT(const odb_OdbRepository& r) : r_(&r), snap_(r.entries()) {
    it_ = snap_.begin();
  }
  odb_OdbRepositoryIT(const odb_OdbRepositoryIT&) = delete;
  odb_OdbRepositoryIT& operator=(const odb_OdbRepositoryIT&) = delete;
  void first() {
    snap_ = r_->entries();
    it_ = snap_.begin();
  }
  void next() {
    if (!isDone()) ++it_;
  }
  bool isDone() const { return it_ == snap_.end(); }
  const std::string& currentKey() const;
  odb_Odb& currentValue() const;

 private:
  const odb_OdbRepository* r_;
  std::map<std::string, odb_Odb*> snap_;
  std::map<std::string, odb_Odb*>::const_iterator it_;
};
