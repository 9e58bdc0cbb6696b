#include "tools/ccx/inp_cards.h"

#include "tools/ccx/parse_error.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

constexpr size_t kMaxIncludeDepth = 16;

bool isKeywordLine(std::string_view line) {
  std::string_view t = trim(line);
  return !t.empty() && t[0] == '*' && !startsWith(t, "**");
}

// "SOLID  section" -> "SOLID SECTION".
std::string normaliseKeyword(std::string_view word) {
  std::string out;
  for (char c : upper(trim(word))) {
    if (c == ' ' || c == '\t') {
      if (!out.empty() && out.back() != ' ') out += ' ';
    } else {
      out += c;
    }
  }
  return out;
}

std::string folderOf(const std::string& path) {
  size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

}  // namespace

std::string Card::get(const std::string& name, const std::string& fallback) const {
  auto it = parameters.find(name);
  return it == parameters.end() ? fallback : it->second;
}

CardReader::CardReader(const std::string& path) {
  stack_.push_back(std::make_unique<SourceReader>(path));
  topSize_ = stack_.front()->fileSize();
}

int64_t CardReader::topSize() const {
  return topSize_;
}
int64_t CardReader::topLines() const {
  return stack_.empty() ? topLines_ : stack_.front()->lineNumber();
}
int64_t CardReader::topOffset() const {
  return stack_.empty() ? topSize_ : stack_.front()->offset();
}

bool CardReader::nextMeaningful(std::string_view& line, SourceRef& where, int64_t& whereFiles) {
  while (!stack_.empty()) {
    SourceReader& in = *stack_.back();
    if (!in.nextLine(line)) {
      if (stack_.size() == 1) topLines_ = in.lineNumber();
      stack_.pop_back();
      ++files_;
      continue;
    }
    if (isPassedOver(line)) continue;
    if (whereFiles != files_) {
      where.file = in.path();
      whereFiles = files_;
    }
    where.line = in.lineNumber();
    if (!in.lineEnded() && !isKeywordLine(line)) {
      throw ParseError(where.file, where.line,
                       "a line end after this data line (the file ends inside it: cut short?)",
                       std::string(line));
    }
    return true;
  }
  return false;
}

bool CardReader::nextCard(Card& card) {
  std::string line;
  SourceRef where;
  int64_t whereFiles = -1;
  while (true) {
    if (hasPending_) {
      line = pending_;
      where = pendingWhere_;
      hasPending_ = false;
    } else if (std::string_view view; nextMeaningful(view, where, whereFiles)) {
      line.assign(view);
    } else {
      if (!seenCard_ && stray_ > 0) {
        throw ParseError(strayWhere_.file, strayWhere_.line,
                         "a keyword line (starting with '*') first", strayText_);
      }
      return false;
    }
    if (!isKeywordLine(line)) {
      // Lines before the first keyword line: the solver passes over them; a deck with no
      // keyword line at all is not a deck.
      if (!seenCard_ && stray_++ == 0) {
        strayWhere_ = where;
        strayText_ = line;
      }
      continue;  // data lines of a card nobody read
    }
    seenCard_ = true;

    // A keyword line ending with a comma goes on in the next line.
    std::string text(trim(line));
    while (!text.empty() && text.back() == ',') {
      std::string_view more;
      SourceRef moreWhere;
      int64_t moreFiles = -1;
      if (!nextMeaningful(more, moreWhere, moreFiles)) break;
      if (isKeywordLine(more)) {
        pending_ = more;
        pendingWhere_ = moreWhere;
        hasPending_ = true;
        break;
      }
      text += std::string(trim(more));
    }

    std::vector<std::string> fields = splitCommas(std::string_view(text).substr(1));
    card.keyword = normaliseKeyword(fields[0]);
    card.parameters.clear();
    card.where = where;
    for (size_t i = 1; i < fields.size(); ++i) {
      if (fields[i].empty()) continue;
      size_t eq = fields[i].find('=');
      if (eq == std::string::npos) {
        card.parameters[normaliseKeyword(fields[i])] = "";
      } else {
        card.parameters[normaliseKeyword(fields[i].substr(0, eq))] =
            std::string(trim(std::string_view(fields[i]).substr(eq + 1)));
      }
    }
    if (card.keyword.empty()) throw ParseError(where.file, where.line, "a keyword after '*'", line);
    if (card.keyword == "INCLUDE") {
      openInclude(card);
      continue;
    }
    return true;
  }
}

void CardReader::openInclude(const Card& card) {
  std::string input = card.get("INPUT");
  if (input.empty()) {
    throw ParseError(card.where.file, card.where.line, "*INCLUDE with INPUT=<file>");
  }
  if (stack_.size() >= kMaxIncludeDepth) {
    throw ParseError(card.where.file, card.where.line,
                     "at most " + std::to_string(kMaxIncludeDepth) + " nested *INCLUDE files",
                     input);
  }
  if (input.size() >= 2 && input.front() == '"' && input.back() == '"') {
    input = input.substr(1, input.size() - 2);
  }
  std::string path = input[0] == '/' ? input : folderOf(card.where.file) + input;
  try {
    stack_.push_back(std::make_unique<SourceReader>(path));
    ++files_;
  } catch (const ParseError&) {
    throw ParseError(card.where.file, card.where.line, "an included file that can be read", path);
  }
}

bool CardReader::nextDataText(std::string_view& text) {
  if (hasPending_) return false;
  if (!nextMeaningful(text, where_, whereFiles_)) return false;
  if (isKeywordLine(text)) {
    pending_ = text;
    pendingWhere_ = where_;
    hasPending_ = true;
    return false;
  }
  if (dataFiles_ != whereFiles_) {
    dataWhere_.file = where_.file;
    dataFiles_ = whereFiles_;
  }
  dataWhere_.line = where_.line;
  return true;
}

void CardReader::split(std::string_view text, DataLine& line) const {
  splitCommasInto(text, line.fields);
  line.endsWithComma = line.fields.size() > 1 && line.fields.back().empty();
  if (line.endsWithComma) line.fields.pop_back();
  if (line.where.file != dataWhere_.file) line.where.file = dataWhere_.file;
  line.where.line = dataWhere_.line;
}

bool CardReader::nextData(DataLine& line) {
  std::string_view text;
  if (!nextDataText(text)) return false;
  split(text, line);
  return true;
}

}  // namespace odbs::ccx
