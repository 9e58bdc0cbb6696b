// ho, hb, hi, hr and rd through the real server: the history name list, the connector
// failure table and the selection list kept between commands (the replies themselves are
// checked on the handlers) and odb_cli history.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "client/server_process.h"
#include "tests/history/history_fixture.h"
#include "tests/model/model_fixture.h"
#include "tools/cli/cli_app.h"
#include "tools/cli/history_command.h"
#include "wire/record_types.h"

namespace odbs::test {
namespace {

std::string types(const client::Reply& reply) {
  return typeSequence(reply.records);
}

// Two steps; region "N" (node 1) in both, "E 2" (whole element 2) in the first only.
void twoSteps(odb::Writer& w) {
  w.setTitle("history job");
  w.addInstance("P").addNodes({1}, {0, 0, 0});
  w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
  w.addHistoryRegion({"N", "", pointAt(odb_Enum::NODAL, 1), {{"U1", "", 2, 2, {0, 1, 1, 2}, {}}}});
  w.addHistoryRegion(
      {"E 2", "", pointAt(odb_Enum::WHOLE_ELEMENT, -1, 2, 1), {{"S", "", 2, 2, {1, 5}, {}}}});
  w.addStep({"Step-2", "", "*STATIC", odb_Enum::TIME, 1.0});
  w.addHistoryRegion({"N", "", pointAt(odb_Enum::NODAL, 1), {{"U1", "", 2, 2, {0, 3}, {}}}});
}

class HistoryServer : public ::testing::Test {
 protected:
  std::unique_ptr<client::ServerProcess> server_ =
      std::make_unique<client::ServerProcess>(client::ServerOptions{ODB_SERVER_PATH, 0, 10000});
};

TEST_F(HistoryServer, NameListLivesUntilAWalkEnds) {
  WrittenDatabase db(twoSteps);
  // Without ho: the step records only.
  EXPECT_EQ(types(server_->request("hr 0 " + db.path())), "2 2 ~");
  server_->send("ho 3");
  server_->send("hb E 2");
  server_->send("hb N");
  // A failed look-up keeps the list; so does a line without a database.
  EXPECT_EQ(types(server_->request("hr 0 /no/such.odb")), "~");
  EXPECT_EQ(types(server_->request("hr 0")), "~");
  // List order (E 2, then N), step by step; the unfilled third slot finds nothing.
  EXPECT_EQ(types(server_->request("hr 0 " + db.path())), "2 4 6 8 8 4 6 8 8 8 8 2 4 6 8 8 ~");
  // The walk reached its end: the list is empty again.
  EXPECT_EQ(types(server_->request("hr 0 " + db.path())), "2 2 ~");
}

// Step 1: a frame at 0.4 with U, history of connector 21 failing at 0.3. Step 2: a frame
// with U and UR (node 1) and no history.
void connectorModel(odb::Writer& w) {
  w.setTitle("connectors");
  w.addInstance("P").addNodes({1}, {0, 0, 0});
  odb::FieldBlockData u;
  u.instance = "P";
  u.width = 1;
  u.data = {0.5f};
  u.nodeLabels = {1};
  w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
  w.addFrame({-1, odb_Enum::TIME, 0, 0.4, 0.0, ""});
  w.addFieldOutput({"U", "", odb_Enum::SCALAR, {}, false, 0, {}});
  w.addFieldBlock(u);
  odb::HistoryRegionData r{"E21",
                           "",
                           pointAt(odb_Enum::WHOLE_ELEMENT, -1, 21),
                           {{"CFAILST1", "", 2, 2, {0, 0, 0.3f, 1}, {}}}};
  r.point.elementType = "CONN3D2";
  w.addHistoryRegion(r);
  w.addStep({"Step-2", "", "*STATIC", odb_Enum::TIME, 0.4});
  w.addFrame({-1, odb_Enum::TIME, 0, 0.1, 0.0, ""});
  w.addFieldOutput({"U", "", odb_Enum::SCALAR, {}, false, 0, {}});
  w.addFieldBlock(u);
  u.width = 3;
  u.data = {1, 2, 3};
  w.addFieldOutput({"UR", "", odb_Enum::VECTOR, {}, false, 0, {}});
  w.addFieldBlock(u);
}

TEST_F(HistoryServer, ConnectorFailureTableAndSelectionAreKeptBetweenCommands) {
  WrittenDatabase db(connectorModel);
  server_->send("D 1 0 0 U");
  EXPECT_EQ(types(server_->request("rd " + db.path())), "1 2 17 \" ~");
  server_->send("D 2 0 0 U");  // step 2 has no connector history, but the table is kept
  EXPECT_EQ(types(server_->request("rd " + db.path())), "1 2 17 \" ~");

  auto fresh =
      std::make_unique<client::ServerProcess>(client::ServerOptions{ODB_SERVER_PATH, 0, 10000});
  fresh->send("D 2 0 0 U");
  EXPECT_EQ(types(fresh->request("rd " + db.path())), "1 2 17 ~");
  fresh->send("D 1 0 0 U");  // the empty table built from step 2 stays
  EXPECT_EQ(types(fresh->request("rd " + db.path())), "1 2 17 ~");
  // The rotations (19, UR of node 1) follow once a and b have made a selection list.
  fresh->request("a 2");
  fresh->request("b 1");
  fresh->send("D 2 0 1 U");
  EXPECT_EQ(types(fresh->request("rd " + db.path())), "1 2 17 19 ~");
}

TEST_F(HistoryServer, CliPrintsCatalogueCsvAndPlot) {
  WrittenDatabase db(twoSteps);
  const std::vector<std::string> base = {"odb_cli",   "--server", ODB_SERVER_PATH,
                                         "--timeout", "10000",    "history"};
  auto args = [&](std::vector<std::string> rest) {
    std::vector<std::string> all = base;
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
  };
  std::istringstream in;
  std::ostringstream out, err;
  ASSERT_EQ(cli::runCli(args({db.path()}), in, out, err), 0) << err.str();
  EXPECT_NE(out.str().find("2 steps, 3 history regions"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("  E 2  (whole element element 2 point 1 section point 0)"),
            std::string::npos)
      << out.str();

  std::string plot = db.path() + ".svg";
  std::ostringstream csv;
  ASSERT_EQ(cli::runCli(args({db.path(), "--step", "1", "--plot", plot, "--named", "N", "E 2"}), in,
                        csv, err),
            0)
      << err.str();
  EXPECT_EQ(csv.str(),
            "step,region,output,frame_value,total_time,value,conjugate\n"
            "1,N,U1,0,0,1,\n"
            "1,N,U1,1,1,2,\n"
            "1,E 2,S,1,1,5,\n");
  std::ifstream svg(plot);
  std::stringstream text;
  text << svg.rdbuf();
  EXPECT_NE(text.str().find("<polyline"), std::string::npos);
  std::remove(plot.c_str());

  EXPECT_EQ(cli::runCli(args({"--named", "N"}), in, csv, err), 2);
}

}  // namespace
}  // namespace odbs::test
