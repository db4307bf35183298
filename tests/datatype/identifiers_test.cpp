// The identifiers the library declares against the host's message catalog: each has a text there,
// none is declared twice, and the catalog holds no text that nothing raises.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "datatype/all/all_types.h"
#include "foundationlib/i18n/catalog.h"

namespace {

using graphics::datatype::declaredIdentifiers;

// The array library and the Java bridge raise identifiers of their own; the rest of the catalog is this
// library's.
bool raisedByTheHostItself(std::string_view id) {
  return id.starts_with("Korvax:arraylib:") || id.starts_with("Korvax:javabridge:");
}

TEST(Identifiers, EveryDeclaredIdentifierHasACatalogTextAndIsDeclaredOnce) {
  const fl::i18n::MessageCatalog& catalog = fl::i18n::MessageCatalog::instance();
  std::set<std::string> seen;
  for (const std::string& id : declaredIdentifiers()) {
    SCOPED_TRACE(id);
    EXPECT_TRUE(seen.insert(id).second) << "declared twice";
    EXPECT_TRUE(catalog.find(id).has_value()) << "no catalog text";
    EXPECT_TRUE(id.starts_with("Korvax:") || id.starts_with("datatypes:")) << "outside the library's namespaces";
  }
  // The shaped arrays alone generate 84 keys and a parse identifier per type.
  EXPECT_GT(seen.size(), 84u + 34u);
}

TEST(Identifiers, NoCatalogTextIsOrphaned) {
  const std::vector<std::string> declared = declaredIdentifiers();
  const std::set<std::string, std::less<>> raisable(declared.begin(), declared.end());
  for (std::string_view id : fl::i18n::MessageCatalog::instance().identifiers()) {
    SCOPED_TRACE(std::string(id));
    EXPECT_TRUE(raisable.contains(id) || raisedByTheHostItself(id)) << "nothing raises it";
  }
}

}  // namespace
