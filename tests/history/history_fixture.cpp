#include "tests/history/history_fixture.h"

#include <stdexcept>

namespace odbs::test {

odb_HistoryOutput historyOutput(const std::string& name, std::vector<float> data,
                                std::vector<float> conjugate, int width) {
  odb::HistoryOutputData d{name,  "desc " + name,  odb_Enum::SCALAR,
                           width, std::move(data), std::move(conjugate)};
  return odb_HistoryOutput(name, d.description, d.type, odb::Lazy<odb::HistoryOutputData>(d));
}

odb_HistoryOutput unreadableOutput(const std::string& name) {
  return odb_HistoryOutput(
      name, "", odb_Enum::SCALAR,
      odb::Lazy<odb::HistoryOutputData>(std::function<odb::HistoryOutputData()>(
          []() -> odb::HistoryOutputData { throw std::runtime_error("damaged samples"); })));
}

odb::HistoryPointData pointAt(int position, int node, int element, int ip, int sectionPoint,
                              const std::string& set) {
  odb::HistoryPointData p;
  p.position = position;
  p.nodeLabel = node;
  p.elementLabel = element;
  p.integrationPoint = ip;
  p.sectionPoint = {sectionPoint, ""};
  p.region.name = set;
  return p;
}

odb_HistoryRegion historyRegion(const std::string& name, const odb::HistoryPointData& point,
                                const std::vector<odb_HistoryOutput>& outputs) {
  odb_HistoryOutputRepository repo;
  for (const auto& o : outputs) repo.insert(o.name(), o);
  return odb_HistoryRegion(name, "", odb_HistoryPoint(point),
                           odb::Lazy<odb_HistoryOutputRepository>(std::move(repo)));
}

odb_HistoryRegion unreadableRegion(const std::string& name) {
  return odb_HistoryRegion(
      name, "", odb_HistoryPoint(pointAt(odb_Enum::NODAL, 1)),
      odb::Lazy<odb_HistoryOutputRepository>(std::function<odb_HistoryOutputRepository()>(
          []() -> odb_HistoryOutputRepository { throw std::runtime_error("damaged region"); })));
}

odb_Step historyStep(const std::string& name, int domain,
                     const std::vector<odb_HistoryRegion>& regions) {
  odb::StepData d;
  d.name = name;
  d.description = "about " + name;
  d.domain = domain;
  d.totalTime = 2.5;
  odb_HistoryRegionRepository repo;
  for (const auto& r : regions) repo.insert(r.name(), r);
  return odb_Step(d, odb_SequenceFrame(), odb::Lazy<odb_HistoryRegionRepository>(std::move(repo)));
}

}  // namespace odbs::test
