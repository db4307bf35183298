// ARRAY objects: writing host arrays as JSON and reading them back with strict validation.
#include "orbdt/json_array.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "foundationlib/i18n/unicode.h"

namespace orbdt {

using gui_objects::ZxArrayPtr;
using nlohmann::json;

namespace {

// The most elements an array may span, as for literals: within it no product of dimensions
// overflows.
constexpr zxSize kMaxElements = zxSize{1} << 40;

json dimsToJson(const zxArray* array) {
  const zxSize* dims = zxGetDimensions(array);
  return json(std::vector<zxSize>(dims, dims + zxGetNumberOfDimensions(array)));
}

template <class T>
json elementToJson(T value) {
  if constexpr (std::is_same_v<T, zxLogical>) {
    return value ? 1 : 0;
  } else if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-Inf" : "Inf";
    // A single widened to double prints as that double, which narrows back to the same single.
    return static_cast<double>(value);
  } else if constexpr (std::is_signed_v<T>) {
    return static_cast<std::int64_t>(value);
  } else {
    return static_cast<std::uint64_t>(value);
  }
}

json partToJson(zxClassID classID, const void* data, zxSize count) {
  json values = json::array();
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    for (zxSize i = 0; i < count; ++i) values.push_back(elementToJson(static_cast<const T*>(data)[i]));
  });
  return values;
}

json rowsToJson(const zxArray* array) {
  json rows = json::array();
  const zxSize m = zxGetM(array);
  const zxSize n = zxGetN(array);
  const zxChar* chars = zxGetChars(array);
  std::u16string units;
  for (zxSize r = 0; r < m; ++r) {
    units.clear();
    for (zxSize c = 0; c < n; ++c) units += chars[r + c * m];
    rows.push_back(fl::i18n::utf16ToUtf8(units));
  }
  return rows;
}

json structToJson(const zxArray* array) {
  const int fieldCount = zxGetNumberOfFields(array);
  json fields = json::array();
  for (int f = 0; f < fieldCount; ++f) fields.push_back(zxGetFieldNameByNumber(array, f));
  json elements = json::array();
  for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) {
    json element = json::object();
    for (int f = 0; f < fieldCount; ++f) {
      element[zxGetFieldNameByNumber(array, f)] = arrayToJson(zxGetFieldByNumber(array, i, f));
    }
    elements.push_back(std::move(element));
  }
  return json{{"fields", std::move(fields)}, {"elements", std::move(elements)}};
}

std::string dimsText(const std::vector<zxSize>& dims) {
  std::string text;
  for (const zxSize d : dims) text += (text.empty() ? "" : "x") + std::to_string(d);
  return text;
}

// Reads ARRAY objects, tracking the path of the member being read for error messages. Paths of
// elements are only spelled out when one fails.
class Reader {
 public:
  explicit Reader(cmdlang::ByteBudget& budget) : budget_(budget) {}

  ZxArrayPtr read(const json& object, const std::string& path) {
    if (depth_ >= cmdlang::kMaxLiteralDepth) fail(path, "nested too deeply");
    ++depth_;
    ZxArrayPtr result = readObject(object, path);
    --depth_;
    return result;
  }

 private:
  [[noreturn]] static void fail(const std::string& path, const std::string& what) {
    throw cmdlang::LiteralError(path + ": " + what);
  }

  static std::string elementPath(const std::string& path, const char* member, zxSize index) {
    return path + "." + member + "[" + std::to_string(index) + "]";
  }

  [[noreturn]] static void failElement(const std::string& path, const char* member, zxSize index,
                                       const std::string& what) {
    fail(elementPath(path, member, index), what);
  }

  static const json& member(const json& object, const char* name, const std::string& path) {
    const auto found = object.find(name);
    if (found == object.end()) fail(path, std::string("missing member '") + name + "'");
    return *found;
  }

  static const json& arrayMember(const json& object, const char* name, zxSize count, const std::string& path) {
    const json& values = member(object, name, path);
    if (!values.is_array()) fail(path + "." + name, "expected an array");
    if (values.size() != count) {
      fail(path + "." + name,
           "has " + std::to_string(values.size()) + " entries where the dims need " + std::to_string(count));
    }
    return values;
  }

