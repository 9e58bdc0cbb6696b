#include "odb/repository.h"

#include <chrono>
#include <mutex>
#include <stdexcept>

namespace {
std::recursive_timed_mutex& globalLock() {
  static std::recursive_timed_mutex m;
  return m;
}
}  // namespace

void thr_GlobalSingletonBase::LockBase() {
  globalLock().lock();
}
void thr_GlobalSingletonBase::UnlockBase() {
  globalLock().unlock();
}
bool thr_GlobalSingletonBase::TryLockBaseFor(int milliseconds) {
  return globalLock().try_lock_for(std::chrono::milliseconds(milliseconds));
}

odb_OdbRepository& odb_OdbRepository::instance() {
  static odb_OdbRepository r;
  return r;
}

void odb_OdbRepository::insert(const std::string& key, odb_Odb& odb) {
  std::lock_guard<std::mutex> l(m_);
  map_[key] = &odb;
}

odb_Odb& odb_OdbRepository::get(const std::string& key) const {
  std::lock_guard<std::mutex> l(m_);
  auto it = map_.find(key);
  if (it == map_.end()) throw std::out_of_range("odb: no open database under '" + key + "'");
  return *it->second;
}

void odb_OdbRepository::remove(const std::string& key) {
  std::lock_guard<std::mutex> l(m_);
  map_.erase(key);
}

bool odb_OdbRepository::isMember(const std::string& key) const {
  std::lock_guard<std::mutex> l(m_);
  return map_.count(key) != 0;
}

int odb_OdbRepository::size() const {
  std::lock_guard<std::mutex> l(m_);
  return static_cast<int>(map_.size());
}

void odb_OdbRepository::forget(const odb_Odb* odb) {
  std::lock_guard<std::mutex> l(m_);
  for (auto it = map_.begin(); it != map_.end();)
    it = it->second == odb ? map_.erase(it) : std::next(it);
}

void odb_OdbRepository::clear() {
  std::lock_guard<std::mutex> l(m_);
  map_.clear();
}

std::map<std::string, odb_Odb*> odb_OdbRepository::entries() const {
  std::lock_guard<std::mutex> l(m_);
  return map_;
}

const std::string& odb_OdbRepositoryIT::currentKey() const {
  if (isDone()) throw std::out_of_range("odb: iterator is past the end");
  return it_->first;
}

odb_Odb& odb_OdbRepositoryIT::currentValue() const {
  if (isDone()) throw std::out_of_range("odb: iterator is past the end");
  return *it_->second;
}
