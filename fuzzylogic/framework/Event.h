#pragma once

#include <utility>

namespace fzy {

/// Calls a handler by a copy, so that it may replace or clear itself; nothing happens without one.
template <class Handler, class... Args>
void FireEvent(const Handler& handler, Args&&... args) {
  if (!handler) return;
  const Handler copy = handler;
  copy(std::forward<Args>(args)...);
}

}  // namespace fzy
