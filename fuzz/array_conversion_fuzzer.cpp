// Every registered type's array conversion on a host array decoded from the input: the first bytes
// pick the type (see typeChosenBy), the rest describe the array (class, dimensions, complexity,
// sparsity, data, cells and struct fields, nested a few levels, a few hundred elements at most). A
// refusal must carry a cataloged identifier; a stored value goes through the checks of
// checkStoredValue and is destroyed.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxerror.h"
#include "fuzz_support.h"
#include "guilib/auto_ptr.h"
#include "type_support.h"

namespace {

using gui_objects::ZxArrayPtr;
using orbfuzz::ByteReader;

constexpr int kMaxDepth = 3;
constexpr zxSize kMaxElements = 256;

// Names the decoder gives struct fields: common property field names and a few odd ones.
constexpr const char* kFieldNames[] = {"a", "b", "Color", "Style", "x", "value", "LineStyle", "data_1"};
constexpr const char* kFunctionNames[] = {"sin", "@(x)x", ""};

enum class Kind : unsigned {
  Numeric,
  Logical,
  Char,
  Cell,
  Struct,
  Sparse,
  SparseLogical,
  Scalar,
  String,
  Function,
  Count
};

class Decoder {
 public:
  explicit Decoder(ByteReader& input) : input_(input) {}

  ZxArrayPtr array(int depth) {
    const auto kind = static_cast<Kind>(input_.below(static_cast<unsigned>(Kind::Count)));
    switch (kind) {
      case Kind::Scalar: return ZxArrayPtr(zxCreateDoubleScalar(number<double>()));
      case Kind::String: return string();
      case Kind::Function: return ZxArrayPtr(zxCreateFunctionHandle(kFunctionNames[input_.below(3)]));
      case Kind::Sparse:
      case Kind::SparseLogical: return sparse(kind == Kind::SparseLogical);
      default: break;
    }
    std::vector<zxSize> dims = dimensions();
    switch (kind) {
      case Kind::Numeric: return numeric(dims);
      case Kind::Logical: {
        ZxArrayPtr result(zxCreateLogicalArray(dims.size(), dims.data()));
        zxLogical* values = zxGetWritableLogicals(result.get());
        for (zxSize i = 0; i < zxGetNumberOfElements(result.get()); ++i) values[i] = input_.flag();
        return result;
      }
      case Kind::Char: {
        ZxArrayPtr result(zxCreateCharArray(dims.size(), dims.data()));
        zxChar* units = zxGetWritableChars(result.get());
        // Mostly ASCII letters and blanks, sometimes any code unit.
        for (zxSize i = 0; i < zxGetNumberOfElements(result.get()); ++i) {
          const std::uint8_t b = input_.byte();
          units[i] = b < 0xF0 ? static_cast<zxChar>(b & 0x7F) : static_cast<zxChar>(input_.byte() << 8 | input_.byte());
        }
        return result;
      }
      case Kind::Cell: {
        ZxArrayPtr result(zxCreateCellArray(dims.size(), dims.data()));
        for (zxSize i = 0; i < zxGetNumberOfElements(result.get()); ++i) {
          if (depth < kMaxDepth && input_.below(4) != 0) zxSetCell(result.get(), i, array(depth + 1).release());
        }
        return result;
      }
      case Kind::Struct: {
        const unsigned first = input_.below(std::size(kFieldNames));
        const int fields = static_cast<int>(input_.below(4));
        std::vector<const char*> names;
        for (int f = 0; f < fields; ++f) names.push_back(kFieldNames[(first + f) % std::size(kFieldNames)]);
        ZxArrayPtr result(zxCreateStructArray(dims.size(), dims.data(), fields, names.data()));
        for (zxSize i = 0; i < zxGetNumberOfElements(result.get()); ++i) {
          for (int f = 0; f < fields; ++f) {
            if (depth < kMaxDepth && input_.below(4) != 0) {
              zxSetFieldByNumber(result.get(), i, f, array(depth + 1).release());
            }
          }
        }
        return result;
      }
      default: return ZxArrayPtr(zxCreateDoubleMatrix(0, 0, zxREAL));
    }
  }

 private:
  // Two to four dimensions, mostly 0 to 4 long, sometimes up to 16, within the element budget.
  std::vector<zxSize> dimensions() {
    std::vector<zxSize> dims(2 + input_.below(3));
    zxSize count = 1;
    for (zxSize& d : dims) {
      const std::uint8_t b = input_.byte();
      d = b < 0xE0 ? b % 5 : b % 17;
      count *= std::max<zxSize>(d, 1);
      if (used_ + count > kMaxElements) d = 1;
    }
    used_ += count;
    return dims;
  }