  static void allowOnly(const json& object, std::initializer_list<std::string_view> extra, const std::string& path) {
    for (const auto& [key, value] : object.items()) {
      if (key == "class" || key == "dims" || std::find(extra.begin(), extra.end(), key) != extra.end()) continue;
      fail(path, "unexpected member '" + key + "'");
    }
  }

  static std::vector<zxSize> readDims(const json& object, const std::string& path) {
    const json& dims = member(object, "dims", path);
    if (!dims.is_array() || dims.size() < 2) fail(path + ".dims", "must list at least two dimensions");
    std::vector<zxSize> result;
    for (const json& d : dims) {
      if (!d.is_number_unsigned()) fail(path + ".dims", "dimensions must be non-negative integers");
      result.push_back(d.get<std::uint64_t>());
    }
    return result;
  }

  // Charges an array of dims with elements of bytesEach before it is made, then refuses dimensions
  // whose products would overflow the host's sizes.
  void charge(const std::vector<zxSize>& dims, std::size_t bytesEach, const std::string& className,
              const std::string& path) {
    zxSize count = 1;
    zxSize extent = 1;
    for (const zxSize d : dims) {
      count = cmdlang::saturatingMultiply(count, d);
      if (d != 0) extent = cmdlang::saturatingMultiply(extent, d);
    }
    const std::string what = path + ": a " + dimsText(dims) + " " + className + " array";
    budget_.charge(cmdlang::saturatingMultiply(count, bytesEach), what);
    budget_.charge(cmdlang::kArrayOverhead, what);
    if (extent > kMaxElements) fail(path + ".dims", "too many elements");
  }

  ZxArrayPtr readObject(const json& object, const std::string& path) {
    if (!object.is_object()) fail(path, "expected an ARRAY object");
    const json& classJson = member(object, "class", path);
    if (!classJson.is_string()) fail(path + ".class", "must be a string");
    const auto className = classJson.get<std::string>();
    const std::vector<zxSize> dims = readDims(object, path);
    if (const std::optional<zxClassID> classID = cmdlang::valueClassNamed(className)) {
      allowOnly(object, {"re", "im", "sparse"}, path);
      return readValues(object, *classID, className, dims, path);
    }
    if (className == "char") {
      allowOnly(object, {"rows"}, path);
      return readText(object, dims, path);
    }
    if (className == "cell") {
      allowOnly(object, {"cells"}, path);
      return readCell(object, dims, path);
    }
    if (className == "struct") {
      allowOnly(object, {"fields", "elements"}, path);
      return readStruct(object, dims, path);
    }
    if (className == "object" || className == "function_handle") {
      fail(path, className + " arrays cannot be recreated from JSON");
    }
    fail(path + ".class", "unknown class '" + className + "'");
  }

