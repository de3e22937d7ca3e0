#include "platform/x11/chart_desktop.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <span>
#include <stdexcept>
#include <thread>
#include <utility>

#include "platform/common/key_timeouts.h"
#include "platform/key_notation.h"
#include "platform/x11/chart_program.h"
#include "platform/x11/connection.h"
#include "platform/x11/keyboard.h"

namespace velumar {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// For a window that can't report when it has read its keys.
constexpr milliseconds kSettle{100};

constexpr int kPings = 2;

// Finds out whether a window has processed the keys that were sent to it. A program reads its
// events in order and answers a ping when it reads it. When it answers a second one, it has
// returned to its event loop in between, so it has processed the keys.
class Ping {
 public:
  // Receives the answers that are sent to the root window: toolkits send them with one mask or the
  // other.
  explicit Ping(X11Connection& connection) : connection_(connection) {
    Listen(connection_.Root(),
           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  }
  Ping(const Ping&) = delete;
  Ping& operator=(const Ping&) = delete;
  // Unread events would pile up.
  ~Ping() {
    Listen(connection_.Root(), XCB_EVENT_MASK_NO_EVENT);
    xcb_flush(connection_.Xcb());
    connection_.DropEvents();
  }

  // Returns true once the window has processed its events or is closed, false if `end` comes first.
  // A window that doesn't support pings gets 100 ms. Throws std::runtime_error if the display is
  // gone.
  bool WaitUntilRead(xcb_window_t window, Clock::time_point end) {
    if (!AnswersPings(window)) {
      std::this_thread::sleep_for(std::min<Clock::duration>(kSettle, end - Clock::now()));
      return true;
    }
    Listen(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    Answer answer = Answer::kPong;
    for (int ping = 0; ping < kPings && answer == Answer::kPong; ++ping) {
      Send(window);
      answer = Answer::kNone;
      while (answer == Answer::kNone) {
        const auto event = NextEvent(end);
        if (!event) break;
        answer = AnswerIn(*event, window);
      }
    }
    if (answer != Answer::kGone) Listen(window, XCB_EVENT_MASK_NO_EVENT);
    return answer != Answer::kNone;
  }

 private:
  enum class Answer : std::uint8_t { kNone, kPong, kGone };

  void Listen(xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(connection_.Xcb(), window, XCB_CW_EVENT_MASK, &events);
  }

  bool AnswersPings(xcb_window_t window) {
    const std::vector<std::uint32_t> protocols =
        connection_.NumbersProperty(window, connection_.Ewmh()->WM_PROTOCOLS);
    connection_.RequireAlive();
    return std::find(protocols.begin(), protocols.end(), connection_.Ewmh()->_NET_WM_PING) !=
           protocols.end();
  }

  void Send(xcb_window_t window) {
    xcb_client_message_event_t ping{};
    ping.response_type = XCB_CLIENT_MESSAGE;
    ping.format = 32;
    ping.window = window;
    ping.type = connection_.Ewmh()->WM_PROTOCOLS;
    ping.data.data32[0] = connection_.Ewmh()->_NET_WM_PING;
    ping.data.data32[1] = ++mark_;
    ping.data.data32[2] = window;
    xcb_send_event(connection_.Xcb(), 0, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&ping));
    xcb_flush(connection_.Xcb());
  }

  Answer AnswerIn(const xcb_generic_event_t& event, xcb_window_t window) const {
    constexpr std::uint8_t kSentByProgram = 0x80;
    switch (event.response_type & ~kSentByProgram) {
      case 0: {
        const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
        return error.resource_id == window ? Answer::kGone : Answer::kNone;
      }
      case XCB_DESTROY_NOTIFY: {
        const auto& gone = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        return gone.window == window ? Answer::kGone : Answer::kNone;
      }
      case XCB_CLIENT_MESSAGE: {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        const bool pong = message.type == connection_.Ewmh()->WM_PROTOCOLS &&
                          message.data.data32[0] == connection_.Ewmh()->_NET_WM_PING &&
                          message.data.data32[1] == mark_ && message.data.data32[2] == window;
        return pong ? Answer::kPong : Answer::kNone;
      }
      default:
        return Answer::kNone;
    }
  }

  XOwned<xcb_generic_event_t> NextEvent(Clock::time_point end) {
    while (true) {
      XOwned<xcb_generic_event_t> event(xcb_poll_for_event(connection_.Xcb()));
      connection_.RequireAlive();
      const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
      if (event || left.count() <= 0) return event;
      pollfd readable{xcb_get_file_descriptor(connection_.Xcb()), POLLIN, 0};
      ::poll(&readable, 1, static_cast<int>(left.count()));
    }
  }

  X11Connection& connection_;
  // The timestamp of the last ping; each has its own.
  std::uint32_t mark_ = static_cast<std::uint32_t>(
      std::chrono::duration_cast<milliseconds>(Clock::now().time_since_epoch()).count());
};

// Types the keys of one text into the chart program.
class Typing {
 public:
  // `in_background`: type even if another program's window is in front.
  Typing(X11Connection& connection, const std::string& display_name, bool in_background)
      : connection_(connection),
        ping_(connection),
        keyboard_(display_name),
        in_background_(in_background) {}

