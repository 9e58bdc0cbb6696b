#include "tools/ccx/dat_parser.h"

#include <cctype>
#include <cmath>
#include <limits>
#include <set>

#include "tools/ccx/parse_error.h"
#include "tools/ccx/source_reader.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

// "E I G E N V A L U E   N U M B E R     1": capitals spaced by blanks.
bool isBanner(std::string_view t) {
  return t.size() >= 5 && std::isupper(static_cast<unsigned char>(t[0])) && t[1] == ' ' &&
         std::isupper(static_cast<unsigned char>(t[2])) && t[3] == ' ';
}

// The banner's letters without blanks, up to its first digit or bracket.
std::string bannerWords(std::string_view t) {
  std::string out;
  for (char c : t) {
    if (std::isdigit(static_cast<unsigned char>(c)) || c == '(' || c == '-' || c == '.') break;
    if (c != ' ') out += c;
  }
  return out;
}

// The count of contact elements of an increment: "total number of contact elements for
// time <t>", one number below.
constexpr std::string_view kContactCount = "total number of contact elements";

// "<quantity> (<columns>) for set <name> and time <t>", or for one value per set and no
// columns: "total internal energy for set <name> and time <t>". Contact tables name "all
// contact elements" instead of a set (the energy table without a blank before "for").
bool isTableTitle(std::string_view t) {
  if (startsWith(t, kContactCount)) return t.find(" for time") != std::string_view::npos;
  if (t.find(" and time") == std::string_view::npos) return false;
  if (t.find("for all contact elements") != std::string_view::npos) {
    return t.find('(') != std::string_view::npos;
  }
  size_t set = t.find(" for set ");
  return set != std::string_view::npos && (t.find('(') < set || startsWith(t, "total "));
}

bool sameTime(double a, double b) {
  return std::fabs(a - b) <= 1e-6 * std::max(1.0, std::fabs(a));
}

class DatReader {
 public:
  DatReader(const std::string& path, Warnings& warnings) : in_(path), warnings_(warnings) {}
  DatFile run();

 private:
  [[noreturn]] void fail(const std::string& expected, const std::string& found = "") const {
    throw ParseError(in_.path(), in_.lineNumber(), expected, found);
  }
  bool next(std::string& line) {
    if (hasPending_) {
      line.swap(pending_);
      hasPending_ = false;
      return true;
    }
    return in_.nextLine(line);
  }
  void pushBack(std::string& line) {
    pending_.swap(line);
    hasPending_ = true;
  }
  void banner(std::string_view t);
  void eigenvalueTable();
  void table(std::string_view title);

  SourceReader in_;
  Warnings& warnings_;
  DatFile file_;
  std::string pending_;
  bool hasPending_ = false;

  bool skipping_ = false;  // inside a section of the file that is not imported
  int mode_ = 0;           // eigenmode whose tables follow
  bool steadyState_ = false;
  bool sectionTimeSet_ = false;
  double sectionTime_ = 0;
  std::set<std::string> seenInPoint_;  // tables of the current steady-state point
};

void DatReader::banner(std::string_view t) {
  std::string words = bannerWords(t);
  skipping_ = false;
  sectionTimeSet_ = false;
  if (words == "EIGENVALUEOUTPUT") {
    mode_ = 0;
    steadyState_ = false;
    eigenvalueTable();
    return;
  }
  if (words == "EIGENVALUENUMBER") {
    std::vector<std::string_view> tokens = splitBlanks(t);
    auto mode = toInteger(tokens.back());
    if (!mode) fail("a mode number after E I G E N V A L U E   N U M B E R", std::string(t));
    mode_ = static_cast<int>(*mode);
    steadyState_ = false;
    return;
  }
  if (words == "PARTICIPATIONFACTORSFORFREQUENCY") {
    // A steady-state point: its tables follow the participation factors, which are skipped.
    mode_ = 0;
    steadyState_ = true;
    seenInPoint_.clear();
    skipping_ = true;
    return;
  }
  mode_ = 0;
  steadyState_ = false;
  skipping_ = true;
  warnings_.warn("dat-section:" + words, in_.path() + ":" + std::to_string(in_.lineNumber()) +
                                             ": section '" + std::string(trim(t)) +
                                             "' of the print file is not imported; skipped");
}

void DatReader::eigenvalueTable() {
  std::string line;
  bool rows = false;
  while (next(line)) {
    std::string_view t = trim(line);
    if (t.empty()) {
      if (rows) return;
      continue;
    }
    std::vector<std::string_view> tokens = splitBlanks(t);
    auto mode = toInteger(tokens[0]);
    if (!mode) {
      if (rows || isBanner(t) || isTableTitle(t)) {
        pushBack(line);
        return;
      }
      continue;  // column headings
    }
    if (tokens.size() < 4) fail("a mode number and at least three eigenvalue columns", line);
    DatEigenvalue e;
    e.mode = static_cast<int>(*mode);
    double* fields[] = {&e.eigenvalue, &e.radiansPerTime, &e.cyclesPerTime, &e.imaginary};
    for (size_t i = 1; i < tokens.size() && i <= 4; ++i) {
      auto v = toDouble(tokens[i]);
      if (!v) fail("a number in the eigenvalue table", line);
      *fields[i - 1] = *v;
    }
    file_.eigenvalues.push_back(e);
    rows = true;
  }
}