  template <class T>
  static T readElement(const json& value, const std::string& path, const char* member, zxSize index) {
    if constexpr (std::is_same_v<T, zxLogical>) {
      if (value.is_boolean()) return value.get<bool>();
      if (value.is_number()) {
        const auto number = value.get<double>();
        if (number == 0 || number == 1) return number == 1;
      }
      failElement(path, member, index, "logical elements must be 0 or 1, not " + value.dump());
    } else if constexpr (std::is_floating_point_v<T>) {
      if (value.is_string()) {
        const auto& text = value.get_ref<const std::string&>();
        if (text == "NaN") return std::numeric_limits<T>::quiet_NaN();
        if (text == "Inf") return std::numeric_limits<T>::infinity();
        if (text == "-Inf") return -std::numeric_limits<T>::infinity();
      }
      if (!value.is_number())
        failElement(path, member, index, "expected a number, \"NaN\", \"Inf\" or \"-Inf\", not " + value.dump());
      const auto number = value.get<double>();
      if (std::fabs(number) > std::numeric_limits<T>::max())
        failElement(path, member, index, value.dump() + " is out of range for single");
      return static_cast<T>(number);
    } else {
      if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        if (std::in_range<T>(number)) return static_cast<T>(number);
      } else if (value.is_number_integer()) {
        const auto number = value.get<std::int64_t>();
        if (std::in_range<T>(number)) return static_cast<T>(number);
      } else if (value.is_number_float()) {
        const auto number = value.get<double>();
        if (std::floor(number) != number) failElement(path, member, index, value.dump() + " is not a whole number");
        // As doubles the upper limits of the 64-bit classes round up to 2^63 and 2^64, so "<" is exact.
        if (number >= static_cast<double>(std::numeric_limits<T>::min()) &&
            number < static_cast<double>(std::numeric_limits<T>::max()) + 1.0) {
          return static_cast<T>(number);
        }
      } else {
        failElement(path, member, index, "expected an integer, not " + value.dump());
      }
      failElement(path, member, index, value.dump() + " is out of range for its class");
    }
  }

  ZxArrayPtr readValues(const json& object, zxClassID classID, const std::string& className,
                        const std::vector<zxSize>& dims, const std::string& path) {
    const bool complex = object.contains("im");
    if (complex && classID == zxLOGICAL_CLASS) fail(path + ".im", "logical arrays cannot be complex");
    bool sparse = false;
    if (object.contains("sparse")) {
      if (!object.at("sparse").is_boolean()) fail(path + ".sparse", "must be true or false");
      sparse = object.at("sparse").get<bool>();
    }
    if (sparse && ((classID != zxDOUBLE_CLASS && classID != zxLOGICAL_CLASS) || dims.size() != 2)) {
      fail(path + ".sparse", "only 2-D double and logical arrays can be sparse");
    }
    std::size_t bytesEach = 0;
    zx::dispatchNumericOrLogical(classID, [&](auto type) { bytesEach = sizeof(typename decltype(type)::type); });
    charge(dims, bytesEach * (complex ? 2 : 1), className, path);
    zxSize count = 1;
    for (const zxSize d : dims) count *= d;
    const json& re = arrayMember(object, "re", count, path);
    const json* im = complex ? &arrayMember(object, "im", count, path) : nullptr;
    ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, complex ? zxCOMPLEX : zxREAL));
    zx::dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      T* values = static_cast<T*>(zxGetWritableData(result.get()));
      for (zxSize i = 0; i < count; ++i) values[i] = readElement<T>(re[i], path, "re", i);
      if (im != nullptr) {
        T* imag = static_cast<T*>(zxGetWritableImagData(result.get()));
        for (zxSize i = 0; i < count; ++i) imag[i] = readElement<T>((*im)[i], path, "im", i);
      }
    });
    return sparse ? cmdlang::makeSparse(result.get(), budget_) : std::move(result);
  }

  ZxArrayPtr readText(const json& object, const std::vector<zxSize>& dims, const std::string& path) {
    // The array and each row's UTF-16 units on the way into it.
    charge(dims, 2 * sizeof(zxChar), "char", path);
    const json& rows = arrayMember(object, "rows", dims[0], path);
    zxSize width = 1;
    for (std::size_t i = 1; i < dims.size(); ++i) width *= dims[i];
    // Every row is checked before the array is made.
    for (zxSize r = 0; r < dims[0]; ++r) {
      if (!rows[r].is_string()) fail(elementPath(path, "rows", r), "expected a string");
      const std::size_t units = fl::i18n::utf8ToUtf16(rows[r].get_ref<const std::string&>()).size();
      if (units != width) {
        fail(elementPath(path, "rows", r),
             "has " + std::to_string(units) + " UTF-16 units where the dims need " + std::to_string(width));
      }
    }
    ZxArrayPtr result(zxCreateCharArray(dims.size(), dims.data()));
    zxChar* chars = zxGetWritableChars(result.get());
    for (zxSize r = 0; r < dims[0]; ++r) {
      const std::u16string units = fl::i18n::utf8ToUtf16(rows[r].get_ref<const std::string&>());
      for (zxSize c = 0; c < width; ++c) chars[r + c * dims[0]] = units[c];
    }
    return result;
  }

  ZxArrayPtr readCell(const json& object, const std::vector<zxSize>& dims, const std::string& path) {
    charge(dims, sizeof(zxArray*), "cell", path);
    zxSize count = 1;
    for (const zxSize d : dims) count *= d;
    const json& cells = arrayMember(object, "cells", count, path);
    ZxArrayPtr result(zxCreateCellArray(dims.size(), dims.data()));
    for (zxSize i = 0; i < cells.size(); ++i) {
      if (cells[i].is_null()) continue;
      zxSetCell(result.get(), i, read(cells[i], elementPath(path, "cells", i)).release());
    }
    return result;
  }

  ZxArrayPtr readStruct(const json& object, const std::vector<zxSize>& dims, const std::string& path) {
    const json& fields = member(object, "fields", path);
    if (!fields.is_array()) fail(path + ".fields", "expected an array of names");
    // Each field costs its slot in every element, its name and its entry in the lookup by name.
    constexpr std::size_t kFieldCost = 160;
    budget_.charge(cmdlang::saturatingMultiply(fields.size(), kFieldCost),
                   path + ".fields: " + std::to_string(fields.size()) + " fields");
    charge(dims, cmdlang::saturatingMultiply(fields.size(), sizeof(zxArray*)), "struct", path);
    std::vector<const char*> names;
    names.reserve(fields.size());
    std::unordered_map<std::string_view, int> numbers;
    for (const json& field : fields) {
      if (!field.is_string() || !cmdlang::isFieldName(field.get_ref<const std::string&>())) {
        fail(path + ".fields", "invalid field name " + field.dump());
      }
      const std::string& name = field.get_ref<const std::string&>();
      if (!numbers.emplace(name, static_cast<int>(names.size())).second) {
        fail(path + ".fields", "duplicate field " + field.dump());
      }
      names.push_back(name.c_str());
    }
    zxSize count = 1;
    for (const zxSize d : dims) count *= d;
    const json& elements = arrayMember(object, "elements", count, path);
    ZxArrayPtr result(zxCreateStructArray(dims.size(), dims.data(), static_cast<int>(names.size()), names.data()));
    for (zxSize i = 0; i < elements.size(); ++i) {
      if (!elements[i].is_object()) fail(elementPath(path, "elements", i), "expected an object");
      for (const auto& [key, value] : elements[i].items()) {
        const auto field = numbers.find(key);
        if (field == numbers.end()) fail(elementPath(path, "elements", i), "unknown field '" + key + "'");
        if (value.is_null()) continue;
        const std::string fieldPath = elementPath(path, "elements", i) + "." + key;
        zxSetFieldByNumber(result.get(), i, field->second, read(value, fieldPath).release());
      }
    }
    return result;
  }

  cmdlang::ByteBudget& budget_;
  int depth_ = 0;
};

}  // namespace

