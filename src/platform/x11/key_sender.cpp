#include "platform/x11/key_sender.h"

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
#include "platform/x11/ping.h"

namespace velumar {

namespace {

using Clock = std::chrono::steady_clock;

// Types the keys of one text into the chart program.
class Typing {
 public:
  // `behind`: type even if another program's window is in front.
  Typing(X11Connection& connection, const std::string& host_title, const std::string& display_name,
         bool behind)
      : connection_(connection),
        program_(connection, host_title),
        ping_(connection),
        keyboard_(display_name),
        behind_(behind) {}

  KeyOutcome TypeAll(const std::vector<KeyStroke>& strokes) {
    bool not_sent = false;
    for (rest_ = strokes; !rest_.empty() && !not_sent; rest_ = rest_.subspan(1)) {
      not_sent = !TypeInTime(rest_.front());
      // A shortcut opens a menu that takes the next key.
      if (rest_.front().alt || rest_.front().ctrl) WaitUntilRead();
    }
    WaitUntilRead();
    if (not_sent) return KeyOutcome::kNotSent;
    return answered_ ? KeyOutcome::kAccepted : KeyOutcome::kNotAnswered;
  }

 private:
  bool TypeInTime(const KeyStroke& stroke) {
    const Clock::time_point start = Clock::now();
    while (true) {
      const Obstacle obstacle = Try(stroke);
      if (obstacle == Obstacle::kNone) return true;
      if (Clock::now() - start >= TimeoutFor(obstacle)) return false;
      std::this_thread::sleep_for(kCheckInterval);
    }
  }

  Obstacle Try(const KeyStroke& stroke) {
    const xcb_window_t front = connection_.FrontWindow();
    if (front != XCB_NONE && program_.TakesKeys(front)) {
      return TypeInto(front, stroke, X11Keyboard::Reach::kFocused);
    }
    if (behind_) return TryBehind(stroke);
    return front == XCB_NONE ? Obstacle::kNoFocus : Obstacle::kOtherWindow;
  }

  // A chart that is minimised or on another workspace can't have the focus.
  Obstacle TryBehind(const KeyStroke& stroke) {
    const std::vector<xcb_window_t> charts = program_.MainWindows();
    if (charts.empty() || !connection_.IsMapped(charts.front())) return Obstacle::kOtherWindow;
    return TypeInto(charts.front(), stroke, X11Keyboard::Reach::kBehind);
  }

  Obstacle TypeInto(xcb_window_t window, const KeyStroke& stroke, X11Keyboard::Reach reach) {
    X11Keyboard::Outcome outcome = keyboard_.Type(stroke, window, reach);
    if (outcome == X11Keyboard::Outcome::kNoKey) {
      WaitUntilRead();
      keyboard_.Prepare(rest_);
      outcome = keyboard_.Type(stroke, window, reach);
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
  X11ChartProgram program_;
  X11Ping ping_;
  X11Keyboard keyboard_;
  bool behind_;
  std::span<const KeyStroke> rest_;
  xcb_window_t unread_in_ = XCB_NONE;
  Clock::duration time_left_ = kAnswerTimeout;
  bool answered_ = true;
};

}  // namespace

X11KeySender::X11KeySender(std::string host_title, std::string display_name)
    : host_title_(std::move(host_title)),
      display_name_(std::move(display_name)),
      connection_(std::make_unique<X11Connection>(display_name_)) {}

X11KeySender::~X11KeySender() = default;

KeyOutcome X11KeySender::Send(std::string_view keys) { return TypeAll(keys, false); }

KeyOutcome X11KeySender::SendBehind(std::string_view keys) { return TypeAll(keys, true); }

KeyOutcome X11KeySender::TypeAll(std::string_view keys, bool behind) {
  const std::vector<KeyStroke> strokes = ParseKeys(keys);
  if (!std::all_of(strokes.begin(), strokes.end(), X11Layout::CanType)) {
    throw std::invalid_argument("keys \"" + std::string(keys) + "\": a control character");
  }
  connection_->RequireAnswer();
  return Typing(*connection_, host_title_, display_name_, behind).TypeAll(strokes);
}

}  // namespace velumar
