// Plain data of the results side: what the writer takes and what the reader loads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "odb/enums.h"
#include "odb/model_data.h"

namespace odb {

struct StepData {
  std::string name;
  std::string description;
  std::string procedure;  // the procedure keyword, e.g. "*STATIC", "*FREQUENCY"
  int32_t domain = odb_Enum::TIME;
  double totalTime = 0.0;  // time at the start of the step
};

struct FrameData {
  int32_t frameIndex = -1;  // -1: the position of the frame in its step
  int32_t domain = odb_Enum::TIME;
  int32_t mode = 0;  // eigenmode number, 0 for none
  double frameValue = 0.0;
  double frequency = 0.0;
  std::string description;
};

// Where a field output has values: a position and the section points there.
struct FieldLocationData {
  int32_t position = odb_Enum::NODAL;
  std::vector<SectionPointData> sectionPoints;
};

// Description of a field output. locations empty: derived from the blocks.
struct FieldOutputData {
  std::string name;
  std::string description;
  int32_t type = odb_Enum::SCALAR;  // odb_Enum::odb_DataTypeEnum
  std::vector<std::string> componentLabels;
  bool isComplex = false;
  int32_t matrixOrder = 0;  // n for a MATRIX field holding an n by n symmetric matrix
  std::vector<FieldLocationData> locations;
};

// The values of one element type (or of nodes) of one instance at one position and
// section point. rows values of width components each, row-major, in data (single
// precision) or dataDouble (double precision); the conjugate arrays likewise when the
// field output is complex. Label arrays have one entry per row or are empty (absent).
// localCsys has csysWidth floats per row or is empty.
struct FieldBlockData {
  std::string instance;  // empty for the root assembly
  std::string elementType;
  int32_t position = odb_Enum::NODAL;
  int32_t type = odb_Enum::SCALAR;
  SectionPointData sectionPoint{-1, ""};  // number -1: no section point
  int32_t width = 1;
  bool doublePrecision = false;
  std::vector<float> data, conjugateData;
  std::vector<double> dataDouble, conjugateDataDouble;
  std::vector<int32_t> elementLabels, nodeLabels, integrationPoints;
  // Distinct elements of the block; 0 for nodal blocks. Left 0 on a block with element
  // labels, the writer stores the number of distinct labels.
  int32_t numberOfElements = 0;
  std::vector<float> localCsys;
  int32_t csysWidth = 0;

  int64_t rows() const {
    size_t n = doublePrecision ? dataDouble.size() : data.size();
    return width > 0 ? static_cast<int64_t>(n / static_cast<size_t>(width)) : 0;
  }
};

struct HistoryPointData {
  int32_t position = odb_Enum::NODAL;
  int32_t nodeLabel = -1;
  int32_t elementLabel = -1;
  std::string elementType;
  int32_t integrationPoint = 0;
  SectionPointData sectionPoint{-1, ""};
  std::string instance;
  SetData region;  // may be empty (no name, no members)
};

// Samples of width floats each (width 2: frame value, value), row after row.
// frameValues, when not empty, holds the frame value of every sample in double precision
// (one per sample); the writer stores it in place of element 0 of the samples, and the
// reader fills it. Element 0 of a conjugate sample is its frame value again.
struct HistoryOutputData {
  std::string name;
  std::string description;
  int32_t type = odb_Enum::SCALAR;
  int32_t width = 2;
  std::vector<float> data;
  std::vector<float> conjugateData;      // empty, or the same shape as data
  std::vector<double> frameValues = {};  // empty, or one per sample

  size_t samples() const { return width > 0 ? data.size() / static_cast<size_t>(width) : 0; }
};

struct HistoryRegionData {
  std::string name;
  std::string description;
  HistoryPointData point;
  std::vector<HistoryOutputData> outputs;
};

}  // namespace odb
