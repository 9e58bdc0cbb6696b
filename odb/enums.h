// Every enumeration of the database API, defined once. The numbers are stored in the file
// as they stand here (docs/format.md lists them) and must never be renumbered.
#pragma once

namespace odb_Enum {

// Where a result value lives.
enum odb_ResultPositionEnum {
  UNDEFINED_POSITION = 0,
  NODAL = 1,
  ELEMENT_NODAL = 2,
  INTEGRATION_POINT = 3,
  CENTROID = 4,
  ELEMENT_FACE = 5,
  ELEMENT_FACE_INTEGRATION_POINT = 6,
  SURFACE_INTEGRATION_POINT = 7,
  WHOLE_ELEMENT = 8,
  WHOLE_REGION = 9,
  WHOLE_PART_INSTANCE = 10,
  WHOLE_MODEL = 11,
  GENERAL_PARTICLE = 12,
  SURFACE_NODAL = 13,
  SURFACE_FACET = 14,
  ELEMENT_EDGE = 15,
};

// What one field value is; the number of components follows from the component labels.
enum odb_DataTypeEnum {
  UNKNOWN_DATATYPE = 0,
  BOOLEAN = 1,
  SCALAR = 2,
  VECTOR = 3,
  MATRIX = 4,  // a symmetric matrix stored as its lower triangle, row by row
  TENSOR_3D_FULL = 5,
  TENSOR_3D_PLANAR = 6,
  TENSOR_3D_SURFACE = 7,
  TENSOR_2D_PLANAR = 8,
  TENSOR_2D_SURFACE = 9,
};

// Kind of a set.
enum odb_SetTypeEnum {
  NODE_SET = 0,
  ELEMENT_SET = 1,
  SURFACE_SET = 2,
};

// Independent variable of a step or frame.
enum odb_DomainEnum {
  TIME = 0,
  FREQUENCY = 1,
  MODAL = 2,
  ARC_LENGTH = 3,
};

// Face of an element named by a surface member.
enum odb_ElementFaceEnum {
  FACE_UNKNOWN = 0,
  FACE1 = 1,
  FACE2 = 2,
  FACE3 = 3,
  FACE4 = 4,
  FACE5 = 5,
  FACE6 = 6,
  SIDE1 = 7,
  SIDE2 = 8,
  END1 = 9,
  END2 = 10,
  END3 = 11,
  EDGE1 = 12,
  EDGE2 = 13,
  EDGE3 = 14,
  EDGE4 = 15,
};

// Code of the solver that wrote the results (odb_JobData::analysisCode).
enum odb_AnalysisCodeEnum {
  UNKNOWN_ANALYSIS_CODE = 0,
  IMPLICIT = 1,
  EXPLICIT = 2,
  FLUID = 3,
};

// Precision of stored field values.
enum odb_PrecisionEnum {
  SINGLE_PRECISION = 0,
  DOUBLE_PRECISION = 1,
};

// Kinds of extension reached through odb_Odb::extendApi.
enum odb_ApiExtensionEnum {
  MATERIAL_API = 0,
  SECTION_API = 1,
};

}  // namespace odb_Enum

// Section classes; the number is the class's typeIdentifier and is stored in the file.
enum kseO_SectionKind {
  kseO_OTHER_SECTION = 0,
  kseO_COMPOSITE_SHELL = 1,
  kseO_CONNECTOR = 2,
  kseO_POINT = 3,
  kseO_HOMOGENEOUS_SHELL = 4,
  kseO_HOMOGENEOUS_SOLID = 5,
  kseO_TRUSS = 6,
  kseO_PEG = 7,
  kseO_MEMBRANE = 8,
  kseO_GASKET = 9,
  kseO_COHESIVE = 10,
  kseO_BEAM = 11,
  kseO_LAST_SECTION_KIND = kseO_BEAM,
};
