// The result file reader: header, parameter and result blocks, and the walk over the file.
#include "tools/ccx/frd_parser.h"

#include <algorithm>
#include <cstring>

#include "tools/ccx/frd_reader.h"

namespace odbs::ccx {

std::vector<std::string> FrdBlock::storedNames() const {
  std::vector<std::string> names;
  for (const FrdComponent& c : components) {
    if (c.stored) names.push_back(c.name);
  }
  return names;
}

int FrdBlock::storedCount() const {
  int n = 0;
  for (const FrdComponent& c : components) n += c.stored ? 1 : 0;
  return n;
}

namespace {

// Decimal places that a printed number resolves: "2.000100000" 9, "2.50000E-01" 6.
int decimalPlaces(std::string_view text) {
  text = trim(text);
  size_t point = text.find('.');
  if (point == std::string_view::npos) return 0;
  size_t end = text.find_first_of("EeDd", point);
  int digits = static_cast<int>((end == std::string_view::npos ? text.size() : end) - point - 1);
  int exponent = 0;
  if (end != std::string_view::npos) {
    auto e = toInteger(text.substr(end + 1));
    if (!e) return -1;
    exponent = static_cast<int>(*e);
  }
  return std::max(0, std::min(17, digits - exponent));
}

}  // namespace

int64_t FrdReader::checkedCount(long long count, int64_t bytesEach, const std::string& what) {
  if (count < 0) fail("a count of " + what + " that is not negative", std::to_string(count));
  if (bytesEach > 0 && count > (in_.fileSize() - in_.offset()) / bytesEach) {
    fail(std::to_string(count) + " " + what + " in the rest of the file",
         std::to_string(in_.fileSize() - in_.offset()) + " bytes left");
  }
  return count;
}

void FrdReader::sendHeader() {
  if (headerSent_) return;
  headerSent_ = true;
  visitor_.header(header_);
}

void FrdReader::readUserLine(std::string_view line) {
  // "    1U<text>": "1UDATE  23.november.2026", "1UMAT    1STEEL", or the title.
  size_t at = line.find("1U");
  std::string_view text = line.substr(at + 2);
  std::vector<std::string_view> tokens = splitBlanks(text);
  static const char* keys[] = {"USER",    "DATE",        "TIME", "HOST", "PGM",
                               "VERSION", "COMPILETIME", "DIR",  "DBN",  "MAT"};
  for (const char* key : keys) {
    if (!tokens.empty() && tokens[0] == key) {
      std::string_view rest = trim(text.substr(std::strlen(key)));
      if (std::strcmp(key, "MAT") == 0) {
        // "MAT    1STEEL": number then name, run together.
        size_t digits = 0;
        while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9') ++digits;
        auto number = toInteger(rest.substr(0, digits));
        if (number)
          header_.materials[static_cast<int>(*number)] = std::string(trim(rest.substr(digits)));
      } else {
        header_.user[key] = std::string(rest);
      }
      return;
    }
  }
  if (header_.title.empty()) header_.title = std::string(trim(text));
}

void FrdReader::readParameterLine(std::string_view line) {
  std::vector<std::string_view> tokens = splitBlanks(line);
  if (tokens.empty()) return;
  if (tokens[0] == "1PSTEP") {
    counter_ = static_cast<int>(tokenInteger(tokens, 1, "a load case number after 1PSTEP", line));
    increment_ =
        static_cast<int>(tokenInteger(tokens, 2, "an increment number after 1PSTEP", line));
    step_ = static_cast<int>(tokenInteger(tokens, 3, "a step number after 1PSTEP", line));
    mode_ = 0;
  } else if (tokens[0] == "1PMODE") {
    mode_ = static_cast<int>(tokenInteger(tokens, 1, "a mode number after 1PMODE", line));
  }
}

void FrdReader::readResult(std::string_view line) {
  sendHeader();
  // "  100CL  101 1.000000000          99                     0    1           1"
  FrdBlock block;
  block.line = in_.lineNumber();
  block.location = binarySeen_ ? in_.path() + " (byte offset " + std::to_string(lineStart_) + ")"
                               : in_.path() + ":" + std::to_string(block.line);
  auto value = toDouble(column(line, 12, 12));
  if (!value) fail("a step time or frequency in columns 13-24 of the 100C line", std::string(line));
  block.value = *value;
  block.valueDecimals = decimalPlaces(column(line, 12, 12));
  long long rows = integerAt(line, 24, 12, "a node count in columns 25-36 of the 100C line");
  auto type = toInteger(column(line, 56, 2));
  block.analysisType = type ? static_cast<int>(*type) : 0;
  auto loadCase = toInteger(column(line, 58, 5));
  block.loadCase = loadCase ? static_cast<int>(*loadCase) : 0;
  block.analysis = std::string(trim(column(line, 63, 10)));
  int format =
      static_cast<int>(integerAt(line, 73, 2, "a format code in columns 74-75 of the 100C line"));
  block.step = step_;
  block.increment = increment_;
  block.counter = counter_;
  block.mode = mode_;

  std::string nameLine = requireLine("a -4 line naming the result block");
  std::vector<std::string_view> tokens = splitBlanks(nameLine);
  if (tokens.size() < 3 || tokens[0] != "-4") fail("a -4 line naming the result block", nameLine);
  block.name = std::string(tokens[1]);
  long long components = tokenInteger(tokens, 2, "a component count", nameLine);
  if (components < 1 || components > 1000) fail("a component count from 1 to 1000", nameLine);
  block.resultType =
      tokens.size() > 3 ? static_cast<int>(tokenInteger(tokens, 3, "a result type", nameLine)) : 1;
  for (long long i = 0; i < components; ++i) {
    std::string c = requireLine("a -5 line describing component " + std::to_string(i + 1) + " of " +
                                block.name);
    std::string_view cv = c;
    if (!startsWith(trim(cv), "-5"))
      fail("a -5 line describing component " + std::to_string(i + 1) + " of " + block.name, c);
    FrdComponent component;
    component.name = std::string(trim(column(cv, 5, 8)));
    if (component.name.empty()) fail("a component name in columns 6-13", c);
    auto t = toInteger(column(cv, 18, 5));
    component.type = t ? static_cast<int>(*t) : 1;
    auto r = toInteger(column(cv, 23, 5));
    component.row = r ? static_cast<int>(*r) : 0;
    auto col = toInteger(column(cv, 28, 5));
    component.column = col ? static_cast<int>(*col) : 0;
    auto exists = toInteger(column(cv, 33, 5));
    component.stored = !(exists && *exists == 1);
    block.components.push_back(std::move(component));
  }
  if (block.storedCount() == 0) fail("at least one stored component in block " + block.name);
  if (format == 2 || format == 3) {
    binarySeen_ = true;
    block.binary = true;
    bool doubles = format == 3;
    int64_t n = checkedCount(rows, 4 + block.storedCount() * (doubles ? 8 : 4), "result rows");
    readBinaryRows(block, n, doubles);
  } else if (format == 0 || format == 1) {
    readTextRows(block, format == 0 ? 5 : 10, checkedCount(rows, 10, "result rows"));
  } else {
    fail("result block format 0, 1, 2 or 3", std::to_string(format));
  }
  visitor_.block(std::move(block));
  visitor_.progress(in_.offset(), in_.fileSize());
}

void FrdReader::readTextRows(FrdBlock& block, int labelWidth, int64_t rows) {
  // The hot loop of a large result file: fixed columns parsed in place, in lines that are
  // views of the read buffer.
  const int stored = block.storedCount();
  block.nodes.reserve(static_cast<size_t>(rows));
  block.values.reserve(static_cast<size_t>(rows) * stored);
  PieceParse<Rows> bulk;
  while (true) {
    // The rows that the read buffer holds, on two threads; the line that stops them (the
    // end line, a damaged row) is read here.
    bulk.run(
        in_, runner_, startsRecord,
        [&](std::string_view text, Rows& out) { return parseRows(text, labelWidth, stored, out); },
        [&](Rows& out) {
          block.nodes.insert(block.nodes.end(), out.nodes.begin(), out.nodes.end());
          block.values.insert(block.values.end(), out.values.begin(), out.values.end());
        });
    std::string_view r;
    if (!in_.nextLine(r)) fail("a -1 value line or -3 ending block " + block.name, "end of file");
    if (!startsWith(r, " -1") && startsWith(trim(r), "-3")) break;
    const size_t before = block.values.size();
    block.values.resize(before + stored);
    int32_t label = 0;
    FileLines lines{in_};
    std::string_view at;
    switch (rowRecord(r, lines, labelWidth, stored, &label, &block.values[before], &at)) {
      case RecordFault::none:
        break;
      case RecordFault::start:
        fail("a -1 value line of block " + block.name, std::string(at));
      case RecordFault::label:
        fail("a node label", std::string(at));
      case RecordFault::nextLine:
        fail("a -2 line with more values of block " + block.name,
             at.empty() ? std::string("end of file") : std::string(at));
      default:
        fail(std::to_string(stored) + " values of block " + block.name + " for node " +
                 std::to_string(label),
             std::string(at));
    }
    block.nodes.push_back(label);
  }
}

void FrdReader::readBinaryRows(FrdBlock& block, int64_t rows, bool doubles) {
  const int stored = block.storedCount();
  const size_t recordBytes = 4 + stored * (doubles ? 8 : 4);
  block.nodes.resize(rows);
  block.values.resize(rows * stored);
  std::vector<unsigned char> record(recordBytes);
  for (int64_t i = 0; i < rows; ++i) {
    if (!in_.readBytes(record.data(), recordBytes)) {
      failBinary(std::to_string(rows) + " binary rows of block " + block.name + " (of line " +
                 std::to_string(block.line) + ")");
    }
    std::memcpy(&block.nodes[i], record.data(), 4);
    float* out = &block.values[i * stored];
    if (doubles) {
      for (int c = 0; c < stored; ++c) {
        double d;
        std::memcpy(&d, record.data() + 4 + 8 * c, 8);
        out[c] = static_cast<float>(d);
      }
    } else {
      std::memcpy(out, record.data() + 4, 4 * stored);
    }
  }
}

void FrdReader::skipBlock() {
  std::string line;
  while (in_.nextLine(line)) {
    if (startsWith(trim(line), "-3")) return;
  }
  fail("-3 ending a block", "end of file");
}

void FrdReader::run() {
  std::string line;
  while (true) {
    lineStart_ = in_.offset();
    if (!in_.nextLine(line)) break;
    std::string_view t = trim(line);
    if (t.empty()) continue;
    std::vector<std::string_view> tokens = splitBlanks(t);
    std::string_view key = tokens[0];
    if (key == "9999") {
      sendHeader();
      return;
    }
    if (startsWith(key, "1U")) {
      readUserLine(line);
    } else if (key == "1C") {
      // start of the model header; nothing to keep
    } else if (startsWith(key, "1P")) {
      readParameterLine(t);
    } else if (key == "2C") {
      readNodes(line);
    } else if (key == "3C") {
      readElements(line);
    } else if (startsWith(key, "100C")) {
      readResult(line);
    } else if (key.size() == 2 && key[1] == 'C' && key[0] >= '1' && key[0] <= '9') {
      warnings_.warn("frd-block:" + std::string(key),
                     in_.path() + ":" + std::to_string(in_.lineNumber()) + ": block " +
                         std::string(key) + " is not imported; skipped");
      skipBlock();
    } else {
      std::string kind(key.substr(0, 2));
      warnings_.warn("frd-line:" + kind, in_.path() + ":" + std::to_string(in_.lineNumber()) +
                                             ": line of unknown kind '" + kind + "' skipped");
    }
  }
  fail("the end line 9999 of the result file", "end of file");
}

namespace {

class Collector : public FrdVisitor {
 public:
  explicit Collector(FrdFile& file) : file_(file) {}
  void header(const FrdHeader& h) override { file_.header = h; }
  void nodes(std::vector<FrdNode>&& n) override {
    file_.nodes.insert(file_.nodes.end(), n.begin(), n.end());
  }
  void elements(std::vector<FrdElement>&& e) override {
    for (auto& x : e) file_.elements.push_back(std::move(x));
  }
  void block(FrdBlock&& b) override { file_.blocks.push_back(std::move(b)); }

 private:
  FrdFile& file_;
};

}  // namespace
void readFrd(const std::string& path, FrdVisitor& visitor, Warnings& warnings) {
  FrdReader reader(path, visitor, warnings);
  reader.run();
}

FrdFile readFrdFile(const std::string& path, Warnings& warnings) {
  FrdFile file;
  Collector collector(file);
  readFrd(path, collector, warnings);
  return file;
}

}  // namespace odbs::ccx
