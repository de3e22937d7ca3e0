#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/x11/connection.h"

namespace velumar {

// Finds out whether a window has processed the keys that were sent to it. A program reads its
// events in order and answers a ping when it reads it. When it answers a second one, it has
// returned to its event loop in between, so it has processed the keys.
class X11Ping {
 public:
  // Receives the answers that are sent to the root window. `connection` must outlive the object.
  explicit X11Ping(X11Connection& connection);
  X11Ping(const X11Ping&) = delete;
  X11Ping& operator=(const X11Ping&) = delete;
  ~X11Ping();

  // Returns true once the window has processed its events or is closed, false if `end` comes first.
  // A window that doesn't support pings gets 100 ms. Throws std::runtime_error if the display is
  // gone.
  bool WaitUntilRead(xcb_window_t window, std::chrono::steady_clock::time_point end);

 private:
  enum class Answer : std::uint8_t { kNone, kPong, kGone };

  bool AnswersPings(xcb_window_t window);
  void Send(xcb_window_t window);
  Answer AnswerIn(const xcb_generic_event_t& event, xcb_window_t window) const;
  XOwned<xcb_generic_event_t> NextEvent(std::chrono::steady_clock::time_point end);

  X11Connection& connection_;
  // The timestamp of the last ping; each has its own.
  std::uint32_t mark_;
};

}  // namespace velumar
