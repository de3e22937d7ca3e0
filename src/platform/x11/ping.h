#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/x11/connection.h"

namespace velumar {

// Finds out whether a window has read the keys that were sent to it. A program reads its events in
// their order, and answers a ping as it reads it; when it answers a second one, it has been back to
// its events since, and so is done with the keys themselves.
class X11Ping {
 public:
  // Hears the answers that go to the root window for as long as it lives. `connection` must outlive
  // the object.
  explicit X11Ping(X11Connection& connection);
  X11Ping(const X11Ping&) = delete;
  X11Ping& operator=(const X11Ping&) = delete;
  ~X11Ping();

  // True once the window has read its events, or is gone; false when the time is over before that.
  // A window that doesn't answer pings at all gets a short moment. Throws std::runtime_error when
  // the display is gone.
  bool WaitUntilRead(xcb_window_t window, std::chrono::steady_clock::time_point end);

 private:
  enum class Answer : std::uint8_t { kNone, kPong, kGone };

  bool AnswersPings(xcb_window_t window);
  void Send(xcb_window_t window);
  Answer AnswerIn(const xcb_generic_event_t& event, xcb_window_t window) const;
  XOwned<xcb_generic_event_t> NextEvent(std::chrono::steady_clock::time_point end);

  X11Connection& connection_;
  // Stands where the protocol has a time; each ping has its own.
  std::uint32_t mark_;
};

}  // namespace velumar
