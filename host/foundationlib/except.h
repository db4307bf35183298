// Message-identifier exceptions of the foundation library, the one-line identifier declaration,
// and the out-of-memory error.
//
//   FL_DECLARE_MSG_ID(Korvax::orb::shaped_arrays, AlphaMapSize)
//   throw fl::except::Exception<Korvax::orb::shaped_arrays::AlphaMapSize>("ColorMap");
//   throw fl::except::Exception<key<"OBJSYSPackageNotFound", catalog<"orb", component<"Korvax">>>>();
#pragma once

#include <algorithm>
#include <boost/exception/exception.hpp>
#include <concepts>
#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace fl::except {

// An error that names an entry of the host's message catalog by its identifier
// ("Korvax:datatypes:invalidPositive") and carries the entry's arguments as narrow strings.
class KX_HOST_API IMsgIDException {
 public:
  virtual ~IMsgIDException();
  // The full identifier, components joined by ':'.
  virtual const char* get_error_id() const noexcept = 0;
  virtual const std::vector<std::string>& get_arguments() const noexcept = 0;
  // The text a user sees: the catalog's text for the identifier with the arguments filled in.
  virtual std::string get_message_text() const;
  virtual std::unique_ptr<IMsgIDException> copy() const = 0;
  [[noreturn]] virtual void raise() const = 0;

 protected:
  IMsgIDException() = default;
  IMsgIDException(const IMsgIDException&) = default;
  IMsgIDException& operator=(const IMsgIDException&) = default;
};

// A message-identifier error that reports a fault of the user's input (as opposed to an internal
// fault); this is how the host raises it.
class KX_HOST_API IUserException : public IMsgIDException {
 public:
  ~IUserException() override;

 protected:
  IUserException() = default;
  IUserException(const IUserException&) = default;
  IUserException& operator=(const IUserException&) = default;
};

// The identifier a qualified name stands for: its components, separated by ':' or "::", joined by
// ':' ("Korvax::orb::datatypes:OutOfMemory" gives "Korvax:orb:datatypes:OutOfMemory").
KX_HOST_API std::string identifierOf(std::string_view qualifiedName);

// An identifier's parts and their joined text, made from its qualified name, whose components are
// separated by ':' or "::" ("Korvax::orb::datatypes:OutOfMemory").
struct KX_HOST_API IdentifierText {
  explicit IdentifierText(std::string_view qualifiedName);
  std::vector<std::string> parts;
  std::string id;
};

// The identifier's parts and text, made once per identifier and shared by all its exceptions, so that
// making and copying one copies only its arguments.
template <class Id>
const IdentifierText& identifierTextOf() {
  static const IdentifierText text(Id::qualified_name);
  return text;
}

// The identifier's parts, its joined text and the arguments: the state every identifier class shares.
class KX_HOST_API MsgIDExceptionBase : public IUserException {
 public:
  ~MsgIDExceptionBase() override;
  const char* get_error_id() const noexcept override { return identifier_->id.c_str(); }
  const std::vector<std::string>& get_arguments() const noexcept override { return arguments_; }
  const std::vector<std::string>& get_parts() const noexcept { return identifier_->parts; }

 protected:
  // identifier outlives every exception made with it.
  MsgIDExceptionBase(const IdentifierText& identifier, std::vector<std::string> arguments);

 private:
  const IdentifierText* identifier_;
  std::vector<std::string> arguments_;
};

// The exception of one identifier. Id names the identifier through its static qualified_name.
template <class Id, class Base = std::exception>
class Exception : public MsgIDExceptionBase, public Base {
 public:
  template <class... Args>
  requires(std::constructible_from<std::string, const Args&>&&...) explicit Exception(const Args&... arguments)
      : MsgIDExceptionBase(identifierTextOf<Id>(), argumentsOf(arguments...)) {}

  const char* what() const noexcept override { return get_error_id(); }
  std::unique_ptr<IMsgIDException> copy() const override { return std::make_unique<Exception>(*this); }
  [[noreturn]] void raise() const override { throw *this; }

 private:
  // Each argument made once, in place (an initializer list would copy every string again).
  template <class... Args>
  static std::vector<std::string> argumentsOf(const Args&... arguments) {
    std::vector<std::string> made;
    made.reserve(sizeof...(Args));
    (made.emplace_back(arguments), ...);
    return made;
  }
};

// A string usable as a template argument, for the explicit-part form of an identifier.
template <std::size_t N>
struct fixed_string {
  char chars[N]{};
  constexpr fixed_string(const char (&text)[N]) { std::copy_n(text, N, chars); }
  constexpr std::string_view view() const { return {chars, N - 1}; }
};

namespace detail {
template <std::size_t A, std::size_t B>
constexpr fixed_string<A + B> joinParts(const fixed_string<A>& head, const fixed_string<B>& tail) {
  char joined[A + B]{};
  std::copy_n(head.chars, A - 1, joined);
  joined[A - 1] = ':';
  std::copy_n(tail.chars, B, joined + A);
  return fixed_string<A + B>(joined);
}
}  // namespace detail

template <fixed_string P>
struct component {
  static constexpr auto name = P;
};
template <fixed_string C, class Component>
struct catalog {
  static constexpr auto name = detail::joinParts(Component::name, C);
};
template <fixed_string K, class Catalog>
struct key {
  static constexpr auto name = detail::joinParts(Catalog::name, K);
  static constexpr std::string_view qualified_name = name.view();
};

// Out of memory, thrown wherever a value block or auxiliary object cannot be allocated. Boost can
// clone it into an exception_ptr.
class KX_HOST_API bad_alloc_impl : public std::bad_alloc, public boost::exception {
 public:
  const char* what() const noexcept override;
};
boost::exception_detail::clone_impl<bad_alloc_impl> bad_alloc();
// A new-handler (std::set_new_handler) under which every failed operator new raises bad_alloc() above,
// so that running out of memory reads the same whichever allocation ran out.
[[noreturn]] KX_HOST_API void throwBadAlloc();

}  // namespace fl::except

// The clone wrapper of the out-of-memory error lives in the foundation library alone.
extern template class boost::exception_detail::clone_impl<fl::except::bad_alloc_impl>;

// Declares the identifier class `key` in namespace `ns`: FL_DECLARE_MSG_ID(Korvax::datatypes, InvalidValue)
// declares Korvax::datatypes::InvalidValue for "Korvax:datatypes:InvalidValue".
#define FL_DECLARE_MSG_ID(ns, key)                                    \
  namespace ns {                                                      \
  struct key {                                                        \
    static constexpr std::string_view qualified_name = #ns "::" #key; \
  };                                                                  \
  }

KX_HOST_API_END
