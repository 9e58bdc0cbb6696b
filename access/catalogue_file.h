// The step and frame catalogue's cache file: gzip-compressed text beside the client's
// chosen base name, holding a header and one line per value of every reply record sent,
// so that the next request for an unchanged database is replayed instead of walked.
//
// File layout, one value per line:
//   "1.0\r1.0A" (catalogue mode 1) or "1.0\r1.0" (mode 0)
//   database path
//   database modification time, nanoseconds since the epoch
//   database size in bytes
//   the values of the reply records, in the order sent: integers "%d", floating-point
//   values "%.20E" (exact round trip), texts as they are with '\\', newline and carriage
//   return escaped as "\\\\", "\\n" and "\\r" so that every value stays on its line.
//
// The file is compressed at gzip level 1: the catalogue is written while the reply is
// sent, and a higher level costs more time than its smaller file saves. Values are
// formatted and parsed without the C library's printf and strtod (same bytes, exact
// round trip). The lines are compressed on a second thread (catalogue_compressor.h) while
// the command thread goes on with the reply.
//
// While a writer is active the file is base + "_tmp" and an empty marker base + "_lock"
// exists; a finished file is renamed to base. A lock is stale when neither it nor the
// temporary file has changed for kStaleLockSeconds (its writer was killed): the next writer
// removes both and writes the catalogue itself.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "access/catalogue_compressor.h"
#include "platform/platform.h"

namespace odbs {

// Age past which an unchanged lock and temporary file are taken to belong to a writer that
// is gone. A live writer adds to its temporary file far more often than this.
inline constexpr int64_t kStaleLockSeconds = 600;

// Writes one catalogue file. Not copyable. finish() publishes it; a writer destroyed
// without finish() (an error half-way) stops its compressing thread and removes its
// temporary file and lock, so a partial catalogue is never taken for a whole one.
class CatalogueWriter {
 public:
  // Starts writing base + "_tmp" unless another writer holds base + "_lock" (a stale lock
  // is taken over), the file cannot be created or the parent watchdog has already removed
  // the companions (the process is ending); active() tells which. An empty base never
  // writes.
  explicit CatalogueWriter(const std::string& base);
  ~CatalogueWriter();
  CatalogueWriter(const CatalogueWriter&) = delete;
  CatalogueWriter& operator=(const CatalogueWriter&) = delete;

  bool active() const { return file_ != nullptr; }

  void header(int mode, const std::string& dbPath, const platform::FileStat& dbStat);
  void integer(int64_t v);
  void real(double v);
  void text(std::string_view v);

  // Waits until every value is compressed, closes the file, removes the lock and renames
  // the file to base. Idempotent.
  void finish();
  // Drops the values not yet written, closes and removes the temporary file and the lock.
  // Idempotent.
  void abandon();

 private:
  std::string base_;
  void* file_ = nullptr;                             // gzFile
  std::unique_ptr<CatalogueCompressor> compressor_;  // while file_ is open
};

// Reads a catalogue file back, line by line.
class CatalogueReader {
 public:
  CatalogueReader() = default;
  ~CatalogueReader();
  CatalogueReader(const CatalogueReader&) = delete;
  CatalogueReader& operator=(const CatalogueReader&) = delete;

  // Opens base and checks its header: the version must suit mode (a mode-1 request refuses
  // a mode-0 file) and the recorded time and size must equal dbStat. Returns false when the
  // file is missing, damaged or outdated; a file that exists but does not fit is deleted.
  bool open(const std::string& base, int mode, const platform::FileStat& dbStat);

  // Each reads the next line as one value. False at the end of the file or when the line
  // does not hold a value of that kind.
  bool integer(int64_t* v);
  bool real(double* v);
  bool text(std::string* v);
  // True at the clean end of the file; false while lines remain or when the compressed
  // stream broke off (a cut or damaged file), so that a reader stops on its next read.
  bool atEnd();

 private:
  // The next line without its newline, valid until the next call. False at the end of the
  // file, on a read error, and for a line over the length limit or cut off by the end.
  bool line(std::string_view* out);
  // Decompresses the next piece of the file behind the unread rest. False when none is left.
  bool refill();

  void* file_ = nullptr;  // gzFile
  std::string buffer_;    // decompressed bytes; buffer_[at_..] are not read yet
  size_t at_ = 0;
  bool failed_ = false;  // the compressed stream broke off or is damaged
};

// Modification time as the catalogue records it: nanoseconds since the epoch.
int64_t catalogueTime(const platform::FileStat& st);

}  // namespace odbs
