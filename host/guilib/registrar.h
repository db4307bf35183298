// The queue of initialisation callbacks that modules fill while a library loads and that its
// start-up runs.
#pragma once

#include <vector>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace gui_objects {

// Holds callbacks queued by static initialisers until the owning library starts. initialize() runs
// each queued callback once, in the order added, and empties the queue; callbacks added afterwards
// (also by a running callback) wait for the next initialize(). A null callback is ignored. If a
// callback throws, the ones after it stay queued ahead of any added since, and the exception
// propagates. Not locked: one thread at a time.
class InitializationCallbackRegistrar {
 public:
  using Callback = void (*)();

  void addCallback(Callback callback);
  void initialize();

 private:
  std::vector<Callback> pending_;
};

}  // namespace gui_objects

KX_HOST_API_END
