// The field forms of command r through the real server: the dispatcher's parsing of each
// form reaches the walk.
#include <gtest/gtest.h>

#include "client/field_records.h"
#include "client/server_process.h"
#include "odb/odb.h"
#include "tests/protocol/server_fixture.h"
#include "tests/results/field_db.h"

namespace odbs::test {
namespace {

using client::FieldValueRow;

std::vector<FieldValueRow> rowsOf(const client::Reply& reply) {
  client::FieldReplyDecoder d;
  for (const client::Record& r : reply.records) d.add(r);
  return d.rows();
}

TEST(FieldServer, FormsReachTheirPaths) {
  // Two instances, each with a five-point shell field "T".
  WrittenDatabase db([](odb::Writer& w) {
    w.setTitle("two shells");
    w.addInstance("A").addNodes({1}, {0, 0, 0});
    w.addInstance("B").addNodes({1}, {0, 0, 0});
    addStepFrame(w, "Step-1");
    w.addFieldOutput(fieldOf("T", odb_Enum::SCALAR, {"T"}));
    for (const char* instance : {"A", "B"})
      for (int sp = 1; sp <= 5; ++sp) w.addFieldBlock(shellAt(sp, {1, 2}, instance));
  });
  auto server = client::test::startServer();
  server->send("D 1 0 0 T");
  // The value 10 sp + e names the section point; rows go by instance, A then B.
  struct Form {
    const char* line;  // before the database name
    size_t rows, at;
    int instanceB;  // 1 when row at is of instance B
    float value;
  } forms[] = {
      {"rm ", 4, 3, 1, 32.f},                              // the middle point 3 of each element
      {"rl 4 2,", 8, 2, 0, 41.f},                          // two section points per instance
      {"rs ", 20, 19, 1, 52.f},                            // the pair does not outlive its line
      {"rv ", 20, 0, 0, 11.f},                             // every section point
      {"rb ", 4, 0, 0, 51.f},     {"rx ", 4, 2, 1, 51.f},  // any other letter runs as rb
      {"rt ", 4, 1, 0, 12.f},
  };
  for (const Form& f : forms) {
    auto rows = rowsOf(server->request(f.line + db.path()));
    ASSERT_EQ(rows.size(), f.rows) << f.line;
    EXPECT_EQ(rows[f.at].instance, f.instanceB ? "B" : "A") << f.line;
    EXPECT_EQ(rows[f.at].components[0], f.value) << f.line;
  }
}

}  // namespace
}  // namespace odbs::test
