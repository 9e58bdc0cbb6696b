// The write side: creates a database file.
//
//   odb::Writer w("job.odb");                     // writes job.odb.tmp<pid> beside it
//   w.setTitle("bracket");
//   odb::EntityWriter part = w.addInstance("PART-1-1");
//   part.addNodes({1, 2, ...}, {x1, y1, z1, x2, ...});
//   part.addElements("C3D8", {1, ...}, 8, {n1, ..., n8, ...});
//   part.addNodeSet("FIX", {1, 2});
//   w.close();                                    // renames the file to job.odb
//
// Model data is kept in memory and written by close(), or earlier by writeModel() (which
// then frees it); results (steps, frames, field output, history: Writer::addStep and the
// calls after it) go to the file as they are added. Nothing appears under the final name until
// close() succeeds: a Writer destroyed without close() (an exception, a crash) removes or leaves
// only its temporary file.
//
// Every call validates its arguments and throws std::invalid_argument when they are
// inconsistent (array sizes, duplicate names, calls out of order); close() checks the
// whole model (for example the section category index of every element) the same way.
// HDF5 failures throw std::runtime_error; a call after close() throws std::logic_error.
// Arguments are copied; the writer keeps no reference to them.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "odb/model_data.h"
#include "odb/results_data.h"

namespace odb {

namespace h5 {
class File;
}
class ResultsWriter;

// Adds the contents of one part instance or of the root assembly. A handle into its
// Writer: valid while the Writer lives and until Writer::writeModel.
class EntityWriter {
 public:
  explicit EntityWriter(EntityData* e) : e_(e) {}

  // Appends nodes: labels.size() nodes with dimension (1 to 3) coordinates each.
  void addNodes(const std::vector<int32_t>& labels, const std::vector<float>& coordinates,
                int dimension = 3);
  // Appends labels.size() elements of one type with nodesPerElement nodes each, listed
  // element by element in connectivity; sectionCategory is an index returned by
  // Writer::addSectionCategory, or -1.
  void addElements(const std::string& type, const std::vector<int32_t>& labels, int nodesPerElement,
                   const std::vector<int32_t>& connectivity, int32_t sectionCategory = -1);
  // Appends one element with any number of nodes.
  void addElement(const std::string& type, int32_t label, const std::vector<int32_t>& nodes,
                  int32_t sectionCategory = -1);
  // Sets of this entity's own members (an instance-level set, one member group named
  // after the entity).
  void addNodeSet(const std::string& name, const std::vector<int32_t>& labels);
  void addElementSet(const std::string& name, const std::vector<int32_t>& labels);
  // faces[i] is the odb_Enum::odb_ElementFaceEnum face of element elementLabels[i].
  void addSurface(const std::string& name, const std::vector<int32_t>& elementLabels,
                  const std::vector<int32_t>& faces);
  // A set of any form, for example an assembly-level set whose members lie in several
  // instances (SetData::addMembers per instance).
  // The set is taken by value: a temporary moves in without a copy.
  void addSet(SetData set);
  void addSectionAssignment(const std::string& sectionName, SetData region,
                            const SectionPlacement& placement = {});

  const std::string& name() const { return e_->name; }
  // The data added so far, for filling large arrays in place; Writer::close validates it.
  EntityData* data() { return e_; }

 private:
  EntityData* e_;
};

class Writer {
 public:
  // Creates the temporary file path.tmp<pid> beside path, first removing temporaries of
  // path left by writers whose process is gone. Throws std::runtime_error, before writing
  // anything, when path names a folder or anything but a regular file, or the same file
  // as one of inputs (the files the database is made from), or when the file cannot be
  // created. The temporary is removed when the process ends by SIGINT, SIGTERM or SIGHUP.
  explicit Writer(const std::string& path, const std::vector<std::string>& inputs = {});
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  // Without a successful close(): closes and removes the temporary file.
  ~Writer();

  void setName(const std::string& name);
  void setTitle(const std::string& title);
  void setDescription(const std::string& description);
  void setAnalysisCode(int code);  // an odb_Enum::odb_AnalysisCodeEnum value
  // Adds the annotation text under key ("xml" is the one the server sends).
  void setAnnotation(const std::string& key, const std::string& text);
  void setAssemblyName(const std::string& name);

