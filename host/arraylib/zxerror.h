// The host's error and warning path: call frames, the host's own error, the raising calls and the
// warning log. The re-raising of a caught exception (zxReThrowException) has a header of its own,
// zxrethrow.h, so that this one stays light.
//
// The host runs every call into a library inside a zx::CallFrame. While a frame is active, an
// error raised through this path is the host's own zx::HostError (identifier plus the catalog's
// text with its arguments); with no frame active, do_legacy_zx_error returns so that the caller
// throws its own exception, and the other raising calls throw zx::HostError directly.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "foundationlib/except.h"
#include "foundationlib/i18n/catalog.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

struct zxArray;

// The array library's own numbered errors.
enum zxErrorMessage : int {
  zxOUT_OF_MEMORY,
  zxINDEX_OUT_OF_RANGE,
  zxWRONG_CLASS,
  zxINVALID_DIMENSIONS,
};

namespace matrix::detail {
// Raises error as the host's error when a call frame is active; returns otherwise.
void do_legacy_zx_error(const fl::except::IUserException& error);
}  // namespace matrix::detail

// Raises an error with an identifier and a printf-style text of the raiser's own.
[[noreturn]] void zxErrMsgIdAndTxt(const char* id, const char* format, ...) __attribute__((format(printf, 2, 3)));
// Raises one of the array library's numbered errors.
[[noreturn]] void zxErrMsg(zxErrorMessage message);
// Raises the identifier with the catalog's text and the given arguments.
[[noreturn]] void zxErrMsgWrapper(const fl::i18n::BaseMsgID& message);
// Records a warning in the warning log; execution goes on.
void zxWarningMsgId(const fl::i18n::BaseMsgID& message);

namespace zx {

// The host's own error: the full identifier and the text the user sees.
class KX_HOST_API HostError : public fl::except::IUserException, public std::exception {
 public:
  HostError(std::string id, std::string text, std::vector<std::string> arguments = {});
  const char* get_error_id() const noexcept override { return id_.c_str(); }
  const std::vector<std::string>& get_arguments() const noexcept override { return arguments_; }
  std::string get_message_text() const override { return text_; }
  std::unique_ptr<fl::except::IMsgIDException> copy() const override;
  [[noreturn]] void raise() const override;
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string id_;
  std::string text_;
  std::vector<std::string> arguments_;
};

// One host call: while alive, errors are host errors and arrays created are temporaries that the
// frame destroys when it ends (normally or by an exception), unless made persistent.
class CallFrame {
 public:
  CallFrame();
  ~CallFrame();
  CallFrame(const CallFrame&) = delete;
  CallFrame& operator=(const CallFrame&) = delete;
  // Number of temporaries this frame will destroy.
  std::size_t temporaryCount() const;

 private:
  friend struct FrameAccess;
  CallFrame* parent_;
  zxArray* temporaries_ = nullptr;
};

bool inCallFrame();

struct Warning {
  std::string id;
  std::string text;
};
// Warnings recorded by zxWarningMsgId, oldest first, until cleared.
const std::vector<Warning>& warnings();
void clearWarnings();

}  // namespace zx

KX_HOST_API_END