  KeyOutcome TypeAll(const std::vector<KeyStroke>& strokes) {
    bool not_sent = false;
    for (rest_ = strokes; !rest_.empty() && !not_sent; rest_ = rest_.subspan(1)) {
      not_sent = !TypeInTime([&] { return Try(rest_.front()); },
                             [](milliseconds time) { std::this_thread::sleep_for(time); });
      // A shortcut opens a menu that takes the next key.
      if (rest_.front().alt || rest_.front().ctrl) WaitUntilRead();
    }
    WaitUntilRead();
    if (not_sent) return KeyOutcome::kNotSent;
    return answered_ ? KeyOutcome::kAccepted : KeyOutcome::kNotAnswered;
  }

 private:
  Obstacle Try(const KeyStroke& stroke) {
    const xcb_window_t front = connection_.FrontWindow();
    if (front != XCB_NONE && TakesChartKeys(connection_, front)) {
      return TypeInto(front, stroke, X11Keyboard::Focus::kRequired);
    }
    if (in_background_) return TryInBackground(stroke);
    return front == XCB_NONE ? Obstacle::kNoFocus : Obstacle::kOtherWindow;
  }

  // A chart that is minimised or on another workspace can't have the focus.
  Obstacle TryInBackground(const KeyStroke& stroke) {
    const std::vector<xcb_window_t> charts = ChartMainWindows(connection_);
    if (charts.empty() || !connection_.IsMapped(charts.front())) return Obstacle::kOtherWindow;
    return TypeInto(charts.front(), stroke, X11Keyboard::Focus::kTemporary);
  }

  Obstacle TypeInto(xcb_window_t window, const KeyStroke& stroke, X11Keyboard::Focus focus) {
    X11Keyboard::Outcome outcome = keyboard_.Type(stroke, window, focus);
    if (outcome == X11Keyboard::Outcome::kNoKey) {
      WaitUntilRead();
      keyboard_.Prepare(rest_);
      outcome = keyboard_.Type(stroke, window, focus);
    }
    if (outcome == X11Keyboard::Outcome::kNoKey) {
      throw std::runtime_error("The keyboard layout has no key for a character and no spare key.");
    }
    if (outcome == X11Keyboard::Outcome::kUserTypes) return Obstacle::kUserTypes;
    if (outcome != X11Keyboard::Outcome::kTyped) return Obstacle::kNoFocus;
    unread_in_ = window;
    return Obstacle::kNone;
  }

  // All waits of one text share one timeout.
  void WaitUntilRead() {
    if (unread_in_ == XCB_NONE) return;
    const Clock::time_point start = Clock::now();
    if (!ping_.WaitUntilRead(unread_in_, start + time_left_)) {
      answered_ = false;
      keyboard_.KeepPrepared();
    }
    time_left_ = std::max(Clock::duration::zero(), time_left_ - (Clock::now() - start));
    unread_in_ = XCB_NONE;
  }

  X11Connection& connection_;
  Ping ping_;
  X11Keyboard keyboard_;
  bool in_background_;
  std::span<const KeyStroke> rest_;
  xcb_window_t unread_in_ = XCB_NONE;
  Clock::duration time_left_ = kAnswerTimeout;
  bool answered_ = true;
};

class X11KeySender : public KeySender {
 public:
  explicit X11KeySender(std::string display_name)
      : display_name_(std::move(display_name)), connection_(display_name_) {}

  KeyOutcome Send(std::string_view keys) override { return TypeAll(keys, false); }
  KeyOutcome SendInBackground(std::string_view keys) override { return TypeAll(keys, true); }

 private:
  KeyOutcome TypeAll(std::string_view keys, bool in_background) {
    const std::vector<KeyStroke> strokes = ParseKeys(keys);
    connection_.RequireAnswer();
    return Typing(connection_, display_name_, in_background).TypeAll(strokes);
  }

  std::string display_name_;
  X11Connection connection_;
};

}  // namespace

std::unique_ptr<KeySender> MakeX11KeySender(std::string display_name) {
  return std::make_unique<X11KeySender>(std::move(display_name));
}

}  // namespace velumar
