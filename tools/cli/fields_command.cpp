#include "tools/cli/fields_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "client/contact_records.h"
#include "client/field_records.h"
#include "client/model_records.h"
#include "tools/cli/cli_app.h"
#include "tools/cli/database_command.h"
#include "tools/cli/open_failure.h"
#include "tools/common/number_text.h"
#include "tools/common/table_writer.h"
#include "wire/record_types.h"

namespace odbs::cli {

namespace {

using client::FieldValueRow;

// The values of one reply, from either record family. Rows of rd carry their label as the
// node label and no element (element 0, empty element type).
struct FieldValues {
  std::string title;
  bool haveTitle = false;
  std::vector<FieldValueRow> rows;
};

// Follows a reply to rd: title, instance headers and value rows; element status and other
// records are passed over.
class ContactReply {
 public:
  explicit ContactReply(FieldValues* values) : values_(values) {}
  void add(const client::RecordView& rec) {
    if (rec.type == kRecTitle) {
      values_->title = client::decodeTitle(rec);
      values_->haveTitle = true;
    } else if (rec.type == kRecInstanceHeader) {
      instance_ = client::decodeInstanceHeader(rec);
    } else if (client::isContactRowType(rec.type)) {
      client::ContactRow c = client::decodeContactRow(rec);
      if (c.kind != client::ContactRowKind::kField) return;
      FieldValueRow r;
      r.instance = instance_;
      r.node = c.label;
      r.components = std::move(c.values);
      r.components.insert(r.components.end(), c.conjugates.begin(), c.conjugates.end());
      values_->rows.push_back(std::move(r));
    }
  }

