#include "server/dispatcher.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "access/catalogue.h"
#include "access/registry.h"
#include "model/export_model.h"
#include "model/named_sets.h"
#include "model/other_exports.h"
#include "model/send_sets.h"
#include "platform/platform.h"
#include "results/results.h"
#include "server/command_parse.h"
#include "server/line_reader.h"
#include "server/throughput.h"
#include "wire/command_table.h"

namespace odbs {

namespace {

// What one command line hands to its procedure.
struct Call {
  ReplyChannel& out;
  CommandState& st;
  const char* line;
  const CommandRow& row;
  bool endReplaced = false;  // set by u when its record takes the end record's place
  bool quit = false;         // set by q: the loop ends, nothing more is written

  // The database name: the rest of the line from the row's name position.
  std::string name() const { return std::string(lineFrom(line, row.namePos)); }
};

using Proc = void (*)(Call& c);

void reportAllocationFailure(const char* file, int line) {
  std::fprintf(stderr, "Memory allocation error!!!!\n");
  std::fprintf(stderr, "FILE :%s , LINE :%d\n", file, line);
}

// ---- Commands without a database --------------------------------------------------

void cmdFreeResultCache(Call& c) {
  c.st.resultCache.clear();
  c.st.resultCache.shrink_to_fit();
}

void cmdRequestDefined(Call& c) {
  c.st.request = parseRequest(c.line, true);
}

void cmdRequestUndefined(Call& c) {
  c.st.request = parseRequest(c.line, false);
}

void cmdRawWrites(Call& c) {
  runRawWriteTest(lineFrom(c.line, 2), c.out);
}

void cmdFramedRecords(Call& c) {
  runFramedRecordTest(lineFrom(c.line, 2), c.out);
}

void cmdCacheBaseName(Call& c) {
  setCatalogueBaseName(lineFrom(c.line, 2));
}

void cmdSelectionSize(Call& c) {
  try {
    resetSelection(c.line, &c.st.selection);
  } catch (const std::bad_alloc&) {
    reportAllocationFailure(__FILE__, __LINE__);
    c.st.selection = SelectionList();
  }
}

void cmdSelectionLabels(Call& c) {
  try {
    appendSelection(c.line, &c.st.selection);
  } catch (const std::bad_alloc&) {
    reportAllocationFailure(__FILE__, __LINE__);
  }
}

void cmdProcessId(Call& c) {
  c.out.send(RecordBuilder(kRecProcessId).i32(platform::processId()));
}

void cmdQuit(Call& c) {
  // The library is finalised even when closing a database failed.
  try {
    shutdownAll();
  } catch (...) {
  }
  try {
    finalizeDatabases();
  } catch (...) {
  }
  c.quit = true;
}

void cmdVFlag(Call& c) {
  c.st.vFlag = std::atoi(lineFrom(c.line, 2)) >= 1 ? 1 : -1;
}

void cmdHistoryNew(Call& c) {
  c.st.historyNames.open(std::atoi(lineFrom(c.line, 3)));
}

void cmdHistoryName(Call& c) {
  c.st.historyNames.append(lineFrom(c.line, 3));
}

void cmdCriterion(Call& c) {
  if (auto criterion = parseCriterion(c.line)) c.st.criteria.push_back(std::move(*criterion));
}

// ---- Database registry ---------------------------------------------------------------

void cmdOpen(Call& c) {
  lookupOrOpen(c.name(), c.out);
}

void cmdClose(Call& c) {
  closeDatabase(c.name(), c.out);
}

void cmdList(Call&) {
  visitOpenDatabases();
}

// The upgrade-needed record takes the place of the end record.
void cmdUpgradeCheck(Call& c) {
  if (!upgradeOutstanding(c.name())) return;
  static const uint8_t kUpgradeNeeded[] = {kRecMessage, 1, 0, 0, 0};
  c.out.sendRaw(kUpgradeNeeded, sizeof kUpgradeNeeded);
  c.endReplaced = true;
}

void cmdCatalogue(Call& c) {
  OdbContext& ctx = lookupOrOpen(c.name(), c.out);
  char sub = *lineFrom(c.line, 1);
  switch (sub) {
    case 'd':
    case 'D':
      c.st.catalogueMode = sub == 'D';
      sendCatalogue(ctx, c.st.catalogueMode, c.out);
      break;
    case 's':
    case 'S':
    case 'v':
    case 'V':
      c.st.catalogueMode = sub >= 'A' && sub <= 'Z';
      sendStepCounts(ctx,
                     sub == 's' || sub == 'S' ? StepCountChoice::kFieldFrames
                                              : StepCountChoice::kHistorySamples,
                     c.out);
      break;
    case 'n':
    case 'N':
      c.st.catalogueMode = sub >= 'A' && sub <= 'Z';
      break;
    default:
      break;
  }
}

// ---- Model -----------------------------------------------------------------------------

void cmdModelNodes(Call& c) {
  exportModel(lookupOrOpen(c.name(), c.out), true, c.out);
}

void cmdModel(Call& c) {
  exportModel(lookupOrOpen(c.name(), c.out), false, c.out);
}

void setsCommand(Call& c, int mode) {
  OdbContext& ctx = lookupOrOpen(c.name(), c.out);
  ctx.setOption = *lineFrom(c.line, 2) == '1';
  sendSets(ctx, mode, *lineFrom(c.line, 4) == '1', c.out);
}

void cmdSets(Call& c) {
  setsCommand(c, 0);
}
void cmdSetsMode1(Call& c) {
  setsCommand(c, 1);
}

void cmdFilteredModel(Call& c) {
  // The criteria list is used up even when the export fails.
  std::vector<Criterion> criteria = std::move(c.st.criteria);
  c.st.criteria.clear();
  exportFilteredModel(lookupOrOpen(c.name(), c.out), criteria, c.out);
}

void cmdNamedSets(Call& c) {
  OdbContext& ctx = lookupOrOpen(c.name(), c.out);
  ctx.setOption = *lineFrom(c.line, 4) == '1';
  sendNamedSets(ctx, c.st.criteria, c.out);
}

void cmdSectionAssignments(Call& c) {
  exportSectionAssignments(lookupOrOpen(c.name(), c.out), c.out);
}

// ---- Results ---------------------------------------------------------------------------

void cmdHistoryAll(Call& c) {
  sendHistory(lookupOrOpen(c.name(), c.out), 0, 0, c.st.historyNames, c.out);
}

void cmdHistoryRegion(Call& c) {
  // Without a space after the number there is no database: the end record alone.
  if (!std::strchr(lineFrom(c.line, 3), ' ')) return;
  int number = 0;
  std::string name;
  parseHistoryRegion(c.line, &number, &name);
  sendHistory(lookupOrOpen(name, c.out), 1, number, c.st.historyNames, c.out);
}

void cmdResults(Call& c) {
  CommandState& st = c.st;
  st.sectionPoints = SectionPointPair();
  char sub = *lineFrom(c.line, 1);

  FieldRequest req;
  req.param1 = st.request.param1;
  req.param2 = st.request.param2;
  req.text = st.request.text;
  req.upperCase = sub >= 'A' && sub <= 'Z';
  req.requestDefined = st.request.defined;
  req.positionCode = st.request.positionCode;

  std::string name = c.name();
  switch (sub) {
    case 'l':
    case 'L': {
      auto db = parseSectionPointRequest(c.line, &st.sectionPoints);
      if (!db) return;
      name = *db;
      req.resultMode = 0;
      break;
    }
    case 's':
    case 'S':
      req.resultMode = 0;
      break;
    case 'm':
    case 'M':
      req.resultMode = 1;
      break;
    case 'v':
    case 'V':
      req.resultMode = -1;
      break;
    case 't':
    case 'T':
      req.resultMode = -2;
      break;
    case 'd':
      sendContactStatus(lookupOrOpen(name, c.out), st.request, st.selection, c.out);
      return;
    case 'n':
    case 'N':
    case 'g':
    case 'G': {
      auto region = parseRegionWord(c.line, sub == 'n' || sub == 'N');
      if (!region) return;
      sendRegionField(lookupOrOpen(region->database, c.out), st.request, req.upperCase, *region,
                      c.out);
      return;
    }
    default:
      req.resultMode = -3;
      req.upperCase = sub == 'B';
      break;
  }
  req.sectionPoints = st.sectionPoints;
  walkField(lookupOrOpen(name, c.out), req, st.resultCache, c.out);
}

// ---- The command table -----------------------------------------------------------------

// What happens to records still pending when a procedure ends by an exception. They are
// written before the end record, except for the model family, whose reply must not carry
// the part of a model that was queued before the failure.
enum class OnFailure : uint8_t { kSendPending, kDropPending };

struct Handler {
  std::string_view prefix;  // joins the row of wire/command_table.h
  Proc proc;                // nullptr: nothing but the reply kind's closing
  OnFailure onFailure;
};

constexpr OnFailure kSend = OnFailure::kSendPending;
constexpr OnFailure kDrop = OnFailure::kDropPending;

constexpr Handler kHandlers[] = {
    {"", nullptr, kSend},
    {"C", cmdFreeResultCache, kSend},
    {"D", cmdRequestDefined, kSend},
    {"G", cmdModelNodes, kDrop},
    {"M", cmdRawWrites, kSend},
    {"S", cmdSets, kDrop},
    {"T", cmdCacheBaseName, kSend},
    {"a", cmdSelectionSize, kSend},
    {"b", cmdSelectionLabels, kSend},
    {"c", cmdClose, kSend},
    {"d", cmdRequestUndefined, kSend},
    {"f", cmdCatalogue, kSend},
    {"g", cmdModel, kDrop},
    {"h", nullptr, kSend},
    {"hb", cmdHistoryName, kSend},
    {"hi", cmdHistoryAll, kSend},
    {"ho", cmdHistoryNew, kSend},
    {"hr", cmdHistoryRegion, kSend},
    {"i", nullptr, kSend},
    {"irc", cmdCriterion, kSend},
    {"irf", cmdFilteredModel, kDrop},
    {"irs", cmdNamedSets, kDrop},
    {"is", cmdSectionAssignments, kDrop},
    {"l", cmdList, kSend},
    {"m", cmdFramedRecords, kSend},
    {"o", cmdOpen, kSend},
    {"p", cmdProcessId, kSend},
    {"q", cmdQuit, kSend},
    {"r", cmdResults, kSend},
    {"s", cmdSetsMode1, kDrop},
    {"u", cmdUpgradeCheck, kSend},
    {"v", cmdVFlag, kSend},
};

// kHandlers lists the rows of the command table in the table's order.
constexpr bool joinedWithTheTable() {
  if (std::size(kHandlers) != std::size(kCommandTable)) return false;
  for (size_t i = 0; i < std::size(kHandlers); ++i)
    if (kHandlers[i].prefix != kCommandTable[i].prefix) return false;
  return true;
}
static_assert(joinedWithTheTable(), "one handler per row of the command table, in its order");

const Handler& handlerOf(const CommandRow& row) {
  return kHandlers[&row - kCommandTable];
}

}  // namespace

bool Dispatcher::run(const char* line) {
  const CommandRow& row = commandRowOf(line);
  const Handler& handler = handlerOf(row);
  Call call{out_, state_, line, row};
  if (handler.proc != nullptr) {
    // Every exception ends here: a bad database or a failing handler never ends the
    // server, and the reply is still closed as its kind says.
    try {
      handler.proc(call);
    } catch (...) {
      if (handler.onFailure == OnFailure::kDropPending) out_.discardPending();
    }
  }
  // Handlers flush what they queued; one cut short by an exception may not have, and its
  // records must still arrive before the end record.
  out_.flush();
  switch (row.reply) {
    case ReplyKind::kUntilEnd:
    case ReplyKind::kRawThenEnd:
      out_.sendEnd();
      break;
    case ReplyKind::kUpgradeCheck:
      if (!call.endReplaced) out_.sendEnd();
      break;
    case ReplyKind::kNone:
    case ReplyKind::kExit:
      break;
  }
  return !call.quit;
}

void serveCommands(int inFd, int outFd) {
  LineReader reader(inFd);
  Dispatcher dispatcher(outFd);
  static char line[kMaxCommandLine + 1];
  while (reader.next(line) && dispatcher.run(line)) {
  }
}

void runCommandLoop(int inFd, int outFd) {
  serveCommands(inFd, outFd);
  platform::exitProcess();
}

}  // namespace odbs