void DatReader::table(std::string_view title) {
  DatBlock block;
  block.line = in_.lineNumber();
  block.location = in_.path() + ":" + std::to_string(block.line);
  const std::string expected = "a table title '<quantity> (<columns>) for set <name> and time <t>'";
  size_t open = title.find('('), close = title.find(')', open);
  std::vector<std::string> columns;
  std::string_view rest;
  if (startsWith(title, kContactCount)) {
    block.quantity = std::string(kContactCount);
    columns.push_back(block.quantity);
    rest = title.substr(title.find(" for time"));
  } else if (open == std::string_view::npos || open > title.find(" for set ")) {
    // One value per set, named by the quantity itself.
    size_t set = title.find(" for set ");
    block.quantity = std::string(trim(title.substr(0, set)));
    columns.push_back(block.quantity);
    rest = title.substr(set);
  } else {
    if (close == std::string_view::npos) fail(expected, std::string(title));
    block.quantity = std::string(trim(title.substr(0, open)));
    columns = splitCommas(title.substr(open + 1, close - open - 1));
    rest = title.substr(close + 1);
  }
  const std::string_view timeWords = startsWith(title, kContactCount) ? " for time" : " and time";
  size_t at = rest.find(timeWords);
  if (at == std::string_view::npos) fail(expected, std::string(title));
  size_t setAt = rest.find(" for set ");
  if (setAt != std::string_view::npos && setAt < at) {
    block.set = upper(trim(rest.substr(setAt + 9, at - setAt - 9)));
  }
  auto time = toDouble(rest.substr(at + timeWords.size()));
  if (!time) fail(expected, std::string(title));
  block.time = *time;

  static const std::set<std::string> labelColumns = {
      "elem", "element", "integ.pnt.", "slave element+face", "node", "slave node"};
  bool ip = false, face = false, elem = false, slaveNode = false;
  for (const std::string& c : columns) {
    if (c.empty()) continue;
    if (!labelColumns.count(c)) {
      block.components.push_back(c);
      continue;
    }
    ip |= c == "integ.pnt.";
    face |= c == "slave element+face";
    elem |= c == "elem" || c == "element";
    slaveNode |= c == "slave node";
  }
  if (block.components.empty())
    fail("at least one value column in the table title", std::string(title));
  int labels = 1;
  if (startsWith(block.quantity, "total")) {  // also the count of contact elements
    block.kind = DatRowKind::Total, labels = 0;
  } else if (ip) {
    block.kind = DatRowKind::IntegrationPoint, labels = 2;
  } else if (face) {
    block.kind = DatRowKind::ContactFace, labels = 2;
  } else if (elem) {
    block.kind = DatRowKind::Element;
  } else if (slaveNode) {
    block.kind = DatRowKind::ContactNode;
  }

  // Which section the table belongs to: a new time ends an eigenmode or steady-state point.
  if (sectionTimeSet_ && !sameTime(sectionTime_, block.time)) {
    mode_ = 0;
    steadyState_ = false;
  }
  sectionTimeSet_ = true;
  sectionTime_ = block.time;
  block.mode = mode_;
  if (steadyState_) {
    block.imaginary = !seenInPoint_.insert(block.quantity + "|" + block.set).second;
  }
  skipping_ = false;

  const size_t width = block.components.size();
  std::string line;
  bool rows = false;
  while (next(line)) {
    std::string_view t = trim(line);
    if (t.empty()) {
      if (rows) break;
      continue;
    }
    if (isBanner(t) || isTableTitle(t)) {
      pushBack(line);
      break;
    }
    std::vector<std::string_view> tokens = splitBlanks(t);
    // Rows of shell elements end with the name of their orientation: not a number.
    while (!tokens.empty() && !toDouble(tokens.back())) tokens.pop_back();
    if (tokens.size() != labels + width) {
      // A table whose rows are not what its title announces (the solver prints some, such
      // as internal state variables, with more columns): passed over whole.
      warnings_.warn("dat-table-form:" + block.quantity,
                     in_.path() + ":" + std::to_string(in_.lineNumber()) + ": the rows of '" +
                         block.quantity + "' do not have the " + std::to_string(labels + width) +
                         " numbers its title announces; the table is not imported");
      while (next(line)) {
        std::string_view u = trim(line);
        if (u.empty()) break;
        if (isBanner(u) || isTableTitle(u)) {
          pushBack(line);
          break;
        }
      }
      return;
    }
    for (int i = 0; i < labels; ++i) {
      auto v = toInteger(tokens[i]);
      if (!v || *v < std::numeric_limits<int32_t>::min() ||
          *v > std::numeric_limits<int32_t>::max()) {
        fail("an integer label in column " + std::to_string(i + 1), line);
      }
      (i == 0 ? block.labels : block.labels2).push_back(static_cast<int32_t>(*v));
    }
    for (size_t i = labels; i < tokens.size(); ++i) {
      auto v = toDouble(tokens[i]);
      if (!v) fail("a number in column " + std::to_string(i + 1), line);
      block.values.push_back(*v);
    }
    rows = true;
  }
  file_.blocks.push_back(std::move(block));
}

DatFile DatReader::run() {
  std::string line;
  while (next(line)) {
    std::string_view t = trim(line);
    if (t.empty()) continue;
    if (isTableTitle(t)) {
      table(t);
    } else if (isBanner(t)) {
      banner(t);
    } else if (!skipping_) {
      warnings_.warn("dat-line", in_.path() + ":" + std::to_string(in_.lineNumber()) +
                                     ": lines of the print file outside any known table are "
                                     "not imported (the first: '" +
                                     std::string(t.substr(0, 60)) + "')");
    }
  }
  return std::move(file_);
}

}  // namespace

DatFile readDat(const std::string& path, Warnings& warnings) {
  DatReader reader(path, warnings);
  return reader.run();
}

}  // namespace odbs::ccx
