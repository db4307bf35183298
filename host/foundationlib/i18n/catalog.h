// The host's message catalog: the English text of every message identifier, with numbered arguments.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace fl::i18n {

// Looks up identifiers in the catalog table. Texts refer to arguments as {0}, {1}, ...
class MessageCatalog {
 public:
  static const MessageCatalog& instance();

  // The catalog's raw text for the identifier, if it has one.
  std::optional<std::string_view> find(std::string_view id) const;
  // The text with its arguments filled in. An identifier the catalog lacks yields the identifier
  // itself followed by its arguments, so that nothing a raiser said is lost.
  std::string format(std::string_view id, const std::vector<std::string>& arguments) const;
  // Every identifier of the catalog, in table order.
  std::vector<std::string_view> identifiers() const;

 private:
  MessageCatalog() = default;
};

// Replaces each {k} in text by arguments[k]. A placeholder without an argument stays as written.
std::string fillArguments(std::string_view text, const std::vector<std::string>& arguments);

// A message identifier with its arguments, as handed to the host's warning call.
class BaseMsgID {
 public:
  explicit BaseMsgID(std::string id, std::vector<std::string> arguments = {})
      : id_(std::move(id)), arguments_(std::move(arguments)) {}
  const std::string& id() const { return id_; }
  const std::vector<std::string>& arguments() const { return arguments_; }
  std::string text() const { return MessageCatalog::instance().format(id_, arguments_); }

 private:
  std::string id_;
  std::vector<std::string> arguments_;
};

}  // namespace fl::i18n

KX_HOST_API_END
