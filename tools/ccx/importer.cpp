#include "tools/ccx/importer.h"

#include "odb/writer.h"
#include "platform/platform.h"
#include "tools/ccx/dat_parser.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/model_import.h"
#include "tools/ccx/odb_sink.h"
#include "tools/ccx/parse_error.h"
#include "tools/ccx/results_import.h"

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

// Inputs from this size on are large: their reading is reported as it goes.
constexpr int64_t kLargeInput = int64_t(64) << 20;

std::string megabytes(int64_t bytes) {
  return std::to_string(bytes / (1 << 20)) + " MB";
}

// Counts what the results import hands over on its way to the database.
class CountingSink : public ResultSink {
 public:
  CountingSink(ImportSummary& summary, ResultSink& next) : summary_(summary), next_(next) {}
  void expandedMesh(const ExpandedMesh& mesh) override {
    summary_.expandedNodes = static_cast<int64_t>(mesh.nodeLabels.size());
    summary_.expandedElements = static_cast<int64_t>(mesh.elements.size());
    next_.expandedMesh(mesh);
  }
  void meshRead() override { next_.meshRead(); }
  void step(int index, const PlannedStep& step) override {
    ++summary_.steps;
    next_.step(index, step);
  }
  void frame(int step, const PlannedFrame& frame, std::vector<PointField>&& points) override {
    ++summary_.frames;
    summary_.fieldOutputs += static_cast<int64_t>(points.size());
    next_.frame(step, frame, std::move(points));
  }
  void field(NodalField&& field) override {
    ++summary_.fieldOutputs;
    next_.field(std::move(field));
  }
  void frameEnd() override { next_.frameEnd(); }
  void history(int step, const std::vector<HistoryRegionData>& regions) override {
    summary_.historyRegions += static_cast<int64_t>(regions.size());
    next_.history(step, regions);
  }

 private:
  ImportSummary& summary_;
  ResultSink& next_;
};

// Passes the result file's blocks to the results import and reports progress.
class ProgressRelay : public FrdVisitor {
 public:
  ProgressRelay(ResultImport& import, const std::string& path, const ProgressReport& progress,
                ImportSummary& summary)
      : import_(import), path_(path), progress_(progress), summary_(summary) {}
  void nodes(std::vector<FrdNode>&& n) override { import_.nodes(std::move(n)); }
  void nodesEnd() override { import_.nodesEnd(); }
  void elements(std::vector<FrdElement>&& e) override { import_.elements(std::move(e)); }
  void elementsEnd() override { import_.elementsEnd(); }
  void block(FrdBlock&& b) override {
    ++summary_.resultBlocks;
    import_.block(std::move(b));
  }
  void progress(int64_t done, int64_t total) override {
    if (progress_ && total > kLargeInput && done - reported_ >= kLargeInput) {
      reported_ = done;
      progress_("read " + megabytes(done) + " of " + megabytes(total) + " of " + path_);
    }
  }

 private:
  ResultImport& import_;
  std::string path_;
  const ProgressReport& progress_;
  ImportSummary& summary_;
  int64_t reported_ = 0;
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
      if (total > kLargeInput)
        progress("read " + megabytes(done) + " of " + megabytes(total) + " of " + request.deck);
    };
  }
  Deck deck = parseDeck(request.deck, warnings, deckProgress);
  checkDeck(deck, warnings);

  DatFile prints;
  if (!request.prints.empty()) prints = readDat(request.prints, warnings);
  summary.printedTables = static_cast<int64_t>(prints.blocks.size());
  if (!prints.eigenvalues.empty()) {
    warnings.warn("dat-eigenvalues", request.prints + ": the eigenvalue tables (" +
                                         std::to_string(prints.eigenvalues.size()) +
                                         " modes) are not imported: the frames' frequencies "
                                         "are the result file's");
  }

  if (request.results.empty() && !prints.blocks.empty()) {
    warnings.warn("dat-without-frd", request.prints +
                                         ": printed values need the result file's frames; "
                                         "without a result file they are not imported");
  }

  // The model goes to the file once the result file's mesh is read, or at the first step
  // (the database sink asks the writer to write it and let it go); the results follow field by
  // field while the result file is read. Until close() the file has a temporary name, and a failure
  // on the way (a damaged result file) removes it: no database is written.
  platform::FileStat resultFile;
  if (progress && !request.results.empty() && platform::statFile(request.results, &resultFile) &&
      resultFile.size > kLargeInput) {
    progress("writing " + request.output + " from " + megabytes(resultFile.size) + " of results");
  }
  odb::Writer writer(request.output, {request.deck, request.results, request.prints});
  addModel(deck, writer, warnings);
  OdbSink database(deck, writer);
  CountingSink sink(summary, database);
  ResultImport results(deck, prints, request.results, sink, warnings);
  if (!request.results.empty()) {
    ProgressRelay relay(results, request.results, progress, summary);
    readFrd(request.results, relay, warnings);
  }
  results.finish();
  writer.close();

  summary.nodes = static_cast<int64_t>(deck.nodes.size());
  summary.elements = static_cast<int64_t>(deck.elements.size());
  summary.nodeSets = static_cast<int64_t>(deck.nodeSets.size());
  summary.elementSets = static_cast<int64_t>(deck.elementSets.size());
  summary.surfaces = static_cast<int64_t>(deck.surfaces.size());
  summary.sections = static_cast<int64_t>(deck.sections.size());
  summary.materials = static_cast<int64_t>(deck.materials.size());
  return summary;
}

}  // namespace odbs::ccx
