// A host's view of the installed library: it starts the library, then asks for data types both by
// class (the headers' getType()) and by name (the class system's repository), and checks that it
// sees one object per type, one cached default and one name table, whichever way it asks.
#include <cstdio>
#include <cstring>
#include <iterator>

#include "datatype/all/all_types.h"
#include "datatype/library.h"
#include "objsys/cos_type_conversion.h"

namespace {

using namespace graphics::datatype;

int failures = 0;

void check(bool holds, const char* what) {
  std::printf("%s %s\n", holds ? "ok  " : "FAIL", what);
  if (!holds) ++failures;
}

objsys::COSDataType* registered(const char* fullName) { return objsys::COSTypeRepository::getType(fullName); }

// The registered object is the header's singleton, its default is one block, and the class system's
// conversion makes values that the singleton compares.
template <class DataType>
void checkFamily(const char* label, const char* text) {
  DataType* byClass = DataType::getType();
  objsys::COSDataType* byName = registered(DataType::getDataTypeName());
  std::printf("-- %s (%s)\n", label, DataType::getDataTypeName());
  check(byClass != nullptr && byClass == byName, "getType() is the registered data type");
  check(dynamic_cast<DataType*>(byName) == byClass, "the registered object has the header's class");
  check(byClass->getDefaultValue().pointer() == byName->getDefaultValue().pointer(),
        "one cached default, whichever way it is asked for");
  const objsys::COSTypeConversion* texts =
      objsys::COSTypeRepository::getConversion("asciiString", DataType::getDataTypeName());
  check(texts != nullptr, "its text conversion is registered");
  if (texts == nullptr) return;
  const objsys::COSValue a = texts->from(objsys::COSValue(text));
  const objsys::COSValue b = texts->from(objsys::COSValue(text));
  check(byClass->isEqual(a, b), "values made by name compare equal through the class");
  byClass->destroy(a);
  byName->destroy(b);
}

}  // namespace

int main() {
  KXInitialize_orbdatatypes(nullptr);
  std::printf("orbdatatypes %s\n", orbdatatypes_version);

  checkFamily<PositiveDataType>("constrained scalar", "2.5");
  checkFamily<EnumValueDataType<ActivePosition>>("enumeration", "outer");
  checkFamily<ColorMapDataType>("shaped array", "[0 0 1; 1 1 0]");
  checkFamily<TextStringDataType>("text", "title");
  checkFamily<MeshAlphaDataType>("alpha", "interp");
  checkFamily<RGBAColorDataType>("color", "0 0.5 1");
  checkFamily<LineStyleArrayDataType>("style list", "-|--");
  checkFamily<PositionDataType>("geometry", "0.1 0.1 0.8 0.8");
  checkFamily<BoundingVolumeDataType>("bounding volume", "[0 0 0; 1 1 1]");
  checkFamily<CallbackDataType>("callback", "disp(1)");
  checkFamily<OnOffBooleanDataType>("switch", "off");
  checkFamily<NumericOrStringDataType>("number or text", "five");

  // Every type of the master list, by class and by name: one object each.
  int differing = 0;
  for (const TypeRow& row : kEveryType) {
    if (row.dataType() == nullptr || row.dataType() != registered(row.fullName())) {
      std::printf("     %s differs\n", row.name);
      ++differing;
    }
  }
  std::printf("-- every type (%zu)\n", std::size(kEveryType));
  check(differing == 0, "every getType() is the registered data type");

  std::printf("-- name tables\n");
  auto* positions = dynamic_cast<EnumDataTypeBase*>(registered("korvax.graphics.datatype.ActivePosition"));
  check(positions != nullptr && &positions->enumType() == &EnumValueDataType<ActivePosition>::getType()->enumType(),
        "one enumeration name table per type");
  check(&MeshAlphaStyle::enumeration() == &MeshAlphaStyle::enumeration() &&
            std::strcmp(MeshAlphaStyle::nameOf(MeshAlphaStyle::interp), "interp") == 0,
        "style names come from the library's table");
  // A name added through the registered ColorTable conversion is in the table this program reaches.
  const objsys::COSValue table =
      registered("korvax.graphics.datatype.ColorTable") != nullptr
          ? objsys::COSTypeRepository::getConversion("asciiString", "korvax.graphics.datatype.ColorTable")
                ->from(objsys::COSValue("consumerteal = [0 0.5 0.5]"))
          : objsys::COSValue();
  check(!table.isEmpty() && ColorNameTable::getInstance().isColorName("consumerteal") &&
            RGBAColor("consumertea").getGreen() == 0.5,
        "one color name table, extended through the class system and seen by the program");
  if (!table.isEmpty()) ColorTableDataType::getType()->destroy(table);

  std::printf("-- conversions made by the host itself\n");
  const PositiveSC positiveTexts;
  const EnumValueSC<ActivePosition> positionTexts;
  const objsys::COSValue positive = positiveTexts.from(objsys::COSValue("0.5"));
  const objsys::COSValue position = positionTexts.from(objsys::COSValue("outer"));
  check(positive.as<const Positive>()->getValue() == 0.5, "a PositiveSC of its own reads a number");
  check(position.as<const ActivePosition>()->isOuterposition(), "an EnumValueSC of its own reads a name");
  PositiveDataType::getType()->destroy(positive);
  EnumValueDataType<ActivePosition>::getType()->destroy(position);

  KXTerminate_orbdatatypes();
  std::printf("%s\n", failures == 0 ? "all checks passed" : "some checks FAILED");
  return failures == 0 ? 0 : 1;
}
