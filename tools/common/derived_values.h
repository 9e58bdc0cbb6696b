// Values derived from a symmetric tensor field (stress or strain) beside its stored
// components: the von Mises equivalent and the three principal values. The tools compute
// them on output and label them as derived; they are never written to a database.
//
// A tensor value is held as its six components in the order 11, 22, 33, 12, 13, 23.
// Shear components are tensor components (not engineering shear strains). Components a
// field does not have (a planar or 2D field) are zero.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace odbs::tools {

using Tensor6 = std::array<double, 6>;

// Where each of the six tensor components sits in a field's value: index[k] is the
// component of the value that holds tensor component k (order above), -1 when absent.
struct TensorLayout {
  std::array<int, 6> index{-1, -1, -1, -1, -1, -1};

  // The layout read from component labels ending in two index digits ("S11", "LE23",
  // "S12"), or nothing when the labels do not name at least the 11 and 22 components of
  // a symmetric tensor.
  static std::optional<TensorLayout> fromLabels(const std::vector<std::string>& labels);

  // The tensor of one value of `width` components.
  template <typename T>
  Tensor6 tensor(const T* value) const {
    Tensor6 t{};
    for (int k = 0; k < 6; ++k) t[k] = index[k] < 0 ? 0.0 : double(value[index[k]]);
    return t;
  }
};

// Which equivalent suits a field: the stress form sqrt(3/2 s':s') or the strain form
// sqrt(2/3 e':e') (s', e' the deviators).
enum class TensorKind { kStress, kStrain };

// Strain for field names of strain outputs (E, LE, PE, NE, EE, IE, THE and the like:
// starting with 'E' or ending with "E"), stress for every other name.
TensorKind tensorKindOfField(const std::string& fieldName);

// von Mises equivalent stress of t.
double misesStress(const Tensor6& t);
// von Mises equivalent strain of t, sqrt(2/3 e':e').
double equivalentStrain(const Tensor6& t);
double equivalent(const Tensor6& t, TensorKind kind);

// The principal values of t, largest first.
std::array<double, 3> principalValues(const Tensor6& t);

}  // namespace odbs::tools
