#include "platform/x11/ping.h"

#include <poll.h>

#include <algorithm>
#include <thread>

namespace velumar {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// For a window that can't report when it has read its keys.
constexpr milliseconds kSettle{100};
constexpr int kPings = 2;

void Listen(X11Connection& connection, xcb_window_t window, std::uint32_t events) {
  xcb_change_window_attributes(connection.Xcb(), window, XCB_CW_EVENT_MASK, &events);
}

std::uint32_t MillisecondsNow() {
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<milliseconds>(Clock::now().time_since_epoch()).count());
}

}  // namespace

X11Ping::X11Ping(X11Connection& connection) : connection_(connection), mark_(MillisecondsNow()) {
  // Toolkits send their answers to one or the other.
  Listen(connection_, connection_.Root(),
         XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

// Unread events would pile up.
X11Ping::~X11Ping() {
  Listen(connection_, connection_.Root(), XCB_EVENT_MASK_NO_EVENT);
  xcb_flush(connection_.Xcb());
  while (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection_.Xcb())}) {
  }
}

bool X11Ping::WaitUntilRead(xcb_window_t window, Clock::time_point end) {
  if (!AnswersPings(window)) {
    std::this_thread::sleep_for(std::min<Clock::duration>(kSettle, end - Clock::now()));
    return true;
  }
  Listen(connection_, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
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
  if (answer != Answer::kGone) Listen(connection_, window, XCB_EVENT_MASK_NO_EVENT);
  return answer != Answer::kNone;
}

bool X11Ping::AnswersPings(xcb_window_t window) {
  const std::vector<std::uint32_t> protocols =
      connection_.NumbersProperty(window, connection_.Ewmh()->WM_PROTOCOLS);
  connection_.RequireAlive();
  return std::find(protocols.begin(), protocols.end(), connection_.Ewmh()->_NET_WM_PING) !=
         protocols.end();
}

void X11Ping::Send(xcb_window_t window) {
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

X11Ping::Answer X11Ping::AnswerIn(const xcb_generic_event_t& event, xcb_window_t window) const {
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

XOwned<xcb_generic_event_t> X11Ping::NextEvent(Clock::time_point end) {
  while (true) {
    XOwned<xcb_generic_event_t> event(xcb_poll_for_event(connection_.Xcb()));
    connection_.RequireAlive();
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
    if (event || left.count() <= 0) return event;
    pollfd readable{xcb_get_file_descriptor(connection_.Xcb()), POLLIN, 0};
    ::poll(&readable, 1, static_cast<int>(left.count()));
  }
}

}  // namespace velumar
