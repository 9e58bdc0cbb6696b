#include "tests/odb/legacy_v1_writer.h"

#include <algorithm>

#include "odb/format.h"
#include "odb/model_store.h"
#include "odb/names.h"

namespace odbtest {
namespace {

void padConnectivity(const odb::h5::Group& entity, const odb::ElementData& e) {
  odb::h5::Group g = entity.open("elements");
  g.remove(odb::name::kOffsets);
  g.remove(odb::name::kConnectivity);
  size_t width = 1;
  for (size_t i = 0; i < e.size(); ++i)
    width = std::max(width, size_t(e.offsets[i + 1] - e.offsets[i]));
  std::vector<int32_t> table(e.size() * width, -1);
  for (size_t i = 0; i < e.size(); ++i)
    std::copy(e.connectivity.begin() + e.offsets[i], e.connectivity.begin() + e.offsets[i + 1],
              table.begin() + long(i * width));
  g.write("connectivity", table.data(), {e.size(), width});
}

}  // namespace

void writeVersion1(const std::string& path, const odb::ModelData& m) {
  odb::h5::File f = odb::h5::File::create(path);
  odb::h5::Group root = f.root();
  root.setString(odb::name::kFormat, odb::kFormatTag);
  root.setInt(odb::name::kFormatVersion, 1);
  odb::storeModel(root, m);
  padConnectivity(root.open("assembly"), m.assembly.elements);
  for (size_t i = 0; i < m.instances.size(); ++i)
    padConnectivity(root.open("assembly/instances/" + std::to_string(i)), m.instances[i].elements);
  f.close();
}

}  // namespace odbtest
