// A sweep over every type of the master list, through the class system as a host reaches it: names
// and registration, sizes, the cached default and its copies, round trips of the default through both
// conversions, the possible values, and a refusal that stores nothing and carries a catalog text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "arraylib/zxarray.h"
#include "arraylib/zxformat.h"
#include "cmdlanglib/literal.h"
#include "datatype/all/all_types.h"
#include "foundationlib/i18n/catalog.h"
#include "guilib/auto_ptr.h"
#include "objsys/cos_package.h"
#include "support.h"
#include "utillib/ut.h"

#if defined(__SANITIZE_ADDRESS__)
// Declared here because GCC does not ship the sanitizer's public headers; the runtime defines it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

std::size_t heapInUse() {
#if defined(__SANITIZE_ADDRESS__)
  return __sanitizer_get_current_allocated_bytes();
#else
  return mallinfo2().uordblks;
#endif
}

class EveryType : public orbtest::DataTypeTest, public ::testing::WithParamInterface<TypeRow> {
 protected:
  const TypeFacts& facts = GetParam().facts;
  objsys::COSDataType& type = *GetParam().dataType();
  const std::string fullName = GetParam().fullName();
  const objsys::COSTypeConversion* arrays = objsys::COSTypeRepository::getConversion("any", fullName.c_str());
  const objsys::COSTypeConversion* texts = objsys::COSTypeRepository::getConversion("asciiString", fullName.c_str());

  // Whether what value reads back as is accepted when stored again, and settles: read-backs are
  // compared rather than values, and from the second on. A value holding nothing reads back as a
  // 0-by-0 array, which is stored as a value holding that array (deliberately unequal to holding
  // nothing) and may read back in the type's canonical empty shape.
  void expectArrayRoundTrip(COSValue value) {
    gui_objects::ZxArrayPtr readBack(arrays->to(value).as<zxArray>());
    std::string previous;
    for (int pass = 0; pass < 2; ++pass) {
      ASSERT_NE(readBack, nullptr);
      const COSValue again = arrays->from(COSValue(readBack.get()));
      readBack.reset(arrays->to(again).as<zxArray>());
      type.destroy(again);
      if (pass == 1) {
        EXPECT_EQ(describe(readBack.get()), previous);
      }
      previous = describe(readBack.get());
    }
  }
  // The same for text, as the type's text form says: a type without one gives no text, or refuses to
  // write one with a cataloged identifier.
  void expectTextRoundTrip(COSValue value) {
    if (facts.text == TextForm::refused) {
      expectRefusedWithCatalogedId([&] { texts->to(value); });
      return;
    }
    const COSValue text = texts->to(value);
    // An array-valued value that holds no array has no text either.
    if (facts.text == TextForm::none || text.isEmpty()) {
      EXPECT_TRUE(text.isEmpty());
      return;
    }
    SCOPED_TRACE(std::string("text ") + text.as<const char>());
    const COSValue again = texts->from(text);
    const COSValue textAgain = texts->to(again);
    ASSERT_FALSE(textAgain.isEmpty());
    EXPECT_STREQ(textAgain.as<const char>(), text.as<const char>());
    type.destroy(again);
    utFree(text.pointer());
    utFree(textAgain.pointer());
  }
  template <class Convert>
  static void expectRefusedWithCatalogedId(Convert&& convert) {
    try {
      convert();
      ADD_FAILURE() << "not refused";
    } catch (const fl::except::IMsgIDException& error) {
      EXPECT_TRUE(fl::i18n::MessageCatalog::instance().find(error.get_error_id()).has_value()) << error.get_error_id();
    }
  }
  static std::string describe(const zxArray* array) {
    std::string text = zxGetClassName(array);
    for (zxSize d = 0; d < zxGetNumberOfDimensions(array); ++d) text += " " + std::to_string(zxGetDimensions(array)[d]);
    return text + " " + zx::canonicalText(array);
  }
};

class EveryTypeList : public orbtest::DataTypeTest {};

TEST_F(EveryTypeList, NamesAreUniqueAndTheListIsTheRegisteredPackage) {
  std::set<std::string> names;
  for (const TypeRow& row : kEveryType) EXPECT_TRUE(names.insert(row.fullName()).second) << row.name;
  std::set<std::string> registered;
  for (const objsys::COSDataType* type : objsys::COSPackage::getPackage(kPackageName)->getDataTypes()) {
    registered.insert(std::string(kPackageName) + "." + type->getName());
  }
  EXPECT_EQ(names, registered);
}

TEST_P(EveryType, IsRegisteredUnderItsNamesWithConsistentSizes) {
  EXPECT_EQ(fullName, std::string(kPackageName) + "." + GetParam().name);
  EXPECT_STREQ(type.getName(), GetParam().name);
  EXPECT_STREQ(type.getDeclarationName(), GetParam().name);
  EXPECT_EQ(objsys::COSTypeRepository::getType(fullName.c_str()), &type);
  EXPECT_NE(arrays, nullptr);
  EXPECT_NE(texts, nullptr);
  EXPECT_STREQ(type.getCategoryName(), "Fundamental");
  EXPECT_EQ(type.getStorageType(), objsys::cosStorageIndirect);
  EXPECT_EQ(type.getValueSizeInBytes(COSValue()) == 0, facts.valueOutsideBlock);
  EXPECT_EQ(type.getSizeInBits(), 8 * type.getValueSizeInBytes(COSValue()));
}

