// The host's message catalog, built from messages.def.
#include "foundationlib/i18n/catalog.h"

#include <unordered_map>
#include <utility>

namespace fl::i18n {
namespace {

struct CatalogEntry {
  std::string_view id;
  std::string_view text;
};

constexpr CatalogEntry kEntries[] = {
#define KX_MESSAGE(identifier, text) {identifier, text},
#include "foundationlib/i18n/messages.def"
};

const std::unordered_map<std::string_view, std::string_view>& catalogIndex() {
  static const std::unordered_map<std::string_view, std::string_view> index = [] {
    std::unordered_map<std::string_view, std::string_view> built;
    built.reserve(std::size(kEntries));
    for (const CatalogEntry& entry : kEntries) built.emplace(entry.id, entry.text);
    return built;
  }();
  return index;
}

}  // namespace

const MessageCatalog& MessageCatalog::instance() {
  static const MessageCatalog catalog;
  return catalog;
}

std::optional<std::string_view> MessageCatalog::find(std::string_view id) const {
  const auto& index = catalogIndex();
  auto found = index.find(id);
  if (found == index.end()) return std::nullopt;
  return found->second;
}

std::string MessageCatalog::format(std::string_view id, const std::vector<std::string>& arguments) const {
  if (auto text = find(id)) return fillArguments(*text, arguments);
  std::string fallback(id);
  for (const std::string& argument : arguments) fallback += " " + argument;
  return fallback;
}

std::vector<std::string_view> MessageCatalog::identifiers() const {
  std::vector<std::string_view> ids;
  ids.reserve(std::size(kEntries));
  for (const CatalogEntry& entry : kEntries) ids.push_back(entry.id);
  return ids;
}

std::string fillArguments(std::string_view text, const std::vector<std::string>& arguments) {
  std::string filled;
  filled.reserve(text.size());
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::size_t open = text.find('{', pos);
    if (open == std::string_view::npos) break;
    const std::size_t close = text.find('}', open);
    if (close == std::string_view::npos) break;
    std::size_t index = 0;
    bool numeric = close > open + 1;
    for (std::size_t i = open + 1; i < close && numeric; ++i) {
      numeric = text[i] >= '0' && text[i] <= '9';
      index = index * 10 + static_cast<std::size_t>(text[i] - '0');
    }
    filled.append(text, pos, open - pos);
    if (numeric && index < arguments.size()) {
      filled += arguments[index];
    } else {
      filled.append(text, open, close + 1 - open);
    }
    pos = close + 1;
  }
  filled.append(text, pos);
  return filled;
}

}  // namespace fl::i18n
