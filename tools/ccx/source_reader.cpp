#include "tools/ccx/source_reader.h"

#include <cstring>
#include <filesystem>

#include "tools/ccx/parse_error.h"

namespace odbs::ccx {

SourceReader::SourceReader(const std::string& path) : path_(path), buf_(3 * kBlock) {
  // Devices and pipes never end or cannot seek: only regular files are input.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    throw ParseError(path, 0, "a readable file", "no such regular file");
  }
  in_.open(path, std::ios::binary);
  if (!in_) throw ParseError(path, 0, "a readable file", "cannot open it");
  in_.seekg(0, std::ios::end);
  size_ = static_cast<int64_t>(in_.tellg());
  in_.seekg(0, std::ios::beg);
  if (!in_) throw ParseError(path, 0, "a readable file", "cannot read it");
}

bool SourceReader::fill() {
  takeReadAhead();
  if (pos_ < end_) return true;
  in_.read(buf_.data(), static_cast<std::streamsize>(kBlock));
  pos_ = 0;
  end_ = static_cast<size_t>(in_.gcount());
  return end_ > 0;
}

bool SourceReader::nextLine(std::string& line) {
  line.clear();
  if (!fill()) return false;
  ++line_;
  lineEnded_ = false;
  while (true) {
    const char* start = buf_.data() + pos_;
    const void* nl = std::memchr(start, '\n', end_ - pos_);
    if (nl) {
      size_t n = static_cast<const char*>(nl) - start;
      line.append(start, n);
      pos_ += n + 1;
      offset_ += static_cast<int64_t>(n + 1);
      lineEnded_ = true;
      break;
    }
    line.append(start, end_ - pos_);
    offset_ += static_cast<int64_t>(end_ - pos_);
    pos_ = end_;
    if (line.size() > kMaxLine) {
      throw ParseError(path_, line_, "a line of at most " + std::to_string(kMaxLine) + " bytes",
                       line.substr(0, 40));
    }
    if (!fill()) break;
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

bool SourceReader::nextLineAcross(std::string_view& line) {
  if (!fill()) return false;
  const char* start = buf_.data() + pos_;
  if (std::memchr(start, '\n', end_ - pos_)) return nextLine(line);  // refilled
  if (!nextLine(spill_)) return false;
  line = spill_;
  return true;
}

std::string_view SourceReader::bufferedLines() {
  takeReadAhead();
  if (end_ - pos_ < kBlock / 2 && in_) {
    // The unread bytes to the front, then a block behind them.
    std::memmove(buf_.data(), buf_.data() + pos_, end_ - pos_);
    end_ -= pos_;
    pos_ = 0;
    in_.read(buf_.data() + end_, static_cast<std::streamsize>(kBlock));
    end_ += static_cast<size_t>(in_.gcount());
  }
  size_t last = end_;
  while (last > pos_ && buf_[last - 1] != '\n') --last;
  return std::string_view(buf_.data() + pos_, last - pos_);
}

void SourceReader::readAhead() {
  // The buffer must be able to take the unread bytes and the block behind them.
  if (aheadBytes_ > 0 || !in_ || end_ - pos_ + kBlock > buf_.size()) return;
  if (ahead_.size() != buf_.size()) ahead_.resize(buf_.size());
  in_.read(ahead_.data() + kBlock, static_cast<std::streamsize>(kBlock));
  aheadBytes_ = static_cast<size_t>(in_.gcount());
}

void SourceReader::takeReadAhead() {
  if (aheadBytes_ == 0) return;
  // The unread bytes go before the block in its buffer, which becomes the read buffer: at
  // most a few lines' worth are copied, the block not at all (unless more is unread than
  // fits before it).
  const size_t unread = end_ - pos_;
  size_t start = kBlock - unread;
  if (unread > kBlock) {
    std::memmove(ahead_.data() + unread, ahead_.data() + kBlock, aheadBytes_);
    start = 0;
  }
  std::memcpy(ahead_.data() + start, buf_.data() + pos_, unread);
  buf_.swap(ahead_);
  pos_ = start;
  end_ = start + unread + aheadBytes_;
  aheadBytes_ = 0;
}

bool SourceReader::readBytes(void* out, size_t n) {
  char* dst = static_cast<char*>(out);
  while (n > 0) {
    if (!fill()) return false;
    size_t take = std::min(n, end_ - pos_);
    std::memcpy(dst, buf_.data() + pos_, take);
    pos_ += take;
    offset_ += static_cast<int64_t>(take);
    dst += take;
    n -= take;
  }
  return true;
}

}  // namespace odbs::ccx
