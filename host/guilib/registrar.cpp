// The initialisation callback queue.
#include "guilib/registrar.h"

#include <iterator>
#include <utility>

namespace gui_objects {

void InitializationCallbackRegistrar::addCallback(Callback callback) {
  if (callback != nullptr) pending_.push_back(callback);
}

void InitializationCallbackRegistrar::initialize() {
  // Taking the queue first lets a running callback queue more work for the next round.
  std::vector<Callback> running = std::exchange(pending_, {});
  for (auto next = running.begin(); next != running.end(); ++next) {
    try {
      (*next)();
    } catch (...) {
      pending_.insert(pending_.begin(), std::next(next), running.end());
      throw;
    }
  }
}

}  // namespace gui_objects
