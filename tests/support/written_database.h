// A database written by the test into a fresh file under $TMPDIR (or /tmp) and opened
// read-only for the life of the object; closed and removed with it.
#pragma once

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "context/odb_context.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "platform/platform.h"

namespace odbs::test {

class WrittenDatabase {
 public:
  // fill writes the database; damage, when given, runs on the written file before it is
  // opened.
  explicit WrittenDatabase(const std::function<void(odb::Writer&)>& fill,
                           const std::function<void(const std::string& path)>& damage = {}) {
    static std::atomic<int> counter{0};
    static const bool initialized = (odb_initializeAPI(), true);
    (void)initialized;
    const char* dir = std::getenv("TMPDIR");
    path_ = std::string(dir ? dir : "/tmp") + "/written_" +
            std::to_string(platform::processId()) + "_" + std::to_string(counter++) + ".odb";
    {
      odb::Writer w(path_);
      fill(w);
      w.close();
    }
    if (damage) damage(path_);
    ctx_.odb = &openOdb(path_, true);
  }
  ~WrittenDatabase() {
    closeOdb(*ctx_.odb);
    std::remove(path_.c_str());
  }
  WrittenDatabase(const WrittenDatabase&) = delete;
  WrittenDatabase& operator=(const WrittenDatabase&) = delete;

  odb_Odb& odb() { return *ctx_.odb; }
  // The handler context with this database open.
  OdbContext& context() { return ctx_; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  OdbContext ctx_;
};

}  // namespace odbs::test
