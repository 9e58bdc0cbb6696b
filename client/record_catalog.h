// Turning any record into named fields for display (the command-line client's text and
// JSON output), chosen by the command that was answered and the type byte.
//
// A type byte can carry different bodies in replies to different commands (17, 21, 34),
// so describers are registered per command prefix: the describer of the longest prefix of
// the command line wins ("rd" before "r" before "" for any command). Each family of
// records registers its describers in a file of its own (core_catalog.cpp for the core
// records); standardCatalog() holds every family.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "client/record.h"

namespace odbs::client {

using FieldData =
    std::variant<int64_t, double, std::string, std::vector<int64_t>, std::vector<double>>;

struct Field {
  std::string name;
  FieldData value;
};

struct DescribedRecord {
  std::string kind;  // short name of the record ("message", "process-id", ...)
  std::vector<Field> fields;
};

// Describes one record; throws DecodeError when the body does not fit its layout.
using Describer = std::function<DescribedRecord(const RecordView&)>;

class RecordCatalog {
 public:
  // Registers d for records of `type` in replies to lines that start with commandPrefix.
  // A later registration for the same prefix and type replaces the earlier one.
  void add(std::string commandPrefix, uint8_t type, Describer d);
  // The describer for a record of `type` in the reply to `line`, or nullptr if none.
  const Describer* find(std::string_view line, uint8_t type) const;

 private:
  std::map<std::pair<uint8_t, std::string>, Describer> describers_;
};

// Registers the describers of the core records ('|', '}', '~', and '"' for m).
void addCoreRecords(RecordCatalog& catalog);

// Every family's describers; built once.
const RecordCatalog& standardCatalog();

}  // namespace odbs::client