  EntityWriter rootAssembly() { return EntityWriter(&assembly_); }
  // Adds a part instance; names are unique.
  EntityWriter addInstance(const std::string& name);

  // Adds a section category and returns its index for elements. Names are unique.
  int32_t addSectionCategory(const SectionCategoryData& category);
  void addSection(const SectionData& section);
  void addMaterial(const MaterialData& material);
  void addConnectorOrientation(const ConnectorOrientationData& orientation);
  // Adds a region pair: a unique, non-empty name, a RegionPairKind and two region names.
  void addRegionPair(const RegionPairData& pair);

  // Results, written to the file as they come. The order of calls is: addStep, then for
  // each frame addFrame, and for each field output of the frame addFieldOutput followed
  // by its blocks (addFieldBlock); addHistoryRegion at any point inside a step. A new
  // step or frame completes the previous one, which is then in the file and out of memory.
  // Frames keep the order of the calls; a frame's frameIndex -1 means its position.
  // A field output with isComplex needs conjugate arrays in every block; a field output
  // without locations gets them from its blocks (positions and section points).
  void addStep(const StepData& step);
  void addFrame(const FrameData& frame);
  void addFieldOutput(const FieldOutputData& field);
  void addFieldBlock(const FieldBlockData& block);
  void addHistoryRegion(const HistoryRegionData& region);

  // Checks the model added so far as close() does, writes it to the file and frees it: a
  // large model need not stay in memory beside the results. Afterwards the model calls
  // (setters, addInstance, addSection...) throw std::logic_error (addInstance of a name
  // already used: std::invalid_argument, as before) and EntityWriter handles are void;
  // results may still be added. A second call does nothing; close() writes the model when
  // nobody has called it. Throws std::invalid_argument as close() would for a bad model,
  // and then writes nothing and keeps the model.
  void writeModel();

  // Writes the model (unless writeModel did), closes the file, syncs it to the disk and renames it
  // to the final path (replacing a file there), then syncs the folder. After close() the writer
  // accepts no more calls; when close() throws, the temporary file is gone.
  void close();

  // Everything added so far (used by copies and upgrades); only the header fields after
  // writeModel.
  ModelData model() const;

 private:
  void checkOpen() const;
  void checkModelOpen() const;
  // The model added so far, moved out of the writer once validateModel accepts it; when it
  // throws, the writer keeps the model as it was.
  ModelData takeValidModel();
  // Counts bytes, about what the caller just handed over to be written. Once the file has
  // grown by a few megabytes since the last sync, syncs what it holds so far on a thread of
  // its own (or, while that sync still runs, starts the disk writes).
  // A sync waits for the device to store everything not yet stored, at a cost that grows
  // with its amount (about 1.6 ms per MB on the development machine, even for data whose
  // writes had long been started): syncing early lets the device take most of the file
  // while the caller reads its next results, and leaves close() the tail.
  void startWriteback(size_t bytes);
  // Waits for the sync that startWriteback started, if any.
  void joinSync();
  std::string path_, tmpPath_;
  int64_t writebackFrom_ = 0;  // the temporary file's size at the last sync started
  size_t handedOver_ = 0;      // bytes counted since the file was last looked at
  struct BackgroundSync;
  std::unique_ptr<BackgroundSync> sync_;
  std::unique_ptr<h5::File> file_;
  ModelData header_;
  EntityData assembly_;
  std::deque<EntityData> instances_;
  std::vector<std::string> writtenInstances_;  // names of the instances writeModel wrote
  std::unique_ptr<ResultsWriter> results_;
  bool closed_ = false;
  bool modelWritten_ = false;
};

// Checks a whole model as Writer does and throws std::invalid_argument at the first fault.
void validateModel(const ModelData& m);

// Writes a whole model to path (through a Writer).
void writeModel(const std::string& path, const ModelData& m);
// Adds a whole model to an open writer (replacing the root assembly's contents).
void addModel(Writer& w, const ModelData& m);

}  // namespace odb
