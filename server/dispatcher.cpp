#include "server/dispatcher.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "access/catalogue.h"
#include "access/registry.h"
#include "model/model_export.h"
#include "platform/platform.h"
#include "results/results.h"
#include "server/command_parse.h"
#include "server/line_reader.h"
#include "server/throughput.h"

namespace odbs {

namespace {

// What the dispatcher writes after a handler.
enum class Reply { kEnd, kNone };

using Proc = Reply (*)(ReplyChannel& out, CommandState& st, const char* line);

void reportAllocationFailure(const char* file, int line) {
  std::fprintf(stderr, "Memory allocation error!!!!\n");
  std::fprintf(stderr, "FILE :%s , LINE :%d\n", file, line);
}

// Runs a database command. Any exception (the look-up's "Error openOdb" included) is
// dropped without a word: the client sees the end record alone.
template <typename F>
void guarded(F&& body) {
  try {
    body();
  } catch (...) {
  }
}

std::string nameFrom(const char* line, size_t pos) {
  return std::string(lineFrom(line, pos));
}

// ---- Commands without a database --------------------------------------------------

Reply cmdFreeResultCache(ReplyChannel&, CommandState& st, const char*) {
  st.resultCache.clear();
  st.resultCache.shrink_to_fit();
  return Reply::kNone;
}

Reply cmdRequestDefined(ReplyChannel&, CommandState& st, const char* line) {
  st.request = parseRequest(line, true);
  return Reply::kNone;
}

Reply cmdRequestUndefined(ReplyChannel&, CommandState& st, const char* line) {
  st.request = parseRequest(line, false);
  return Reply::kNone;
}

Reply cmdRawWrites(ReplyChannel& out, CommandState&, const char* line) {
  runRawWriteTest(lineFrom(line, 2), out);
  return Reply::kEnd;
}

Reply cmdFramedRecords(ReplyChannel& out, CommandState&, const char* line) {
  runFramedRecordTest(lineFrom(line, 2), out);
  return Reply::kEnd;
}

Reply cmdCacheBaseName(ReplyChannel&, CommandState&, const char* line) {
  setCatalogueBaseName(nameFrom(line, 2));
  return Reply::kEnd;
}

Reply cmdSelectionSize(ReplyChannel&, CommandState& st, const char* line) {
  try {
    resetSelection(line, &st.selection);
  } catch (const std::bad_alloc&) {
    reportAllocationFailure(__FILE__, __LINE__);
    st.selection = SelectionList();
  }
  return Reply::kEnd;
}

Reply cmdSelectionLabels(ReplyChannel&, CommandState& st, const char* line) {
  try {
    appendSelection(line, &st.selection);
  } catch (const std::bad_alloc&) {
    reportAllocationFailure(__FILE__, __LINE__);
  }
  return Reply::kEnd;
}

Reply cmdProcessId(ReplyChannel& out, CommandState&, const char*) {
  out.send(RecordBuilder(kRecProcessId).i32(platform::processId()));
  return Reply::kEnd;
}

Reply cmdQuit(ReplyChannel&, CommandState&, const char*) {
  guarded([] { shutdownAll(); });
  guarded([] { finalizeDatabases(); });
  platform::exitProcess();
}

Reply cmdVFlag(ReplyChannel&, CommandState& st, const char* line) {
  st.vFlag = std::atoi(lineFrom(line, 2)) >= 1 ? 1 : -1;
  return Reply::kEnd;
}

// ---- Database registry ---------------------------------------------------------------

Reply cmdOpen(ReplyChannel& out, CommandState&, const char* line) {
  guarded([&] { lookupOrOpen(nameFrom(line, 2), out); });
  return Reply::kEnd;
}

Reply cmdClose(ReplyChannel& out, CommandState&, const char* line) {
  guarded([&] { closeDatabase(nameFrom(line, 2), out); });
  return Reply::kEnd;
}

Reply cmdList(ReplyChannel&, CommandState&, const char*) {
  guarded([] { visitOpenDatabases(); });
  return Reply::kEnd;
}

// The upgrade-needed record takes the place of the end record.
Reply cmdUpgradeCheck(ReplyChannel& out, CommandState&, const char* line) {
  bool outstanding = false;
  guarded([&] { outstanding = upgradeOutstanding(nameFrom(line, 2)); });
  if (!outstanding) return Reply::kEnd;
  static const uint8_t kUpgradeNeeded[] = {kRecMessage, 1, 0, 0, 0};
  out.sendRaw(kUpgradeNeeded, sizeof kUpgradeNeeded);
  return Reply::kNone;
}

Reply cmdCatalogue(ReplyChannel& out, CommandState& st, const char* line) {
  guarded([&] {
    OdbContext& ctx = lookupOrOpen(nameFrom(line, 3), out);
    char sub = *lineFrom(line, 1);
    switch (sub) {
      case 'd':
      case 'D':
        st.catalogueMode = sub == 'D';
        sendCatalogue(ctx, st.catalogueMode, out);
        break;
      case 's':
      case 'S':
      case 'v':
      case 'V':
      case 'n':
      case 'N':
        st.catalogueMode = sub >= 'A' && sub <= 'Z';
        break;
      default:
        break;
    }
  });
  return Reply::kEnd;
}

// ---- Model -----------------------------------------------------------------------------

Reply cmdModelNodes(ReplyChannel& out, CommandState&, const char* line) {
  guarded([&] { exportModel(lookupOrOpen(nameFrom(line, 2), out), true, out); });
  return Reply::kEnd;
}

Reply cmdModel(ReplyChannel& out, CommandState&, const char* line) {
  guarded([&] { exportModel(lookupOrOpen(nameFrom(line, 2), out), false, out); });
  return Reply::kEnd;
}

Reply setsCommand(ReplyChannel& out, const char* line, int mode) {
  guarded([&] {
    OdbContext& ctx = lookupOrOpen(nameFrom(line, 6), out);
    ctx.setOption = *lineFrom(line, 2) == '1';
    sendSets(ctx, mode, *lineFrom(line, 4) == '1', out);
  });
  return Reply::kEnd;
}

Reply cmdSets(ReplyChannel& out, CommandState&, const char* line) {
  return setsCommand(out, line, 0);
}
Reply cmdSetsMode1(ReplyChannel& out, CommandState&, const char* line) {
  return setsCommand(out, line, 1);
}

// i: irc (criteria, silent), irf (filtered model), irs (named sets), is (assignments).
Reply cmdInquiry(ReplyChannel& out, CommandState& st, const char* line) {
  const char* sub = lineFrom(line, 1);
  if (std::strncmp(sub, "rc", 2) == 0) {
    if (auto c = parseCriterion(line)) st.criteria.push_back(std::move(*c));
    return Reply::kNone;
  }
  if (std::strncmp(sub, "rf", 2) == 0) {
    guarded([&] { exportFilteredModel(lookupOrOpen(nameFrom(line, 4), out), st.criteria, out); });
    st.criteria.clear();
  } else if (std::strncmp(sub, "rs", 2) == 0) {
    guarded([&] {
      OdbContext& ctx = lookupOrOpen(nameFrom(line, 6), out);
      ctx.setOption = *lineFrom(line, 4) == '1';
      sendNamedSets(ctx, st.criteria, out);
    });
  } else if (*sub == 's') {
    guarded([&] { exportSectionAssignments(lookupOrOpen(nameFrom(line, 5), out), out); });
  }
  return Reply::kEnd;
}

// ---- Results ---------------------------------------------------------------------------

// h: hi (all regions), hr (one region), ho / hb (history name list, silent).
Reply cmdHistory(ReplyChannel& out, CommandState& st, const char* line) {
  switch (*lineFrom(line, 1)) {
    case 'i':
      guarded(
          [&] { sendHistory(lookupOrOpen(nameFrom(line, 3), out), 0, 0, st.historyNames, out); });
      return Reply::kEnd;
    case 'r': {
      int number = 0;
      std::string name;
      parseHistoryRegion(line, &number, &name);
      guarded([&] { sendHistory(lookupOrOpen(name, out), 1, number, st.historyNames, out); });
      return Reply::kEnd;
    }
    case 'o':
      // The list is sized by the names that hb appends, not by the announced count.
      st.historyNames.clear();
      return Reply::kNone;
    case 'b':
      st.historyNames.emplace_back(lineFrom(line, 3));
      return Reply::kNone;
    default:
      return Reply::kEnd;
  }
}

Reply cmdResults(ReplyChannel& out, CommandState& st, const char* line) {
  st.sectionPoints = SectionPointPair();
  char sub = *lineFrom(line, 1);

  FieldRequest req;
  req.param1 = st.request.param1;
  req.param2 = st.request.param2;
  req.text = st.request.text;
  req.upperCase = sub >= 'A' && sub <= 'Z';
  req.requestDefined = st.request.defined;
  req.positionCode = st.request.positionCode;

  std::string name = nameFrom(line, 3);
  switch (sub) {
    case 'l':
    case 'L': {
      auto db = parseSectionPointRequest(line, &st.sectionPoints);
      if (!db) return Reply::kEnd;
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
      guarded([&] { sendContactStatus(lookupOrOpen(name, out), st.request, st.selection, out); });
      return Reply::kEnd;
    case 'n':
    case 'N':
    case 'g':
    case 'G': {
      auto region = parseRegionWord(line, sub == 'n' || sub == 'N');
      if (!region) return Reply::kEnd;
      guarded([&] {
        sendRegionField(lookupOrOpen(region->database, out), st.request, req.upperCase, *region,
                        out);
      });
      return Reply::kEnd;
    }
    default:
      req.resultMode = -3;
      req.upperCase = sub == 'B';
      break;
  }
  req.sectionPoints = st.sectionPoints;
  guarded([&] { walkField(lookupOrOpen(name, out), req, st.resultCache, out); });
  return Reply::kEnd;
}

// ---- The command table -----------------------------------------------------------------

struct Command {
  char letter;
  Proc proc;
};

const Command kCommands[] = {
    {'C', cmdFreeResultCache},
    {'D', cmdRequestDefined},
    {'G', cmdModelNodes},
    {'M', cmdRawWrites},
    {'S', cmdSets},
    {'T', cmdCacheBaseName},
    {'a', cmdSelectionSize},
    {'b', cmdSelectionLabels},
    {'c', cmdClose},
    {'d', cmdRequestUndefined},
    {'f', cmdCatalogue},
    {'g', cmdModel},
    {'h', cmdHistory},
    {'i', cmdInquiry},
    {'l', cmdList},
    {'m', cmdFramedRecords},
    {'o', cmdOpen},
    {'p', cmdProcessId},
    {'q', cmdQuit},
    {'r', cmdResults},
    {'s', cmdSetsMode1},
    {'u', cmdUpgradeCheck},
    {'v', cmdVFlag},
};

Proc findCommand(unsigned char letter) {
  static const auto table = [] {
    struct Table {
      Proc procs[256] = {};
    } t;
    for (const Command& c : kCommands) t.procs[static_cast<unsigned char>(c.letter)] = c.proc;
    return t;
  }();
  return table.procs[letter];
}

}  // namespace

void Dispatcher::run(const char* line) {
  Proc proc = findCommand(static_cast<unsigned char>(line[0]));
  Reply reply = proc ? proc(out_, state_, line) : Reply::kEnd;
  // Handlers flush what they queued; a handler cut short by an exception may not have,
  // and its records must still arrive before the end record.
  out_.flush();
  if (reply == Reply::kEnd) out_.sendEnd();
}

void runCommandLoop(int inFd, int outFd) {
  LineReader reader(inFd);
  Dispatcher dispatcher(outFd);
  static char line[kMaxCommandLine + 1];
  while (reader.next(line)) dispatcher.run(line);
  platform::exitProcess();
}

}  // namespace odbs
