// The host's error and warning path.
#include "arraylib/zxerror.h"

#include <cstdarg>
#include <cstdio>

#include "arraylib/zxrethrow.h"

namespace {

struct NumberedError {
  zxErrorMessage number;
  const char* id;
};

constexpr NumberedError kNumberedErrors[] = {
    {zxOUT_OF_MEMORY, "Korvax:arraylib:OutOfMemory"},
    {zxINDEX_OUT_OF_RANGE, "Korvax:arraylib:IndexOutOfRange"},
    {zxWRONG_CLASS, "Korvax:arraylib:WrongClass"},
    {zxINVALID_DIMENSIONS, "Korvax:arraylib:InvalidDimensions"},
};

std::vector<zx::Warning>& warningLog() {
  static std::vector<zx::Warning> log;
  return log;
}

}  // namespace

namespace matrix::detail {

void do_legacy_zx_error(const fl::except::IUserException& error) {
  if (!zx::inCallFrame()) return;
  throw zx::HostError(error.get_error_id(), error.get_message_text(), error.get_arguments());
}

}  // namespace matrix::detail

void zxErrMsgIdAndTxt(const char* id, const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list sizing;
  va_copy(sizing, args);
  const int length = std::vsnprintf(nullptr, 0, format, sizing);
  va_end(sizing);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, args);
  va_end(args);
  throw zx::HostError(id != nullptr ? id : "", std::move(text));
}

void zxErrMsg(zxErrorMessage message) {
  for (const NumberedError& error : kNumberedErrors) {
    if (error.number == message) zxErrMsgWrapper(fl::i18n::BaseMsgID(error.id));
  }
  zxErrMsgWrapper(fl::i18n::BaseMsgID("Korvax:arraylib:UnknownError"));
}

void zxErrMsgWrapper(const fl::i18n::BaseMsgID& message) {
  throw zx::HostError(message.id(), message.text(), message.arguments());
}

void zxReThrowException(const boost::exception_ptr& caught) {
  if (!caught) zxErrMsgWrapper(fl::i18n::BaseMsgID("Korvax:arraylib:UnknownError"));
  try {
    boost::rethrow_exception(caught);
  } catch (const zx::HostError&) {
    throw;
  } catch (const fl::except::IUserException& error) {
    matrix::detail::do_legacy_zx_error(error);
    throw;
  } catch (const fl::except::bad_alloc_impl&) {
    throw;
  } catch (const std::bad_alloc&) {
    // A slot that could not be given its error (cloning it ran out of memory) holds the C++ runtime's
    // out-of-memory error; the host's is raised in its place.
    throw fl::except::bad_alloc();
  }
}

void zxWarningMsgId(const fl::i18n::BaseMsgID& message) { warningLog().push_back({message.id(), message.text()}); }

namespace zx {

HostError::HostError(std::string id, std::string text, std::vector<std::string> arguments)
    : id_(std::move(id)), text_(std::move(text)), arguments_(std::move(arguments)) {}

std::unique_ptr<fl::except::IMsgIDException> HostError::copy() const { return std::make_unique<HostError>(*this); }

void HostError::raise() const { throw *this; }

const std::vector<Warning>& warnings() { return warningLog(); }

void clearWarnings() { warningLog().clear(); }

}  // namespace zx
