#include "tools/cli/open_failure.h"

#include <exception>
#include <filesystem>
#include <ostream>

#include "odb/odb.h"
#include "tools/cli/database_command.h"
#include "wire/record_types.h"

namespace odbs::cli {

std::string openFailureReason(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ec;
  fs::file_status st = fs::status(path, ec);
  if (!fs::exists(st)) return "no such file";
  if (fs::is_directory(st)) return "a directory, not a file";
  // Anything else but a regular file (a pipe, a device) could block a reader for ever.
  if (!fs::is_regular_file(st)) return "not a regular file";
  try {
    odb_initializeAPI();
    closeOdb(openOdb(path, true));
  } catch (const std::exception& e) {
    return e.what();
  }
  return "the server could not open it, although the file reads as a database here";
}

int reportOpenFailure(const std::string& path, std::ostream& err) {
  err << "odb_cli: cannot open " << path << ": " << openFailureReason(path) << "\n";
  return 1;
}

int exchangeOnDatabase(const CliOptions& options, const std::string& serverPath,
                       const std::vector<std::string>& lines, const std::string& database,
                       const std::function<void(const client::RecordView&)>& onRecord,
                       std::ostream& err) {
  bool opened = false;
  int code = exchange(
      options, serverPath, lines,
      [&](const client::RecordView& rec) {
        opened = opened || rec.type == kRecTitle;
        onRecord(rec);
      },
      err);
  if (code == 0 && !opened) return reportOpenFailure(database, err);
  return code;
}

}  // namespace odbs::cli
