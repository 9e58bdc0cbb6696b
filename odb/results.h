// Read API of the results: steps (in the order written), frames, field outputs with their
// bulk data blocks, history regions and history outputs.
//
// The step and frame catalogue loads with odb_Odb::steps(); a frame's field output
// descriptions load with fieldOutputs(); a field output's arrays load when
// bulkDataBlocks() is first asked for (one read per array) and clearAll() releases them;
// history regions and their outputs load on first use. Objects stay valid until closeOdb.
// Damaged data throws std::runtime_error; a bad index or key std::out_of_range.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "odb/containers.h"
#include "odb/enums.h"
#include "odb/lazy.h"
#include "odb/model.h"
#include "odb/results_data.h"

class odb_FieldLocation {
 public:
  explicit odb_FieldLocation(const odb::FieldLocationData& d);
  odb_Enum::odb_ResultPositionEnum position() const { return position_; }
  const odb_Sequence<odb_SectionPoint>& sectionPoints() const { return points_; }

 private:
  odb_Enum::odb_ResultPositionEnum position_;
  odb_Sequence<odb_SectionPoint> points_;
};

// The name of the instance a block belongs to (empty for the root assembly).
class odb_BlockInstance {
 public:
  explicit odb_BlockInstance(std::string name) : name_(std::move(name)) {}
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

// One block of values. Array accessors return nullptr when the block has no such array:
// data()/conjugateData() in single precision, dataDouble()/conjugateDataDouble() in
// double precision (precision() tells which), label arrays when absent.
class odb_FieldBulkData {
 public:
  explicit odb_FieldBulkData(odb::FieldBlockData d);
  int length() const { return static_cast<int>(rows_); }  // number of values (rows)
  int width() const { return d_.width; }                  // components per value
  odb_Enum::odb_PrecisionEnum precision() const {
    return d_.doublePrecision ? odb_Enum::DOUBLE_PRECISION : odb_Enum::SINGLE_PRECISION;
  }
  const float* data() const { return ptr(d_.data); }
  const float* conjugateData() const { return ptr(d_.conjugateData); }
  const double* dataDouble() const { return ptr(d_.dataDouble); }
  const double* conjugateDataDouble() const { return ptr(d_.conjugateDataDouble); }
  const int* elementLabels() const { return ptr(d_.elementLabels); }
  const int* nodeLabels() const { return ptr(d_.nodeLabels); }
  const int* integrationPoints() const { return ptr(d_.integrationPoints); }
  int numberOfElements() const { return d_.numberOfElements; }
  const float* localCoordSystem() const { return ptr(d_.localCsys); }
  int orientationWidth() const { return d_.csysWidth; }
  int type() const { return d_.type; }  // odb_Enum::odb_DataTypeEnum
  // number() is -1 (all bits set) when the block has no section point.
  const odb_SectionPoint& sectionPoint() const { return sectionPoint_; }
  const std::string& baseElementType() const { return d_.elementType; }
  const odb_BlockInstance& instance() const { return instance_; }
  odb_Enum::odb_ResultPositionEnum position() const {
    return static_cast<odb_Enum::odb_ResultPositionEnum>(d_.position);
  }
  const odb::FieldBlockData& blockData() const { return d_; }

 private:
  template <typename T>
  static const T* ptr(const std::vector<T>& v) {
    return v.empty() ? nullptr : v.data();
  }
  odb::FieldBlockData d_;
  int64_t rows_;
  odb_SectionPoint sectionPoint_;
  odb_BlockInstance instance_;
};

// The blocks of a field output; loaded on creation, released by clearAll().
class odb_SequenceFieldBulkData {
 public:
  explicit odb_SequenceFieldBulkData(std::shared_ptr<odb::Lazy<std::vector<odb_FieldBulkData>>> b)
      : blocks_(std::move(b)) {}
  int size() const { return static_cast<int>(blocks_->get().size()); }
  const odb_FieldBulkData& operator[](int i) const;
  // Releases the arrays; the next bulkDataBlocks() reads them again.
  void clearAll() const { blocks_->clear(); }