  // A value from the input's bytes, or one of the values properties most often trip on.
  template <class T>
  T number() {
    if constexpr (std::is_floating_point_v<T>) {
      const std::uint8_t b = input_.byte();
      if (b < 0x40) return static_cast<T>(b & 0x0F) / 4;
      if (b < 0x60) {
        constexpr T kSpecial[] = {T(0),
                                  T(-0.0),
                                  T(1),
                                  T(-1),
                                  T(0.5),
                                  T(255),
                                  T(256),
                                  T(1e30),
                                  T(-1e-30),
                                  std::numeric_limits<T>::infinity(),
                                  -std::numeric_limits<T>::infinity(),
                                  std::numeric_limits<T>::quiet_NaN(),
                                  std::numeric_limits<T>::max(),
                                  std::numeric_limits<T>::lowest(),
                                  std::numeric_limits<T>::denorm_min(),
                                  T(0.1)};
        return kSpecial[b % std::size(kSpecial)];
      }
    }
    T value{};
    input_.bytes(&value, sizeof value);
    return value;
  }

  ZxArrayPtr numeric(const std::vector<zxSize>& dims) {
    constexpr zxClassID kClasses[] = {zxDOUBLE_CLASS, zxDOUBLE_CLASS, zxSINGLE_CLASS, zxINT8_CLASS,
                                      zxUINT8_CLASS,  zxINT16_CLASS,  zxUINT16_CLASS, zxINT32_CLASS,
                                      zxUINT32_CLASS, zxINT64_CLASS,  zxUINT64_CLASS};
    const zxClassID classID = kClasses[input_.below(std::size(kClasses))];
    const zxComplexity complexity = input_.below(8) == 0 ? zxCOMPLEX : zxREAL;
    ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, complexity));
    zx::dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      const zxSize count = zxGetNumberOfElements(result.get());
      T* re = static_cast<T*>(zxGetWritableData(result.get()));
      for (zxSize i = 0; i < count; ++i) re[i] = number<T>();
      if (complexity == zxCOMPLEX) {
        T* im = static_cast<T*>(zxGetWritableImagData(result.get()));
        for (zxSize i = 0; i < count; ++i) im[i] = number<T>();
      }
    });
    return result;
  }

  ZxArrayPtr string() {
    std::string text;
    for (unsigned length = input_.below(12); length > 0; --length) {
      const char c = static_cast<char>(input_.byte() & 0x7F);
      text += c == '\0' ? 'a' : c;
    }
    return ZxArrayPtr(zxCreateString(text.c_str()));
  }

  // An m-by-n sparse array with its nonzero pattern and values from the input.
  ZxArrayPtr sparse(bool logical) {
    const zxSize m = input_.below(6), n = input_.below(6);
    used_ += m * n;
    std::vector<bool> present(m * n);
    zxSize nonzeros = 0;
    for (zxSize i = 0; i < m * n; ++i) nonzeros += (present[i] = input_.below(3) == 0);
    const zxComplexity complexity = !logical && input_.below(4) == 0 ? zxCOMPLEX : zxREAL;
    ZxArrayPtr result(logical ? zxCreateSparseLogicalMatrix(m, n, std::max<zxSize>(nonzeros, 1))
                              : zxCreateSparse(m, n, std::max<zxSize>(nonzeros, 1), complexity));
    zxSize* ir = zxGetWritableIr(result.get());
    zxSize* jc = zxGetWritableJc(result.get());
    zxSize k = 0;
    for (zxSize col = 0; col < n; ++col) {
      jc[col] = k;
      for (zxSize row = 0; row < m; ++row) {
        if (!present[col * m + row]) continue;
        ir[k] = row;
        if (logical) {
          zxGetWritableLogicals(result.get())[k] = true;
        } else {
          zxGetWritablePr(result.get())[k] = number<double>();
          if (complexity == zxCOMPLEX) zxGetWritablePi(result.get())[k] = number<double>();
        }
        ++k;
      }
    }
    jc[n] = k;
    return result;
  }

  ByteReader& input_;
  zxSize used_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteReader input(data, size);
  const orbfuzz::FuzzType& type = orbfuzz::typeChosenBy(input);
  {
    zx::CallFrame frame;
    Decoder decoder(input);
    const ZxArrayPtr array = decoder.array(0);
    const std::string shown = orbfuzz::describeArray(array.get());
    const objsys::COSValue value = orbfuzz::convertOrRefuse(
        type, "array", shown, [&] { return type.arrays->from(objsys::COSValue(array.get())); });
    orbfuzz::checkStoredValue(type, value, shown, true);
  }
  zx::clearWarnings();
  orbfuzz::restoreProcessTables();
  return 0;
}
