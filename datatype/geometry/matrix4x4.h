// Matrix4x4: a 4-by-4 transform, with its data type and array and string conversions.
#pragma once

#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "guilib/value_types.h"

namespace graphics::datatype {

// Holds one guilib transform, the identity by default. Two transforms are equal when guilib's
// nearlyEqual finds them so (a relative tolerance; NaN is never equal).
class ORB_EXPORT Matrix4x4 {
 public:
  Matrix4x4() = default;
  explicit Matrix4x4(const gui_objects::Matrix4x4d& matrix) : matrix_(matrix) {}

  const gui_objects::Matrix4x4d& asMatrix4x4d() const { return matrix_; }
  bool operator==(const Matrix4x4& other) const { return gui_objects::nearlyEqual(matrix_, other.matrix_); }

 private:
  gui_objects::Matrix4x4d matrix_;
};

class ORB_EXPORT Matrix4x4DataType : public BasicDataType<Matrix4x4DataType, Matrix4x4> {
 public:
  static constexpr const char* kName = "Matrix4x4";
  static constexpr const char* kClassName = "Matrix4x4DataType";
  static constexpr std::size_t kValueSizeInBytes = 128;
  static Matrix4x4 makeDefaultValue() { return Matrix4x4(); }
};

// Arrays: a 4-by-4 matrix of any numeric class, read back as a 4-by-4 double; an empty slot reads back
// as the identity. Text: four rows of four numbers, written as "[a b c d; e f g h; i j k l; m n o p]".
struct ORB_EXPORT Matrix4x4Rules;
class ORB_EXPORT Matrix4x4MC final : public ArrayConversion<Matrix4x4Rules> {};
class ORB_EXPORT Matrix4x4SC final : public TextConversion<Matrix4x4Rules> {};

}  // namespace graphics::datatype
