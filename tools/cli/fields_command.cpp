#include "tools/cli/fields_command.h"

#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <vector>

#include "client/field_records.h"
#include "tools/cli/database_command.h"
#include "tools/cli/json_text.h"

namespace odbs::cli {

namespace {

struct FieldsArgs {
  std::string field;
  int step = 1, frame = 0, position = 0;
  char form = 's';
  int pairA = -1, pairB = -1;
  long limit = -1;  // all
};

// Takes the options with values out of options.args into a; the rest stays for
// parseRequest. Returns false, with a message, on a bad value.
bool takeValues(CliOptions& options, FieldsArgs* a, std::ostream& err) {
  std::vector<std::string> rest;
  const std::vector<std::string>& v = options.args;
  auto number = [&](size_t i, long* out) {
    char* end = nullptr;
    *out = std::strtol(v[i].c_str(), &end, 10);
    if (end == v[i].c_str() || *end != '\0') {
      err << "odb_cli: " << v[i - 1] << " needs a number, not '" << v[i] << "'\n";
      return false;
    }
    return true;
  };
  for (size_t i = 0; i < v.size(); ++i) {
    const std::string& o = v[i];
    long n = 0;
    bool withValue = o == "--field" || o == "--step" || o == "--frame" || o == "--form" ||
                     o == "--position" || o == "--values" || o == "--pair";
    if (withValue && i + 1 >= v.size()) {
      err << "odb_cli: " << o << " needs a value\n";
      return false;
    }
    if (o == "--field") {
      a->field = v[++i];
    } else if (o == "--form") {
      const std::string& f = v[++i];
      if (f.size() != 1 || std::string("slmvtb").find(f[0]) == std::string::npos) {
        err << "odb_cli: --form is one of s, l, m, v, t, b\n";
        return false;
      }
      a->form = f[0];
    } else if (o == "--pair") {
      long second = 0;
      if (i + 2 >= v.size() || !number(i + 1, &n) || !number(i + 2, &second)) {
        err << "odb_cli: --pair needs two section point numbers\n";
        return false;
      }
      a->pairA = int(n);
      a->pairB = int(second);
      a->form = 'l';
      i += 2;
    } else if (withValue) {
      if (!number(++i, &n)) return false;
      if (o == "--step") a->step = int(n);
      if (o == "--frame") a->frame = int(n);
      if (o == "--position") a->position = int(n);
      if (o == "--values") a->limit = n;
    } else {
      rest.push_back(o);
    }
  }
  options.args = rest;
  if (a->field.empty()) {
    err << "odb_cli: --field NAME is needed\n";
    return false;
  }
  return true;
}

// The field name as the D line carries it: spaces become '^'.
std::string wireName(std::string name) {
  for (char& c : name)
    if (c == ' ') c = '^';
  return name;
}

std::vector<std::string> requestLines(const FieldsArgs& a, const std::string& db, bool defined,
                                      bool orientations) {
  char d[64];
  std::snprintf(d, sizeof d, "%c %d %d %d ", defined ? 'D' : 'd', a.step, a.frame, a.position);
  char form = orientations ? char(a.form - 'a' + 'A') : a.form;
  std::string r = std::string("r") + form + " ";
  if (a.form == 'l') r += std::to_string(a.pairA) + " " + std::to_string(a.pairB) + ",";
  return {d + wireName(a.field), r + db};
}

void printText(const client::FieldReplyDecoder& d, size_t shown, std::ostream& out) {
  out << "title: " << d.title() << "\n" << d.rows().size() << " values\n";
  if (d.rows().empty()) return;
  char line[160];
  std::snprintf(line, sizeof line, "%-12s %-8s %9s %5s %9s %5s  %s\n", "instance", "type",
                "element", "point", "node", "sp", "components");
  out << line;
  for (size_t i = 0; i < shown; ++i) {
    const client::FieldValueRow& r = d.rows()[i];
    std::snprintf(line, sizeof line, "%-12s %-8s %9d %5d %9d %5d ",
                  r.instance.empty() ? "-" : r.instance.c_str(), r.elementType.c_str(), r.element,
                  r.point, r.node, r.sectionPoint);
    out << line;
    for (float c : r.components) out << " " << formatNumber(c);
    out << "\n";
  }
  if (shown < d.rows().size()) out << "... " << d.rows().size() - shown << " more\n";
}

void printJson(const client::FieldReplyDecoder& d, size_t shown, std::ostream& out) {
  JsonWriter j(out);
  j.beginObject().key("title").value(d.title()).key("count").value(int64_t(d.rows().size()));
  j.key("values").beginArray();
  for (size_t i = 0; i < shown; ++i) {
    const client::FieldValueRow& r = d.rows()[i];
    j.beginObject()
        .key("instance")
        .value(r.instance)
        .key("elementType")
        .value(r.elementType)
        .key("element")
        .value(int64_t{r.element})
        .key("point")
        .value(int64_t{r.point})
        .key("node")
        .value(int64_t{r.node})
        .key("sectionPoint")
        .value(int64_t{r.sectionPoint})
        .key("surfaceTag")
        .value(int64_t{r.surfaceTag})
        .key("dataClass")
        .value(int64_t{r.dataClass})
        .key("components")
        .numbers(r.components);
    if (r.hasOrientation)
      j.key("orientation").numbers(std::vector<float>(r.orientation.begin(), r.orientation.end()));
    j.endObject();
  }
  j.endArray().endObject();
  out << "\n";
}

}  // namespace

int runFields(const CliOptions& options, const std::string& serverPath, std::ostream& out,
              std::ostream& err) {
  CliOptions rest = options;
  FieldsArgs a;
  if (!takeValues(rest, &a, err)) return 2;
  Request req;
  if (!parseRequest(rest, {"--defined", "--orientations", "--records"}, &req, err)) return 2;
  std::vector<std::string> lines =
      requestLines(a, req.database, req.has("--defined"), req.has("--orientations"));
  if (req.has("--records")) return printRecords(options, serverPath, lines, out);

  client::FieldReplyDecoder decoder;
  int code = exchange(
      options, serverPath, lines, [&](const client::RecordView& rec) { decoder.add(rec); }, err);
  if (code != 0) return code;
  size_t shown = decoder.rows().size();
  if (a.limit >= 0 && size_t(a.limit) < shown) shown = size_t(a.limit);
  if (options.format == OutputFormat::kJson)
    printJson(decoder, shown, out);
  else
    printText(decoder, shown, out);
  return 0;
}

}  // namespace odbs::cli
