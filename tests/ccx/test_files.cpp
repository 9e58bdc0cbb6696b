#include "tests/ccx/test_files.h"

#include <fstream>
#include <sstream>

namespace odbs::ccx::test {

std::string dataFile(const std::string& name) {
  return std::string(CCX_DATA_DIR) + "/" + name;
}
std::string exampleFile(const std::string& name) {
  return std::string(CCX_EXAMPLES_DIR) + "/" + name;
}

std::string readWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

std::string LargeMesh::text(const std::string& lineEnd) const {
  std::string out;
  for (const std::string& line : lines) out += line + lineEnd;
  return out;
}

LargeMesh largeMesh(int nodes, int elements, int quads) {
  LargeMesh mesh;
  std::vector<std::string>& l = mesh.lines;
  auto passedOver = [&](int i, const char* what) {
    if (i % 1000 == 0) l.push_back("** " + std::string(what) + " from " + std::to_string(i));
    if (i % 1500 == 0) l.push_back(i % 3000 == 0 ? "" : " \t ");
  };
  const char* quarters[4] = {".", ".25", ".5", ".75"};
  l = {"*HEADING", "large mesh", "*NODE, NSET=ALL"};
  mesh.nodeLine.assign(nodes + 1, 0);
  for (int n = 1; n <= nodes; ++n) {
    passedOver(n, "nodes");
    l.push_back(std::to_string(n) + ", " + std::to_string(n / 4) + quarters[n % 4] + ", -" +
                std::to_string(n) + "., " + std::to_string(n % 7) + ".5");
    mesh.nodeLine[n] = static_cast<int>(l.size());
    if (n == nodes / 2) {
      l.insert(l.end(), {"*NSET, NSET=MID", "1, 2", "*NODE, NSET=ALL"});
    }
  }
  l.push_back("*ELEMENT, TYPE=C3D8, ELSET=BRICKS");
  mesh.brickLine.assign(elements + 1, 0);
  for (int e = 1; e <= elements; ++e) {
    passedOver(e, "bricks");
    std::string line = std::to_string(e);
    for (int k = 0; k < 8; ++k) line += ", " + std::to_string(e + k);
    l.push_back(line);
    mesh.brickLine[e] = static_cast<int>(l.size());
  }
  if (quads > 0) l.push_back("*ELEMENT, TYPE=C3D20, ELSET=QUADS");
  mesh.quadLine.assign(quads + 1, 0);
  for (int q = 1; q <= quads; ++q) {
    std::string first = std::to_string(100000 + q), second;
    for (int k = 0; k < 15; ++k) first += ", " + std::to_string(q + k);
    for (int k = 15; k < 20; ++k) second += std::to_string(q + k) + (k < 19 ? ", " : "");
    l.push_back(first + ",");
    mesh.quadLine[q] = static_cast<int>(l.size());
    if (q % 1000 == 0) l.push_back("** inside quad " + std::to_string(q));
    l.push_back(second);
  }
  return mesh;
}

}  // namespace odbs::ccx::test