 private:
  std::shared_ptr<odb::Lazy<std::vector<odb_FieldBulkData>>> blocks_;
};

class odb_FieldOutput {
 public:
  using BlockLoader = std::function<std::vector<odb_FieldBulkData>(int position)>;
  // A field output whose blocks come from loadBlocks(position): the blocks at that
  // position, or all blocks for position -1.
  odb_FieldOutput(odb::FieldOutputData d, BlockLoader loadBlocks);
  const std::string& name() const { return d_.name; }
  const std::string& description() const { return d_.description; }
  int type() const { return d_.type; }  // odb_Enum::odb_DataTypeEnum
  const odb_SequenceString& componentLabels() const { return labels_; }
  const odb_Sequence<odb_FieldLocation>& locations() const { return locations_; }
  bool isComplex() const { return d_.isComplex; }
  // Order n of the symmetric matrix of a MATRIX field (0 for other fields).
  int matrixOrder() const { return d_.matrixOrder; }
  // The blocks at one position only, as a field output of its own.
  odb_FieldOutput getSubset(int position) const;
  // Loads the arrays of the blocks on first use; the sequence shares them with this field.
  odb_SequenceFieldBulkData bulkDataBlocks() const { return odb_SequenceFieldBulkData(blocks_); }

 private:
  odb::FieldOutputData d_;
  odb_SequenceString labels_;
  odb_Sequence<odb_FieldLocation> locations_;
  BlockLoader load_;
  std::shared_ptr<odb::Lazy<std::vector<odb_FieldBulkData>>> blocks_;
};

using odb_FieldOutputRepository = odb_Repository<odb_FieldOutput>;
using odb_FieldOutputRepositoryIT = odb_RepositoryIterator<odb_FieldOutput>;

class odb_Frame {
 public:
  odb_Frame(odb::FrameData d, odb::Lazy<odb_FieldOutputRepository> fields)
      : d_(std::move(d)), fields_(std::move(fields)) {}
  int frameIndex() const { return d_.frameIndex; }
  odb_Enum::odb_DomainEnum domain() const {
    return static_cast<odb_Enum::odb_DomainEnum>(d_.domain);
  }
  int mode() const { return d_.mode; }
  double frameValue() const { return d_.frameValue; }
  double frequency() const { return d_.frequency; }
  const std::string& description() const { return d_.description; }
  // Field output descriptions, loaded on the first call and kept until closeOdb.
  const odb_FieldOutputRepository& fieldOutputs() const { return fields_.get(); }
  // Releases the field output descriptions (they load again on the next fieldOutputs());
  // for walks over very many frames. References from fieldOutputs() become invalid.
  void releaseFieldOutputs() const { fields_.clear(); }

 private:
  odb::FrameData d_;
  mutable odb::Lazy<odb_FieldOutputRepository> fields_;
};
using odb_SequenceFrame = odb_Sequence<odb_Frame>;

class odb_HistoryNode {
 public:
  explicit odb_HistoryNode(int label) : label_(label) {}
  int label() const { return label_; }

 private:
  int label_;
};

class odb_HistoryElement {
 public:
  odb_HistoryElement(int label, std::string type) : label_(label), type_(std::move(type)) {}
  int label() const { return label_; }
  const std::string& type() const { return type_; }

 private:
  int label_;
  std::string type_;
};

// Where a history region's values were taken. Labels are -1 when there is no node or
// element; sectionPoint().number() is -1 when there is no section point.
class odb_HistoryPoint {
 public:
  explicit odb_HistoryPoint(const odb::HistoryPointData& d);
  odb_Enum::odb_ResultPositionEnum position() const { return position_; }
  odb_HistoryNode node() const { return node_; }
  odb_HistoryElement element() const { return element_; }
  int ipNumber() const { return ip_; }
  const odb_SectionPoint& sectionPoint() const { return sectionPoint_; }
  const odb_Set& region() const { return region_; }
  const odb_BlockInstance& instance() const { return instance_; }

