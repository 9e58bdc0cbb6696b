#include "tools/ccx/importer.h"

#include <set>

#include "core/platform.h"
#include "odb/writer.h"
#include "tools/ccx/dat_parser.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/model_import.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

std::string besideDeck(const std::string& deck, const std::string& extension) {
  std::string base = deck;
  size_t dot = base.rfind('.');
  size_t slash = base.rfind('/');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) base.resize(dot);
  std::string path = base + extension;
  return platform::fileReadable(path) ? path : std::string();
}

std::string megabytes(int64_t bytes) {
  return std::to_string(bytes / (1 << 20)) + " MB";
}

// Reads the result file and checks it against the deck: every result block belongs to a
// step of the deck, and the frames of each step follow one another.
class ResultCheck : public FrdVisitor {
 public:
  ResultCheck(const Deck& deck, const std::string& path, const ProgressReport& progress)
      : deck_(deck), path_(path), progress_(progress) {}

  void block(FrdBlock&& b) override {
    if (b.step < 1 || b.step > static_cast<int>(deck_.steps.size())) {
      throw InputError(path_ + ":" + std::to_string(b.line) + ": result block " + b.name +
                       " belongs to step " + std::to_string(b.step) + ", but the deck has " +
                       std::to_string(deck_.steps.size()) + " steps");
    }
    ++blocks_;
    frames_.insert({b.step, b.increment, b.mode, b.value});
  }
  void progress(int64_t done, int64_t total) override {
    if (progress_ && total > (64 << 20) && done - reported_ >= (64 << 20)) {
      reported_ = done;
      progress_("read " + megabytes(done) + " of " + megabytes(total) + " of " + path_);
    }
  }

  int64_t blocks() const { return blocks_; }
  int64_t frames() const { return static_cast<int64_t>(frames_.size()); }

 private:
  const Deck& deck_;
  std::string path_;
  const ProgressReport& progress_;
  int64_t blocks_ = 0, reported_ = 0;
  std::set<std::tuple<int, int, int, double>> frames_;
};

}  // namespace

std::string resultsBeside(const std::string& deck) {
  return besideDeck(deck, ".frd");
}
std::string printsBeside(const std::string& deck) {
  return besideDeck(deck, ".dat");
}

ImportSummary importCalculix(const ImportRequest& request, Warnings& warnings,
                             const ProgressReport& progress) {
  ImportSummary summary;
  Progress deckProgress;
  if (progress) {
    deckProgress = [&](int64_t done, int64_t total) {
      if (total > (64 << 20))
        progress("read " + megabytes(done) + " of " + megabytes(total) + " of " + request.deck);
    };
  }
  Deck deck = parseDeck(request.deck, warnings, deckProgress);
  checkDeck(deck);

  DatFile prints;
  if (!request.prints.empty()) prints = readDat(request.prints, warnings);
  summary.printedTables = static_cast<int64_t>(prints.blocks.size());

  if (!request.results.empty()) {
    ResultCheck check(deck, request.results, progress);
    readFrd(request.results, check, warnings);
    summary.resultBlocks = check.blocks();
    summary.frames = check.frames();
  }

  // Everything has been read: only now does a file appear, and under a temporary name
  // until the writer closes it.
  if (progress) progress("writing " + request.output);
  odb::Writer writer(request.output);
  addModel(deck, writer, warnings);
  writer.close();

  summary.nodes = static_cast<int64_t>(deck.nodes.size());
  summary.elements = static_cast<int64_t>(deck.elements.size());
  summary.nodeSets = static_cast<int64_t>(deck.nodeSets.size());
  summary.elementSets = static_cast<int64_t>(deck.elementSets.size());
  summary.surfaces = static_cast<int64_t>(deck.surfaces.size());
  summary.sections = static_cast<int64_t>(deck.sections.size());
  summary.materials = static_cast<int64_t>(deck.materials.size());
  summary.steps = static_cast<int64_t>(deck.steps.size());
  return summary;
}

}  // namespace odbs::ccx
