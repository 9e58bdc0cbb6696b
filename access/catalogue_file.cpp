#include "access/catalogue_file.h"

#include <zlib.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace odbs {

namespace {

constexpr size_t kMaxLine = 10000;  // longest line read back, newline included
constexpr size_t kMaxVersionLine = 100;

gzFile gz(void* f) {
  return static_cast<gzFile>(f);
}

std::string escape(std::string_view s) {
  std::string out;
  out.reserve(s.size());
  for (char c : s) {
    switch (c) {
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        out += c;
        break;
    }
  }
  return out;
}

bool unescape(const std::string& s, std::string* out) {
  out->clear();
  for (size_t i = 0; i < s.size(); ++i) {
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
  platform::removeFile(base_ + "_tmp");
  gzFile f = gzopen((base_ + "_tmp").c_str(), "wb");
  if (f == nullptr) return;
  file_ = f;
  platform::createEmptyFile(base_ + "_lock");
}

CatalogueWriter::~CatalogueWriter() {
  abandon();
}

void CatalogueWriter::abandon() {
  if (!active()) return;
  gzclose(gz(file_));
  file_ = nullptr;
  platform::removeFile(base_ + "_tmp");
  platform::removeFile(base_ + "_lock");
}

void CatalogueWriter::header(int mode, const std::string& dbPath,
                             const platform::FileStat& dbStat) {
  if (!active()) return;
  gzprintf(gz(file_), "%s\r%s\n", "1.0", mode == 1 ? "1.0A" : "1.0");
  text(dbPath);
  integer(catalogueTime(dbStat));
  integer(dbStat.size);
}

void CatalogueWriter::integer(int64_t v) {
  if (active()) gzprintf(gz(file_), "%lld\n", static_cast<long long>(v));
}

void CatalogueWriter::real(double v) {
  if (active()) gzprintf(gz(file_), "%.20E\n", v);
}

void CatalogueWriter::text(std::string_view v) {
  if (!active()) return;
  std::string line = escape(v);
  line += '\n';
  gzwrite(gz(file_), line.data(), static_cast<unsigned>(line.size()));
}

void CatalogueWriter::finish() {
  if (!active()) return;
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

  char version[kMaxVersionLine + 1] = {};
  bool ok = gzgets(f, version, sizeof version) != nullptr;
  if (ok) {
    std::string v(version);
    ok = v == "1.0\r1.0A\n" || (v == "1.0\r1.0\n" && mode != 1);
  }
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

bool CatalogueReader::line(std::string* out) {
  if (file_ == nullptr) return false;
  char buf[kMaxLine + 1];
  if (gzgets(gz(file_), buf, sizeof buf) == nullptr) return false;
  size_t n = std::strlen(buf);
  if (n == 0 || buf[n - 1] != '\n') return false;  // over-long or cut-off line
  out->assign(buf, n - 1);
  return true;
}

bool CatalogueReader::integer(int64_t* v) {
  std::string s;
  if (!line(&s) || s.empty()) return false;
  char* end = nullptr;
  errno = 0;
  long long x = std::strtoll(s.c_str(), &end, 10);
  if (errno != 0 || *end != '\0') return false;
  *v = x;
  return true;
}

bool CatalogueReader::real(double* v) {
  std::string s;
  if (!line(&s) || s.empty()) return false;
  char* end = nullptr;
  double x = std::strtod(s.c_str(), &end);
  if (*end != '\0') return false;
  *v = x;
  return true;
}

bool CatalogueReader::text(std::string* v) {
  std::string s;
  return line(&s) && unescape(s, v);
}

bool CatalogueReader::atEnd() {
  if (file_ == nullptr) return true;
  int c = gzgetc(gz(file_));
  if (c == -1) return true;
  gzungetc(c, gz(file_));
  return false;
}

}  // namespace odbs
