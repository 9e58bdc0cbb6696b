// soak: one odb_server under a long run of mixed commands, watched for growth.
//
//   soak [--server PATH] [--commands N] [--seed S]
//
// Makes a small synthetic database, a damaged copy of it (cut half-way) and names a
// missing one, starts the server (default: beside this program) and sends N commands
// (default 100000) drawn at random from: every command letter with its usual arguments on
// each of the three databases, lines over the 4094-byte limit, lines of random bytes, and
// now and then a throughput test (which prints a line on standard error).
// Every reply is read in full. Prints the server's resident memory and open descriptors
// after the first 1000 commands and at the end, the replies and the time taken. Never
// fails on the figures: it exits 1 only when the server dies or stops answering.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/bench_args.h"
#include "bench/bench_util.h"
#include "bench/gen/generator.h"
#include "client/client_error.h"
#include "client/command_lines.h"
#include "client/server_process.h"

namespace {

namespace fs = std::filesystem;

struct Args {
  std::string server;
  long commands = 100000;
  unsigned seed = 1;
};

// Resident memory in kB and open descriptors of process pid, read from /proc.
struct Usage {
  long rssKb = 0;
  long descriptors = 0;
};

Usage usageOf(int pid) {
  Usage u;
  std::ifstream in("/proc/" + std::to_string(pid) + "/status");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind("VmRSS:", 0) == 0) u.rssKb = std::atol(line.c_str() + 6);
  std::error_code ec;
  for (auto it = fs::directory_iterator("/proc/" + std::to_string(pid) + "/fd", ec);
       !ec && it != fs::directory_iterator(); it.increment(ec))
    ++u.descriptors;
  return u;
}

// The lines sent for one database: every letter with its usual arguments.
std::vector<std::string> databaseLines(const std::string& db, const std::string& base) {
  return {"o " + db,   "g " + db,      "G " + db,    "S 0 0 " + db,   "s 0 1 " + db,
          "T " + base, "fd " + db,     "fD " + db,   "fs " + db,      "u " + db,
          "c " + db,   "hi " + db,     "hr 1 " + db, "rs " + db,      "rM " + db,
          "rd " + db,  "rl 1 2," + db, "is " + db,   "irs 0 0 " + db, "irf " + db};
}

// Lines that need no database.
const std::vector<std::string> kStateLines = {
    "p",    "l",     "v 1",       "v 0",       "a 10", "b 1 2 3",   "C",  "D 1 2 3 U", "d 0 0 0 S",
    "ho 1", "hb U1", "irc 7 0 E", "irc 1 0 X", "",     "x unknown", "zz", "f",         "r"};

// The throughput tests: each prints a line on the server's standard error, so they are
// drawn rarely.
const std::vector<std::string> kThroughputLines = {"m 5 3", "M 3 100"};

// Random bytes without a newline, and without the letters that end the server (q), ask
// for unbounded output (M, m) or a huge selection list (a), or name a catalogue file (T:
// the next f would write a file of a random name in the current folder).
std::string randomBytes(std::mt19937& random, size_t n) {
  std::string s;
  while (s.size() < n) {
    char c = char(random() & 0xFF);
    if (std::string_view("\nqMmaT").find(c) == std::string_view::npos) s += c;
  }
  return s;
}

constexpr const char* kUsage = "usage: soak [--server PATH] [--commands N] [--seed S]";

}  // namespace

int main(int argc, char** argv) {
  Args a;
  a.server = odbs::bench::serverBeside(argv[0]);
  odbs::bench::parseBenchArgs(
      argc, argv,
      {{"--server", true, [&](const char* v) { a.server = v; }},
       {"--commands", true, [&](const char* v) { a.commands = std::atol(v); }},
       {"--seed", true, [&](const char* v) { a.seed = unsigned(std::atol(v)); }}},
      kUsage);
  if (a.commands <= 0) {
    std::fprintf(stderr, "%s\n", kUsage);
    return 2;
  }
  fs::path dir;
  std::random_device fresh;
  do dir = fs::temp_directory_path() / ("odb_soak_" + std::to_string(fresh()));
  while (!fs::create_directory(dir));
  std::string good = (dir / "good.odb").string(), damaged = (dir / "damaged.odb").string();
  odbgen::Options gen;
  gen.elements = 500;
  gen.frames = 3;
  gen.historyRegions = 2;
  odbgen::generate(good, gen);
  fs::copy_file(good, damaged);
  fs::resize_file(damaged, fs::file_size(good) / 2);

  std::vector<std::string> lines = kStateLines;
  for (const std::string& db : {good, damaged, (dir / "missing.odb").string()}) {
    std::vector<std::string> more = databaseLines(db, (dir / "catalogue").string());
    lines.insert(lines.end(), more.begin(), more.end());
  }

  std::mt19937 random(a.seed);
  int status = 0;
  long replies = 0, sent = 0;
  size_t records = 0;
  Usage first, last;
  auto start = odbs::bench::Clock::now();
  try {
    odbs::client::ServerProcess server({a.server, 0, 60000});
    for (; sent < a.commands; ++sent) {
      std::string text;
      unsigned pick = random() % 1000;
      if (pick < 20)
        text = std::string(4094 + random() % 6000, 'x');  // over the line limit
      else if (pick < 40)
        text = randomBytes(random, 1 + random() % 200);
      else if (pick < 42)
        text = kThroughputLines[random() % kThroughputLines.size()];
      else
        text = lines[random() % lines.size()];
      server.sendBytes(text + "\n");
      for (const std::string& line : odbs::client::serverLines(text)) {
        records += server.readReply(odbs::client::replyShapeOf(line)).records.size();
        ++replies;
      }
      if (sent + 1 == 1000) first = usageOf(server.pid());
    }
    last = usageOf(server.pid());
    server.closeCommands();
    server.waitExit(10000);
  } catch (const odbs::client::ClientError& e) {
    std::fprintf(stderr, "soak: the server failed after %ld commands: %s\n", sent, e.what());
    status = 1;
  }
  double seconds = odbs::bench::since(start);
  std::printf("soak: %ld commands, %ld replies of %zu records in %.1f s (%.0f commands/s)\n", sent,
              replies, records, seconds, sent / seconds);
  std::printf("server after 1000 commands: %ld kB resident, %ld open descriptors\n", first.rssKb,
              first.descriptors);
  std::printf("server at the end:          %ld kB resident, %ld open descriptors\n", last.rssKb,
              last.descriptors);
  std::error_code ec;
  fs::remove_all(dir, ec);
  return status;
}