 private:
  odb_Enum::odb_ResultPositionEnum position_;
  odb_HistoryNode node_;
  odb_HistoryElement element_;
  int ip_;
  odb_SectionPoint sectionPoint_;
  odb_Set region_;
  odb_BlockInstance instance_;
};

// One history output: samples of (frame value, value).
class odb_HistoryOutput {
 public:
  odb_HistoryOutput(std::string name, std::string description, int type,
                    odb::Lazy<odb::HistoryOutputData> samples);
  virtual ~odb_HistoryOutput() = default;
  virtual const odb_SequenceSequenceFloat& data() const;
  virtual const odb_SequenceSequenceFloat& conjugateData() const;
  // The frame value of every sample in double precision (element 0 of each sample of
  // data() is the same value in single precision).
  const std::vector<double>& frameValues() const { return raw_.get().frameValues; }
  // The samples as stored, without a sequence per sample: width floats per sample, row
  // after row, in data and (complex output) conjugateData. For bulk readers.
  const odb::HistoryOutputData& flatData() const { return raw_.get(); }
  const std::string& name() const { return name_; }
  const std::string& description() const { return description_; }
  int type() const { return type_; }

 private:
  struct Samples {
    odb_SequenceSequenceFloat data, conjugate;
  };
  const Samples& samples() const;
  std::string name_, description_;
  int type_;
  odb::Lazy<odb::HistoryOutputData> raw_;
  mutable std::shared_ptr<Samples> samples_;
};
using odb_HistoryOutputRepository = odb_Repository<odb_HistoryOutput>;
using odb_HistoryOutputRepositoryIT = odb_RepositoryIterator<odb_HistoryOutput>;

class odb_HistoryRegion {
 public:
  odb_HistoryRegion(std::string name, std::string description, odb_HistoryPoint point,
                    odb::Lazy<odb_HistoryOutputRepository> outputs)
      : name_(std::move(name)),
        description_(std::move(description)),
        point_(std::move(point)),
        outputs_(std::move(outputs)) {}
  const std::string& name() const { return name_; }
  const std::string& description() const { return description_; }
  odb_HistoryPoint historyPoint() const { return point_; }
  const odb_HistoryOutputRepository& historyOutputs() const { return outputs_.get(); }

 private:
  std::string name_, description_;
  odb_HistoryPoint point_;
  odb::Lazy<odb_HistoryOutputRepository> outputs_;
};
using odb_HistoryRegionRepository = odb_Repository<odb_HistoryRegion>;
using odb_HistoryRegionRepositoryIT = odb_RepositoryIterator<odb_HistoryRegion>;

class odb_Step {
 public:
  odb_Step(odb::StepData d, odb_SequenceFrame frames,
           odb::Lazy<odb_HistoryRegionRepository> history)
      : d_(std::move(d)), frames_(std::move(frames)), history_(std::move(history)) {}
  const std::string& name() const { return d_.name; }
  const std::string& description() const { return d_.description; }
  const std::string& procedure() const { return d_.procedure; }
  odb_Enum::odb_DomainEnum domain() const {
    return static_cast<odb_Enum::odb_DomainEnum>(d_.domain);
  }
  double totalTime() const { return d_.totalTime; }
  const odb_SequenceFrame& frames() const { return frames_; }
  odb_SequenceFrame& frames() { return frames_; }
  const odb_HistoryRegionRepository& historyRegions() const { return history_.get(); }

 private:
  odb::StepData d_;
  odb_SequenceFrame frames_;
  odb::Lazy<odb_HistoryRegionRepository> history_;
};

// Steps by name, iterated in the order they were added.
class odb_StepRepository {
 public:
  int size() const { return static_cast<int>(steps_.size()); }
  bool isMember(const std::string& name) const { return index_.count(name) != 0; }
  const odb_Step& operator[](const std::string& name) const { return get(name); }
  const odb_Step& get(const std::string& name) const;
  // Step names in insertion order.
  const odb_SequenceString& stepNames() const { return names_; }
  const odb_Step& at(int i) const;
  odb_Step& at(int i) { return const_cast<odb_Step&>(std::as_const(*this).at(i)); }
  void add(std::unique_ptr<odb_Step> s);

 private:
  std::vector<std::unique_ptr<odb_Step>> steps_;
  std::map<std::string, size_t> index_;
  odb_SequenceString names_;
};

class odb_StepRepositoryIT {
 public:
  explicit odb_StepRepositoryIT(const odb_StepRepository& r) : r_(&r) {}
  void first() { i_ = 0; }
  void next() {
    if (!isDone()) ++i_;
  }
  bool isDone() const { return i_ >= r_->size(); }
  const std::string& currentKey() const { return r_->stepNames()[i_]; }
  const odb_Step& currentValue() const { return r_->at(i_); }

 private:
  const odb_StepRepository* r_;
  int i_ = 0;
};
