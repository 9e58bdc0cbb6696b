#include "access/catalogue_file.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "access/catalogue_base.h"

namespace odbs {

namespace {

constexpr size_t kMaxLine = 10000;  // longest line read back, newline included
constexpr size_t kMaxVersionLine = 100;
constexpr size_t kReadChunk = 256 * 1024;  // decompressed bytes read at once

gzFile gz(void* f) {
  return static_cast<gzFile>(f);
}

bool unescape(std::string_view s, std::string* out) {
  size_t first = s.find('\\');
  out->assign(s.data(), std::min(first, s.size()));  // the usual line has no escape
  if (first == std::string_view::npos) return true;
  for (size_t i = first; i < s.size(); ++i) {
    if (s[i] != '\\') {
      *out += s[i];
      continue;
    }
    if (++i == s.size()) return false;
    switch (s[i]) {
      case '\\':
        *out += '\\';
        break;
      case 'n':
        *out += '\n';
        break;
      case 'r':
        *out += '\r';
        break;
      default:
        return false;
    }
  }
  return true;
}

// True when base's lock exists and belongs to a live writer: the lock or the temporary
// file changed within kStaleLockSeconds (or lies in the future: a clock set back).
bool lockedByLiveWriter(const std::string& base) {
  if (!platform::fileReadable(base + "_lock")) return false;
  int64_t now = std::chrono::duration_cast<std::chrono::seconds>(
                    std::chrono::system_clock::now().time_since_epoch())
                    .count();
  for (const char* companion : {"_lock", "_tmp"}) {
    platform::FileStat st;
    if (platform::statFile(base + companion, &st) && now - st.mtimeSec < kStaleLockSeconds)
      return true;
  }
  return false;
}

}  // namespace

int64_t catalogueTime(const platform::FileStat& st) {
  return st.mtimeSec * 1000000000LL + st.mtimeNsec;
}

// ---- Writer ------------------------------------------------------------------------

CatalogueWriter::CatalogueWriter(const std::string& base) : base_(base) {
  if (base_.empty() || lockedByLiveWriter(base_)) return;
  // Either no lock, or a stale one whose writer was killed half-way: its file is dropped.
  // Created under the watchdog's lock, so that a parent ending now leaves no companions.
  gzFile f = nullptr;
  createCatalogueCompanions([&] {
    platform::removeFile(base_ + "_tmp");
    f = gzopen((base_ + "_tmp").c_str(), "wb1");
    if (f != nullptr) platform::createEmptyFile(base_ + "_lock");
  });
  if (f == nullptr) return;
  file_ = f;
  compressor_ = std::make_unique<CatalogueCompressor>(file_);
}

CatalogueWriter::~CatalogueWriter() {
  abandon();
}

void CatalogueWriter::abandon() {
  if (!active()) return;
  compressor_.reset();  // drops what is queued and joins its thread
  gzclose(gz(file_));
  file_ = nullptr;
  platform::removeFile(base_ + "_tmp");
  platform::removeFile(base_ + "_lock");
}

void CatalogueWriter::header(int mode, const std::string& dbPath,
                             const platform::FileStat& dbStat) {
  if (!active()) return;
  compressor_->raw(mode == 1 ? "1.0\r1.0A" : "1.0\r1.0");
  text(dbPath);
  integer(catalogueTime(dbStat));
  integer(dbStat.size);
}

void CatalogueWriter::integer(int64_t v) {
  if (active()) compressor_->integer(v);
}

void CatalogueWriter::real(double v) {
  if (active()) compressor_->real(v);
}

void CatalogueWriter::text(std::string_view v) {
  if (active()) compressor_->text(v);
}

void CatalogueWriter::finish() {
  if (!active()) return;
  compressor_->finish();
  compressor_.reset();
  platform::removeFile(base_ + "_lock");
  gzclose(gz(file_));
  file_ = nullptr;
  std::string tmp = base_ + "_tmp";
  int err = platform::renameFile(tmp, base_);
  if (err == EEXIST) {
    platform::removeFile(base_);
    err = platform::renameFile(tmp, base_);
  }
  if (err != 0) platform::removeFile(tmp);
}

// ---- Reader ------------------------------------------------------------------------

CatalogueReader::~CatalogueReader() {
  if (file_ != nullptr) gzclose(gz(file_));
}

bool CatalogueReader::open(const std::string& base, int mode, const platform::FileStat& dbStat) {
  if (base.empty()) return false;
  gzFile f = gzopen(base.c_str(), "rb");
  if (f == nullptr) return false;
  file_ = f;
  buffer_.clear();
  at_ = 0;
  failed_ = false;

  std::string_view version;
  bool ok = line(&version) && version.size() < kMaxVersionLine;
  ok = ok && (version == "1.0\r1.0A" || (version == "1.0\r1.0" && mode != 1));
  std::string path;
  int64_t time = 0, size = 0;
  ok = ok && text(&path) && integer(&time) && integer(&size);
  ok = ok && time == catalogueTime(dbStat) && size == dbStat.size;
  if (!ok) {
    gzclose(f);
    file_ = nullptr;
    platform::removeFile(base);
  }
  return ok;
}

bool CatalogueReader::refill() {
  if (file_ == nullptr) return false;
  buffer_.erase(0, at_);
  at_ = 0;
  size_t had = buffer_.size();
  buffer_.resize(had + kReadChunk);
  int n = gzread(gz(file_), buffer_.data() + had, static_cast<unsigned>(kReadChunk));
  buffer_.resize(had + static_cast<size_t>(n > 0 ? n : 0));
  if (n < 0) failed_ = true;  // a damaged or cut compressed stream
  return n > 0;
}

bool CatalogueReader::line(std::string_view* out) {
  if (file_ == nullptr) return false;
  size_t searched = at_;
  for (;;) {
    size_t nl = buffer_.find('\n', searched);
    if (nl != std::string::npos) {
      if (nl + 1 - at_ > kMaxLine) return false;  // over-long line
      *out = std::string_view(buffer_).substr(at_, nl - at_);
      at_ = nl + 1;
      return true;
    }
    if (buffer_.size() - at_ >= kMaxLine) return false;
    searched = buffer_.size() - at_;  // after refill the unread rest starts at 0
    if (!refill()) return false;      // the end, or a line cut off by it
  }
}

bool CatalogueReader::integer(int64_t* v) {
  std::string_view s;
  if (!line(&s) || s.empty()) return false;
  int64_t x = 0;
  std::from_chars_result r = std::from_chars(s.data(), s.data() + s.size(), x);
  if (r.ec != std::errc() || r.ptr != s.data() + s.size()) return false;
  *v = x;
  return true;
}

bool CatalogueReader::real(double* v) {
  std::string_view s;
  if (!line(&s) || s.empty()) return false;
  double x = 0;
  std::from_chars_result r = std::from_chars(s.data(), s.data() + s.size(), x);
  if (r.ec != std::errc() || r.ptr != s.data() + s.size()) return false;
  *v = x;
  return true;
}

bool CatalogueReader::text(std::string* v) {
  std::string_view s;
  return line(&s) && unescape(s, v);
}

bool CatalogueReader::atEnd() {
  if (file_ == nullptr) return true;
  // A stream that broke off is not at its end: the caller's next read fails instead.
  return at_ == buffer_.size() && !refill() && !failed_;
}

}  // namespace odbs
