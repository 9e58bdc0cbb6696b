// A program outside the project: opens a database with the installed odb library and
// prints its title, node count and step names.
#include <iostream>

#include "odb/odb.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: odb_consumer DATABASE\n";
    return 2;
  }
  try {
    odb_initializeAPI();
    odb_Odb& odb = openOdb(argv[1], true);
    int nodes = 0;
    const odb_InstanceRepository& instances = odb.rootAssembly().instances();
    for (odb_InstanceRepositoryIT it(instances); !it.isDone(); it.next())
      nodes += it.currentValue().nodes().size();
    std::cout << "title " << odb.analysisTitle() << "\nnodes " << nodes << "\n";
    const odb_StepRepository& steps = odb.steps();
    for (int s = 0; s < steps.size(); ++s) std::cout << "step " << steps.at(s).name() << "\n";
    closeOdb(odb);
    odb_finalizeAPI();
  } catch (const std::exception& e) {
    std::cerr << "odb_consumer: " << e.what() << "\n";
    return 1;
  }
  return 0;
}
