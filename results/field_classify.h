// Classifiers of a field output: at which positions it has values, whether it has several
// section points, and in which data class its values come. The bit codes are what the
// client uses to offer a field; unknown data types give 0, nothing here throws for a type.
//
// Data-class codes: 1 scalar, 2 full tensor, 4 planar tensor, 8 surface tensor of width 3,
// 16 vector (the table of dataClassOfBlock).
#pragma once

#include <cstdint>
#include <string_view>

class odb_FieldOutput;

namespace odbs {

// The two field names that stand for a modal stress matrix (compared whole).
constexpr std::string_view kMatrixStressName = "MATRIX Sqq";
constexpr std::string_view kMatrixRootStressName = "MATRIX RSqq";
bool isMatrixFieldName(std::string_view name);

// Position bits: element nodal 8, integration point 4, centroid or element face 2, whole
// element 16. A MATRIX field has 8 under one of the two matrix names, else 0.
uint32_t positionMask(const odb_FieldOutput& field);

// 1 when one location of the field lists more than one section point (a MATRIX field: 1
// under the matrix names), else 0.
int hasSeveralSectionPoints(const odb_FieldOutput& field);

// The data-class code of values of data type `type` with `width` components.
uint32_t dataClassOfBlock(int type, int width);

// The data-class code of the field from its type and number of component labels.
uint32_t dataClassOfField(const odb_FieldOutput& field);

// The OR of the data-class codes of the field's blocks (loads the blocks of tensor fields
// with two or more blocks).
uint32_t dataClassMask(const odb_FieldOutput& field);

}  // namespace odbs
