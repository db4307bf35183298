// Message-identifier exceptions of the foundation library.
#include "foundationlib/except.h"

#include "foundationlib/i18n/catalog.h"

namespace fl::except {

IMsgIDException::~IMsgIDException() = default;
IUserException::~IUserException() = default;
MsgIDExceptionBase::~MsgIDExceptionBase() = default;

std::string IMsgIDException::get_message_text() const {
  return i18n::MessageCatalog::instance().format(get_error_id(), get_arguments());
}

namespace {

std::vector<std::string> partsOf(std::string_view qualifiedName) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start < qualifiedName.size()) {
    std::size_t end = qualifiedName.find(':', start);
    if (end == std::string_view::npos) end = qualifiedName.size();
    if (end > start) parts.emplace_back(qualifiedName.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

std::string joined(const std::vector<std::string>& parts) {
  std::string id;
  for (const std::string& part : parts) {
    if (!id.empty()) id += ':';
    id += part;
  }
  return id;
}

}  // namespace

std::string identifierOf(std::string_view qualifiedName) { return joined(partsOf(qualifiedName)); }

IdentifierText::IdentifierText(std::string_view qualifiedName) : parts(partsOf(qualifiedName)), id(joined(parts)) {}

MsgIDExceptionBase::MsgIDExceptionBase(const IdentifierText& identifier, std::vector<std::string> arguments)
    : identifier_(&identifier), arguments_(std::move(arguments)) {}

const char* bad_alloc_impl::what() const noexcept { return "Out of memory."; }

boost::exception_detail::clone_impl<bad_alloc_impl> bad_alloc() {
  return boost::enable_current_exception(bad_alloc_impl());
}

void throwBadAlloc() { throw bad_alloc(); }

}  // namespace fl::except

template class boost::exception_detail::clone_impl<fl::except::bad_alloc_impl>;