json arrayToJson(const zxArray* array) {
  if (array == nullptr) return nullptr;
  if (zxIsObject(array)) {
    return json{{"class", "object"}, {"className", zxGetClassName(array)}, {"dims", dimsToJson(array)}};
  }
  json object{{"class", zxGetClassName(array)}, {"dims", dimsToJson(array)}};
  if (zxIsNumeric(array) || zxIsLogical(array)) {
    const ZxArrayPtr full(zxIsSparse(array) ? zxMustBeFull(array) : nullptr);
    const zxArray* source = full ? full.get() : array;
    const zxSize count = zxGetNumberOfElements(source);
    object["re"] = partToJson(zxGetClassID(source), zxGetData(source), count);
    if (zxIsComplex(source)) object["im"] = partToJson(zxGetClassID(source), zxGetImagData(source), count);
    if (zxIsSparse(array)) object["sparse"] = true;
  } else if (zxIsChar(array)) {
    object["rows"] = rowsToJson(array);
  } else if (zxIsCell(array)) {
    json cells = json::array();
    for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) cells.push_back(arrayToJson(zxGetCell(array, i)));
    object["cells"] = std::move(cells);
  } else if (zxIsStruct(array)) {
    object.update(structToJson(array));
  } else if (zxIsFunctionHandle(array)) {
    object["function"] = zxGetFunctionName(array);
  }
  return object;
}

ZxArrayPtr arrayFromJson(const json& object) {
  cmdlang::ByteBudget unlimited;
  return arrayFromJson(object, unlimited);
}

ZxArrayPtr arrayFromJson(const json& object, cmdlang::ByteBudget& budget) {
  ZxArrayPtr result = Reader(budget).read(object, "$");
  zxSetArrayScope(result.get(), zxPERSISTENT);
  return result;
}

}  // namespace orbdt