TEST_P(EveryType, TheDefaultIsSharedAndEqualToItsCopy) {
  const COSValue value = type.getDefaultValue();
  if (!facts.defaultHoldsValue) {
    EXPECT_TRUE(value.isEmpty());
    EXPECT_TRUE(type.copy(value).isEmpty());
    return;
  }
  ASSERT_FALSE(value.isEmpty());
  EXPECT_EQ(type.getDefaultValue(), value);
  const COSValue copy = type.copy(value);
  EXPECT_NE(copy, value);
  EXPECT_TRUE(type.isEqual(copy, value));
  EXPECT_EQ(type.compare(copy, value), objsys::cosEqual);
  type.destroy(copy);
}

TEST_P(EveryType, TheDefaultSurvivesBothConversions) {
  ASSERT_NE(arrays, nullptr);
  ASSERT_NE(texts, nullptr);
  const COSValue value = type.getDefaultValue();
  expectArrayRoundTrip(value);
  expectTextRoundTrip(value);
  // An empty slot reads back as some array; as text, as the type's facts say.
  EXPECT_FALSE(arrays->to(COSValue()).isEmpty());
  if (facts.text == TextForm::refused) {
    expectRefusedWithCatalogedId([&] { texts->to(COSValue()); });
  } else {
    const COSValue text = texts->to(COSValue());
    EXPECT_EQ(!text.isEmpty(), facts.emptySlotHasText);
    utFree(text.pointer());
  }
}

TEST_P(EveryType, PossibleValuesAreValuesOfTheTypeThatReadBack) {
  if (!type.isPossibleValuesFinite()) GTEST_SKIP() << "no named values";
  objsys::COSEnumerationRef values(type.getPossibleValues());
  ASSERT_TRUE(values);
  int count = 0;
  while (values->hasMoreElements()) {
    const COSValue value = values->nextElement();
    ASSERT_FALSE(value.isEmpty());
    expectArrayRoundTrip(value);
    expectTextRoundTrip(value);
    ++count;
  }
  EXPECT_EQ(count > 0, facts.offersNames);
}

// The first refusals may make what is made once per process (the type's tables, the catalog); after
// them, refusals must not grow the heap with their number. One small allocation that outlives a
// refusal (the allocator's or the test framework's own) is tolerated; a value, block or array left
// behind by each refusal is not.
TEST_P(EveryType, ARefusedArrayRaisesACatalogedIdentifierAndStoresNothing) {
  if (facts.refusedArray == nullptr) GTEST_SKIP() << "refuses no array";
  const gui_objects::ZxArrayPtr refusedArray = cmdlang::readLiteral(facts.refusedArray);
  const auto refuse = [&] {
    expectRefusedWithCatalogedId([&] { type.destroy(arrays->from(COSValue(refusedArray.get()))); });
  };
  refuse();
  refuse();
  // A Java machine allocates on threads of its own meanwhile.
  if (facts.arraysUseJava) return;
  constexpr int kRefusals = 16;
  const auto before = static_cast<std::ptrdiff_t>(heapInUse());
  for (int i = 0; i < kRefusals; ++i) refuse();
  EXPECT_LT(static_cast<std::ptrdiff_t>(heapInUse()) - before, std::ptrdiff_t{kRefusals} * 8);
}

// A long session: 10^5 conversions over every type (the default read back as an array and as text,
// each stored again, copied, compared and destroyed). After two rounds have made what is made once,
// the heap must stay flat however many rounds follow.
TEST_F(EveryTypeList, ATenthOfAMillionConversionsLeaveTheHeapFlat) {
  struct Conversions {
    const TypeFacts* facts;
    objsys::COSDataType* type;
    const objsys::COSTypeConversion* arrays;
    const objsys::COSTypeConversion* texts;
  };
  std::vector<Conversions> types;
  for (const TypeRow& row : kEveryType) {
    types.push_back({&row.facts, row.dataType(), objsys::COSTypeRepository::getConversion("any", row.fullName()),
                     objsys::COSTypeRepository::getConversion("asciiString", row.fullName())});
  }
  std::size_t conversions = 0;
  const auto round = [&] {
    for (const Conversions& t : types) {
      zx::CallFrame frame;
      const COSValue value = t.type->getDefaultValue();
      gui_objects::ZxArrayPtr array(t.arrays->to(value).as<zxArray>());
      const COSValue fromArray = t.arrays->from(COSValue(array.get()));
      const COSValue copy = t.type->copy(fromArray);
      EXPECT_EQ(t.type->compare(copy, fromArray), t.type->compare(fromArray, copy));
      t.type->destroy(copy);
      t.type->destroy(fromArray);
      conversions += 3;
      if (t.facts->text == TextForm::refused) continue;
      const COSValue text = t.texts->to(value);
      if (!text.isEmpty()) {
        t.type->destroy(t.texts->from(text));
        utFree(text.pointer());
        conversions += 2;
      }
    }
  };
  round();
  round();
  const auto before = static_cast<std::ptrdiff_t>(heapInUse());
  while (conversions < 100000) round();
  EXPECT_LT(static_cast<std::ptrdiff_t>(heapInUse()) - before, 4096) << "after " << conversions << " conversions";
}

std::string nameOf(const ::testing::TestParamInfo<TypeRow>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(MasterList, EveryType, ::testing::ValuesIn(kEveryType), nameOf);

}  // namespace

// Found by argument-dependent lookup, so it lives beside the row type.
namespace graphics::datatype {
void PrintTo(const TypeRow& row, std::ostream* out) { *out << row.name; }
}  // namespace graphics::datatype