 private:
  FieldValues* values_;
  std::string instance_;
};

// The field name as the D line carries it: spaces become '^'.
std::string wireName(std::string name) {
  std::replace(name.begin(), name.end(), ' ', '^');
  return name;
}

std::string selectLine(const FieldsRequest& req) {
  char d[64];
  std::snprintf(d, sizeof d, "%c %d %d %d ", req.defined ? 'D' : 'd', req.step, req.frame,
                req.position);
  return d + wireName(req.field);
}

std::string formLine(const FieldsRequest& req, char form) {
  if (form == 'd') return "rd " + req.database;
  char upper = req.orientations ? 'A' - 'a' : 0;
  if (form == 'n')
    return std::string("r") + char('n' + upper) + " " + req.regions + ":" + req.database;
  if (form == 'g')
    return std::string("r") + char('g' + upper) + " " + std::to_string(req.regionPair) + ":" +
           req.database;
  char letter = req.orientations ? char(form - 'a' + 'A') : form;
  std::string r = std::string("r") + letter + " ";
  if (form == 'l' && req.pairA >= 0)
    r += std::to_string(req.pairA) + " " + std::to_string(req.pairB) + ",";
  return r + req.database;
}

int fetch(const CliOptions& options, const std::string& serverPath, const FieldsRequest& req,
          char form, FieldValues* values, std::ostream& err) {
  std::vector<std::string> lines = {selectLine(req), formLine(req, form)};
  if (form == 'd') {
    ContactReply reply(values);
    return exchangeOnDatabase(
        options, serverPath, lines, req.database,
        [&](const client::RecordView& rec) { reply.add(rec); }, err);
  }
  client::FieldReplyDecoder decoder;
  int code = exchangeOnDatabase(
      options, serverPath, lines, req.database,
      [&](const client::RecordView& rec) { decoder.add(rec); }, err);
  values->title = decoder.title();
  values->rows = decoder.takeRows();
  return code;
}

bool byRegion(const FieldsRequest& req) {
  return req.form == 'n' || req.form == 'g';
}

size_t componentCount(const FieldValues& v) {
  size_t n = 0;
  for (const FieldValueRow& r : v.rows) n = std::max(n, r.components.size());
  return n;
}

void printText(const FieldValues& v, size_t shown, std::ostream& out) {
  out << "title: " << v.title << "\n" << v.rows.size() << " values\n";
  if (v.rows.empty()) return;
  char line[160];
  std::snprintf(line, sizeof line, "%-12s %-8s %9s %5s %9s %5s  %s\n", "instance", "type",
                "element", "point", "node", "sp", "components");
  out << line;
  int side = 0;
  for (size_t i = 0; i < shown; ++i) {
    const FieldValueRow& r = v.rows[i];
    if (r.side != side) out << (r.side == 1 ? "A: " : "B: ") << r.region << "\n";
    side = r.side;
    // Rows of rd have no element: "-" in both element columns.
    bool element = !r.elementType.empty();
    std::string label = element ? std::to_string(r.element) : "-";
    std::snprintf(line, sizeof line, "%-12s %-8s %9s %5d %9d %5d ",
                  r.instance.empty() ? "-" : r.instance.c_str(),
                  element ? r.elementType.c_str() : "-", label.c_str(), r.point, r.node,
                  r.sectionPoint);
    out << line;
    for (float c : r.components) out << " " << tools::formatNumber(c);
    out << "\n";
  }
  if (shown < v.rows.size()) out << "... " << v.rows.size() - shown << " more\n";
}

// One row per value; components c1..cN, N the widest row's count (narrower rows leave the
// rest empty). Element and element type are empty for rows of rd.
// Replies to rn and rg start with the side (1 A, 2 B) and the region's name.
void printTable(const FieldValues& v, bool regions, tools::TableFormat format, std::ostream& out) {
  std::vector<std::string> columns = {"instance", "element_type", "element",
                                      "point",    "node",         "section_point"};
  if (regions) columns.insert(columns.begin(), {"side", "region"});
  size_t n = componentCount(v);
  for (size_t i = 1; i <= n; ++i) columns.push_back("c" + std::to_string(i));
  tools::TableWriter t(out, format, columns);
  for (const FieldValueRow& r : v.rows) {
    if (regions) t.cell(r.side).cell(r.region);
    t.cell(r.instance);
    if (r.elementType.empty())
      t.empty().empty();
    else
      t.cell(r.elementType).cell(r.element);
    t.cell(r.point).cell(r.node).cell(r.sectionPoint);
    for (float c : r.components) t.cell(c);
    t.endRow();
  }
  t.finish();
}

}  // namespace

int runFields(const CliOptions& options, const std::string& serverPath, const FieldsRequest& req,
              std::ostream& out, std::ostream& err) {
  if (req.records)
    return printRecords(options, serverPath, {selectLine(req), formLine(req, req.form)}, out);
  FieldValues values;
  int code = fetch(options, serverPath, req, req.form, &values, err);
  if (code != 0) return code;
  // The r forms skip nodal blocks: an empty answer is asked again as rd.
  if (values.rows.empty() && req.form != 'd' && !byRegion(req)) {
    values = FieldValues();
    code = fetch(options, serverPath, req, 'd', &values, err);
    if (code != 0) return code;
  }
  if (options.format == OutputFormat::kJson) {
    printTable(values, byRegion(req), tools::TableFormat::kJson, out);
  } else if (options.format == OutputFormat::kCsv) {
    printTable(values, byRegion(req), tools::TableFormat::kCsv, out);
  } else {
    size_t shown = values.rows.size();
    if (req.limit >= 0 && size_t(req.limit) < shown) shown = size_t(req.limit);
    printText(values, shown, out);
  }
  return 0;
}

void addFieldsCommand(CLI::App& app, CliContext& ctx) {
  auto req = std::make_shared<FieldsRequest>();
  CLI::App* sub = app.add_subcommand(
      "fields", "The values of one field output of one frame, one row per value");
  sub->add_option("database", req->database, "The database")->required();
  sub->add_option("--field", req->field, "The field output")->required()->option_text("NAME");
  sub->add_option("--step", req->step, "Step number, from 1 (default 1)")->option_text("N");
  sub->add_option("--frame", req->frame, "Frame index in the step, from 0 (default 0)")
      ->option_text("N");
  sub->add_option("--position", req->position, "Position number of the d line (default 0)")
      ->option_text("P");
  sub->add_option_function<std::string>(
         "--form", [req](const std::string& f) { req->form = f[0]; },
         "The r form: s (default), l, m, v, t, b, or d for rd")
      ->option_text("s|l|m|v|t|b|d")
      ->check(CLI::IsMember({"s", "l", "m", "v", "t", "b", "d"}));
  sub->add_option_function<std::vector<int>>(
         "--pair",
         [req](const std::vector<int>& p) {
           req->pairA = p[0];
           req->pairB = p[1];
           req->form = 'l';
         },
         "Two section points, sent with rl")
      ->expected(2)
      ->option_text("A B");
  sub->add_option_function<std::string>(
         "--regions",
         [req](const std::string& r) {
           req->regions = r;
           req->form = 'n';
         },
         "Two regions by name, sent with rn: A or A:B (a region pair, surface or set, with "
         "an optional suffix .INNER .OUTER .MINIMUM .MAXIMUM .N)")
      ->option_text("A[:B]");
  sub->add_option_function<int>(
         "--region-pair",
         [req](int n) {
           req->regionPair = n;
           req->form = 'g';
         },
         "The two regions of region pair N (from 1), sent with rg")
      ->option_text("N");
  sub->add_flag("--defined", req->defined, "Send D: places already sent are not repeated");
  sub->add_flag("--orientations", req->orientations, "Upper-case form: with orientations");
  sub->add_option("--values", req->limit, "Text output: show the first N values")
      ->option_text("N")
      ->check(CLI::NonNegativeNumber);
  sub->add_flag("--records", req->records, "Print the reply records as they came");
  sub->callback([&ctx, req] {
    ctx.exitCode = runFields(ctx.options, ctx.serverPath(), *req, *ctx.out, *ctx.err);
  });
}

}  // namespace odbs::cli
