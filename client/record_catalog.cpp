#include "client/record_catalog.h"

#include "client/catalogue_records.h"
#include "client/contact_records.h"
#include "client/history_records.h"
#include "client/field_records.h"
#include "client/model_records.h"

namespace odbs::client {

void RecordCatalog::add(std::string commandPrefix, uint8_t type, Describer d) {
  describers_[{type, std::move(commandPrefix)}] = std::move(d);
}

const Describer* RecordCatalog::find(std::string_view line, uint8_t type) const {
  const Describer* best = nullptr;
  size_t bestLen = 0;
  for (auto it = describers_.lower_bound({type, std::string()});
       it != describers_.end() && it->first.first == type; ++it) {
    const std::string& prefix = it->first.second;
    if (line.substr(0, prefix.size()) == prefix && (best == nullptr || prefix.size() > bestLen)) {
      best = &it->second;
      bestLen = prefix.size();
    }
  }
  return best;
}

const RecordCatalog& standardCatalog() {
  static const RecordCatalog catalog = [] {
    RecordCatalog c;
    addCoreRecords(c);
    addCatalogueRecords(c);
    addModelRecords(c);
    addHistoryRecords(c);
    addContactRecords(c);
    addFieldRecords(c);
    // Each further record family adds its registration here.
    return c;
  }();
  return catalog;
}

}  // namespace odbs::client
