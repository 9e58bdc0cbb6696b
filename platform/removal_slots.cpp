// removeOnSignal and forgetOnSignal over a fixed table that a signal handler can read.
#include "platform/removal_slots.h"

#include <atomic>
#include <cstring>
#include <mutex>

#include "platform/file_safety.h"

namespace odbs::platform {

namespace {

constexpr int kSlots = 16;
constexpr size_t kPathMax = 4096;
char slotPath[kSlots][kPathMax];
std::atomic<bool> slotUsed[kSlots];
std::mutex slotMutex;  // between registering threads; never taken by a handler

}  // namespace

void detail::forEachRegisteredPath(void (*remove)(const char* path)) {
  for (int i = 0; i < kSlots; ++i)
    if (slotUsed[i].load()) remove(slotPath[i]);
}

bool removeOnSignal(const std::string& path) {
  if (path.size() >= kPathMax) return false;
  detail::installRemovalHandlers();
  std::lock_guard<std::mutex> lock(slotMutex);
  for (int i = 0; i < kSlots; ++i) {
    if (slotUsed[i].load()) continue;
    std::memcpy(slotPath[i], path.c_str(), path.size() + 1);
    slotUsed[i].store(true);
    return true;
  }
  return false;
}

void forgetOnSignal(const std::string& path) {
  std::lock_guard<std::mutex> lock(slotMutex);
  for (int i = 0; i < kSlots; ++i)
    if (slotUsed[i].load() && path == slotPath[i]) {
      slotUsed[i].store(false);
      return;
    }
}

}  // namespace odbs::platform
