#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace fzy {

/// A handler as the object holds it that will call it: a `std::function` or nothing. It is held by
/// counted reference, so that telling takes no memory and a handler may replace or clear itself
/// while it is called.
template <class Handler>
class TEvent {
 public:
  TEvent() = default;
  /// Takes memory before the handler that was there goes.
  TEvent& operator=(Handler value) {
    FHandler = value ? std::make_shared<const Handler>(std::move(value)) : nullptr;
    return *this;
  }
  TEvent& operator=(std::nullptr_t) noexcept {
    FHandler.reset();
    return *this;
  }

  explicit operator bool() const noexcept { return FHandler != nullptr; }
  /// The handler, an empty one when there is none; valid until another one is set.
  operator const Handler&() const noexcept {
    static const Handler none;
    return FHandler ? *FHandler : none;
  }

  template <class... Args>
  void Fire(Args&&... args) const {
    if (const std::shared_ptr<const Handler> held = FHandler) (*held)(std::forward<Args>(args)...);
  }

 private:
  std::shared_ptr<const Handler> FHandler;
};

/// Calls a handler, if there is one.
template <class Handler, class... Args>
void FireEvent(const TEvent<Handler>& event, Args&&... args) {
  event.Fire(std::forward<Args>(args)...);
}

/// The same by a copy, for a handler that an object was asked for.
template <class Handler, class... Args>
void FireEvent(const Handler& handler, Args&&... args) {
  if (!handler) return;
  const Handler copy = handler;
  copy(std::forward<Args>(args)...);
}

}  // namespace fzy
